#include "engine/archive/SetAsideFile.hpp"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessaly::archive {

namespace {

std::string asidePath(const std::string &path)
{
    return path + ".previous";
}

/// A descriptor to lock the file with; -1 when there is no such file, or it cannot be locked.
int openForLock(const std::string &path, FileCalls &calls)
{
    return retried(
        [&] { return calls.open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0); });
}

/// False when another descriptor holds the lock. On a file system without locks it is always true.
bool lock(int descriptor, FileCalls &calls)
{
    return retried([&] { return calls.flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 ||
           errno != EWOULDBLOCK;
}

} // namespace

SetAsideFile::SetAsideFile(const std::string &path, FileCalls &calls)
    : m_aside(asidePath(path)), m_calls(calls)
{
    struct stat status = {};
    if (m_calls.lstat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
        return;
    }
    // Locked before it is moved, so that putBack() never finds it without its lock.
    m_descriptor = openForLock(path, m_calls);
    if (m_descriptor >= 0) {
        (void)lock(m_descriptor, m_calls);
    }
    // A failure is ignored: the file then stays where it is, and its successor replaces it there.
    m_calls.rename(path.c_str(), m_aside.c_str());
}

SetAsideFile::~SetAsideFile()
{
    discard();
}

void SetAsideFile::discard()
{
    // Also one that a killed process had set aside, which is out of date by now.
    m_calls.unlink(m_aside.c_str());
    if (m_descriptor >= 0) {
        m_calls.close(m_descriptor); // frees its disk space, which the descriptor still held
        m_descriptor = -1;
    }
}

void SetAsideFile::putBack(const std::string &path, FileCalls &calls)
{
    const std::string aside = asidePath(path);
    struct stat status = {};
    if (calls.lstat(aside.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
        return;
    }
    const int descriptor = openForLock(aside, calls);
    if (descriptor < 0 || lock(descriptor, calls)) {
        if (calls.renameToFree(aside.c_str(), path.c_str()) != 0 && errno == EEXIST) {
            calls.unlink(aside.c_str()); // its successor is complete
        }
    }
    if (descriptor >= 0) {
        calls.close(descriptor);
    }
}

} // namespace tessaly::archive
