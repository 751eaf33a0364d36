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
    /// The root walk and every started subfolder walk that has not ended. What a walk did is
    /// visible to whoever sees (acquire) that it no longer counts.
    std::atomic<std::int32_t> threadCount = 0;
    std::atomic<std::int32_t> cancelScanFlag = 0;
    std::shared_ptr<tree::ScanTree> tree = std::make_shared<tree::ScanTree>();
    DescriptorBudget budget;
    MountPointTree mounts; ///< set by the root walk before the first thread starts
    int rootError = 0; ///< why the root folder could not be opened (errno); set by the root walk

    /// Asked before every entry, so it costs no more than an ordinary read.
    [[nodiscard]] bool isCancelled() const noexcept
    {
        return cancelScanFlag.load(std::memory_order_relaxed) != 0;
    }
};

} // namespace tessaly::scan
