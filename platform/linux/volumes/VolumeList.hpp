#pragma once

#include "engine/scan/MountTable.hpp"
#include "platform/linux/volumes/VolumeNames.hpp"
#include "platform/linux/volumes/VolumeSources.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

class UDisksVolumes;

/// The volumes by their names.
///
/// Threads: one. Reads the kernel's list of mounts, and blocks on no file system.
class VolumeList {
public:
    struct Entry {
        std::string name;
        std::string path; ///< where it is mounted
        int mountId = 0;
        std::uint64_t device = 0;
        bool isLocal = false; ///< on a disk of this computer, so that it can be looked into

        bool operator==(const Entry &) const = default;
    };

    explicit VolumeList(VolumeSources sources);

    /// The volumes as they are now, "/" first. Gives names to those that are new, by their labels:
    /// those that the devices have, or else UDisks2 if that is there.
    [[nodiscard]] std::vector<Entry> entries(const UDisksVolumes *udisks);

    /// Where what has the name is mounted now: an entry, or "parent/child" for what is within one.
    /// Nothing when there is no such entry any more.
    [[nodiscard]] std::optional<std::string> pathOf(std::string_view name) const;

private:
    [[nodiscard]] std::vector<scan::Mount> volumes() const;

    VolumeSources m_sources;
    VolumeNames m_names;
};

} // namespace tessaly
