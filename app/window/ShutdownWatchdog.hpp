#pragma once

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaly {

/// Ends the process when it does not end by itself: when one of these lives longer than `timeout`,
/// it calls `release`, writes a line to the log and exits. No destructor runs then. A thread that
/// reads a folder of a server that is gone cannot be ended in another way, and the main thread may
/// wait for it.
///
/// Not even the exit ends such a thread: the kernel keeps the process, with all that it has open,
/// until the server answers. So `release` has to give up what the next start needs.
///
/// Requires: what has to be stored is stored before. `release` can be called on another thread, and
///           returns soon.
class ShutdownWatchdog {
public:
    ShutdownWatchdog(std::chrono::milliseconds timeout, int exitStatus,
                     std::function<void()> release);
    ~ShutdownWatchdog();
    Q_DISABLE_COPY_MOVE(ShutdownWatchdog)

private:
    std::mutex m_mutex;
    std::condition_variable m_hasEnded;
    bool m_isOver = false; ///< guarded by m_mutex
    std::thread m_thread;
};

} // namespace tessaly
