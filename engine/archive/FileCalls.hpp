#pragma once

#include <cerrno>
#include <cstddef>

#include <sys/types.h>

struct stat;

namespace tessaly::archive {

/// The system calls that read and replace files: the one seam at which tests make them fail. Each
/// answers like the call of its name, errno included.
class FileCalls {
public:
    FileCalls() = default;
    virtual ~FileCalls() = default;
    FileCalls(const FileCalls &) = delete;
    FileCalls &operator=(const FileCalls &) = delete;

    /// The real calls. Threads: any.
    static FileCalls &system() noexcept;

    virtual int open(const char *path, int flags, mode_t mode);
    virtual ssize_t read(int descriptor, void *bytes, std::size_t count);
    virtual ssize_t write(int descriptor, const void *bytes, std::size_t count);
    virtual int fsync(int descriptor);
    virtual int flock(int descriptor, int operation);
    virtual int fstat(int descriptor, struct stat *status);
    virtual int lstat(const char *path, struct stat *status);
    virtual int rename(const char *from, const char *to);
    /// renameat2() with RENAME_NOREPLACE: fails with EEXIST when the target exists. Where the file
    /// system does not support that, it checks first, which is not atomic.
    virtual int renameToFree(const char *from, const char *to);
    virtual int unlink(const char *path);
    virtual int close(int descriptor);
};

/// Makes a system call again for as long as signals interrupt it.
template <typename Call>
auto retried(Call call)
{
    auto answer = call();
    while (answer < 0 && errno == EINTR) {
        answer = call();
    }
    return answer;
}

} // namespace tessaly::archive
