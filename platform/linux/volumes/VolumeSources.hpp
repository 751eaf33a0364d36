#pragma once

#include "platform/linux/bus/BusAddresses.hpp"
#include "platform/linux/storage/PasswordEntry.hpp"

#include <string>

#include <unistd.h>

namespace tessaly {

/// The name of the user whom this process runs for; empty when the system does not know it.
[[nodiscard]] inline std::string loginName()
{
    const auto entry = PasswordEntry::ofThisUser();
    return entry ? entry->loginName : std::string();
}

/// Where LinuxVolumeService learns of the system's volumes.
struct VolumeSources {
    std::string mountInfo = "/proc/self/mountinfo"; ///< the kernel's list of mounts
    std::string fstab = "/etc/fstab";               ///< what is mounted by configuration
    std::string sysfs = "/sys";                     ///< the kernel's devices
    std::string devices = "/dev";                   ///< the devices' files and their links
    std::string bus = systemBusAddress();           ///< the D-Bus address where UDisks2 is
    uid_t user = getuid();
    std::string userName = loginName(); ///< empty when the system has none
    std::string probe;                  ///< see ProbeProcess; empty for the installed one
};

} // namespace tessaly
