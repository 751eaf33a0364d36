#include "engine/scan/OpenedFolder.hpp"

#include <climits>
#include <string>

#include <fcntl.h>

namespace tessaly::scan {

namespace {

// O_NONBLOCK: what was a folder a moment ago may be a FIFO now, whose open() would block.
constexpr int listingFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC;
// Without O_DIRECTORY, which would trigger an automount.
constexpr int placeFlags = O_PATH | O_CLOEXEC;

FileDescriptor openOnce(int parent, const char *name, int flags) noexcept
{
    int number = -1;
    do {
        number = openat(parent, name, flags);
    } while (number < 0 && errno == EINTR);
    return FileDescriptor(number);
}

OpenedFolder openChecked(int parent, const char *name, int linkFlag)
{
    OpenedFolder folder;
    folder.descriptor = openOnce(parent, name, placeFlags | linkFlag);
    if (!folder.descriptor.isOpen()) {
        return folder;
    }
    folder.kind = fileSystemKind(folder.descriptor.number());
    if (folder.kind == FileSystemKind::automount) {
        return folder;
    }
    // A second open() by name, since O_PATH does not allow listing. What is mounted between the two
    // is listed as storage, as everything is that appears during a scan.
    folder.descriptor.close();
    if (folder.kind == FileSystemKind::kernel) {
        errno = 0;
    } else {
        folder.descriptor = openOnce(parent, name, listingFlags | linkFlag);
    }
    return folder;
}

} // namespace

OpenedFolder openSubfolder(int parent, const char *name, FileSystemCheck check)
{
    if (check == FileSystemCheck::first) {
        return openChecked(parent, name, O_NOFOLLOW);
    }
    return {openOnce(parent, name, listingFlags | O_NOFOLLOW), FileSystemKind::storage};
}

OpenedFolder openFolderPath(std::string_view path)
{
    if (path.empty() || path.find('\0') != std::string_view::npos) {
        errno = ENOENT;
        return {};
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    FileDescriptor parent;
    const auto parentNumber = [&] { return parent.isOpen() ? parent.number() : AT_FDCWD; };
    // The kernel takes at most PATH_MAX bytes in one call, so a longer path is walked in pieces.
    while (path.size() >= PATH_MAX) {
        const std::size_t cut = path.rfind('/', PATH_MAX - 1);
        if (cut == std::string_view::npos || cut == 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        const std::string piece(path.substr(0, cut));
        parent = openOnce(parentNumber(), piece.c_str(), placeFlags | O_DIRECTORY);
        if (!parent.isOpen()) {
            return {};
        }
        // A slash in front of the rest would start at the root again.
        path.remove_prefix(path.find_first_not_of('/', cut));
    }
    return openChecked(parentNumber(), std::string(path).c_str(), 0);
}

} // namespace tessaly::scan
