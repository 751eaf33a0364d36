#include "engine/scan/FolderWalk.hpp"

#include <algorithm>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

// A descriptor that only marks a place is enough to open subfolders, and needs no read permission.
// No O_DIRECTORY: it would have the system mount what mounts itself.
constexpr int ancestorFlags = O_PATH | O_NOFOLLOW | O_CLOEXEC;

// Beside the folders with subfolders left: the folder being read, and two for following a link.
constexpr std::size_t furtherDescriptors = 3;
static_assert(1 + furtherDescriptors == DescriptorBudget::minShare);

constexpr std::size_t stepsAtOnce = 1024; // "../" so many times is a path the system takes

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

/// Walks the next pending folder. Levels that have no pending folders left are gone afterwards, and
/// the last level that is left is open.
void FolderWalk::step()
{
    const Subfolder next = m_pending.back();
    m_pending.pop_back();
    const std::size_t depth = m_levels.back().depth + 1;
    OpenedFolder folder = open(next);

    FileDescriptor parent;
    if (m_pending.size() == m_levels.back().firstPending) {
        parent = std::move(m_levels.back().descriptor);
        popLevel();
    }
    if (!folder.descriptor.isOpen()) {
        climb(parent, depth - 1);
        return;
    }
    parent.close();
    if (!read(folder, next, depth)) {
        climb(folder.descriptor, depth);
    }
}

/// Records a folder's entries. True when it has subfolders to walk: it is then the last level, and
/// the descriptor has moved there.
bool FolderWalk::read(OpenedFolder &folder, const Subfolder &next, std::size_t depth)
{
    const std::size_t first = m_pending.size();
    try {
        m_reader.read(
            folder.descriptor.number(), folder.kind, next, [this] { return m_scan.isCancelled(); },
            [this](const Subfolder &found) { m_pending.push_back(found); });
    } catch (const std::bad_alloc &) {
        // What was recorded is whole; the rest of the listing is left out.
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
        return openPatiently(next);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// Opens a subfolder of the last level. In a shortage of descriptors this walk first gives up all
/// that it can have again, in the end even the parent's, and then waits for the others.
OpenedFolder FolderWalk::openPatiently(const Subfolder &next)
{
    const FileSystemCheck check =
        m_scan.mounts.mustAsk(next.place) ? FileSystemCheck::first : FileSystemCheck::needless;
    const Level &parent = m_levels.back();
    for (;;) {
        OpenedFolder folder;
        if (isOpen(parent) || reopenByNames()) {
            m_name.assign(next.container->itemName());
            folder = openSubfolder(descriptorOf(parent), m_name.c_str(), check);
        }
        if (folder.descriptor.isOpen()) {
            m_share.noteRelief();
            return folder;
        }
        if (!isDescriptorShortage(errno) || m_scan.isCancelled()) {
            return folder;
        }
        if (closeOldest()) {
            continue;
        }
        closeLast();
        if (!m_share.waitForRelief()) {
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

/// Closes the open folder nearest to the top, but never the last level's. False when there is none.
bool FolderWalk::closeOldest()
{
    if (openLevelCount() < 2) {
        return false;
    }
    letGo(m_levels[m_closedLevels]);
    ++m_closedLevels;
    return true;
}

void FolderWalk::closeLast()
{
    Level &level = m_levels.back();
    if (level.descriptor.isOpen()) {
        letGo(level);
        m_closedLevels = m_levels.size();
    }
}

void FolderWalk::letGo(Level &level) noexcept
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

/// Opens the last level again if it was let go of, coming from a folder below it that is open still
/// (or from none). A level that is there no more goes, with what is pending in it. In a shortage of
/// descriptors the level is left as it is: whoever needs it will wait.
void FolderWalk::climb(const FileDescriptor &here, std::size_t depth)
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

bool FolderWalk::reopenFromBelow(const FileDescriptor &here, std::size_t steps)
{
    try {
        FileDescriptor above;
        while (steps > 0) {
            const std::size_t count = std::min(steps, stepsAtOnce);
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
        return takeBack(std::move(above));
    } catch (const std::bad_alloc &) {
        return false;
    }
}

/// Opens the last level again by the names on the way there from the scanned folder. On failure
/// errno tells why.
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
        return takeBack(std::move(here));
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return false;
    }
}

/// Makes a descriptor the last level's if it stands for the same folder as the one let go of.
bool FolderWalk::takeBack(FileDescriptor descriptor) noexcept
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
