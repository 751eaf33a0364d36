#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace tessaly::scan {

/// Owns a file descriptor: the destructor closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    /// Takes ownership. A negative number, as a failed call returns it, stands for none.
    explicit FileDescriptor(int number) noexcept : m_number(number) {}

    ~FileDescriptor() { close(); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    FileDescriptor(FileDescriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        if (this != &other) {
            close();
            m_number = std::exchange(other.m_number, -1);
        }
        return *this;
    }

    [[nodiscard]] bool isOpen() const noexcept { return m_number >= 0; }
    [[nodiscard]] int number() const noexcept { return m_number; }

    /// Closes early. Keeps errno, so that it still tells about the call before.
    void close() noexcept
    {
        if (m_number >= 0) {
            const int error = errno;
            ::close(std::exchange(m_number, -1));
            errno = error;
        }
    }

private:
    int m_number = -1;
};

/// Whether an errno value says that this process, or the whole system, has no descriptor left.
[[nodiscard]] inline bool isDescriptorShortage(int error) noexcept
{
    return error == EMFILE || error == ENFILE;
}

} // namespace tessaly::scan
