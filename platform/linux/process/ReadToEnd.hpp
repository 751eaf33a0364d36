#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tessaly {

/// Reads a descriptor to its end, however long that takes. Of more than `maxBytes` it returns the
/// first ones. Nothing after an error.
///
/// Threads: any.
[[nodiscard]] std::optional<std::string> readToEnd(int descriptor,
                                                   std::size_t maxBytes = std::string::npos);

} // namespace tessaly
