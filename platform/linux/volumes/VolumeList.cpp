#include "platform/linux/volumes/VolumeList.hpp"

#include "platform/linux/volumes/BlockDevice.hpp"
#include "platform/linux/volumes/DeviceLabels.hpp"
#include "platform/linux/volumes/UDisksVolumes.hpp"
#include "platform/linux/volumes/VolumeFilter.hpp"
#include "platform/linux/volumes/VolumeTypes.hpp"

#include <utility>

namespace tessaly {

namespace {

std::string labelOf(const scan::Mount &mount, const DeviceLabels &labels,
                    const UDisksVolumes *udisks, const VolumeSources &sources)
{
    // The links of udev before UDisks2, which may not run, and would change the name when it comes.
    if (const auto device = BlockDevice::below(mount, sources)) {
        if (const auto label = labels.of(device->name())) {
            return *label;
        }
    }
    const UDisksVolume *known =
        udisks == nullptr ? nullptr : udisks->find(mount.mountPoint, mount.device);
    return known == nullptr ? std::string() : known->label;
}

/// By the kernel's word for it: FUSE programs may call a server "/dev/…", so of theirs only those
/// count that the kernel knows to be on a device.
bool isLocal(const scan::Mount &mount)
{
    constexpr std::string_view devices = "/dev/";
    return mount.source.starts_with(devices) && (!isFuse(mount.type) || mount.type == "fuseblk");
}

} // namespace

VolumeList::VolumeList(VolumeSources sources) : m_sources(std::move(sources)) {}

std::vector<VolumeList::Entry> VolumeList::entries(const UDisksVolumes *udisks)
{
    const std::vector<scan::Mount> mounts = volumes();
    const DeviceLabels labels(m_sources.devices);
    std::vector<VolumeNames::Volume> named;
    for (const scan::Mount &mount : mounts) {
        named.push_back(
            {mount.device, mount.mountPoint, labelOf(mount, labels, udisks, m_sources)});
    }
    // All at once, so that equal labels are told apart in the order of the list.
    m_names.assign(named);
    std::vector<Entry> entries;
    for (const scan::Mount &mount : mounts) {
        entries.push_back({m_names.nameOf(mount.device, mount.mountPoint).value_or(std::string()),
                           mount.mountPoint, mount.id, mount.device, isLocal(mount)});
    }
    return entries;
}

std::optional<std::string> VolumeList::pathOf(std::string_view name) const
{
    if (name.starts_with('/')) {
        return std::string(name); // "/" itself, or what lies in it, whose name is its path
    }
    const std::size_t end = name.find('/');
    for (const scan::Mount &mount : volumes()) {
        if (m_names.nameOf(mount.device, mount.mountPoint) == name.substr(0, end)) {
            return end == std::string_view::npos ? mount.mountPoint
                                                 : mount.mountPoint + std::string(name.substr(end));
        }
    }
    return std::nullopt;
}

std::vector<scan::Mount> VolumeList::volumes() const
{
    return volumesAmong(scan::MountTable::read(m_sources.mountInfo).value_or(scan::MountTable()));
}

} // namespace tessaly
