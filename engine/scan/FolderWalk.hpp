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
/// Each folder is listed whole before its subfolders are walked, in order, depth first: the
/// children of a folder then lie together in memory. Nothing recurses.
///
/// A folder stays open while it has subfolders left to walk. When the share of descriptors does not
/// allow that, the folders nearest to the top are closed first and opened again on the way back:
/// from below, by way of "..", or else by their names from the top. They are used again only when
/// they prove to be the same folders as before; otherwise their remaining subfolders stay empty,
/// like any folder that vanishes.
///
/// Threads: one at a time. Errors: none; what runs out of memory stays as it has got until then.
class FolderWalk {
public:
    /// `scanRoot` is the scanned folder, open; the tree's root stands for it.
    FolderWalk(ScanState &scan, int scanRoot, tree::NodeArena &arena, DescriptorShare &share);
    ~FolderWalk();
    FolderWalk(const FolderWalk &) = delete;
    FolderWalk &operator=(const FolderWalk &) = delete;
    FolderWalk(FolderWalk &&) = delete;
    FolderWalk &operator=(FolderWalk &&) = delete;

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
        std::optional<Identity> identity; ///< known once the descriptor was let go of
        std::size_t firstPending = 0;     ///< where its subfolders begin among the pending ones
        std::size_t depth = 0;            ///< steps below the scanned folder
    };

    void step();
    [[nodiscard]] bool read(OpenedFolder &folder, const Subfolder &next, std::size_t depth);

    [[nodiscard]] OpenedFolder open(const Subfolder &next);
    [[nodiscard]] OpenedFolder openPatiently(const Subfolder &next);
    void keepWithinShare();

    [[nodiscard]] bool isOpen(const Level &level) const noexcept;
    [[nodiscard]] int descriptorOf(const Level &level) const noexcept;
    [[nodiscard]] std::size_t openLevelCount() const noexcept;
    bool closeOldest();
    void closeLast();
    static void letGo(Level &level) noexcept;
    void popLevel() noexcept;

    void climb(const FileDescriptor &here, std::size_t depth);
    [[nodiscard]] bool reopenFromBelow(const FileDescriptor &here, std::size_t steps);
    [[nodiscard]] bool reopenByNames();
    [[nodiscard]] bool takeBack(FileDescriptor descriptor) noexcept;

    ScanState &m_scan;
    int m_scanRoot;
    DescriptorShare &m_share;
    FolderReader m_reader;
    std::vector<Level> m_levels;
    std::size_t m_closedLevels = 0;   ///< so many levels, from the top, were let go of
    std::vector<Subfolder> m_pending; ///< of all levels; the next one to walk is the last
    std::string m_name;               ///< the name at hand, with a zero byte after it
};

} // namespace tessaly::scan
