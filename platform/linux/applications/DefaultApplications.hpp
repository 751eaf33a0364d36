#pragma once

#include "platform/linux/applications/DesktopEntry.hpp"

#include <cstdint>
#include <optional>

namespace tessaly {

class DesktopEntries;

/// The programs that every desktop has, each its own.
enum class Counterpart : std::uint8_t { fileManager, settings, diskUtility };

/// The program that is this on the desktop that `entries` are of; nothing when it is not installed.
///
/// The file manager is the default program for folders. The others are known by their ids: those of
/// this desktop come first, then those that belong to none, in the end any program among the
/// "Settings" that is not about one kind of them only.
///
/// Threads: that of `entries`; it reads files, which may take long.
[[nodiscard]] std::optional<DesktopEntry> counterpartOf(Counterpart wanted,
                                                        const DesktopEntries &entries);

} // namespace tessaly
