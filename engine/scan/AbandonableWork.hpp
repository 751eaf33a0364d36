#pragma once

#include "engine/scan/ScanThread.hpp"

#include <chrono>
#include <functional>
#include <memory>

namespace tessaly::scan {

/// Runs work that may hang in the kernel, such as reading a folder of a server that is down. The
/// work runs on a thread of its own. A caller that gives up abandons that thread, which ends when
/// the kernel call returns, or never.
///
/// Ownership: the work owns what it uses, since it may outlive everything else.
/// Threads:   run() blocks its thread and is called by one thread at a time; giveUp() may be called
///            by any.
class AbandonableWork final {
public:
    /// `timeout`: how long run() waits for the work to end after giveUp().
    explicit AbandonableWork(std::chrono::milliseconds timeout,
                             ThreadStarter startThread = startDetachedThread);
    ~AbandonableWork() = default;
    AbandonableWork(const AbandonableWork &) = delete;
    AbandonableWork &operator=(const AbandonableWork &) = delete;

    /// Runs the work and waits for it. True when it has ended; false when it was abandoned, or not
    /// started because giveUp() had been called before. When no thread can be started, the work
    /// runs on the calling one. It must not throw.
    [[nodiscard]] bool run(const std::function<void()> &work);

    /// Makes run() return within the timeout, this time and from then on.
    void giveUp();

private:
    struct State;

    const std::chrono::milliseconds m_timeout;
    const ThreadStarter m_startThread;
    const std::shared_ptr<State> m_state;
};

} // namespace tessaly::scan
