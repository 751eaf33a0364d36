#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tessaly {

/// Catches what one category logs, debug lines too, for as long as this lives. One at a time.
class LogLines {
public:
    explicit LogLines(const std::string &category);
    ~LogLines();
    LogLines(const LogLines &) = delete;
    LogLines &operator=(const LogLines &) = delete;

    /// Waits until there are that many lines, at least; returns all so far.
    [[nodiscard]] static std::vector<std::string> waitFor(std::size_t count);
};

} // namespace tessaly
