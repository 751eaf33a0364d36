#include "platform/linux/process/InstanceLock.hpp"

#include "engine/archive/FileCalls.hpp"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessaly {

InstanceLock::InstanceLock(std::string path) : m_path(std::move(path)) {}

InstanceLock::State InstanceLock::take()
{
    if (m_file.isOpen()) {
        return State::taken;
    }
    scan::FileDescriptor file(
        open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen()) {
        return State::impossible;
    }
    if (archive::retried([&] { return flock(file.number(), LOCK_EX | LOCK_NB); }) != 0) {
        // Another process has it, or the file system knows no locks.
        return errno == EWOULDBLOCK ? State::refused : State::impossible;
    }
    m_file = std::move(file);
    return State::taken;
}

void InstanceLock::release()
{
    if (m_file.isOpen()) {
        // Closing alone does not unlock while a child between fork() and exec() has the file open.
        flock(m_file.number(), LOCK_UN);
        m_file = scan::FileDescriptor();
    }
}

} // namespace tessaly
