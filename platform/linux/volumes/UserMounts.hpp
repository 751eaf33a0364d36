#pragma once

#include "engine/scan/MountTable.hpp"

#include <set>
#include <string>

#include <sys/types.h>

namespace tessaly {

struct VolumeSources;

/// What a user may unmount without asking any service: what fstab lets users mount ("user",
/// "users"), and what the user's own FUSE programs show.
///
/// Never changes once made.
class UserMounts {
public:
    explicit UserMounts(const VolumeSources &sources);

    [[nodiscard]] bool mayUnmount(const scan::Mount &mount) const;

    /// Whether it lies where UDisks2 mounts what this user asks for: in the folder of "/media" or
    /// "/run/media" that has the user's name. UDisks2 lets the same user unmount it.
    [[nodiscard]] bool isMountedForUser(const scan::Mount &mount) const;

private:
    uid_t m_user;
    std::string m_userName;
    std::set<std::string> m_mountPoints; ///< those of fstab
};

} // namespace tessaly
