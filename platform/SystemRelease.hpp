#pragma once

#include <cstdint>

namespace tessaly {

/// The operating system's release, by which the program adapts to old ones.
///
/// Threads: any.
class SystemRelease {
public:
    struct Version {
        std::int32_t major = 0;
        std::int32_t minor = 0;
    };

    SystemRelease() = default;
    virtual ~SystemRelease() = default;
    SystemRelease(const SystemRelease &) = delete;
    SystemRelease &operator=(const SystemRelease &) = delete;
    SystemRelease(SystemRelease &&) = delete;
    SystemRelease &operator=(SystemRelease &&) = delete;

    /// The same for as long as the process runs.
    [[nodiscard]] virtual Version version() const = 0;
};

} // namespace tessaly
