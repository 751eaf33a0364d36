#include "platform/linux/volumes/UserMounts.hpp"

#include "engine/tree/FilePath.hpp"
#include "platform/linux/volumes/VolumeSources.hpp"
#include "platform/linux/volumes/VolumeTypes.hpp"

#include <fstream>
#include <sstream>

namespace tessaly {

namespace {

bool isForUsers(const std::string &options)
{
    std::istringstream list(options);
    for (std::string option; std::getline(list, option, ',');) {
        if (option == "user" || option == "users") {
            return true;
        }
    }
    return false;
}

} // namespace

UserMounts::UserMounts(const VolumeSources &sources)
    : m_user(sources.user), m_userName(sources.userName)
{
    std::ifstream fstab(sources.fstab);
    for (std::string line; std::getline(fstab, line);) {
        std::istringstream fields(line);
        std::string device;
        std::string mountPoint;
        std::string type;
        std::string options;
        if (fields >> device >> mountPoint >> type >> options && device.front() != '#' &&
            isForUsers(options)) {
            m_mountPoints.insert(tree::cleanPath(scan::MountTable::unescaped(mountPoint)));
        }
    }
}

bool UserMounts::mayUnmount(const scan::Mount &mount) const
{
    return m_mountPoints.contains(mount.mountPoint) ||
           (isFuse(mount.type) && mount.option("user_id") == std::to_string(m_user));
}

bool UserMounts::isMountedForUser(const scan::Mount &mount) const
{
    const std::string folder = tree::parentPath(mount.mountPoint);
    return !m_userName.empty() &&
           (folder == "/media/" + m_userName || folder == "/run/media/" + m_userName);
}

} // namespace tessaly
