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

/// `depth` ends it where devices should lie on one another in a circle.
bool isMediumRemovable(const path &folder, int depth)
{
    constexpr int deepest = 16;
    const path disk = isThere(folder / "partition") ? folder.parent_path() : folder;
    char flag = '0';
    std::ifstream(disk / "removable") >> flag;
    if (flag == '1') {
        return true;
    }
    std::error_code error;
    std::filesystem::directory_iterator below(disk / "slaves", error);
    for (; !error && depth < deepest && below != std::filesystem::directory_iterator();
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
    // Some file systems, which may lie on several devices, have a number of their own.
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
