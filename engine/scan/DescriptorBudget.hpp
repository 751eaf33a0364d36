#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace tessaly::scan {

/// How many file descriptors the walks of one scan may hold together.
///
/// A walk blocks only for its first descriptors, while it holds none, and never for further ones.
/// So walks cannot deadlock, however small the budget is.
///
/// Units:   descriptors.
/// Threads: every member may be called from any thread.
class DescriptorBudget {
public:
    /// What a walk needs to make progress: a folder, its subfolder, and two for following a link.
    static constexpr int minShare = 4;

    struct Timing {
        /// How long waitForDescriptor() asks for another try while no walk makes progress.
        std::chrono::milliseconds timeout{2000};
        /// How long one waitForDescriptor() blocks at most. The rest of the process does not say
        /// when it closes something.
        std::chrono::milliseconds retryInterval{5};
    };

    DescriptorBudget() noexcept : DescriptorBudget(Timing()) {}
    explicit DescriptorBudget(Timing timing) noexcept : m_timing(timing) {}

    /// Sets the budget; less than `minShare` counts as `minShare`. Requires: nothing is held.
    void provide(int count);

    /// Acquires `minShare` descriptors; blocks until they are free. False when the scan is
    /// cancelled first.
    [[nodiscard]] bool acquireMinShare(const std::atomic<std::int32_t> &cancelScanFlag);

    /// Acquires further descriptors for a walk that holds a share, if they are free now.
    [[nodiscard]] bool tryAcquire(int count);

    /// Releases a walk's whole share.
    void release(int count);

    /// Makes the threads that wait for a share look at the cancel flag again.
    void wakeWaiting();

    /// For a thread whose open() found no descriptor in spite of the budget, because the rest of
    /// the process or system uses them. Blocks for a moment, or until a walk releases its share.
    /// False when the caller should give up: every walk with a share waits like this one, and has
    /// done so for the whole timeout. `caller` says whether the calling thread is such a walk.
    enum class Caller : std::uint8_t { holdsShare, holdsNone };
    [[nodiscard]] bool waitForDescriptor(Caller caller);

    /// Called when an open() has succeeded: the next shortage has the whole timeout again.
    void noteOpened() noexcept
    {
        // A load first: a store by every walk after every open() would have them fight over the
        // cache line.
        if (m_stuckSince.load(std::memory_order_relaxed) != Clock::time_point()) {
            m_stuckSince.store({}, std::memory_order_relaxed);
        }
    }

    /// The budget for a scan: half of the descriptors that this process may still open.
    [[nodiscard]] static int halfOfFreeDescriptors();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool isTimeLeft() noexcept;

    const Timing m_timing;
    std::mutex m_mutex;
    std::condition_variable m_shareFreed;
    std::condition_variable m_descriptorFreed;
    int m_free = 0;         ///< guarded by m_mutex
    int m_shareCount = 0;   ///< walks that hold descriptors; guarded by m_mutex
    int m_waitingCount = 0; ///< those of them in waitForDescriptor(); guarded by m_mutex
    /// When open() began to fail for all of them, the clock's zero if it does not. Atomic, since
    /// noteOpened() takes no lock.
    std::atomic<Clock::time_point> m_stuckSince = Clock::time_point();
};

} // namespace tessaly::scan
