#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// The path with one slash where there are several in a row, and none at its end; "/" stays. It
/// names the same item, but for a link to a folder, of which "link/" names the folder.
[[nodiscard]] std::string cleanPath(std::string_view path);

/// The folder that holds the item at a clean absolute path; "/" for "/".
[[nodiscard]] std::string folderOf(std::string_view path);

/// The path of an item in the folder at a clean path; also of a name with further components.
[[nodiscard]] std::string joinedPath(std::string_view folder, std::string_view name);

/// The last component of a clean path; "/" for "/".
[[nodiscard]] std::string nameOf(std::string_view path);

} // namespace tessaly
