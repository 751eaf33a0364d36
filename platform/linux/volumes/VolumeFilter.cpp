#include "platform/linux/volumes/VolumeFilter.hpp"

#include "platform/linux/volumes/VolumeTypes.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

/// Programs that are a single image file mount themselves here.
constexpr std::string_view packageImages = "/tmp/.mount_";

/// The kernel adds this to the path of a mount whose folder was removed.
constexpr std::string_view deletedMark = "//deleted";

scan::Mount rootOf(const scan::MountTable &table)
{
    if (const scan::Mount *root = table.mountOf(scan::rootPath)) {
        return *root;
    }
    scan::Mount
        unknown; // after chroot() "/" may be an ordinary folder, which the list does not have
    unknown.mountPoint = scan::rootPath;
    return unknown;
}

bool isWholeFileSystem(const scan::Mount &mount)
{
    // A bind mount shows a folder. So do network shares and btrfs subvolumes, which are whole.
    return mount.root == scan::rootPath || isMountedByFolder(mount.type) ||
           mount.superOptions.ends_with("subvol=" + mount.root);
}

bool isVolume(const scan::Mount &mount, const scan::MountTable &table)
{
    const std::string_view path = mount.mountPoint;
    return holdsUserData(mount.type) && isWholeFileSystem(mount) &&
           !(isFuse(mount.type) && path.starts_with(packageImages)) &&
           !path.ends_with(deletedMark) && table.mountOf(path) == &mount;
}

} // namespace

std::vector<scan::Mount> volumesAmong(const scan::MountTable &table)
{
    std::vector<scan::Mount> volumes = {rootOf(table)};
    for (const scan::Mount &mount : table.mounts()) {
        if (!isVolume(mount, table)) {
            continue;
        }
        const auto before =
            std::find_if(volumes.begin(), volumes.end(),
                         [&](const scan::Mount &volume) { return volume.device == mount.device; });
        // One device, one volume: the same disk is often mounted twice, as by containers.
        if (before == volumes.end()) {
            volumes.push_back(mount);
        } else if (mount.mountPoint.size() < before->mountPoint.size()) {
            *before = mount;
        }
    }
    return volumes;
}

bool isOnLocalDisk(const scan::Mount &mount)
{
    return mount.source.starts_with("/dev/") && !isFuse(mount.type);
}

} // namespace tessaly
