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

/// What a scanner uses of the system; tests replace it.
struct ScanSystem {
    ThreadStarter startThread = startDetachedThread;
    std::string mountInfoPath = "/proc/self/mountinfo"; ///< the kernel's list of mounts
    DescriptorBudget::Timing descriptorTiming = {};
};

/// Walks one folder and builds its tree of names and sizes: the folder's own entries on the calling
/// thread, each of its subfolders on a thread of its own. A scanner serves one scan.
///
/// What the tree holds: see FolderReader. Mount points are scanned like other folders, except that
/// kernel file systems (/proc and the like) are empty folders wherever they are mounted, and that a
/// scan triggers no automount: such a folder is empty, too. Mounts that appear while the scan runs
/// may be missed.
///
/// Paths:     any bytes, of any length. The root is named with the path exactly as it was given;
///            a path that is a symbolic link stands for the folder that it leads to.
/// Depth:     any that the file system allows; nothing recurses.
/// Ownership: the tree is shared by the holders of tree() and rootContainer(), and may outlive the
///            scanner.
/// Threads:   scanRootFolder() may run on any thread, but blocks it; the scanner must outlive that
///            call, but not the scan. Every other member may be called from any thread, except
///            setRootContainer(). The tree may be read when scanInProgress() has returned false or
///            waitUntilFinished() has returned, and not before.
/// Errors:    a scan never fails. What cannot be read, or does not fit into memory, is an empty
///            folder or an item of size 0.
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

    /// Does not stop a running scan, which frees its tree when it ends.
    ~LUMThreadedScanner() = default;

    /// Lists the folder, starts one thread for each subfolder and returns the root; the threads may
    /// still run then. When no thread can be started, the calling one walks the subfolder. An
    /// earlier cancel request is forgotten; one made during the call does not stop the listing of
    /// the scanned folder itself.
    tree::LUMFileContainer &scanRootFolder(std::string_view path);

    /// Walks one subfolder to the bottom, or until the scan is cancelled, and then subtracts 1 from
    /// the thread count. Always returns 0. This is what the scan's threads run.
    static std::int32_t scanFolderR(WorkItem &&workItem);

    /// Required interface: whether any walk is running. waitUntilFinished() does not burn a core.
    [[nodiscard]] bool scanInProgress() const noexcept { return scanThreadCount() > 0; }

    /// Required interface: the number of running walks, 1 for the root's and 1 for each
    /// subfolder's.
    [[nodiscard]] std::int32_t scanThreadCount() const noexcept
    {
        return m_state->threadCount.load(std::memory_order_acquire);
    }

    /// Blocks until no scan is in progress; returns at once when none is.
    void waitUntilFinished() const noexcept;

    /// Ends the scan soon: every walk stops at its current entry. What was found stays in the tree.
    void cancelScanInProgress();

    /// Whether cancelScanInProgress() was called since scanRootFolder() began.
    [[nodiscard]] bool scanWasCancelled() const noexcept { return m_state->isCancelled(); }

    /// Why the scanned folder itself could not be opened, in the system's words; nothing when it
    /// could. Requires: the scan has ended.
    [[nodiscard]] std::optional<std::string> rootProblem() const;

    /// Required interface: the root, as a handle that keeps the whole tree alive.
    [[nodiscard]] std::shared_ptr<tree::LUMFileContainer> rootContainer() const
    {
        return {m_state->tree, &m_state->tree->root()};
    }

    [[nodiscard]] std::shared_ptr<tree::ScanTree> tree() const { return m_state->tree; }

    /// Required interface: the scan appends to the root of this tree, after what it already holds.
    /// Requires: no scan has begun; tree is not null.
    void setRootContainer(std::shared_ptr<tree::ScanTree> tree);

private:
    void listRootFolder(std::string_view path);
    void walkSubfolder(const std::shared_ptr<const FileDescriptor> &scanRoot,
                       const Subfolder &subfolder);

    ScanSystem m_system;
    /// Set once, so it needs no lock; what it points to says how its members are shared.
    const std::shared_ptr<ScanState> m_state =
        std::make_shared<ScanState>(m_system.descriptorTiming);
};

} // namespace tessaly::scan
