#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tessaly {

/// Sees to it that a program which has begun to end does so: while one of these lives, the process
/// may take as long as `patience`. Then it ends at once, with a line in the log, and nothing is
/// tidied up. A thread that reads a folder of a server that is gone cannot be ended otherwise, and
/// as long as it is there, the program cannot be started anew.
///
/// Whatever has to be kept is to be kept before.
class EndWatch {
public:
    EndWatch(std::chrono::milliseconds patience, int exitStatus);
    ~EndWatch();
    EndWatch(const EndWatch &) = delete;
    EndWatch &operator=(const EndWatch &) = delete;
    EndWatch(EndWatch &&) = delete;
    EndWatch &operator=(EndWatch &&) = delete;

private:
    std::mutex m_lock;
    std::condition_variable m_hasEnded;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace tessaly
