#pragma once

#include <QLoggingCategory>

#include <chrono>
#include <functional>

namespace tessaly {

/// The log of the drives screen.
Q_DECLARE_LOGGING_CATEGORY(drivesLog)

/// Runs an unmount on a thread of its own and returns at once. Neither the screen nor the window
/// waits for it. When no thread can be started, it logs that and does nothing. Threads: any.
void startUnmount(std::function<void()> unmount);

/// Waits until all unmounts that were started have ended, but no longer than the timeout. Returns
/// whether they have; if not, what they use must live until the process ends. Threads: any.
[[nodiscard]] bool waitForUnmounts(std::chrono::milliseconds timeout);

} // namespace tessaly
