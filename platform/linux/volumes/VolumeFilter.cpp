#include "platform/linux/volumes/VolumeFilter.hpp"

#include "platform/linux/volumes/VolumeTypes.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

/// Where programs that are a single file show themselves what is in it.
constexpr std::string_view packageImages = "/tmp/.mount_";

/// The kernel adds this to the path of a mount whose folder was removed.
constexpr std::string_view deletedMark = "//deleted";

scan::Mount rootOf(const scan::MountTable &table)
{
    if (const scan::Mount *root = table.mountOf(scan::rootPath)) {
        return *root;
    }
    scan::Mount unknown; // the list does not have it where "/" is no mount point, but some folder
    unknown.mountPoint = scan::rootPath;
    return unknown;
}

bool isWholeFileSystem(const scan::Mount &mount)
{
    // Subvolumes are mounted by what looks like a folder.
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
