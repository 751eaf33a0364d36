#pragma once

#include "engine/scan/MountTable.hpp"

#include <vector>

namespace tessaly {

/// The mounts that are volumes: "/" first, whatever it is, then each other file system that holds
/// a user's data, in the order of the list.
///
/// A file system counts once, where the path to it is shortest, however often it is mounted.
/// Bind mounts of folders, and mounts that are covered by others, are left out.
[[nodiscard]] std::vector<scan::Mount> volumesAmong(const scan::MountTable &table);

/// Whether the kernel itself serves the file system from a disk of this computer. Any other one may
/// never answer: a server may be gone, a program may hang.
[[nodiscard]] bool isOnLocalDisk(const scan::Mount &mount);

} // namespace tessaly
