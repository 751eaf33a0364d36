#include "platform/linux/files/ItemInformation.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"
#include "engine/scan/OpenedFolder.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// As much as the rules of the MIME database look at.
constexpr std::size_t beginningByteCount = std::size_t{16} << 10U;

std::chrono::sys_seconds timeOf(const statx_timestamp &time)
{
    // The window shows no fractions of a second.
    return std::chrono::sys_seconds(std::chrono::seconds(time.tv_sec));
}

std::string targetOf(const std::string &path)
{
    std::array<char, PATH_MAX> target{};
    // Does not add a null byte, so the length counts.
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    return {target.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

std::optional<std::uint64_t> entryCountOf(const std::string &path)
{
    // Counted as the scanner lists it; without stat() for each entry.
    const scan::OpenedFolder folder = scan::openFolderPath(path);
    if (!folder.descriptor.isOpen()) {
        return std::nullopt;
    }
    const int descriptor = folder.descriptor.number();
    (void)fcntl(descriptor, F_SETFL, O_NOATIME); // allowed to the owner only
    scan::DirectoryListing listing;
    listing.open(descriptor);
    std::uint64_t count = 0;
    while (listing.next() != nullptr) {
        ++count;
    }
    // A number that stops at an error would look like a fact.
    return listing.error() == 0 ? std::optional(count) : std::nullopt;
}

std::optional<std::string> beginningOf(const std::string &path)
{
    const scan::FileDescriptor file(
        open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | O_NOATIME));
    // The flags: no link, no terminal, no FIFO to hang on, and no new time of last access.
    std::string bytes(beginningByteCount, '\0');
    const ssize_t length = file.isOpen() ? read(file.number(), bytes.data(), bytes.size()) : -1;
    if (length < 0) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

/// The name that a user or group has, or else its number. `Entry` is what the system keeps of one,
/// `find` the call that looks it up.
template <typename Entry, typename Find>
std::string accountName(id_t id, char *Entry::*name, Find find)
{
    constexpr std::size_t maxEntryBytes = std::size_t{1} << 20U;
    Entry entry{};
    Entry *found = nullptr;
    std::vector<char> buffer(1024);
    // A group may have thousands of members, which all have to fit into the buffer.
    while (find(id, &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < maxEntryBytes) {
        buffer.resize(buffer.size() * 2);
    }
    return found != nullptr ? found->*name : std::to_string(id);
}

} // namespace

ItemInformation ItemInformation::of(const std::string &path)
{
    ItemInformation item;
    item.path = path;
    struct statx status = {};
    if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        item.error = errno;
        return item;
    }
    item.mode = status.stx_mode;
    item.byteCount = status.stx_size;
    item.owner = accountName(status.stx_uid, &passwd::pw_name, getpwuid_r);
    item.group = accountName(status.stx_gid, &group::gr_name, getgrgid_r);
    // Some file systems claim to have the time of creation, and report 0.
    if ((status.stx_mask & STATX_BTIME) != 0 && status.stx_btime.tv_sec != 0) {
        item.created = timeOf(status.stx_btime);
    }
    item.modified = timeOf(status.stx_mtime);
    item.accessed = timeOf(status.stx_atime);

    if (S_ISDIR(item.mode)) {
        item.entryCount = entryCountOf(path);
    } else if (S_ISLNK(item.mode)) {
        item.target = targetOf(path);
        struct stat target = {};
        // stat() follows the link, and all others behind it.
        item.isTargetThere = stat(path.c_str(), &target) == 0;
    } else if (S_ISREG(item.mode)) {
        item.beginning = beginningOf(path);
    }
    return item;
}

} // namespace tessaly
