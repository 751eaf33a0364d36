#include "engine/scan/DescriptorBudget.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <algorithm>

#include <fcntl.h>
#include <sys/resource.h>

namespace tessaly::scan {

namespace {

// More would not make a scan faster, and a limit of "infinity" does not fit into an int.
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
    // The limit is used as it is and not raised: a soft limit of 1024 is there for select(), which
    // libraries in this process may call, and it would be inherited by every program started.
    const int allowed = static_cast<int>(std::min(limit.rlim_cur, maxDescriptors));
    return (allowed - openDescriptorCount()) / 2;
}

void DescriptorBudget::provide(int count)
{
    const std::lock_guard lock(m_mutex);
    m_free = std::max(count, minShare);
}

bool DescriptorBudget::acquireMinShare(const std::atomic<std::int32_t> &cancelScanFlag)
{
    std::unique_lock lock(m_mutex);
    m_shareFreed.wait(lock, [&] {
        return m_free >= minShare || cancelScanFlag.load(std::memory_order_relaxed) != 0;
    });
    if (m_free < minShare) {
        return false;
    }
    m_free -= minShare;
    ++m_shareCount;
    return true;
}

bool DescriptorBudget::tryAcquire(int count)
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
    --m_shareCount;
    // As many as there are shares: ten thousand threads may wait, and notify_all() would wake them
    // all for every walk that ends.
    for (int share = minShare; share <= m_free; share += minShare) {
        m_shareFreed.notify_one();
    }
    m_descriptorFreed.notify_all();
}

void DescriptorBudget::wakeWaiting()
{
    // With the lock: a thread that has looked at the cancel flag but does not wait yet would miss
    // the notification.
    const std::lock_guard lock(m_mutex);
    m_shareFreed.notify_all();
}

bool DescriptorBudget::waitForDescriptor(Caller caller)
{
    const int own = caller == Caller::holdsShare ? 1 : 0;
    std::unique_lock lock(m_mutex);
    m_waitingCount += own;
    // As long as a walk makes progress it will release its share sooner or later.
    const bool isWorthTrying = m_waitingCount < m_shareCount || isTimeLeft();
    if (isWorthTrying) {
        m_descriptorFreed.wait_for(lock, m_timing.retryInterval);
    }
    m_waitingCount -= own;
    return isWorthTrying;
}

bool DescriptorBudget::isTimeLeft() noexcept
{
    const Clock::time_point now = Clock::now();
    const Clock::time_point since = m_stuckSince.load(std::memory_order_relaxed);
    if (since == Clock::time_point()) {
        m_stuckSince.store(now, std::memory_order_relaxed);
        return true;
    }
    return now - since < m_timing.timeout;
}

} // namespace tessaly::scan
