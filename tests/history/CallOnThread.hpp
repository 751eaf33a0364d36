#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {

/// A call on a thread of its own. It has returned when this is destroyed.
class CallOnThread {
public:
    explicit CallOnThread(std::function<void()> call)
        : m_thread([this, body = std::move(call)] {
              m_threadId = gettid();
              body();
              m_hasReturned = true;
          })
    {
    }
    ~CallOnThread() { m_thread.join(); }
    CallOnThread(const CallOnThread &) = delete;
    CallOnThread &operator=(const CallOnThread &) = delete;

    /// Waits until the call has returned or its thread sleeps, as it does at a lock that another
    /// thread holds. Whether it sleeps.
    [[nodiscard]] bool sleeps() const
    {
        while (!m_hasReturned) {
            if (m_threadId != 0 && state() == 'S') {
                return !m_hasReturned;
            }
            std::this_thread::yield();
        }
        return false;
    }

private:
    /// The thread's state in the kernel's words. Takes no lock that the thread may want.
    [[nodiscard]] char state() const
    {
        const std::string path = "/proc/self/task/" + std::to_string(m_threadId) + "/stat";
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        std::array<char, 256> text{};
        const ssize_t count = read(file, text.data(), text.size());
        close(file);
        const std::string line(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        const std::size_t name = line.rfind(')'); // "PID (NAME) STATE …"
        return name == std::string::npos || name + 2 >= line.size() ? '?' : line[name + 2];
    }

    std::atomic<pid_t> m_threadId = 0;
    std::atomic<bool> m_hasReturned = false;
    std::thread m_thread;
};

} // namespace tessaly
