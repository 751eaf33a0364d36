#include "platform/linux/storage/LinuxFolderBookmarks.hpp"

#include "engine/archive/PropertyList.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/FileUrl.hpp"
#include "platform/linux/storage/FolderIdentity.hpp"

#include <QLoggingCategory>

#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(bookmarksLog, "tessaly.bookmarks")

// The keys of the stored property list: never to be changed, or old bookmarks would not resolve.
constexpr const char *versionKey = "version";
constexpr const char *pathKey = "path";
constexpr const char *identityKey = "identity";
constexpr std::int64_t version = 1;

class DataSink final : public archive::ByteSink {
public:
    archive::Result<archive::Done, archive::ArchiveError>
    write(std::span<const std::byte> bytes) override
    {
        data.insert(data.end(), bytes.begin(), bytes.end());
        return archive::Done{};
    }

    FolderBookmarks::Data data;
};

struct Bookmark {
    std::string path;
    FolderIdentity identity;
};

/// Data and no text, since paths need not be valid UTF-8.
archive::PlistData dataOf(std::string_view bytes)
{
    const auto data = std::as_bytes(std::span(bytes));
    return {data.begin(), data.end()};
}

template <typename Type>
const Type *find(const archive::PlistDictionary &dictionary, std::string_view key)
{
    const auto found = dictionary.find(key);
    return found != dictionary.end() ? found->second.as<Type>() : nullptr;
}

std::string stringOf(const archive::PlistData &data)
{
    return {reinterpret_cast<const char *>(data.data()), data.size()};
}

std::optional<FolderBookmarks::Data> encoded(const Bookmark &bookmark)
{
    archive::PlistDictionary identity;
    for (const auto &[name, value] : bookmark.identity) {
        // Also data: a file handle is binary.
        identity.emplace(name, dataOf(value));
    }
    archive::PlistDictionary content;
    content.emplace(versionKey, version);
    content.emplace(pathKey, dataOf(bookmark.path));
    content.emplace(identityKey, std::move(identity));
    DataSink sink;
    return archive::writePropertyList(std::move(content), sink)
               ? std::optional(std::move(sink.data))
               : std::nullopt;
}

std::optional<Bookmark> decoded(std::span<const std::byte> data)
{
    const auto list = archive::readPropertyList(data);
    const auto *content = list ? list.value().as<archive::PlistDictionary>() : nullptr;
    if (content == nullptr) {
        return std::nullopt;
    }
    // Bookmarks come from a settings file that anything may have written: every field is checked.
    const auto *itsVersion = find<std::int64_t>(*content, versionKey);
    const auto *path = find<archive::PlistData>(*content, pathKey);
    const auto *identity = find<archive::PlistDictionary>(*content, identityKey);
    if (itsVersion == nullptr || *itsVersion != version || path == nullptr || identity == nullptr) {
        return std::nullopt;
    }
    Bookmark bookmark{stringOf(*path), {}};
    for (const auto &[name, value] : *identity) {
        const auto *bytes = value.as<archive::PlistData>();
        if (bytes == nullptr) {
            return std::nullopt;
        }
        bookmark.identity.emplace(name, stringOf(*bytes));
    }
    return bookmark;
}

/// By the effective user, as the scan will open it; access() would ask for the real one.
bool isReadableFolder(const std::string &path)
{
    std::error_code unreachable;
    return std::filesystem::is_directory(path, unreachable) &&
           faccessat(AT_FDCWD, path.c_str(), R_OK | X_OK, AT_EACCESS) == 0;
}

} // namespace

std::optional<FolderBookmarks::Data> LinuxFolderBookmarks::makeBookmark(std::string_view url)
{
    const auto path = pathOfFileUrl(url);
    auto identity = path ? folderIdentity(*path) : std::nullopt;
    // A folder that cannot be looked at has no identity, and a bookmark of it would never resolve.
    return identity ? encoded({*path, std::move(*identity)}) : std::nullopt;
}

std::optional<std::string> LinuxFolderBookmarks::resolve(std::span<const std::byte> data)
{
    const auto bookmark = decoded(data);
    // A relative path would lead to another folder each time the program starts elsewhere.
    if (!bookmark || !bookmark->path.starts_with('/')) {
        return std::nullopt;
    }
    // Something else may lie at the path by now, such as another stick at the same mount point.
    const auto present = folderIdentity(bookmark->path);
    return present && isSameFolder(bookmark->identity, *present) ? fileUrl(bookmark->path)
                                                                 : std::nullopt;
}

bool LinuxFolderBookmarks::startAccess(std::string_view url)
{
    const auto path = pathOfFileUrl(url);
    if (!path || !isReadableFolder(*path)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    // Counted, since several scans may use the same folder. On Linux nothing has to be opened:
    // permissions are checked at each access.
    ++m_accesses.try_emplace(std::string(url), 0).first->second;
    return true;
}

void LinuxFolderBookmarks::stopAccess(std::string_view url)
{
    const std::lock_guard lock(m_mutex);
    const auto access = m_accesses.find(url);
    if (access == m_accesses.end()) {
        // A mistake of ours, which must not make the count negative.
        qCWarning(bookmarksLog, "access to %s was stopped, but not started",
                  tree::printableText(url).c_str());
    } else if (--access->second == 0) {
        m_accesses.erase(access);
    }
}

int LinuxFolderBookmarks::accessCount(std::string_view url) const
{
    const std::lock_guard lock(m_mutex);
    const auto access = m_accesses.find(url);
    return access != m_accesses.end() ? access->second : 0;
}

} // namespace tessaly
