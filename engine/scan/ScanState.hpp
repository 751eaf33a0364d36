#pragma once

#include "engine/scan/DescriptorBudget.hpp"
#include "engine/scan/MountPointTree.hpp"
#include "engine/tree/ScanTree.hpp"

#include <atomic>
#include <cstdint>
#include <memory>

namespace tessaly::scan {

/// What the threads of one scan share. Each of them holds it, so that a scanner may be destroyed
/// while its scan still runs.
struct ScanState {
    explicit ScanState(DescriptorBudget::Timing timing = {}) : budget(timing) {}

    /// The root walk and every started subfolder walk that has not ended. A thread that reads
    /// (acquire) that a walk is no longer counted sees all that the walk wrote.
    std::atomic<std::int32_t> threadCount = 0;
    std::atomic<std::int32_t> cancelScanFlag = 0;
    /// The pointer is set before the scan; each folder is written by one walk.
    std::shared_ptr<tree::ScanTree> tree = std::make_shared<tree::ScanTree>();
    DescriptorBudget budget; ///< has a lock of its own
    MountPointTree mounts;   ///< written by the root walk before it starts the first thread
    /// Why the root folder could not be opened (errno); written by the root walk, read after it.
    int rootError = 0;

    /// Called for every entry, so it costs no more than an ordinary read. Relaxed will do: nothing
    /// is handed over with the flag.
    [[nodiscard]] bool isCancelled() const noexcept
    {
        return cancelScanFlag.load(std::memory_order_relaxed) != 0;
    }
};

} // namespace tessaly::scan
