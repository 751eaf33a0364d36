#include "drives/UnmountThreads.hpp"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tessaly {

Q_LOGGING_CATEGORY(drivesLog, "tessaly.drives")

namespace {

struct Running {
    std::mutex mutex;
    std::condition_variable hasEnded;
    int count = 0; ///< guarded by mutex
};

/// Shared with the threads, one of which may outlive the static objects of the process.
const std::shared_ptr<Running> &running()
{
    static const auto instance = std::make_shared<Running>();
    return instance;
}

void addToCount(Running &all, int change)
{
    const std::scoped_lock lock(all.mutex);
    all.count += change;
    all.hasEnded.notify_all();
}

} // namespace

// Detached, since an unmount takes as long as the disk needs to write its cache, and nothing can
// interrupt it.
void startUnmount(std::function<void()> unmount)
{
    // Before the thread starts, so that waitForUnmounts() cannot miss it.
    addToCount(*running(), 1);
    try {
        std::thread([all = running(), unmount = std::move(unmount)]() mutable {
            unmount();
            unmount = nullptr; // destroy what it captured before it counts as ended
            addToCount(*all, -1);
        }).detach();
    } catch (const std::system_error &error) {
        addToCount(*running(), -1);
        qCWarning(drivesLog, "There is no thread to unmount on: %s", error.what());
    }
}

bool waitForUnmounts(std::chrono::milliseconds timeout)
{
    // An unmount that takes longer is left behind. The header says what has to stay alive then.
    Running &all = *running();
    std::unique_lock lock(all.mutex);
    return all.hasEnded.wait_for(lock, timeout, [&] { return all.count == 0; });
}

} // namespace tessaly
