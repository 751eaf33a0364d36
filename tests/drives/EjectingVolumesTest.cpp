#include "drives/EjectingVolumes.hpp"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tessaly {
namespace {

constexpr auto aDay = 24h; // no test takes that long

TEST(EjectingVolumes, aVolumeIsOnItsWayFromTheRequestOn)
{
    EjectingVolumes volumes(aDay);
    const QSignalSpy changed(&volumes, &EjectingVolumes::changed);
    EXPECT_FALSE(volumes.contains("a"));
    volumes.add("a");
    EXPECT_TRUE(volumes.contains("a"));
    EXPECT_FALSE(volumes.contains("b"));
    EXPECT_EQ(changed.count(), 1);
}

TEST(EjectingVolumes, itIsForgottenAfterAWhile)
{
    EjectingVolumes volumes(1ms);
    QSignalSpy changed(&volumes, &EjectingVolumes::changed);
    volumes.add("a");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !volumes.contains("a"); }, 60'000));
    EXPECT_EQ(changed.count(), 2);
}

TEST(EjectingVolumes, itIsForgottenWhenItIsListedNoMore)
{
    EjectingVolumes volumes(aDay);
    volumes.add("a");
    volumes.add("b");
    volumes.keepOnly({"b", "c"});
    EXPECT_FALSE(volumes.contains("a"));
    EXPECT_TRUE(volumes.contains("b"));
}

TEST(EjectingVolumes, itIsForgottenWhenItIsKnownToStay)
{
    EjectingVolumes volumes(aDay);
    volumes.add("a");
    volumes.add("b");
    const QSignalSpy changed(&volumes, &EjectingVolumes::changed);
    volumes.remove("a");
    volumes.remove("c");
    EXPECT_EQ(volumes.names(), std::vector<std::string>{"b"});
    EXPECT_EQ(changed.count(), 1);
}

TEST(EjectingVolumes, theTimeOfAnEarlierRequestDoesNotEndALaterOne)
{
    // Timers of the same length end in the order of their start.
    constexpr auto timeout = 1ms;
    EjectingVolumes volumes(timeout);
    volumes.add("a");
    bool isThereBetween = false;
    QTimer::singleShot(timeout, &volumes, [&] { isThereBetween = volumes.contains("a"); });
    volumes.add("a");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !volumes.contains("a"); }, 60'000));
    EXPECT_TRUE(isThereBetween);
}

} // namespace
} // namespace tessaly
