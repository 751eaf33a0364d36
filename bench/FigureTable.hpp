#pragma once

#include "bench/Workloads.hpp"

#include <string>

namespace tessaly {

/// Prints figures, a line each: name, value, bar and "ok" or "short", tab separated, and records
/// whether one missed its bar. A plain figure has no bar.
class FigureTable {
public:
    /// `times` must outlive the table.
    explicit FigureTable(const WorkloadTimes &times) : m_times(times) {}

    void plain(const std::string &name, double value) { print(name, value, "-", true); }
    void atMost(const std::string &name, double value, double bar);
    void atLeast(const std::string &name, double value, double bar);

    /// A workload's times in milliseconds: the best and the median.
    void time(const std::string &workload);
    /// A workload's time divided by another's: of the best and of the medians.
    void ratioAtMost(const std::string &above, const std::string &below, double bar);
    void ratioAtLeast(const std::string &above, const std::string &below, double bar);

    [[nodiscard]] bool isShort() const noexcept { return m_isShort; }

private:
    void print(const std::string &name, double value, const std::string &bar, bool isEnough);

    const WorkloadTimes &m_times;
    bool m_isShort = false;
};

} // namespace tessaly
