#pragma once

#include "engine/scan/MountTable.hpp"
#include "platform/VolumeService.hpp"
#include "platform/linux/volumes/UserMounts.hpp"
#include "platform/linux/volumes/VolumeSources.hpp"

#include <string_view>
#include <vector>

namespace tessaly {

class UDisksVolumes;

/// What is known about volumes without asking them: their types, and what the user may do with
/// them. Reads what does not depend on the volume when it is made.
///
/// UDisks2 says what is removable and what may be unmounted, where it knows the volume; otherwise
/// the kernel says the former, and fstab and FUSE the latter. What UDisks2 has mounted for the user
/// may be unmounted as well, whatever it hints. "/" is neither.
class VolumeFacts {
public:
    explicit VolumeFacts(const VolumeSources &sources);

    /// The volume that is mounted at a clean path, or that holds it; nullptr for none. Paths below
    /// "/" that are on no other volume are on none.
    [[nodiscard]] const scan::Mount *volumeOf(std::string_view path) const;

    /// All mounts of the device that a volume lies on, in the order in which they were mounted.
    /// Empty for what lies on none.
    [[nodiscard]] std::vector<scan::Mount> mountsOfDevice(const scan::Mount &volume) const;

    /// Its information without the figures. `udisks` is nullptr when there is no UDisks2.
    [[nodiscard]] VolumeInformation informationAbout(std::string_view path,
                                                     const UDisksVolumes *udisks) const;

private:
    VolumeSources m_sources;
    scan::MountTable m_table;
    std::vector<scan::Mount> m_volumes;
    UserMounts m_userMounts;
};

} // namespace tessaly
