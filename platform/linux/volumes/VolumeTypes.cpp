#include "platform/linux/volumes/VolumeTypes.hpp"

#include <algorithm>
#include <array>

namespace tessaly {

namespace {

using namespace std::string_view_literals;

constexpr auto fusePrefix = "fuse."sv;

/// Kernel file systems, and memory.
constexpr std::array kernelTypes = {
    "anon_inodefs"sv, "autofs"sv,   "bdev"sv,       "binder"sv,    "binfmt_misc"sv, "bpf"sv,
    "cgroup"sv,       "cgroup2"sv,  "configfs"sv,   "cpuset"sv,    "debugfs"sv,     "devfs"sv,
    "devpts"sv,       "devtmpfs"sv, "dlmfs"sv,      "dmabuf"sv,    "drm"sv,         "efivarfs"sv,
    "functionfs"sv,   "fusectl"sv,  "hugetlbfs"sv,  "mqueue"sv,    "nfsd"sv,        "none"sv,
    "nsfs"sv,         "pidfs"sv,    "pipefs"sv,     "proc"sv,      "pstore"sv,      "ramfs"sv,
    "resctrl"sv,      "rootfs"sv,   "rpc_pipefs"sv, "secretmem"sv, "securityfs"sv,  "selinuxfs"sv,
    "smackfs"sv,      "sockfs"sv,   "sysfs"sv,      "tmpfs"sv,     "tracefs"sv,
};

/// What desktops and containers mount for themselves, and programs that are delivered as images.
constexpr std::array internalTypes = {
    "aufs"sv,
    "cramfs"sv,
    "erofs"sv,
    "fuse.fuse-overlayfs"sv,
    "fuse.gvfs-fuse-daemon"sv,
    "fuse.gvfsd-fuse"sv,
    "fuse.kio-fuse"sv,
    "fuse.lxcfs"sv,
    "fuse.portal"sv,
    "fuse.revokefs-fuse"sv,
    "fuse.rofiles-fuse"sv,
    "fuse.snapfuse"sv,
    "fuse.squashfuse"sv,
    "fuse.squashfuse_ll"sv,
    "fuse.vmware-vmblock"sv,
    "overlay"sv,
    "squashfs"sv,
};

/// SMB: a mount shows a folder of the server, or of a share.
constexpr std::array folderTypes = {"cifs"sv, "smb3"sv, "smbfs"sv};

struct NamedType {
    std::string_view type;
    std::string_view name;
};

/// Rows compare the type with these names, which are those of another system.
constexpr std::array namedTypes = {
    NamedType{"hfs"sv, "hfs"sv},
    NamedType{"hfsplus"sv, "hfs"sv},
    NamedType{"afpfs"sv, "afpfs"sv},
    NamedType{"fuse.afpfs"sv, "afpfs"sv},
    NamedType{"fuse.afpfs-ng"sv, "afpfs"sv},
    NamedType{"vfat"sv, "msdos"sv},
    NamedType{"msdos"sv, "msdos"sv},
    NamedType{"umsdos"sv, "msdos"sv},
    NamedType{"fat"sv, "msdos"sv},
    NamedType{"fuse.fusefat"sv, "msdos"sv},
};

template <typename List>
bool contains(const List &list, std::string_view type)
{
    return std::find(list.begin(), list.end(), type) != list.end();
}

} // namespace

bool holdsUserData(std::string_view type)
{
    return !type.empty() && !contains(kernelTypes, type) && !contains(internalTypes, type);
}

bool isFuse(std::string_view type)
{
    return type == "fuse" || type == "fuseblk" || type.starts_with(fusePrefix);
}

bool isMountedByFolder(std::string_view type)
{
    return contains(folderTypes, type);
}

std::string volumeTypeName(std::string_view type)
{
    const auto *const found =
        std::find_if(namedTypes.begin(), namedTypes.end(),
                     [&](const NamedType &named) { return named.type == type; });
    return std::string(found == namedTypes.end() ? type : found->name);
}

} // namespace tessaly
