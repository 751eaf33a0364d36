#pragma once

#include "platform/linux/volumes/VolumeSources.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <string>

namespace tessaly {

/// Mounts and devices that a test makes up, in files of its own. There is no bus but where a test
/// brings one.
class MadeUpSystem {
public:
    MadeUpSystem();

    /// What LinuxVolumeService's parts read instead of the system's own.
    [[nodiscard]] const VolumeSources &sources() const { return m_sources; }
    [[nodiscard]] VolumeSources &sources() { return m_sources; }

    /// Adds a line to the list of mounts, all of which lie on "/", and none on another one.
    /// `device` is written as "8:1", texts as in the kernel's list. Returns the mount's id.
    int mount(const std::string &mountPoint, const std::string &type, const std::string &device,
              const std::string &source = "none", const std::string &root = "/",
              const std::string &superOptions = "rw");
    /// Empties the list of mounts.
    void unmountAll();

    void addDisk(const std::string &name, const std::string &device, bool isRemovable);
    void addPartition(const std::string &disk, const std::string &name, const std::string &device);
    /// A device that lies on another one.
    void addMapped(const std::string &name, const std::string &device, const std::string &below);
    /// The label as the name of its link has it.
    void addLabel(const std::string &label, const std::string &device);

    void writeFstab(const std::string &text);

    [[nodiscard]] const TemporaryFolder &folder() const { return m_folder; }

private:
    void addNumber(const std::string &name, const std::string &device, const std::string &target);

    TemporaryFolder m_folder;
    VolumeSources m_sources;
    int m_lastId = 20;
};

} // namespace tessaly
