#pragma once

#include "engine/scan/DescriptorBudget.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <functional>

namespace tessaly::scan {

/// What one walk holds of its scan's descriptor budget, and the way it opens things.
///
/// Ownership: gives everything back when it goes. The budget must outlive it.
/// Threads:   one at a time.
class DescriptorShare {
public:
    /// Holds nothing: for the root walk, which needs a few descriptors at most and must not wait.
    explicit DescriptorShare(DescriptorBudget &budget) noexcept : m_budget(budget) {}

    /// Holds a smallest share; blocks until there is one. It holds nothing when the scan was
    /// cancelled meanwhile.
    DescriptorShare(DescriptorBudget &budget, const std::atomic<std::int32_t> &cancelScanFlag)
        : m_budget(budget),
          m_count(budget.acquireMin(cancelScanFlag) ? DescriptorBudget::minShare : 0)
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
    DescriptorShare(DescriptorShare &&) = delete;
    DescriptorShare &operator=(DescriptorShare &&) = delete;

    [[nodiscard]] bool isEmpty() const noexcept { return m_count == 0; }

    /// Whether the share covers so many descriptors, if need be by asking for some more at once.
    [[nodiscard]] bool covers(int count)
    {
        if (count > m_count && m_budget.tryTake(step)) {
            m_count += step;
        }
        return count <= m_count;
    }

    /// What to do first when open() finds no descriptor: close one that can be had again and
    /// answer true, or false when there is none to close.
    void setMakeRoom(std::function<bool()> makeRoom) { m_makeRoom = std::move(makeRoom); }

    /// openat(), which in a shortage of descriptors makes room and waits for as long as that may
    /// help. On failure nothing is open and errno tells why.
    [[nodiscard]] FileDescriptor open(int folder, const char *name, int flags);

    /// Waits for others to close descriptors; see DescriptorBudget::waitForRelief().
    [[nodiscard]] bool waitForRelief()
    {
        return m_budget.waitForRelief(isEmpty() ? DescriptorBudget::Caller::holdsNone
                                                : DescriptorBudget::Caller::holdsShare);
    }
    void noteRelief() noexcept { m_budget.noteRelief(); }

private:
    static constexpr int step = 8;

    DescriptorBudget &m_budget;
    int m_count = 0;
    std::function<bool()> m_makeRoom;
};

} // namespace tessaly::scan
