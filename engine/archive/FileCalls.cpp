#include "engine/archive/FileCalls.hpp"

#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {

FileCalls &FileCalls::system() noexcept
{
    // Has no state, so all threads share one.
    static FileCalls calls;
    return calls;
}

int FileCalls::open(const char *path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileCalls::read(int descriptor, void *bytes, std::size_t count)
{
    return ::read(descriptor, bytes, count);
}

ssize_t FileCalls::write(int descriptor, const void *bytes, std::size_t count)
{
    return ::write(descriptor, bytes, count);
}

int FileCalls::fsync(int descriptor)
{
    return ::fsync(descriptor);
}

int FileCalls::flock(int descriptor, int operation)
{
    return ::flock(descriptor, operation);
}

int FileCalls::fstat(int descriptor, struct stat *status)
{
    return ::fstat(descriptor, status);
}

int FileCalls::lstat(const char *path, struct stat *status)
{
    return ::lstat(path, status);
}

int FileCalls::rename(const char *from, const char *to)
{
    return ::rename(from, to);
}

int FileCalls::renameToFree(const char *from, const char *to)
{
    // rename() alone would replace a file that another process has put there.
    const int answer = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    // EINVAL: the file system does not know the flag (NFS, older FUSE). ENOSYS: a sandbox does not
    // allow the call.
    if (answer == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return answer;
    }
    struct stat status = {};
    // Not atomic: a file that appears between the two calls is replaced. Nothing better is there
    // without the flag.
    if (::lstat(to, &status) == 0) {
        errno = EEXIST;
        return -1;
    }
    // Any other error of lstat() does not tell whether the target is free.
    return errno == ENOENT ? ::rename(from, to) : -1;
}

int FileCalls::unlink(const char *path)
{
    return ::unlink(path);
}

int FileCalls::close(int descriptor)
{
    return ::close(descriptor);
}

} // namespace tessaly::archive
