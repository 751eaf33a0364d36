#pragma once

#include "engine/scan/DescriptorShare.hpp"

namespace tessaly::scan {

/// Whether the symbolic link `name` in an open folder leads to a folder. A broken link, a loop and
/// a target that may not be looked at lead to none.
///
/// The system resolves the link in one call. On the way it may touch a place that mounts itself, so
/// this is for systems where there is no such place.
[[nodiscard]] bool linkLeadsToFolder(int folder, const char *name) noexcept;

/// The same, one step of the link's target at a time, and never through a folder that makes the
/// system mount something: what lies behind one counts as no folder. Such a folder itself is one.
///
/// Descriptors: two at a time, opened through `share`.
[[nodiscard]] bool linkLeadsToFolderWithoutAutomount(int folder, const char *name,
                                                     DescriptorShare &share);

} // namespace tessaly::scan
