#include "preview/PreviewThreads.hpp"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <malloc.h>

namespace tessaly {

/// Jobs in their order, and threads that take them. The threads own it as well, since one that
/// hangs in a read outlives PreviewThreads.
struct PreviewThreads::Queue : std::enable_shared_from_this<PreviewThreads::Queue> {
    struct Entry {
        std::stop_source stop;
        Job job;
    };

    explicit Queue(std::size_t threadCountMax) : maxThreadCount(threadCountMax) {}

    void post(Entry entry)
    {
        const std::scoped_lock lock(mutex);
        waiting.push_back(std::move(entry));
        // Idle threads have been told of jobs that they have not taken yet, so the numbers are
        // compared.
        if (waiting.size() > idleCount && threadCount < maxThreadCount) {
            try {
                threads.emplace_back([self = shared_from_this()] { self->run(); });
                ++threadCount;
            } catch (const std::system_error &) {
                // The threads that run already take it; without any, the preview stays empty.
            }
        }
        changed.notify_all();
    }

    void run()
    {
        std::unique_lock lock(mutex);
        while (true) {
            ++idleCount;
            changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
            --idleCount;
            if (isEnding) {
                break;
            }
            Entry entry = std::move(waiting.front());
            waiting.pop_front();
            if (entry.stop.stop_requested()) {
                continue;
            }
            running.push_back(entry.stop);
            lock.unlock();
            // Without the lock: a read may take long, and post() is called on the main thread.
            entry.job();
            // Before the next wait, which may be long: closes the file that the job holds.
            entry.job = nullptr;
            malloc_trim(0); // glibc would keep the megabytes of a read in this thread's arena
            lock.lock();
            running.erase(std::find(running.begin(), running.end(), entry.stop));
        }
        --threadCount;
        changed.notify_all();
    }

    void end()
    {
        std::deque<Entry> dropped; // is destroyed after the lock: what a job owns may post again
        std::unique_lock lock(mutex);
        isEnding = true;
        dropped.swap(waiting);
        for (std::stop_source &stop : running) {
            stop.request_stop();
        }
        changed.notify_all();
    }

    void waitForEnd(std::chrono::steady_clock::time_point deadline)
    {
        std::vector<std::thread> ended;
        bool areDone = false;
        {
            std::unique_lock lock(mutex);
            areDone = changed.wait_until(lock, deadline, [this] { return threadCount == 0; });
            ended.swap(threads);
        }
        for (std::thread &thread : ended) {
            // A thread that hangs owns the queue with others, so it can be left behind.
            areDone ? thread.join() : thread.detach();
        }
    }

    const std::size_t maxThreadCount;
    std::mutex mutex;
    std::condition_variable changed;       ///< of what follows
    std::deque<Entry> waiting;             ///< guarded by mutex
    std::vector<std::stop_source> running; ///< guarded by mutex
    std::vector<std::thread> threads;      ///< guarded by mutex
    std::size_t threadCount = 0;           ///< guarded by mutex; of those that have not ended
    std::size_t idleCount = 0;             ///< guarded by mutex
    bool isEnding = false;                 ///< guarded by mutex
};

PreviewThreads::PreviewThreads(std::chrono::milliseconds endTimeout)
    : m_endTimeout(endTimeout),
      // Two, so that a file whose read hangs does not keep the next one waiting.
      m_files(std::make_shared<Queue>(2)), m_pages(std::make_shared<Queue>(1))
{
}

PreviewThreads::~PreviewThreads()
{
    const auto deadline = std::chrono::steady_clock::now() + m_endTimeout;
    // Both are told before either is waited for, so the timeout passes once and not twice.
    m_files->end();
    m_pages->end();
    m_files->waitForEnd(deadline);
    m_pages->waitForEnd(deadline);
}

void PreviewThreads::post(Lane lane, std::stop_source stop, Job job)
{
    (lane == Lane::pages ? m_pages : m_files)->post({std::move(stop), std::move(job)});
}

} // namespace tessaly
