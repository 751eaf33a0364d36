#include "engine/scan/FolderWalk.hpp"

#include <algorithm>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

// O_PATH is enough to open subfolders, and needs no read permission. O_DIRECTORY is left out
// because it would trigger an automount.
constexpr int ancestorFlags = O_PATH | O_NOFOLLOW | O_CLOEXEC;

// Beside the levels' descriptors: the folder being read, and two for following a link.
constexpr std::size_t furtherDescriptors = 3;
static_assert(1 + furtherDescriptors == DescriptorBudget::minShare);

// "../" so many times is 3 KiB; the kernel takes paths below 4 KiB (PATH_MAX).
constexpr std::size_t maxStepsPerOpen = 1024;

} // namespace

FolderWalk::FolderWalk(ScanState &scan, int scanRoot, tree::NodeArena &arena,
                       DescriptorShare &share)
    : m_scan(scan), m_scanRoot(scanRoot), m_share(share), m_reader(scan.mounts, arena, share)
{
    m_share.setMakeRoom([this] { return closeOldest(); });
}

FolderWalk::~FolderWalk()
{
    m_share.setMakeRoom({});
}

void FolderWalk::walk(const Subfolder &top)
{
    m_pending.push_back(top);
    m_levels.emplace_back().container = &m_scan.tree->root();
    while (!m_levels.empty() && !m_scan.isCancelled()) {
        step();
    }
}

/// Walks the next pending folder. Afterwards no level is left without pending folders, and the last
/// level is open again.
void FolderWalk::step()
{
    const Subfolder next = m_pending.back();
    m_pending.pop_back();
    const std::size_t depth = m_levels.back().depth + 1;
    OpenedFolder folder = open(next);

    // The parent's last subfolder ends the parent's level now and not on the way back, so that a
    // chain of folders with one subfolder each takes one level, however deep it is. Its descriptor
    // is kept for a moment: when the subfolder cannot be opened, ".." starts from there.
    FileDescriptor parent;
    if (m_pending.size() == m_levels.back().firstPending) {
        parent = std::move(m_levels.back().descriptor);
        popLevel();
    }
    if (!folder.descriptor.isOpen()) {
        reopenLast(parent, depth - 1);
        return;
    }
    parent.close();
    if (!read(folder, next, depth)) {
        reopenLast(folder.descriptor, depth);
    }
}

/// Records a folder's entries. True when it has subfolders to walk: it is then the last level and
/// owns the descriptor.
bool FolderWalk::read(OpenedFolder &folder, const Subfolder &next, std::size_t depth)
{
    const std::size_t first = m_pending.size();
    try {
        m_reader.read(
            folder.descriptor.number(), folder.kind, next, [this] { return m_scan.isCancelled(); },
            [this](const Subfolder &found) { m_pending.push_back(found); });
    } catch (const std::bad_alloc &) {
        // What was recorded is consistent; the rest of the listing is left out.
    }
    if (m_pending.size() == first) {
        return false;
    }
    try {
        m_levels.emplace_back();
    } catch (const std::bad_alloc &) {
        m_pending.erase(m_pending.begin() + static_cast<std::ptrdiff_t>(first), m_pending.end());
        return false;
    }
    // The pending folders are a stack, and the first one listed is to be walked first.
    std::reverse(m_pending.begin() + static_cast<std::ptrdiff_t>(first), m_pending.end());
    Level &level = m_levels.back();
    level.container = next.container;
    level.descriptor = std::move(folder.descriptor);
    level.firstPending = first;
    level.depth = depth;
    return true;
}

