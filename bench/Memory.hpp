#pragma once

#include <cstddef>
#include <string>

namespace tessaly {

struct TreeMemory {
    std::size_t entryCount = 0;
    double bytesPerEntry = 0; ///< resident memory that the tree adds, names included
};

/// Scans a folder in a process of its own and measures the tree. Throws std::runtime_error.
[[nodiscard]] TreeMemory measureTreeMemory(const std::string &path);

/// Reads a scan file in a process of its own. The peak of its anonymous memory less that of the
/// finished tree, in bytes. Throws std::runtime_error.
[[nodiscard]] double measureReadingMemory(const std::string &scanFile);

} // namespace tessaly
