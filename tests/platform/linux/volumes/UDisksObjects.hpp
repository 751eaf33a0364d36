#pragma once

#include "platform/linux/volumes/UDisksVolumes.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly {

/// Devices and drives that a test makes up, as the objects that UDisks2 has for them.
class UDisksObjects {
public:
    struct Device {
        std::string name; ///< also that of its object
        std::uint64_t number = 0;
        std::string label = {};
        std::vector<std::string> mountPoints = {};
        bool isSystem = false;
        std::string drive = {};       ///< the drive's name; empty for none
        std::string encryptedIn = {}; ///< the device's name that it is in; empty for none
    };
    struct Drive {
        std::string name;
        bool isRemovable = false;
        bool isEjectable = false;
    };

    void addDevice(const Device &device);
    /// A device that has no file system of its own but an encrypted one inside.
    void addEncryptedDevice(const std::string &name, const std::string &drive);
    void addDrive(const Drive &drive);

    [[nodiscard]] const BusObjects &objects() const { return m_objects; }

    [[nodiscard]] static QString devicePath(const std::string &name);
    [[nodiscard]] static QString drivePath(const std::string &name);

private:
    BusObjects m_objects;
};

} // namespace tessaly
