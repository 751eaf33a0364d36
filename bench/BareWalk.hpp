#pragma once

#include <cstdint>
#include <string>

namespace tessaly {

struct BareCount {
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    std::uint64_t byteCount = 0; ///< of all files, each link to a file counted
};

/// Walks a folder as a scan does, with the same threads and the same calls to the system, and keeps
/// nothing: what a scan cannot be faster than.
///
/// It leaves out what a scan has for special cases: mount points, shortages (of descriptors,
/// threads or memory) and cancelling.
[[nodiscard]] BareCount bareWalk(const std::string &path);

} // namespace tessaly
