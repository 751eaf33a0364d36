#include "platform/linux/storage/FolderIdentity.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace tessaly {

namespace {

constexpr std::string_view typeProperty = "fileSystem";

/// Whether a file system of the type makes up the numbers of its files at each mount.
bool renumbersFiles(std::uint32_t fileSystemType) noexcept
{
    switch (fileSystemType) {
    case MSDOS_SUPER_MAGIC:
    case EXFAT_SUPER_MAGIC:
    case FUSE_SUPER_MAGIC:
    case SMB_SUPER_MAGIC:
    case CIFS_SUPER_MAGIC:
    case SMB2_SUPER_MAGIC:
    case OVERLAYFS_SUPER_MAGIC:
        return true;
    default:
        return false;
    }
}

/// The handle by which the file system finds the folder; it holds a number that the next user of
/// the inode does not get. Empty when there is none.
std::string handleOf(const std::string &path)
{
    alignas(file_handle) std::array<char, sizeof(file_handle) + MAX_HANDLE_SZ> memory{};
    auto *handle = reinterpret_cast<file_handle *>(memory.data());
    // Tells the kernel how much room there is. It answers with the length.
    handle->handle_bytes = MAX_HANDLE_SZ;
    int mount = 0;
    if (name_to_handle_at(AT_FDCWD, path.c_str(), handle, &mount, AT_SYMLINK_FOLLOW) != 0) {
        return {};
    }
    const std::string_view bytes(memory.data() + offsetof(file_handle, f_handle),
                                 handle->handle_bytes);
    // The type belongs to the handle: the same bytes mean something else with another one.
    return std::to_string(handle->handle_type).append(":").append(bytes);
}

} // namespace

std::optional<FolderIdentity> folderIdentity(const std::string &path)
{
    // The calls below would look at the path up to there, which is another folder.
    if (path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    struct statx folder = {};
    struct statfs fileSystem = {};
    // The first call mounts what is mounted on demand, so that the others meet the same folder.
    if (statx(AT_FDCWD, path.c_str(), AT_STATX_SYNC_AS_STAT, STATX_TYPE | STATX_INO | STATX_BTIME,
              &folder) != 0 ||
        !S_ISDIR(folder.stx_mode) || statfs(path.c_str(), &fileSystem) != 0) {
        return std::nullopt;
    }
    return folderIdentity(folder, fileSystem, handleOf(path));
}

FolderIdentity folderIdentity(const struct statx &folder, const struct statfs &fileSystem,
                              const std::string &handle)
{
    const auto type = static_cast<std::uint32_t>(fileSystem.f_type);
    FolderIdentity identity{{std::string(typeProperty), std::to_string(type)}};
    if (type == EXT4_SUPER_MAGIC) { // made from the UUID; others make it from the device number
        std::uint64_t number = 0;
        static_assert(sizeof number == sizeof fileSystem.f_fsid);
        std::memcpy(&number, &fileSystem.f_fsid, sizeof number);
        identity.emplace("volume", std::to_string(number));
    }
    // Numbers that change at each mount would make every bookmark unusable.
    if (!renumbersFiles(type)) {
        identity.emplace("inode", std::to_string(folder.stx_ino));
        if (!handle.empty()) {
            identity.emplace("handle", handle);
        }
    }
    // FAT keeps the time of day as the clock on the wall showed it, so it changes with the zone.
    if ((folder.stx_mask & STATX_BTIME) != 0 && type != MSDOS_SUPER_MAGIC) {
        identity.emplace("birth", std::to_string(folder.stx_btime.tv_sec) + '.' +
                                      std::to_string(folder.stx_btime.tv_nsec));
    }
    return identity;
}

bool isSameFolder(const FolderIdentity &recorded, const FolderIdentity &present)
{
    // Properties that were not recorded do not count: an older version or kernel may have known
    // fewer.
    return recorded.contains(typeProperty) &&
           std::includes(present.begin(), present.end(), recorded.begin(), recorded.end());
}

} // namespace tessaly
