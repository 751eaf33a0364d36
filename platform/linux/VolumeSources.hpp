#pragma once

#include "platform/linux/SystemBusAddress.hpp"

#include <string>

#include <unistd.h>

namespace tessaly {

/// Where LinuxVolumeService learns of the system's volumes.
struct VolumeSources {
    std::string mountInfo = "/proc/self/mountinfo"; ///< the kernel's list of mounts
    std::string fstab = "/etc/fstab";               ///< what is mounted by configuration
    std::string sysfs = "/sys";                     ///< the kernel's devices
    std::string devices = "/dev";                   ///< the devices' files and their links
    std::string bus = systemBusAddress();           ///< the D-Bus address where UDisks2 is
    uid_t user = getuid();
};

} // namespace tessaly
