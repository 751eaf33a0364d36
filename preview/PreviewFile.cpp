#include "preview/PreviewFile.hpp"

#include "engine/scan/FileDescriptor.hpp"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

using Kind = PreviewFileStatus::Kind;

Kind kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return Kind::regular;
    case S_IFDIR:
        return Kind::folder;
    case S_IFIFO:
        return Kind::pipe;
    case S_IFSOCK:
        return Kind::socket;
    case S_IFBLK:
    case S_IFCHR:
        return Kind::device;
    default:
        return Kind::unknown;
    }
}

QDateTime dateOf(const struct statx_timestamp &time)
{
    return QDateTime::fromMSecsSinceEpoch(qint64{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000);
}

PreviewFile::Error errorOf(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    // Links in a circle lead to nothing, as one that dangles.
    case ELOOP:
        return PreviewFile::Error::missing;
    case EACCES:
    case EPERM:
        return PreviewFile::Error::forbidden;
    default:
        return PreviewFile::Error::failed;
    }
}

} // namespace

PreviewFileStatus PreviewFileStatus::of(const std::string &path)
{
    PreviewFileStatus status;
    struct statx found;
    // AT_NO_AUTOMOUNT: looking at a row must not mount a network drive.
    if (statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME, &found) !=
        0) {
        status.kind = errorOf(errno) == PreviewFile::Error::missing ? Kind::missing : Kind::unknown;
        return status;
    }
    status.kind = kindOf(found.stx_mode);
    status.byteCount = found.stx_size;
    status.modified = dateOf(found.stx_mtime);
    // Some file systems claim to have the time of creation, and report 0.
    if ((found.stx_mask & STATX_BTIME) != 0 && found.stx_btime.tv_sec != 0) {
        status.created = dateOf(found.stx_btime);
    }
    return status;
}

PreviewFile::PreviewFile(std::stop_token stop) : m_stop(std::move(stop)) {}

archive::Result<std::unique_ptr<PreviewFile>, PreviewFile::Error>
PreviewFile::openPath(const std::string &path, std::stop_token stop)
{
    // Checked before, since opening alone has effects on some devices; and after, since another
    // file may have taken its place meanwhile.
    struct stat status;
    if (stat(path.c_str(), &status) != 0) {
        return errorOf(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return Error::notRegular;
    }
    // O_NONBLOCK and O_NOCTTY: a FIFO that has taken the file's place would block, and a terminal
    // could become ours.
    scan::FileDescriptor descriptor(
        ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor.isOpen() || fstat(descriptor.number(), &status) != 0) {
        return errorOf(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return Error::notRegular;
    }
    std::unique_ptr<PreviewFile> file(new PreviewFile(std::move(stop)));
    // A duplicate: QFile does not document who closes the descriptor when open() fails.
    const int handedOver = fcntl(descriptor.number(), F_DUPFD_CLOEXEC, 0);
    if (handedOver < 0 || !file->open(handedOver, ReadOnly, AutoCloseHandle)) {
        return Error::failed;
    }
    return {std::move(file)};
}

qint64 PreviewFile::readData(char *data, qint64 byteCount)
{
    // Decoders and players take the failure for a damaged file, and end.
    return isStopped() ? -1 : QFile::readData(data, byteCount);
}

} // namespace tessaly
