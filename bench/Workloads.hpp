#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tessaly {

/// Adds a workload to be timed `repetitions` times. The work prepares and then times one run:
/// `for (auto _ : state) { ... }`.
void addWorkload(const std::string &name, int repetitions,
                 const std::function<void(benchmark::State &)> &work);

/// The same without preparation.
void addPlainWorkload(const std::string &name, int repetitions, const std::function<void()> &work);

/// The times of each workload, in milliseconds.
class WorkloadTimes final : public benchmark::BenchmarkReporter {
public:
    /// Runs all workloads, with their repetitions interleaved in random order: a disturbance of the
    /// machine then affects all alike.
    void measure();

    [[nodiscard]] double best(const std::string &workload) const;
    [[nodiscard]] double median(const std::string &workload) const;

    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;

private:
    std::map<std::string, std::vector<double>> m_times;
};

} // namespace tessaly
