#include "engine/scan/LUMThreadedScanner.hpp"

#include "engine/scan/FolderWalk.hpp"

#include <cassert>
#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace tessaly::scan {

namespace {

/// Subtracts 1 from the thread count when it is destroyed.
class CountedWalk {
public:
    explicit CountedWalk(std::shared_ptr<ScanState> scan) noexcept : m_scan(std::move(scan)) {}
    ~CountedWalk()
    {
        // Release: what this walk wrote to the tree is visible to the thread that sees the count
        // fall to 0. Only then is anybody woken: nobody waits for another number.
        if (m_scan->threadCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            m_scan->threadCount.notify_all();
        }
    }
    CountedWalk(const CountedWalk &) = delete;
    CountedWalk &operator=(const CountedWalk &) = delete;

private:
    std::shared_ptr<ScanState> m_scan;
};

/// openFolderPath(), which waits in a shortage of descriptors. errno says why nothing is open.
OpenedFolder openRootFolder(std::string_view path, DescriptorShare &share)
{
    for (;;) {
        OpenedFolder folder = openFolderPath(path);
        const int error = errno;
        if (folder.descriptor.isOpen() || !isDescriptorShortage(error) ||
            !share.waitForDescriptor()) {
            errno = error;
            return folder;
        }
    }
}

} // namespace

LUMThreadedScanner::LUMThreadedScanner(ScanSystem system) : m_system(std::move(system)) {}

tree::LUMFileContainer &LUMThreadedScanner::scanRootFolder(std::string_view path)
{
    ScanState &scan = *m_state;
    assert(scan.threadCount.load() == 0 && "a scanner serves one scan");
    scan.cancelScanFlag.store(0);
    scan.threadCount.fetch_add(1);
    const CountedWalk rootWalk(m_state);
    try {
        listRootFolder(path);
    } catch (const std::bad_alloc &) {
        // What was recorded is consistent, and its threads are running.
    }
    return scan.tree->root();
}

void LUMThreadedScanner::listRootFolder(std::string_view path)
{
    ScanState &scan = *m_state;
    const tree::ScanTree::ArenaLease arena = scan.tree->leaseArena();
    tree::LUMFileContainer &root = scan.tree->root();
    root.setItemName(*arena, path);
    root.setItemSize(0);
    root.setParentContainer(nullptr);

    scan.budget.provide(DescriptorBudget::halfOfFreeDescriptors());
    DescriptorShare share(scan.budget);
    OpenedFolder folder = openRootFolder(path, share);
    if (!folder.descriptor.isOpen()) {
        scan.rootError = errno; // 0 for a kernel file system
        return;
    }
    scan.mounts = MountPointTree::below(folder.descriptor.number(), m_system.mountInfoPath);

    const auto scanRoot = std::make_shared<const FileDescriptor>(std::move(folder.descriptor));
    FolderReader reader(scan.mounts, *arena, share);
    reader.read(
        scanRoot->number(), folder.kind, {&root, scan.mounts.top()}, [] { return false; },
        [&](const Subfolder &subfolder) { walkSubfolder(scanRoot, subfolder); });
}

/// Walks a subfolder on a thread of its own, or on this one when none can be started.
void LUMThreadedScanner::walkSubfolder(const std::shared_ptr<const FileDescriptor> &scanRoot,
                                       const Subfolder &subfolder)
{
    // Before the thread starts: it may end before this one goes on, and the count must not fall to
    // 0 while there are subfolders left.
    m_state->threadCount.fetch_add(1);
    try {
        auto workItem = std::make_shared<WorkItem>(WorkItem{m_state, scanRoot, subfolder});
        if (m_system.startThread([workItem] { scanFolderR(std::move(*workItem)); })) {
            return;
        }
    } catch (const std::bad_alloc &) {
        // As when no thread can be started.
    }
    scanFolderR({m_state, scanRoot, subfolder});
}

std::int32_t LUMThreadedScanner::scanFolderR(WorkItem &&workItem)
{
    const CountedWalk counted(workItem.scan);
    const WorkItem item = std::move(workItem); // destroyed before the count falls
    ScanState &scan = *item.scan;
    try {
        DescriptorShare share(scan.budget, scan.cancelScanFlag);
        if (!share.isEmpty()) {
            const tree::ScanTree::ArenaLease arena = scan.tree->leaseArena();
            FolderWalk(scan, item.scanRoot->number(), *arena, share).walk(item.subfolder);
        }
    } catch (const std::bad_alloc &) {
        // What was recorded is consistent; the rest of the subfolder stays empty.
    }
    return 0;
}

std::optional<std::string> LUMThreadedScanner::rootProblem() const
{
    const int error = m_state->rootError;
    return error != 0 ? std::optional(std::generic_category().message(error)) : std::nullopt;
}

void LUMThreadedScanner::waitUntilFinished() const noexcept
{
    const std::atomic<std::int32_t> &count = m_state->threadCount;
    for (std::int32_t now = count.load(std::memory_order_acquire); now > 0;
         now = count.load(std::memory_order_acquire)) {
        count.wait(now, std::memory_order_acquire);
    }
}

void LUMThreadedScanner::cancelScanInProgress()
{
    // The flag first: a thread that waits for descriptors looks at it when it is woken.
    m_state->cancelScanFlag.store(1);
    m_state->budget.wakeWaiting();
}

void LUMThreadedScanner::setRootContainer(std::shared_ptr<tree::ScanTree> tree)
{
    assert(tree != nullptr);
    assert(!scanInProgress());
    m_state->tree = std::move(tree);
}

} // namespace tessaly::scan
