#include "engine/archive/Timestamp.hpp"

#include <gtest/gtest.h>

#include <chrono>

namespace tessaly::archive {

using namespace std::chrono;

TEST(Timestamp, countsFromTheBeginningOf2001)
{
    EXPECT_EQ(Timestamp{}.systemTime(), sys_days{2001y / January / 1});
    EXPECT_EQ(Timestamp{86400}.systemTime(), sys_days{2001y / January / 2});
    EXPECT_EQ(Timestamp{-978307200}.systemTime(), sys_days{1970y / January / 1});
}

TEST(Timestamp, nowLiesBetweenTheClockBeforeAndAfter)
{
    const auto before = floor<seconds>(system_clock::now());
    const Timestamp now = Timestamp::now();
    EXPECT_GE(now.systemTime(), before);
    EXPECT_LE(now.systemTime(), system_clock::now());
}

TEST(Timestamp, aBegunSecondIsNotYetTheNext)
{
    EXPECT_EQ(Timestamp{0.999}.systemTime(), sys_days{2001y / January / 1});
    EXPECT_EQ(Timestamp{-0.001}.systemTime(), sys_days{2001y / January / 1} - 1s);
}

TEST(Timestamp, momentsFarAwayAreDrawnToTheEdge)
{
    EXPECT_EQ(Timestamp{1e300}.description(), "9999-12-31 23:59:59 +0000");
    EXPECT_EQ(Timestamp{-1e300}.systemTime(), sys_days{-9999y / January / 1});
}

TEST(Timestamp, describesItselfInUniversalTime)
{
    EXPECT_EQ(Timestamp{0}.description(), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(Timestamp{730857600.5}.description(), "2024-02-29 00:00:00 +0000");
    EXPECT_EQ(Timestamp{-31708799}.description(), "1999-12-31 00:00:01 +0000");
}

TEST(Timestamp, comparesByTime)
{
    EXPECT_LT(Timestamp{1}, Timestamp{1.5});
    EXPECT_EQ(Timestamp{2}, Timestamp{2});
}

} // namespace tessaly::archive
