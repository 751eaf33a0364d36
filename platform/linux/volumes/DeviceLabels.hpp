#pragma once

#include <map>
#include <optional>
#include <string>

namespace tessaly {

/// The labels of volumes, as the links in a folder of devices have them ("disk/by-label").
///
/// Never changes once made.
class DeviceLabels {
public:
    /// `devices` is the folder "/dev" or one like it; without the links no volume has a label.
    explicit DeviceLabels(const std::string &devices);

    /// The label, as bytes, of the device that the kernel has by this name ("sda1"). Of several
    /// devices with the same label one has it.
    [[nodiscard]] std::optional<std::string> of(const std::string &device) const;

private:
    std::map<std::string, std::string> m_labels; ///< by device
};

} // namespace tessaly
