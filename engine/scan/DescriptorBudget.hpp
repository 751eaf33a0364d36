#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace tessaly::scan {

/// How many file descriptors the walks of one scan may hold together.
///
/// A walk blocks only for its first descriptors, while it holds none, and only asks for further
/// ones; so walks never wait for one another in a circle, however small the budget is.
///
/// Units:   descriptors.
/// Threads: every member may be called from any thread.
class DescriptorBudget {
public:
    /// What a walk needs to get anywhere: a folder, its subfolder, and two for following a link.
    static constexpr int minShare = 4;

    /// How long waitForRelief() goes on when nobody who could give descriptors back gets on.
    static constexpr std::chrono::milliseconds defaultTimeout{2000};

    explicit DescriptorBudget(std::chrono::milliseconds timeout = defaultTimeout) noexcept
        : m_timeout(timeout)
    {
    }

    /// Sets what there is to hand out. Called while nobody holds anything. Less than a smallest
    /// share is taken as one.
    void provide(int count);

    /// Takes a smallest share; blocks until there is one. False when the scan is cancelled first.
    [[nodiscard]] bool acquireMin(const std::atomic<std::int32_t> &cancelScanFlag);

    /// Takes further descriptors for somebody who holds a share, if they are to be had at once.
    [[nodiscard]] bool tryTake(int count);

    /// Gives a whole share back.
    void release(int count);

    /// Makes the threads that wait for a share look at the cancel flag again.
    void wakeWaiting();

    /// For a thread whose open() found no descriptor in spite of the budget: others use them up.
    /// Waits a little, or until a walk gives some back. False when trying again is pointless: no
    /// walk that could give some back is still getting on, and all timeout is used up.
    /// `holdsShare` tells whether the caller is one of those walks.
    enum class Caller : std::uint8_t { holdsShare, holdsNone };
    [[nodiscard]] bool waitForRelief(Caller caller);

    /// Says that a descriptor was to be had: the next shortage is met with fresh timeout.
    void noteRelief() noexcept
    {
        if (m_stuckSince.load(std::memory_order_relaxed) != Clock::time_point()) {
            m_stuckSince.store({}, std::memory_order_relaxed);
        }
    }

    /// The share of a process's descriptors that a scan should use: half of those that are free.
    [[nodiscard]] static int halfOfFreeDescriptors();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool isPatienceLeft() noexcept;

    const std::chrono::milliseconds m_timeout;
    std::mutex m_mutex;
    std::condition_variable m_shareFree;
    std::condition_variable m_relief;
    int m_free = 0;
    int m_shares = 0; ///< walks that hold descriptors
    int m_stuck = 0;  ///< those of them that wait for relief
    /// Since when nothing has been opened while all of them waited; the clock's zero: not at all.
    std::atomic<Clock::time_point> m_stuckSince = Clock::time_point();
};

} // namespace tessaly::scan
