#include "platform/background/BackgroundWork.hpp"

#include "tests/platform/linux/WaitUntil.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <thread>

namespace tessaly {

namespace {

TEST(BackgroundWork, runsOnAnotherThreadAndPostsToThisOne)
{
    const BackgroundWork work;
    std::thread::id worker;
    std::thread::id receiver;
    bool isBack = false;
    BackgroundWork::start([&, post = work.poster()] {
        worker = std::this_thread::get_id();
        post([&] {
            receiver = std::this_thread::get_id();
            isBack = true;
        });
    });
    waitUntil([&] { return isBack; });
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_EQ(receiver, std::this_thread::get_id());
}

TEST(BackgroundWork, dropsResultsThatComeAfterItIsDestroyed)
{
    auto work = std::make_unique<BackgroundWork>();
    std::latch isGone(1);
    std::atomic<bool> hasPosted = false;
    bool isBack = false;
    BackgroundWork::start([&, post = work->poster()] {
        isGone.wait();
        post([&] { isBack = true; });
        hasPosted = true;
    });
    work.reset();
    isGone.count_down();
    waitUntil([&] { return hasPosted.load(); });
    QCoreApplication::processEvents();
    EXPECT_FALSE(isBack);
}

TEST(BackgroundWork, dropsResultsThatWerePostedAndNotCalled)
{
    auto work = std::make_unique<BackgroundWork>();
    bool isBack = false;
    work->poster()([&] { isBack = true; });
    work.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(isBack);
}

} // namespace

} // namespace tessaly
