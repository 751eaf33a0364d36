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

/// Jobs in their order, and threads that take them. Shared with the threads, which may outlive all
/// others that know it.
struct PreviewThreads::Queue : std::enable_shared_from_this<PreviewThreads::Queue> {
    struct Entry {
        std::stop_source stop;
        Job job;
    };

    explicit Queue(std::size_t mostThreads) : threadLimit(mostThreads) {}

    void post(Entry entry)
    {
        const std::scoped_lock lock(mutex);
        waiting.push_back(std::move(entry));
        if (waiting.size() > idleCount && threadCount < threadLimit) {
            try {
                threads.emplace_back([self = shared_from_this()] { self->run(); });
                ++threadCount;
            } catch (const std::system_error &) {
                // Those there are take it; with none at all, the preview stays empty.
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
            entry.job();
            entry.job = nullptr; // gives back what it holds before anybody hears of its end
            malloc_trim(0);      // what reading took would stay with this thread otherwise
            lock.lock();
            running.erase(std::find(running.begin(), running.end(), entry.stop));
        }
        --threadCount;
        changed.notify_all();
    }

    void end()
    {
        std::deque<Entry> dropped; // goes without the lock
        std::unique_lock lock(mutex);
        isEnding = true;
        dropped.swap(waiting);
        for (std::stop_source &stop : running) {
            stop.request_stop();
        }
        changed.notify_all();
    }

    void waitForEnd(std::chrono::steady_clock::time_point latest)
    {
        std::vector<std::thread> ended;
        bool areDone = false;
        {
            std::unique_lock lock(mutex);
            areDone = changed.wait_until(lock, latest, [this] { return threadCount == 0; });
            ended.swap(threads);
        }
        for (std::thread &thread : ended) {
            areDone ? thread.join() : thread.detach();
        }
    }

    const std::size_t threadLimit;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Entry> waiting;
    std::vector<std::stop_source> running;
    std::vector<std::thread> threads;
    std::size_t threadCount = 0;
    std::size_t idleCount = 0;
    bool isEnding = false;
};

PreviewThreads::PreviewThreads()
    // Two, so that a file which cannot be stopped does not keep the next one waiting.
    : m_files(std::make_shared<Queue>(2)), m_pages(std::make_shared<Queue>(1))
{
}

PreviewThreads::~PreviewThreads()
{
    constexpr std::chrono::seconds timeout(2);
    const auto latest = std::chrono::steady_clock::now() + timeout;
    m_files->end();
    m_pages->end();
    m_files->waitForEnd(latest);
    m_pages->waitForEnd(latest);
}

void PreviewThreads::post(Lane lane, std::stop_source stop, Job job)
{
    (lane == Lane::pages ? m_pages : m_files)->post({std::move(stop), std::move(job)});
}

} // namespace tessaly
