#pragma once

#include <functional>

namespace tessaly::scan {

/// Starts a thread that does a piece of work and that nobody waits for. False when there was no
/// thread to be had; the work has then not been done. The work must not throw.
using ThreadStarter = std::function<bool(const std::function<void()> &work)>;

/// The system's threads. Their stacks are small (512 KiB of address space), since a scan may start
/// many thousands and none of them recurses.
[[nodiscard]] bool startDetachedThread(const std::function<void()> &work);

} // namespace tessaly::scan
