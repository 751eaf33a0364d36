#pragma once

#include "engine/scan/FolderReader.hpp"
#include "engine/scan/ScanState.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly::scan {

/// Walks one top-level subfolder of a scan to the bottom and records everything in the tree.
///
/// Each folder is listed completely before its subfolders are walked, in order, depth first: so the
/// children of a folder lie together in memory. Nothing recurses.
///
/// A folder stays open while it has subfolders left to walk. When the share of descriptors is too
/// small for that, the folders nearest to the top are closed first. On the way back they are
/// reopened, by ".." from a folder below or else by their names from the top, and checked: if it is
/// another folder by now, the remaining subfolders stay empty, like any folder that was deleted.
///
/// Threads: one at a time.
/// Errors:  none. When memory runs out, what has been recorded so far stays.
class FolderWalk {
public:
    /// `scanRoot` is the scanned folder, open; the tree's root stands for it.
    FolderWalk(ScanState &scan, int scanRoot, tree::NodeArena &arena, DescriptorShare &share);
    ~FolderWalk();
    FolderWalk(const FolderWalk &) = delete;
    FolderWalk &operator=(const FolderWalk &) = delete;

    /// Walks a child of the tree's root. Ends early when the scan is cancelled.
    void walk(const Subfolder &top);

private:
    struct Identity {
        dev_t device;
        ino_t inode;
    };

    /// A folder with subfolders left to walk.
    struct Level {
        tree::LUMFileContainer *container = nullptr;
        FileDescriptor descriptor;        ///< the scanned folder itself has none here
        std::optional<Identity> identity; ///< set when the descriptor is closed early
        std::size_t firstPending = 0;     ///< index of its first subfolder in m_pending
        std::size_t depth = 0;            ///< steps below the scanned folder
    };

    void step();
    [[nodiscard]] bool read(OpenedFolder &folder, const Subfolder &next, std::size_t depth);

    [[nodiscard]] OpenedFolder open(const Subfolder &next);
    [[nodiscard]] OpenedFolder openOrWait(const Subfolder &next);
    void keepWithinShare();

    [[nodiscard]] bool isOpen(const Level &level) const noexcept;
    [[nodiscard]] int descriptorOf(const Level &level) const noexcept;
    [[nodiscard]] std::size_t openLevelCount() const noexcept;
    bool closeOldest();
    void closeLast();
    static void closeForNow(Level &level) noexcept;
    void popLevel() noexcept;

    void reopenLast(const FileDescriptor &here, std::size_t depth);
    [[nodiscard]] bool reopenFromBelow(const FileDescriptor &here, std::size_t steps);
    [[nodiscard]] bool reopenByNames();
    [[nodiscard]] bool useIfSame(FileDescriptor descriptor) noexcept;

    ScanState &m_scan;
    int m_scanRoot;
    DescriptorShare &m_share;
    FolderReader m_reader;
    std::vector<Level> m_levels;
    std::size_t m_closedLevels = 0;   ///< the first levels, which were closed early
    std::vector<Subfolder> m_pending; ///< of all levels; the last one is walked next
    std::string m_name;               ///< names in the tree lack the zero byte that openat() wants
};

} // namespace tessaly::scan
