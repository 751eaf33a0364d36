#include "platform/StoredBookmark.hpp"

#include "platform/FolderBookmarks.hpp"
#include "platform/SettingsStore.hpp"

namespace tessaly {

void storeBookmark(std::string_view url, std::string_view key, FolderBookmarks &bookmarks,
                   SettingsStore &settings)
{
    if (const auto bookmark = bookmarks.makeBookmark(url)) {
        settings.setData(key, *bookmark);
    } else {
        settings.remove(key);
    }
    settings.flush();
}

} // namespace tessaly
