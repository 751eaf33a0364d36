#pragma once

#include <string>

namespace tessaly {

// Paths of folders as bytes, taken apart without asking the disk.

/// The path with one slash where there are several in a row, and none at its end; "/" stays.
[[nodiscard]] std::string standardPath(std::string path);

/// The path of the folder above: "/a/b" gives "/a", "/a" gives "/", "/" stays, "a" gives "".
[[nodiscard]] std::string withoutLastComponent(const std::string &path);

} // namespace tessaly
