#include "platform/linux/volumes/BlockDevice.hpp"

#include "platform/linux/volumes/VolumeSources.hpp"

#include <fstream>
#include <string_view>
#include <system_error>

#include <sys/sysmacros.h>

namespace tessaly {

namespace {

using std::filesystem::path;

constexpr std::string_view devicesFolder = "/dev/";

/// What a path leads to; empty when it leads nowhere.
path target(const path &link)
{
    std::error_code error;
    path found = std::filesystem::canonical(link, error);
    return error ? path() : found;
}

bool isThere(const path &file)
{
    std::error_code error;
    return std::filesystem::exists(file, error);
}

/// `depth` counts the devices above this one, so that a circle in sysfs ends the search.
bool isMediumRemovable(const path &folder, int depth)
{
    constexpr int maxDepth = 16; // encryption on RAID on partitions takes three
    // Only whole disks have "removable"; the folder of a partition lies in that of its disk.
    const path disk = isThere(folder / "partition") ? folder.parent_path() : folder;
    char flag = '0';
    std::ifstream(disk / "removable") >> flag;
    if (flag == '1') {
        return true;
    }
    // An encrypted or combined device is no disk itself: the devices that it is made of are.
    std::error_code error;
    std::filesystem::directory_iterator below(disk / "slaves", error);
    for (; !error && depth < maxDepth && below != std::filesystem::directory_iterator();
         below.increment(error)) {
        if (isMediumRemovable(target(*below), depth + 1)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<BlockDevice> BlockDevice::below(const scan::Mount &mount,
                                              const VolumeSources &sources)
{
    const path byNumber =
        path(sources.sysfs) / "dev/block" /
        (std::to_string(major(mount.device)) + ':' + std::to_string(minor(mount.device)));
    path folder = target(byNumber);
    // btrfs and others that may lie on several devices have a number that is no device's. Then the
    // device that was mounted has to do.
    if (folder.empty() && mount.source.starts_with(devicesFolder)) {
        const path device =
            target(path(sources.devices) / mount.source.substr(devicesFolder.size()));
        if (!device.empty()) {
            folder = target(path(sources.sysfs) / "class/block" / device.filename());
        }
    }
    return folder.empty() ? std::nullopt : std::optional(BlockDevice(folder));
}

bool BlockDevice::isRemovable() const
{
    return isMediumRemovable(m_folder, 0);
}

} // namespace tessaly
