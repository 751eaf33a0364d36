#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "engine/scan/KernelFileSystem.hpp"

#include <cstdint>
#include <string_view>

namespace tessaly::scan {

/// A folder opened for a scan.
struct OpenedFolder {
    /// Closed when there is nothing to list: the folder cannot be opened, or lies on a kernel file
    /// system. A folder of an automount file system is open with O_PATH only.
    FileDescriptor descriptor;
    FileSystemKind kind = FileSystemKind::storage;
};

enum class FileSystemCheck : std::uint8_t {
    needless, ///< nothing can be mounted there
    first,    ///< check the file system before the folder is opened for listing
};

/// Opens a subfolder of an open folder; a symbolic link is not followed. When nothing is open
/// afterwards, errno says why: 0 stands for a kernel file system.
///
/// Descriptors: one at a time.
[[nodiscard]] OpenedFolder openSubfolder(int parent, const char *name, FileSystemCheck check);

/// Opens a folder by its path, of any length, following links. The last component triggers no
/// automount; those before it are left to the system. Errors as for openSubfolder().
///
/// Descriptors: two at a time.
[[nodiscard]] OpenedFolder openFolderPath(std::string_view path);

} // namespace tessaly::scan
