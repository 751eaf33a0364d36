#pragma once

#include "platform/SystemRelease.hpp"

namespace tessaly {

/// The program adapts to old releases of other systems, which must not happen on Linux. So the
/// release is 0.0, whichever kernel runs: none of its numbers is mistaken for such a release.
class LinuxSystemRelease final : public SystemRelease {
public:
    [[nodiscard]] Version version() const override { return {0, 0}; }
};

} // namespace tessaly
