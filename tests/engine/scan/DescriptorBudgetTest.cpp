#include "engine/scan/DescriptorBudget.hpp"

#include "engine/scan/DescriptorShare.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <fcntl.h>

namespace tessaly::scan {

namespace {

constexpr int minShare = DescriptorBudget::minShare;

/// No time passes in these tests: a try is over at once, and so is the timeout.
constexpr DescriptorBudget::Timing noTime{std::chrono::milliseconds(0),
                                          std::chrono::milliseconds(0)};

} // namespace

TEST(DescriptorBudget, alwaysHasRoomForOneWalk)
{
    const std::atomic<std::int32_t> notCancelled = 0;
    for (const int count : {-5, 0, 1, minShare}) {
        DescriptorBudget budget;
        budget.provide(count);
        const DescriptorShare share(budget, notCancelled);
        EXPECT_FALSE(share.isEmpty());
        EXPECT_FALSE(budget.tryAcquire(1));
    }
}

TEST(DescriptorBudget, givesMoreOnlyAsLongAsThereIsSome)
{
    const std::atomic<std::int32_t> notCancelled = 0;
    DescriptorBudget budget;
    budget.provide(minShare + 10);
    {
        DescriptorShare share(budget, notCancelled);
        EXPECT_TRUE(share.covers(minShare));
        EXPECT_TRUE(share.covers(minShare + 1));
        EXPECT_TRUE(share.covers(minShare + 8));
        EXPECT_FALSE(share.covers(minShare + 9));
        EXPECT_TRUE(budget.tryAcquire(2));
        EXPECT_FALSE(budget.tryAcquire(1));
    }
    EXPECT_TRUE(budget.tryAcquire(minShare + 8));
    EXPECT_FALSE(budget.tryAcquire(1));
}

TEST(DescriptorBudget, givesEveryWaitingWalkItsTurn)
{
    const std::atomic<std::int32_t> notCancelled = 0;
    DescriptorBudget budget;
    budget.provide(3 * minShare + 1);
    std::atomic<int> holding = 0;
    std::atomic<int> had = 0;
    std::vector<std::thread> walks;
    for (int i = 0; i < 50; ++i) {
        walks.emplace_back([&] {
            for (int turn = 0; turn < 100; ++turn) {
                DescriptorShare share(budget, notCancelled);
                EXPECT_LE(++holding, 3);
                static_cast<void>(share.covers(minShare + 1));
                ++had;
                --holding;
            }
        });
    }
    for (std::thread &walk : walks) {
        walk.join();
    }

    EXPECT_EQ(had, 50 * 100);
    EXPECT_TRUE(budget.tryAcquire(3 * minShare + 1));
}

TEST(DescriptorBudget, releasesWaitingWalksWithoutAShareWhenTheScanIsCancelled)
{
    std::atomic<std::int32_t> cancelled = 0;
    DescriptorBudget budget;
    budget.provide(minShare);
    const DescriptorShare first(budget, cancelled);
    std::vector<std::thread> waiting;
    for (int i = 0; i < 10; ++i) {
        waiting.emplace_back([&] {
            const DescriptorShare share(budget, cancelled);
            EXPECT_TRUE(share.isEmpty());
        });
    }

    cancelled = 1;
    budget.wakeWaiting();
    for (std::thread &thread : waiting) {
        thread.join();
    }
}

TEST(DescriptorBudget, timesOutOnlyWhenNoOtherWalkMakesProgress)
{
    const std::atomic<std::int32_t> notCancelled = 0;
    DescriptorBudget budget(noTime);
    budget.provide(2 * minShare);
    DescriptorShare share(budget, notCancelled);
    {
        const DescriptorShare other(budget, notCancelled);
        for (int i = 0; i < 20; ++i) {
            ASSERT_TRUE(share.waitForDescriptor());
        }
    }
    EXPECT_TRUE(share.waitForDescriptor()) << "the time runs from the first shortage on";
    EXPECT_FALSE(share.waitForDescriptor());
    EXPECT_FALSE(share.waitForDescriptor());

    budget.noteOpened();
    EXPECT_TRUE(share.waitForDescriptor());
}

TEST(DescriptorBudget, isHalfOfWhatTheProcessMayStillOpen)
{
    const DescriptorLimit limit(100);
    const int before = DescriptorBudget::halfOfFreeDescriptors();
    EXPECT_LT(before, 50);
    EXPECT_GT(before, 20);
    std::vector<FileDescriptor> used;
    for (int i = 0; i < 20; ++i) {
        used.emplace_back(open("/", O_PATH));
    }

    EXPECT_EQ(DescriptorBudget::halfOfFreeDescriptors(), before - 10);
}

TEST(DescriptorBudget, triesUntilTheTimeoutWhenAllWalksWait)
{
    const std::atomic<std::int32_t> notCancelled = 0;
    DescriptorBudget budget({std::chrono::hours(1), std::chrono::milliseconds(0)});
    budget.provide(minShare);
    DescriptorShare share(budget, notCancelled);

    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(share.waitForDescriptor());
    }
}

TEST(DescriptorShare, makesRoomAndTriesAgainInAShortage)
{
    const TemporaryFolder folder;
    folder.folder("s");
    DescriptorBudget budget;
    DescriptorShare share(budget);
    const DescriptorLimit limit(static_cast<unsigned>(openDescriptorCount()) + 5);
    std::vector<FileDescriptor> used;
    do {
        used.emplace_back(open("/", O_PATH));
    } while (used.back().isOpen());
    used.pop_back();
    share.setMakeRoom([&] {
        used.pop_back();
        return true;
    });
    const std::size_t before = used.size();

    EXPECT_TRUE(share.open(folder.descriptor(), "s", O_RDONLY).isOpen());
    EXPECT_EQ(used.size(), before - 1);
}

TEST(DescriptorShare, saysWhyNothingWasOpened)
{
    DescriptorBudget budget;
    DescriptorShare share(budget);

    EXPECT_FALSE(share.open(AT_FDCWD, "/nowhere", O_RDONLY).isOpen());
    EXPECT_EQ(errno, ENOENT);
}

} // namespace tessaly::scan
