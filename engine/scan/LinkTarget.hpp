#pragma once

#include "engine/scan/DescriptorShare.hpp"

namespace tessaly::scan {

/// Whether the symbolic link `name` in an open folder leads to a folder. False for a broken link, a
/// loop and a target that may not be accessed.
///
/// The system resolves the link in one call, which may trigger an automount on the way: only for
/// systems that have none.
[[nodiscard]] bool linkLeadsToFolder(int folder, const char *name) noexcept;

/// The same without triggering an automount, by resolving the link one component at a time. What
/// lies behind an automount point is not looked at and counts as no folder; the point itself is
/// one.
///
/// Descriptors: two at a time, opened through `share`.
[[nodiscard]] bool linkLeadsToFolderWithoutAutomount(int folder, const char *name,
                                                     DescriptorShare &share);

} // namespace tessaly::scan
