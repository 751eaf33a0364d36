#pragma once

#include <cstdint>
#include <string>

namespace tessaly {

struct BareCount {
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    std::uint64_t byteCount = 0; ///< of all files, each link to a file counted
};

/// Walks a folder like a scan, with the same threads and system calls, but keeps nothing: the lower
/// bound for a scan's time.
///
/// Without the special cases of a scan: mount points, shortages (of descriptors, threads or memory)
/// and cancelling.
[[nodiscard]] BareCount bareWalk(const std::string &path);

} // namespace tessaly
