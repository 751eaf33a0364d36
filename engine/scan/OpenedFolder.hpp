#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "engine/scan/KernelFileSystem.hpp"

#include <cstdint>
#include <string_view>

namespace tessaly::scan {

/// A folder opened for a scan.
struct OpenedFolder {
    /// Closed when there is nothing to list: the folder cannot be opened, or lies on a kernel file
    /// system. A folder that makes the system mount things is open as a place only (O_PATH).
    FileDescriptor descriptor;
    FileSystemKind kind = FileSystemKind::storage;
};

enum class FileSystemCheck : std::uint8_t {
    needless, ///< nothing can be mounted there
    first,    ///< look at the file system before really opening the folder
};

/// Opens a subfolder of an open folder; a symbolic link is not followed. Where nothing is open
/// afterwards, errno tells why: 0 stands for a kernel file system.
///
/// Descriptors: one at a time.
[[nodiscard]] OpenedFolder openSubfolder(int parent, const char *name, FileSystemCheck check);

/// Opens a folder by its path, of any length, following links. The last step mounts nothing; the
/// steps before it are the system's own. Failure is told as by openSubfolder().
///
/// Descriptors: two at a time.
[[nodiscard]] OpenedFolder openFolderPath(std::string_view path);

} // namespace tessaly::scan
