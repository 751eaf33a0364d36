#pragma once

#include <QLoggingCategory>

#include <chrono>
#include <functional>

namespace tessaly {

/// What the drives screen has to say.
Q_DECLARE_LOGGING_CATEGORY(drivesLog)

/// Runs an unmounting on a thread of its own and returns at once. Nobody waits for it, neither a
/// screen nor its window. Does nothing but say so in the log when there is no thread to be had.
/// Threads: any.
void startUnmount(std::function<void()> unmount);

/// Waits until all unmountings that were started have ended, but no longer than this. Whether they
/// have; if not, what they use must stay for as long as the process does. Threads: any.
[[nodiscard]] bool waitForUnmounts(std::chrono::milliseconds timeout);

} // namespace tessaly
