#pragma once

#include <string_view>

/// The names under which the program keeps its settings, but for those of the preview, which is a
/// module of its own. A bookmark of a scanned folder has no name
/// of its own: it is kept under the scan's key.
namespace tessaly::settings_key {

// The six preferences (see KORVENAppDelegate), integers.
inline constexpr std::string_view hiddenItem = "hiddenItemPreference";
inline constexpr std::string_view largeFile = "largeFilePreference";
inline constexpr std::string_view showNotification = "showNotificationPreference";
inline constexpr std::string_view notificationSound = "notificationSoundPreference";
inline constexpr std::string_view diskGraphColor = "diskGraphColorPreference";
inline constexpr std::string_view folderGraphColor = "folderGraphColorPreference";

/// The bookmark of the folder that the user granted as home folder.
inline constexpr std::string_view homeFolder = "homeFolder";

// The starts of this version of the program (see KORVENRate): a text and an integer.
inline constexpr std::string_view rateVersion = "KORVENRate_version_num";
inline constexpr std::string_view rateRunCount = "KORVENRate_run_count";

// Placements of the main window (see WindowPlacement): the last one, and the one before full
// screen.
inline constexpr std::string_view windowPlacement = "windowPlacement";
inline constexpr std::string_view frameForNonFullScreenMode = "frameForNonFullScreenMode";

} // namespace tessaly::settings_key
