#pragma once

#include <vector>

#include <sys/types.h>

namespace tessaly {

// The child programs of this process that decode previews, as the system sees them.

/// Under a sanitizer, decoders have no limit of memory, and all takes more of it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

/// The servers, and the decoders that these have forked.
[[nodiscard]] std::vector<pid_t> decoderServers();
[[nodiscard]] std::vector<pid_t> decoders();

/// Lets events happen until so many decoders run.
void waitUntilDecoding(std::size_t count);

/// The most memory that this process has had since the last reset.
void resetPeakMemory();
[[nodiscard]] int peakMegabytes();

} // namespace tessaly
