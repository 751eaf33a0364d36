#pragma once

#include <functional>

namespace tessaly::scan {

/// Runs a piece of work on a detached thread. False when no thread can be started; the work is then
/// not run. The work must not throw.
using ThreadStarter = std::function<bool(const std::function<void()> &work)>;

/// Starts a thread of the system with a small stack (512 KiB of address space): a scan may start
/// many thousands, and none of them recurses.
[[nodiscard]] bool startDetachedThread(const std::function<void()> &work);

} // namespace tessaly::scan
