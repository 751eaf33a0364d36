#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace tessaly {

// What is on disk, for tests. What fails throws, which fails the test.

[[nodiscard]] std::string textOfFile(const std::string &path);
/// A file that was there is rewritten in place.
void writeFile(const std::string &path, std::string_view text);

/// The names in a folder, sorted.
[[nodiscard]] std::vector<std::string> namesIn(const std::string &folder);

/// The permissions, as in 0755, of what the path leads to.
[[nodiscard]] mode_t modeOf(const std::string &path);

/// The numbers by which a file that was replaced differs from the one before.
[[nodiscard]] ino_t inodeOf(const std::string &path);

} // namespace tessaly
