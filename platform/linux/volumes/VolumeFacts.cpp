#include "platform/linux/volumes/VolumeFacts.hpp"

#include "platform/linux/volumes/BlockDevice.hpp"
#include "platform/linux/volumes/UDisksVolumes.hpp"
#include "platform/linux/volumes/VolumeFilter.hpp"
#include "platform/linux/volumes/VolumeTypes.hpp"

#include <algorithm>
#include <iterator>

namespace tessaly {

VolumeFacts::VolumeFacts(const VolumeSources &sources)
    : m_sources(sources),
      m_table(scan::MountTable::read(sources.mountInfo).value_or(scan::MountTable())),
      m_volumes(volumesAmong(m_table)), m_userMounts(sources)
{
}

const scan::Mount *VolumeFacts::volumeOf(std::string_view path) const
{
    // By the mount's id: a volume that is mounted twice is listed once, under the shorter path. "/"
    // only by its own path, or every folder of the system would be on a volume.
    const scan::Mount *holder = m_table.mountOf(path);
    const auto found =
        std::find_if(m_volumes.begin(), m_volumes.end(), [&](const scan::Mount &volume) {
            return volume.mountPoint == path || (holder != nullptr && holder->id == volume.id &&
                                                 volume.mountPoint != scan::rootPath);
        });
    return found == m_volumes.end() ? nullptr : &*found;
}

std::vector<scan::Mount> VolumeFacts::mountsOfDevice(const scan::Mount &volume) const
{
    std::vector<scan::Mount> mounts;
    // By number or by name: subvolumes of one disk have numbers of their own, and a disk may have
    // several names. What lies on no device, such as a share, is never mounted "twice".
    if (volume.source.starts_with("/dev/")) {
        std::copy_if(m_table.mounts().begin(), m_table.mounts().end(), std::back_inserter(mounts),
                     [&](const scan::Mount &mount) {
                         return mount.device == volume.device || mount.source == volume.source;
                     });
    }
    return mounts;
}

VolumeInformation VolumeFacts::informationAbout(std::string_view path,
                                                const UDisksVolumes *udisks) const
{
    VolumeInformation information;
    const scan::Mount *volume = volumeOf(path);
    if (volume == nullptr) {
        return information;
    }
    information.typeName = volumeTypeName(volume->type);
    if (volume->mountPoint == scan::rootPath) {
        return information; // a system on a stick cannot be taken away while it runs
    }
    const UDisksVolume *known =
        udisks == nullptr ? nullptr : udisks->find(volume->mountPoint, volume->device);
    if (known != nullptr) {
        information.isRemovable = known->isRemovable;
    } else if (const auto device = BlockDevice::below(*volume, m_sources)) {
        information.isRemovable = device->isRemovable();
    }
    // UDisks2 hints at disks of the system by their bus, and so at internal disks with user data as
    // well. What it has mounted for this user it also unmounts for them.
    const bool mayAskUDisks =
        known != nullptr && (known->isUnmountable || m_userMounts.isMountedForUser(*volume));
    information.isUnmountable = mayAskUDisks || m_userMounts.mayUnmount(*volume);
    return information;
}

} // namespace tessaly
