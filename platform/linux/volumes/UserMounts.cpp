#include "platform/linux/volumes/UserMounts.hpp"

#include "engine/tree/FilePath.hpp"
#include "platform/linux/volumes/VolumeSources.hpp"
#include "platform/linux/volumes/VolumeTypes.hpp"

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>

#include <mntent.h>

namespace tessaly {

namespace {

constexpr std::size_t maxLineBytes = 8192; // more than two paths and the options take

} // namespace

UserMounts::UserMounts(const VolumeSources &sources)
    : m_user(sources.user), m_userName(sources.userName)
{
    // The C library's reader: it passes over comments and takes the escapes ("\040") apart.
    const std::unique_ptr<FILE, int (*)(FILE *)> fstab(setmntent(sources.fstab.c_str(), "re"),
                                                       endmntent);
    std::array<char, maxLineBytes> line{};
    mntent entry{};
    while (fstab && getmntent_r(fstab.get(), &entry, line.data(), line.size()) != nullptr) {
        // Not hasmntopt(): it takes the login of a share, "user=NAME", for the option "user".
        const std::string options = ',' + std::string(entry.mnt_opts) + ',';
        if (options.find(",user,") != std::string::npos ||
            options.find(",users,") != std::string::npos) {
            m_mountPoints.insert(tree::cleanPath(entry.mnt_dir));
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
