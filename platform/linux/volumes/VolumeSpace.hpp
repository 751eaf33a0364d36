#pragma once

#include "platform/VolumeService.hpp"

#include <optional>
#include <string>

struct statvfs;

namespace tessaly {

/// The space of a file system from the system's answer. Free is what the user may still fill,
/// without what is reserved for the system; never more than the total.
[[nodiscard]] VolumeFigures spaceOf(const struct statvfs &status);

/// Asks the file system that holds a path. Nothing when the path leads nowhere. May never return: a
/// server that is gone does not answer.
/// Threads: any.
[[nodiscard]] std::optional<VolumeFigures> spaceAt(const std::string &path);

} // namespace tessaly
