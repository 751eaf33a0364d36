#pragma once

#include "platform/SystemRelease.hpp"

namespace tessaly {

/// Linux needs none of the adaptations that the program makes to old releases, so the release here
/// is 0.0 whatever kernel runs: no number of a kernel is ever taken for that of such a release.
class LinuxSystemRelease final : public SystemRelease {
public:
    [[nodiscard]] Version version() const override;
};

} // namespace tessaly
