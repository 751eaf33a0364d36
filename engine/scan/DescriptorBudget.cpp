#include "engine/scan/DescriptorBudget.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <algorithm>

#include <fcntl.h>
#include <sys/resource.h>

namespace tessaly::scan {

namespace {

constexpr std::chrono::milliseconds reliefWait(5);
constexpr rlim_t maxDescriptors = 65536;

int openDescriptorCount()
{
    const FileDescriptor folder(::open("/proc/self/fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) {
        return 0;
    }
    DirectoryListing listing;
    listing.open(folder.number());
    int count = 0;
    while (listing.next() != nullptr) {
        ++count;
    }
    return count;
}

} // namespace

int DescriptorBudget::halfOfFreeDescriptors()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return minShare;
    }
    const int allowed = static_cast<int>(std::min(limit.rlim_cur, maxDescriptors));
    return (allowed - openDescriptorCount()) / 2;
}

void DescriptorBudget::provide(int count)
{
    const std::lock_guard lock(m_mutex);
    m_free = std::max(count, minShare);
}

bool DescriptorBudget::acquireMin(const std::atomic<std::int32_t> &cancelScanFlag)
{
    std::unique_lock lock(m_mutex);
    m_shareFree.wait(lock, [&] {
        return m_free >= minShare || cancelScanFlag.load(std::memory_order_relaxed) != 0;
    });
    if (m_free < minShare) {
        return false;
    }
    m_free -= minShare;
    ++m_shares;
    return true;
}

bool DescriptorBudget::tryTake(int count)
{
    const std::lock_guard lock(m_mutex);
    if (m_free < count) {
        return false;
    }
    m_free -= count;
    return true;
}

void DescriptorBudget::release(int count)
{
    const std::lock_guard lock(m_mutex);
    m_free += count;
    --m_shares;
    // One by one: of ten thousand waiting threads few can go on.
    for (int share = minShare; share <= m_free; share += minShare) {
        m_shareFree.notify_one();
    }
    m_relief.notify_all();
}

void DescriptorBudget::wakeWaiting()
{
    const std::lock_guard lock(m_mutex);
    m_shareFree.notify_all();
}

bool DescriptorBudget::waitForRelief(Caller caller)
{
    const int own = caller == Caller::holdsShare ? 1 : 0;
    std::unique_lock lock(m_mutex);
    m_stuck += own;
    const bool othersGetOn = m_stuck < m_shares;
    const bool isWorthTrying = othersGetOn || isPatienceLeft();
    if (isWorthTrying) {
        m_relief.wait_for(lock, reliefWait);
    }
    m_stuck -= own;
    return isWorthTrying;
}

bool DescriptorBudget::isPatienceLeft() noexcept
{
    const Clock::time_point now = Clock::now();
    const Clock::time_point since = m_stuckSince.load(std::memory_order_relaxed);
    if (since == Clock::time_point()) {
        m_stuckSince.store(now, std::memory_order_relaxed);
        return true;
    }
    return now - since < m_timeout;
}

} // namespace tessaly::scan
