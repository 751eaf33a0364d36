#pragma once

#include "platform/FolderBookmarks.hpp"

#include <functional>
#include <map>
#include <mutex>

namespace tessaly {

/// Bookmarks of folders by their path and by what tells them from other folders (FolderIdentity).
///
/// A bookmark resolves as long as the same folder lies at the same path: after a restart and after
/// its drive was plugged in again too, but not after it was moved, nor when something else has its
/// name now. A path that leads over a symbolic link stays as it was given; what the link leads to
/// must be the same folder. Paths of 4096 bytes and more, which the system does not take, make no
/// bookmarks.
///
/// Access needs no grant on this system, so it is only counted, and tried.
///
/// Data: a binary property list: {"version": 1, "path": data, "identity": {name: data, …}}.
class LinuxFolderBookmarks final : public FolderBookmarks {
public:
    [[nodiscard]] std::optional<Data> makeBookmark(std::string_view url) override;
    [[nodiscard]] std::optional<std::string> resolve(std::span<const std::byte> data) override;

    /// False, and not counted, when the URL is that of no folder that may be listed and entered.
    bool startAccess(std::string_view url) override;
    /// Without a start it does nothing but leave a warning in the log.
    void stopAccess(std::string_view url) override;

    /// How many times the access to a URL was started and not stopped yet. URLs count as they are
    /// written.
    [[nodiscard]] int accessCount(std::string_view url) const;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, int, std::less<>> m_accesses; ///< above 0; guarded by m_mutex
};

} // namespace tessaly
