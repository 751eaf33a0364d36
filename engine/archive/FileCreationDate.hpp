#pragma once

#include "engine/archive/Timestamp.hpp"

#include <optional>
#include <string>

struct statx;

namespace tessaly::archive {

/// When a file was made: its birth, or the last change of its contents where the file system keeps
/// no births. A link stands for the file that it leads to.
///
/// Nothing when there is no such file, or it is no regular one. Threads: any.
[[nodiscard]] std::optional<Timestamp> fileCreationDate(const std::string &path);

/// The same from what the system told of a file.
[[nodiscard]] std::optional<Timestamp> creationDateOf(const struct statx &file);

} // namespace tessaly::archive
