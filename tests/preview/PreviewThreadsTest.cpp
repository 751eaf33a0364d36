#include "preview/PreviewThreads.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

using Lane = PreviewThreads::Lane;

TEST(PreviewThreads, aJobThatTakesLongLeavesRoomForTheNextOne)
{
    std::promise<void> mayEnd;
    PreviewThreads threads;
    threads.post(Lane::files, {}, [ending = mayEnd.get_future().share()] { ending.wait(); });
    std::promise<void> next;
    threads.post(Lane::files, {}, [&next] { next.set_value(); });
    next.get_future().wait();
    mayEnd.set_value();
}

TEST(PreviewThreads, pagesStayOnOneThreadAndInOrder)
{
    PreviewThreads threads;
    std::vector<int> order;
    std::vector<std::thread::id> ids;
    std::promise<void> done;
    for (int i = 0; i < 5; ++i) {
        threads.post(Lane::pages, {}, [&, i] {
            order.push_back(i);
            ids.push_back(std::this_thread::get_id());
            if (i == 4) {
                done.set_value();
            }
        });
    }
    done.get_future().wait();
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ(ids, std::vector<std::thread::id>(5, ids.front()));
    EXPECT_NE(ids.front(), std::this_thread::get_id());
}

TEST(PreviewThreads, aStoppedJobIsLeftOut)
{
    PreviewThreads threads;
    std::stop_source stop;
    stop.request_stop();
    bool hasRun = false;
    threads.post(Lane::pages, stop, [&hasRun] { hasRun = true; });
    std::promise<void> next;
    threads.post(Lane::pages, {}, [&next] { next.set_value(); });
    next.get_future().wait();
    EXPECT_FALSE(hasRun);
}

TEST(PreviewThreads, stopsWhatRunsWhenItIsDestroyed)
{
    std::mutex mutex;
    std::condition_variable_any changed;
    bool hasEnded = false;
    std::promise<void> begun;
    {
        PreviewThreads threads;
        const std::stop_source stop;
        threads.post(Lane::files, stop, [&, token = stop.get_token()] {
            begun.set_value();
            std::unique_lock lock(mutex);
            changed.wait(lock, token, [] { return false; });
            hasEnded = true;
        });
        begun.get_future().wait();
    }
    EXPECT_TRUE(hasEnded);
}

TEST(PreviewThreads, doesNotWaitForEverForAJobThatDoesNotStop)
{
    const auto mayEnd = std::make_shared<std::promise<void>>();
    const auto ended = std::make_shared<std::promise<void>>();
    auto begun = std::make_shared<std::promise<void>>();
    {
        PreviewThreads threads(std::chrono::milliseconds(1));
        threads.post(Lane::files, {}, [begun, ended, ending = mayEnd->get_future().share()] {
            begun->set_value();
            ending.wait();
            ended->set_value();
        });
        begun->get_future().wait();
    }
    mayEnd->set_value(); // is reached only if the job was left alone
    ended->get_future().wait();
}

} // namespace
} // namespace tessaly
