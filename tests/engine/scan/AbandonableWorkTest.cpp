#include "engine/scan/AbandonableWork.hpp"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace tessaly::scan {
namespace {

constexpr std::chrono::hours forever{1};

TEST(AbandonableWork, runsOnAThreadOfItsOwnUntilItHasEnded)
{
    AbandonableWork work(forever);
    std::thread::id thread;
    EXPECT_TRUE(work.run([&] { thread = std::this_thread::get_id(); }));
    EXPECT_NE(thread, std::thread::id());
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_TRUE(work.run([] {})) << "it may be used again";
}

TEST(AbandonableWork, isLeftBehindWhenTheCallerGivesUp)
{
    const auto hangs = std::make_shared<std::promise<void>>();
    const auto ended = std::make_shared<std::promise<void>>();
    {
        AbandonableWork work(0ms);
        std::promise<void> started;
        std::thread canceller([&] {
            started.get_future().wait();
            work.giveUp();
        });
        EXPECT_FALSE(work.run([&started, hangs, ended] {
            started.set_value();
            hangs->get_future().wait();
            ended->set_value();
        }));
        canceller.join();
    }
    hangs->set_value(); // it ends after everything that it was started with
    ended->get_future().wait();
}

TEST(AbandonableWork, mayEndWithinTheTimeout)
{
    AbandonableWork work(forever);
    std::promise<void> hangs;
    std::promise<void> started;
    std::thread canceller([&] {
        started.get_future().wait();
        work.giveUp();
        hangs.set_value();
    });
    EXPECT_TRUE(work.run([&] {
        started.set_value();
        hangs.get_future().wait();
    }));
    canceller.join();
}

TEST(AbandonableWork, isNotStartedAfterTheCallerHasGivenUp)
{
    AbandonableWork work(forever);
    work.giveUp();
    bool hasRun = false;
    EXPECT_FALSE(work.run([&] { hasRun = true; }));
    EXPECT_FALSE(hasRun);
}

TEST(AbandonableWork, runsOnTheCallersThreadWhenThereIsNoOther)
{
    AbandonableWork work(forever, [](const std::function<void()> & /*work*/) { return false; });
    std::thread::id thread;
    EXPECT_TRUE(work.run([&] { thread = std::this_thread::get_id(); }));
    EXPECT_EQ(thread, std::this_thread::get_id());
}

} // namespace
} // namespace tessaly::scan
