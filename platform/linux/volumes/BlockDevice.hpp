#pragma once

#include "engine/scan/MountTable.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace tessaly {

struct VolumeSources;

/// The disk, or part of a disk, that a mounted file system lies on, as the kernel shows it in
/// sysfs. Asks the kernel only, never the device.
class BlockDevice {
public:
    /// Nothing for file systems that lie on none, and where the kernel does not show it.
    [[nodiscard]] static std::optional<BlockDevice> below(const scan::Mount &mount,
                                                          const VolumeSources &sources);

    /// The kernel's name, as "sda1".
    [[nodiscard]] std::string name() const { return m_folder.filename(); }

    /// Whether the medium can be taken out of the drive: that of the disk, if this is a part of
    /// one; that of the device below, if this is an encrypted one or the like.
    [[nodiscard]] bool isRemovable() const;

private:
    explicit BlockDevice(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    std::filesystem::path m_folder; ///< in sysfs
};

} // namespace tessaly
