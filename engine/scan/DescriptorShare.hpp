#pragma once

#include "engine/scan/DescriptorBudget.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <functional>

namespace tessaly::scan {

/// What one walk holds of its scan's descriptor budget, and how it opens files and folders.
///
/// Ownership: the destructor releases everything. The budget must outlive it.
/// Threads:   one at a time.
class DescriptorShare {
public:
    /// Holds nothing: for the root walk, which needs only a few descriptors and must not wait.
    explicit DescriptorShare(DescriptorBudget &budget) noexcept : m_budget(budget) {}

    /// Holds a minimum share; blocks until one is free. Empty when the scan was cancelled
    /// meanwhile.
    DescriptorShare(DescriptorBudget &budget, const std::atomic<std::int32_t> &cancelScanFlag)
        : m_budget(budget),
          m_count(budget.acquireMinShare(cancelScanFlag) ? DescriptorBudget::minShare : 0)
    {
    }

    ~DescriptorShare()
    {
        if (m_count > 0) {
            m_budget.release(m_count);
        }
    }
    DescriptorShare(const DescriptorShare &) = delete;
    DescriptorShare &operator=(const DescriptorShare &) = delete;

    [[nodiscard]] bool isEmpty() const noexcept { return m_count == 0; }

    /// Whether the share covers `count` descriptors; tries to enlarge it if not.
    [[nodiscard]] bool covers(int count)
    {
        if (count > m_count && m_budget.tryAcquire(step)) {
            m_count += step;
        }
        return count <= m_count;
    }

    /// Sets what open() calls first in a shortage of descriptors: it closes one that can be opened
    /// again later and returns true, or returns false when there is none.
    void setMakeRoom(std::function<bool()> makeRoom) { m_makeRoom = std::move(makeRoom); }

    /// openat(), which in a shortage of descriptors closes others of this walk and waits for those
    /// of the others, until the budget says to give up. On failure nothing is open and errno says
    /// why.
    [[nodiscard]] FileDescriptor open(int folder, const char *name, int flags);

    /// See DescriptorBudget::waitForDescriptor().
    [[nodiscard]] bool waitForDescriptor()
    {
        return m_budget.waitForDescriptor(isEmpty() ? DescriptorBudget::Caller::holdsNone
                                                    : DescriptorBudget::Caller::holdsShare);
    }
    void noteOpened() noexcept { m_budget.noteOpened(); }

private:
    static constexpr int step = 8; ///< not one by one: each takes the budget's lock

    DescriptorBudget &m_budget;
    int m_count = 0;
    std::function<bool()> m_makeRoom;
};

} // namespace tessaly::scan
