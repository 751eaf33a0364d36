#include "platform/linux/EndingThreads.hpp"

#include <QThread>

#include <mutex>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

class EndingThreads {
public:
    EndingThreads() = default;
    ~EndingThreads()
    {
        for (const std::unique_ptr<QThread> &thread : m_threads) {
            thread->wait();
        }
    }
    EndingThreads(const EndingThreads &) = delete;
    EndingThreads &operator=(const EndingThreads &) = delete;
    EndingThreads(EndingThreads &&) = delete;
    EndingThreads &operator=(EndingThreads &&) = delete;

    void add(std::unique_ptr<QThread> thread)
    {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(m_threads, [](const auto &before) { return before->isFinished(); });
        m_threads.push_back(std::move(thread));
    }

private:
    std::mutex m_mutex;
    std::vector<std::unique_ptr<QThread>> m_threads;
};

} // namespace

void endLater(std::unique_ptr<QThread> thread)
{
    static EndingThreads threads;
    threads.add(std::move(thread));
}

} // namespace tessaly
