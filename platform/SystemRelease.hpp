#pragma once

#include "platform/Interface.hpp"

#include <cstdint>

namespace tessaly {

/// The operating system's release, by which the program adapts to old ones.
///
/// Threads: any.
class SystemRelease : public Interface {
public:
    struct Version {
        std::int32_t major = 0;
        std::int32_t minor = 0;
    };

    /// The same for as long as the process runs.
    [[nodiscard]] virtual Version version() const = 0;
};

} // namespace tessaly
