#pragma once

#include "engine/archive/Timestamp.hpp"

#include <optional>
#include <string>

struct statx;

namespace tessaly::archive {

/// When a file was created, or when its content was last changed where the file system does not
/// record that. Follows links. Nothing when there is no such file or it is not a regular one.
/// Threads: any.
[[nodiscard]] std::optional<Timestamp> fileCreationDate(const std::string &path);

/// The same from a file's statx().
[[nodiscard]] std::optional<Timestamp> creationDateOf(const struct statx &file);

} // namespace tessaly::archive
