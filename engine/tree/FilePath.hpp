#pragma once

#include <string>
#include <string_view>

namespace tessaly::tree {

// Paths as bytes, taken apart and put together without asking the file system. "." and ".." are
// names like any others, and symbolic links are not looked at. Any bytes will do, relative paths
// and empty ones as well, and slashes may be doubled: several in a row separate like one.

/// The path with one slash where there are several in a row, and none at its end; "/" stays. Names
/// the same item, except that "link/" names the folder that the link leads to.
[[nodiscard]] std::string cleanPath(std::string_view path);

/// The path of the folder above: the path without its last component and the slashes around that.
/// "/a/b/" gives "/a", "/a" gives "/" and so does "/"; a lone relative name gives "".
[[nodiscard]] std::string parentPath(std::string_view path);

/// parentPath() as the system takes it: "." for a lone relative name, which lies in the current
/// folder.
[[nodiscard]] std::string containingFolder(std::string_view path);

/// The last component: "b" for "/a/b" and "/a/b/", "/" for "/", "" for "".
[[nodiscard]] std::string fileName(std::string_view path);

/// The path of what is called `name` in a folder. A slash is put between them unless the folder
/// ends in one. `name` may have several components.
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view name);

} // namespace tessaly::tree
