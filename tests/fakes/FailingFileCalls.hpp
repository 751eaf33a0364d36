#pragma once

#include "engine/archive/FileCalls.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace tessaly {

/// The real calls, counted from 0, one of which goes wrong.
class FailingFileCalls final : public archive::FileCalls {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    std::size_t failingCall = never; ///< this one fails, once, …
    int errorNumber = EIO;           ///< … with that errno
    std::size_t fatalCall = never;   ///< before this one the process is killed
    std::size_t maxWriteBytes = never;
    std::function<void()> beforeEach = [] {};

    /// The names of the calls so far. A failed one ends in "!".
    [[nodiscard]] const std::vector<std::string> &log() const { return m_log; }
    [[nodiscard]] bool hasCalled(const std::string &call) const
    {
        return std::find(m_log.begin(), m_log.end(), call) != m_log.end();
    }

    int open(const char *path, int flags, mode_t mode) override
    {
        return fails("open") ? -1 : archive::FileCalls::open(path, flags, mode);
    }
    ssize_t read(int descriptor, void *bytes, std::size_t count) override
    {
        return fails("read") ? -1 : archive::FileCalls::read(descriptor, bytes, count);
    }
    ssize_t write(int descriptor, const void *bytes, std::size_t count) override
    {
        return fails("write")
                   ? -1
                   : archive::FileCalls::write(descriptor, bytes, std::min(count, maxWriteBytes));
    }
    int fsync(int descriptor) override
    {
        return fails("fsync") ? -1 : archive::FileCalls::fsync(descriptor);
    }
    int flock(int descriptor, int operation) override
    {
        return fails("flock") ? -1 : archive::FileCalls::flock(descriptor, operation);
    }
    int fstat(int descriptor, struct stat *status) override
    {
        return fails("fstat") ? -1 : archive::FileCalls::fstat(descriptor, status);
    }
    int rename(const char *from, const char *to) override
    {
        return fails("rename") ? -1 : archive::FileCalls::rename(from, to);
    }
    int renameToFree(const char *from, const char *to) override
    {
        return fails("rename") ? -1 : archive::FileCalls::renameToFree(from, to);
    }
    int unlink(const char *path) override
    {
        return fails("unlink") ? -1 : archive::FileCalls::unlink(path);
    }
    /// A close() that fails has closed all the same.
    int close(int descriptor) override
    {
        const int answer = archive::FileCalls::close(descriptor);
        return fails("close") ? -1 : answer;
    }

private:
    bool fails(const std::string &call)
    {
        beforeEach();
        const std::size_t number = m_log.size();
        if (number == fatalCall) {
            std::raise(SIGKILL);
        }
        const bool isFailing = number == failingCall;
        m_log.push_back(isFailing ? call + '!' : call);
        errno = isFailing ? errorNumber : errno;
        return isFailing;
    }

    std::vector<std::string> m_log;
};

} // namespace tessaly
