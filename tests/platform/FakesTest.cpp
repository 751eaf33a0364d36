// What tests of the screens take for granted of the fakes.

#include "tests/fakes/FakeDateTexts.hpp"
#include "tests/fakes/FakeNotifier.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace tessaly {

namespace {

TEST(FakeNotifier, keepsWhatSeveralThreadsPost)
{
    FakeNotifier notifier;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&notifier] {
            for (int number = 0; number < 100; ++number) {
                notifier.post({"title", "text", Notification::Sound::complete, "origin"});
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    ASSERT_EQ(notifier.notifications().size(), 400U);
    EXPECT_EQ(notifier.notifications().back().origin, "origin");
}

TEST(FakeDateTexts, writesTimeAndStylesInUtc)
{
    const FakeDateTexts texts;
    const DateTexts::Time time(std::chrono::seconds(1795263480));
    EXPECT_EQ(texts.text(time, DateStyle::shortest, DateStyle::shortest), "2026-11-21 12:18 [1,1]");
    EXPECT_EQ(texts.text(time - std::chrono::days(100000), DateStyle::full, DateStyle::none),
              "1753-02-05 12:18 [4,0]");
    ASSERT_EQ(texts.calls().size(), 2U);
    EXPECT_EQ(texts.calls().at(0).time, time);
    EXPECT_EQ(texts.calls().at(1).date, DateStyle::full);
}

} // namespace

} // namespace tessaly
