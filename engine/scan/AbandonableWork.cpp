#include "engine/scan/AbandonableWork.hpp"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace tessaly::scan {

/// Shared with the abandoned threads, which may outlive the AbandonableWork.
struct AbandonableWork::State {
    std::mutex mutex;
    std::condition_variable hasChanged;
    bool isRunning = false;  ///< guarded by mutex
    bool hasGivenUp = false; ///< guarded by mutex
};

AbandonableWork::AbandonableWork(std::chrono::milliseconds timeout, ThreadStarter startThread)
    : m_timeout(timeout), m_startThread(std::move(startThread)), m_state(std::make_shared<State>())
{
}

bool AbandonableWork::run(const std::function<void()> &work)
{
    {
        const std::scoped_lock lock(m_state->mutex);
        if (m_state->hasGivenUp) {
            return false;
        }
        m_state->isRunning = true;
    }
    const bool isStarted = m_startThread([state = m_state, work] {
        work();
        const std::scoped_lock lock(state->mutex);
        state->isRunning = false;
        state->hasChanged.notify_all();
    });
    if (!isStarted) {
        work();
        return true;
    }
    std::unique_lock lock(m_state->mutex);
    const auto hasEnded = [this] { return !m_state->isRunning; };
    m_state->hasChanged.wait(lock, [&] { return hasEnded() || m_state->hasGivenUp; });
    return m_state->hasChanged.wait_for(lock, m_timeout, hasEnded);
}

void AbandonableWork::giveUp()
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->hasGivenUp = true;
    m_state->hasChanged.notify_all();
}

} // namespace tessaly::scan
