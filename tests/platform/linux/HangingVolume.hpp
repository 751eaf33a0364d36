#pragma once

#include "tests/platform/linux/StartedProgram.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// A file system that a program shows by FUSE, mounted as long as this lives, which stops answering
/// when a test wants it to. It holds a folder "inside", a file "file" and a link "link" to the
/// folder.
class HangingVolume {
public:
    /// What is missing for there to be one; nothing when it can be.
    [[nodiscard]] static std::optional<std::string> missingRequirement();

    /// Mounts it at the path of a folder. Blocks are of 4096 bytes. `operations` are those that
    /// hang: "statfs", "getattr", "readdir".
    /// Requires: no missingRequirement().
    HangingVolume(std::string path, std::vector<std::string> operations, int totalBlocks = 100,
                  int freeBlocks = 40);
    ~HangingVolume();
    HangingVolume(const HangingVolume &) = delete;
    HangingVolume &operator=(const HangingVolume &) = delete;

    /// From now on its operations wait: the program has taken the request, so the thread that made
    /// it stays blocked in the kernel, and cannot be killed.
    void hang() const;
    /// All operations that wait are answered, and those that come.
    void answer() const;
    /// Waits until an operation is being kept waiting.
    void waitUntilHeld(const std::string &operation) const;
    /// The program is stopped altogether: it does not even take requests.
    void freeze() const;
    /// The program is killed. The volume stays mounted, and all its calls fail.
    void kill();

private:
    void waitForReport(const std::string &line) const;

    std::string m_path;
    StartedProgram m_program;
};

} // namespace tessaly
