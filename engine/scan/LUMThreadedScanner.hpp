#pragma once

#include "engine/scan/FolderReader.hpp"
#include "engine/scan/ScanState.hpp"
#include "engine/scan/ScanThread.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly::scan {

/// What a scanner needs of the system; tests put other things in its place.
struct ScanSystem {
    ThreadStarter startThread = startDetachedThread;
    std::string mountInfoPath = "/proc/self/mountinfo"; ///< the kernel's list of mounts
};

/// Walks one folder and builds its tree of names and sizes: the folder's own entries on the calling
/// thread, each of its subfolders on a thread of its own. A scanner serves one scan.
///
/// What the tree holds is told at FolderReader. Mount points are nothing special, except that
/// kernel file systems (/proc and the like) are empty folders wherever they are mounted, and that
/// no scan makes the system mount anything: a place that would mount itself is an empty folder too.
/// Mounts that appear while the scan runs may be missed.
///
/// Paths:     any bytes, of any length. The root is named with the path exactly as it was given;
///            a path that is a symbolic link stands for the folder that it leads to.
/// Depth:     folders may lie as deep as the file system allows; nothing recurses.
/// Ownership: the tree belongs to whoever holds tree() or rootContainer(), also after the scanner.
/// Threads:   scanRootFolder() runs on any one thread, best not on one that must answer to a user;
///            the scanner must outlive that call, but not the scan. Every other member may be
///            called from any thread, except setRootContainer(). The tree is for reading once
///            scanInProgress() has answered false or waitUntilFinished() has returned, and not
///            before.
/// Errors:    a scan never fails. What cannot be read is an empty folder or an item of size 0, and
///            so is what memory does not suffice for.
class LUMThreadedScanner {
public:
    /// A subfolder for a thread to walk.
    struct WorkItem {
        std::shared_ptr<ScanState> scan;
        std::shared_ptr<const FileDescriptor> scanRoot; ///< the scanned folder, open
        Subfolder subfolder;                            ///< a child of the tree's root
    };

    /// No scan is in progress; the root is a folder named "Empty Item".
    LUMThreadedScanner() : LUMThreadedScanner(ScanSystem()) {}
    explicit LUMThreadedScanner(ScanSystem system);

    LUMThreadedScanner(const LUMThreadedScanner &) = delete;
    LUMThreadedScanner &operator=(const LUMThreadedScanner &) = delete;
    LUMThreadedScanner(LUMThreadedScanner &&) = delete;
    LUMThreadedScanner &operator=(LUMThreadedScanner &&) = delete;

    /// Stops nothing: a scan that is under way goes on and frees its tree when it has ended.
    ~LUMThreadedScanner() = default;

    /// Lists the folder, starts one thread for each subfolder and returns the root when that is
    /// done, while the threads go on. Where no thread is to be had, this walks the subfolder itself
    /// before it goes on. A cancel request from before is forgotten, and one made meanwhile does
    /// not stop the listing of the folder itself.
    tree::LUMFileContainer &scanRootFolder(std::string_view path);

    /// Walks one subfolder to the bottom, or until the scan is cancelled, and then takes 1 from
    /// the thread count. Always returns 0. This is what the scan's threads run.
    static std::int32_t scanFolderR(WorkItem &&workItem);

    [[nodiscard]] bool scanInProgress() const noexcept { return scanThreadCount() > 0; }

    /// How many walks are going on: 1 for the root's, and 1 for each started subfolder's.
    [[nodiscard]] std::int32_t scanThreadCount() const noexcept
    {
        return m_state->threadCount.load(std::memory_order_acquire);
    }

    /// Blocks until no scan is in progress; returns at once when none is.
    void waitUntilFinished() const noexcept;

    /// Ends the scan soon: every walk stops at the entry at hand. What was found stays in the tree.
    void cancelScanInProgress();

    /// Whether cancelScanInProgress() was called since scanRootFolder() began.
    [[nodiscard]] bool scanWasCancelled() const noexcept { return m_state->isCancelled(); }

    /// Why the scanned folder itself could not be opened, in the system's words; nothing when it
    /// could. To be asked when scanInProgress() has answered false.
    [[nodiscard]] std::optional<std::string> rootProblem() const;

    /// The root; the handle keeps the whole tree alive.
    [[nodiscard]] std::shared_ptr<tree::LUMFileContainer> rootContainer() const
    {
        return {m_state->tree, &m_state->tree->root()};
    }

    [[nodiscard]] std::shared_ptr<tree::ScanTree> tree() const { return m_state->tree; }

    /// Makes the scan go into the root of this tree, behind what is in it already.
    /// Requires: no scan has begun; tree is not null.
    void setRootContainer(std::shared_ptr<tree::ScanTree> tree);

private:
    void listRootFolder(std::string_view path);
    void walkSubfolder(const std::shared_ptr<const FileDescriptor> &scanRoot,
                       const Subfolder &subfolder);

    ScanSystem m_system;
    std::shared_ptr<ScanState> m_state = std::make_shared<ScanState>();
};

} // namespace tessaly::scan
