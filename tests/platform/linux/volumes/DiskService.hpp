#pragma once

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/OwnMounts.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/StartedProgram.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// The real UDisks2, with a device manager (udev) and folders of devices of its own, on a bus of
/// its own: nothing that it does is seen elsewhere but the loop devices that a test makes.
///
/// Its sticks are loop devices that pass for drives which can be taken away. To eject one, a
/// program of that name takes the image out of the device.
class DiskService {
public:
    /// What is missing for there to be one; nothing when it can be.
    [[nodiscard]] static std::optional<std::string> missingRequirement();

    enum class Hint { user, system };

    /// `hint`: whether UDisks2 takes the stick for one of the user's or for a disk of the system's.
    /// Requires: no missingRequirement().
    explicit DiskService(Hint hint = Hint::user);
    ~DiskService();
    DiskService(const DiskService &) = delete;
    DiskService &operator=(const DiskService &) = delete;

    /// Makes a stick with that label, for as long as this lives, and returns the device's path.
    /// Empty, where there is no loop device to be had. One at a time.
    [[nodiscard]] std::string makeStick(const std::string &label) const;

    /// Whether there is one that was not ejected.
    [[nodiscard]] bool hasStick() const;

    /// Runs a script of the shell; false when it fails.
    static bool run(const std::string &script);

private:
    TemporaryFolder m_folder;
    std::string m_image; ///< the name of the stick's image
    PrivateBus m_bus;
    std::vector<std::unique_ptr<ScopedMount>> m_mounts; ///< the last one is destroyed first
    std::unique_ptr<StartedProgram> m_manager;
    std::unique_ptr<StartedProgram> m_service;
};

} // namespace tessaly
