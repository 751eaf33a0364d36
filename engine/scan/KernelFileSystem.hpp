#pragma once

#include <cstdint>

namespace tessaly::scan {

/// What the file system of a folder means to a scan.
enum class FileSystemKind : std::uint8_t {
    storage,   ///< files that take space somewhere
    kernel,    ///< views into the kernel (/proc): files there take no space, some claim terabytes
    automount, ///< autofs: opening a folder there mounts something, maybe from a server
};

/// The kind of the file system of an open file or folder; O_PATH is enough. Storage when the system
/// does not say.
[[nodiscard]] FileSystemKind fileSystemKind(int descriptor) noexcept;

} // namespace tessaly::scan
