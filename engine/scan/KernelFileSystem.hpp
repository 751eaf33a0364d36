#pragma once

#include <cstdint>

namespace tessaly::scan {

/// What the file system of a folder means to a scan.
enum class FileSystemKind : std::uint8_t {
    storage,   ///< files that take space somewhere
    kernel,    ///< views into the kernel: no file there takes space, some have absurd sizes
    automount, ///< a place where opening something makes the system mount something
};

/// The kind of the file system that an open file or folder lies on. A descriptor opened with O_PATH
/// will do. When the system does not tell, it is storage.
[[nodiscard]] FileSystemKind fileSystemKind(int descriptor) noexcept;

} // namespace tessaly::scan
