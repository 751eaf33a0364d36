#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace tessaly::scan {

/// A file descriptor of the system, closed when this goes.
class FileDescriptor {
public:
    FileDescriptor() = default;

    /// Takes a descriptor over. A negative number, what a failed call gives, stands for none.
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

    /// Closes early. Leaves errno alone, so that it can still be asked about the call before.
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

/// Whether errno says that there was no descriptor to be had: none in this process, or none in the
/// whole system.
[[nodiscard]] inline bool isDescriptorShortage(int error) noexcept
{
    return error == EMFILE || error == ENFILE;
}

} // namespace tessaly::scan
