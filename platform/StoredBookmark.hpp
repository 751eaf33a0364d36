#pragma once

#include <string_view>

namespace tessaly {

class FolderBookmarks;
class SettingsStore;

/// Keeps a bookmark of the folder at the "file:" URL in the settings, under the key. Where there is
/// none to be made, what the settings have under the key is removed. Flushes them, so that the
/// outcome is there after a kill.
///
/// Threads: any. Waits for the disk.
void storeBookmark(std::string_view url, std::string_view key, FolderBookmarks &bookmarks,
                   SettingsStore &settings);

} // namespace tessaly
