#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// Collects the lines of the log while it exists, instead of showing them. One at a time.
class LoggedWarnings {
public:
    LoggedWarnings();
    ~LoggedWarnings();
    LoggedWarnings(const LoggedWarnings &) = delete;
    LoggedWarnings &operator=(const LoggedWarnings &) = delete;

    /// The messages so far, "CATEGORY: TEXT" each. Threads: any.
    [[nodiscard]] std::vector<std::string> lines() const;
};

} // namespace tessaly
