#pragma once

#include "platform/linux/applications/DesktopEntry.hpp"

#include <cstdint>
#include <optional>

namespace tessaly {

class DesktopEntries;

/// Programs of which every desktop has one of its own.
enum class DefaultApplication : std::uint8_t { fileManager, settings, diskUtility };

/// The program of the desktop that `entries` describes; nothing when none is installed.
///
/// The file manager is the default program for folders. The others are found by their ids: those of
/// this desktop come first, then those that belong to none, and at last any program of the category
/// "Settings" that is not about one kind of settings only.
///
/// Threads: that of `entries`. Reads files, which may block.
[[nodiscard]] std::optional<DesktopEntry> findApplication(DefaultApplication wanted,
                                                          const DesktopEntries &entries);

} // namespace tessaly
