#include "drives/UnmountThreads.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

using namespace std::chrono_literals;

namespace tessaly {
namespace {

TEST(UnmountThreads, nothingIsWaitedForWhenNothingRuns)
{
    EXPECT_TRUE(waitForUnmounts(0ms));
}

TEST(UnmountThreads, eachRunsOnAThreadOfItsOwnAndIsNotWaitedFor)
{
    std::promise<void> go;
    const std::shared_future<void> mayEnd = go.get_future().share();
    std::promise<std::thread::id> first;
    std::promise<std::thread::id> second;
    startUnmount([&] {
        first.set_value(std::this_thread::get_id());
        mayEnd.wait();
    });
    startUnmount([&] {
        second.set_value(std::this_thread::get_id());
        mayEnd.wait();
    });
    const std::thread::id firstThread = first.get_future().get();
    const std::thread::id secondThread = second.get_future().get();
    EXPECT_NE(firstThread, std::this_thread::get_id());
    EXPECT_NE(secondThread, std::this_thread::get_id());
    EXPECT_NE(firstThread, secondThread);

    EXPECT_FALSE(waitForUnmounts(1ms));
    go.set_value();
    EXPECT_TRUE(waitForUnmounts(1min));
}

TEST(UnmountThreads, whatAnUnmountingHoldsIsGoneBeforeItCountsAsEnded)
{
    std::atomic<bool> wentInTime = false;
    std::shared_ptr<int> held(new int, [&](const int *number) {
        wentInTime = !waitForUnmounts(0ms);
        delete number;
    });
    startUnmount([held = std::move(held)] {});
    EXPECT_TRUE(waitForUnmounts(1min));
    EXPECT_TRUE(wentInTime);
}

TEST(UnmountThreadsDeathTest, theProcessMayEndWhileOneRuns)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            startUnmount(
                [never = std::make_shared<std::promise<void>>()] { never->get_future().wait(); });
            std::exit(waitForUnmounts(1ms) ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tessaly