OpenedFolder FolderWalk::open(const Subfolder &next)
{
    try {
        keepWithinShare();
        return openOrWait(next);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// Opens a subfolder of the last level. In a shortage of descriptors this walk first closes all
/// that it can reopen, at last even the parent's, and then waits for the others to do the same.
/// Walks that waited with descriptors in hand could wait for each other for ever.
OpenedFolder FolderWalk::openOrWait(const Subfolder &next)
{
    const FileSystemCheck check =
        m_scan.mounts.mustCheck(next.place) ? FileSystemCheck::first : FileSystemCheck::needless;
    const Level &parent = m_levels.back();
    for (;;) {
        OpenedFolder folder;
        if (isOpen(parent) || reopenByNames()) {
            m_name.assign(next.container->itemName());
            folder = openSubfolder(descriptorOf(parent), m_name.c_str(), check);
        }
        if (folder.descriptor.isOpen()) {
            m_share.noteOpened();
            return folder;
        }
        if (!isDescriptorShortage(errno) || m_scan.isCancelled()) {
            return folder;
        }
        if (closeOldest()) {
            continue;
        }
        closeLast();
        if (!m_share.waitForDescriptor()) {
            return folder;
        }
    }
}

void FolderWalk::keepWithinShare()
{
    while (!m_share.covers(static_cast<int>(openLevelCount() + furtherDescriptors))) {
        if (!closeOldest()) {
            return;
        }
    }
}

bool FolderWalk::isOpen(const Level &level) const noexcept
{
    return level.depth == 0 || level.descriptor.isOpen();
}

int FolderWalk::descriptorOf(const Level &level) const noexcept
{
    return level.depth == 0 ? m_scanRoot : level.descriptor.number();
}

std::size_t FolderWalk::openLevelCount() const noexcept
{
    return m_levels.size() - m_closedLevels;
}

/// Closes the open level nearest to the top, which is needed last, but never the last level. False
/// when there is none to close.
bool FolderWalk::closeOldest()
{
    if (openLevelCount() < 2) {
        return false;
    }
    closeForNow(m_levels[m_closedLevels]);
    ++m_closedLevels;
    return true;
}

void FolderWalk::closeLast()
{
    Level &level = m_levels.back();
    if (level.descriptor.isOpen()) {
        closeForNow(level);
        m_closedLevels = m_levels.size();
    }
}

/// Closes a level that will be reopened, and notes which folder it is. While it is closed it may be
/// moved or replaced, and then ".." or its path leads to another folder.
void FolderWalk::closeForNow(Level &level) noexcept
{
    struct stat facts = {};
    level.identity.reset();
    if (fstat(level.descriptor.number(), &facts) == 0) {
        level.identity = Identity{facts.st_dev, facts.st_ino};
    }
    level.descriptor.close();
}

void FolderWalk::popLevel() noexcept
{
    m_levels.pop_back();
    m_closedLevels = std::min(m_closedLevels, m_levels.size());
}

/// Reopens the last level if it was closed early, from the folder `here` at `depth` below it, if
/// that is open. A level that cannot be found again is dropped with its pending folders. In a
/// shortage of descriptors the level stays closed: openOrWait() will wait for one.
void FolderWalk::reopenLast(const FileDescriptor &here, std::size_t depth)
{
    while (!m_levels.empty() && !isOpen(m_levels.back()) && !m_scan.isCancelled()) {
        const Level &level = m_levels.back();
        if ((here.isOpen() && reopenFromBelow(here, depth - level.depth)) || reopenByNames() ||
            isDescriptorShortage(errno)) {
            return;
        }
        m_pending.erase(m_pending.begin() + static_cast<std::ptrdiff_t>(level.firstPending),
                        m_pending.end());
        popLevel();
    }
}

/// Reopens the last level by ".." from a folder so many steps below it. This needs a single call
/// for a thousand levels, and works where the path from the top is longer than the kernel takes.
bool FolderWalk::reopenFromBelow(const FileDescriptor &here, std::size_t steps)
{
    try {
        FileDescriptor above;
        while (steps > 0) {
            const std::size_t count = std::min(steps, maxStepsPerOpen);
            m_name.clear();
            for (std::size_t i = 0; i < count; ++i) {
                m_name += "../";
            }
            m_name.pop_back();
            const int from = above.isOpen() ? above.number() : here.number();
            above = FileDescriptor(openat(from, m_name.c_str(), ancestorFlags));
            if (!above.isOpen()) {
                return false;
            }
            steps -= count;
        }
        return useIfSame(std::move(above));
    } catch (const std::bad_alloc &) {
        return false;
    }
}

/// Reopens the last level by the names that lead there from the scanned folder, one at a time: the
/// whole path may be too long. On failure errno says why.
bool FolderWalk::reopenByNames()
{
    try {
        std::vector<const tree::LUMFileContainer *> way;
        const tree::LUMFileContainer *const root = &m_scan.tree->root();
        for (const tree::LUMFileContainer *folder = m_levels.back().container; folder != root;
             folder = folder->parentContainer()) {
            way.push_back(folder);
        }
        std::reverse(way.begin(), way.end());
        FileDescriptor here;
        for (const tree::LUMFileContainer *folder : way) {
            m_name.assign(folder->itemName());
            const int from = here.isOpen() ? here.number() : m_scanRoot;
            here = FileDescriptor(openat(from, m_name.c_str(), ancestorFlags));
            if (!here.isOpen()) {
                return false;
            }
        }
        return useIfSame(std::move(here));
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return false;
    }
}

/// Gives the last level the descriptor if that is the same folder as before. On failure errno is
/// ENOENT, as for a folder that was deleted.
bool FolderWalk::useIfSame(FileDescriptor descriptor) noexcept
{
    Level &level = m_levels.back();
    struct stat facts = {};
    if (!level.identity || fstat(descriptor.number(), &facts) != 0 ||
        facts.st_dev != level.identity->device || facts.st_ino != level.identity->inode) {
        errno = ENOENT;
        return false;
    }
    level.descriptor = std::move(descriptor);
    m_closedLevels = m_levels.size() - 1;
    return true;
}

} // namespace tessaly::scan
