#include "app/controls/bars/BarGeometry.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaly {
namespace {

TEST(BarGeometry, trackRunsTenPointsAboveTheBottom)
{
    EXPECT_EQ(barGeometry({100, 20}, 0.5F).track, QLineF(7, 10, 93, 10));
    EXPECT_EQ(barGeometry({100, 32}, 0.5F).track, QLineF(7, 22, 93, 22));
}

TEST(BarGeometry, fillEndsAtItsPartOfTheWidth)
{
    EXPECT_EQ(barGeometry({100, 20}, 0.5F).fill, QLineF(7, 10, 45, 10));
}

TEST(BarGeometry, fullBarEndsWhereTheTrackEnds)
{
    const BarGeometry bar = barGeometry({240, 20}, 1.0F);
    EXPECT_EQ(bar.fill, bar.track);
}

TEST(BarGeometry, nothingIsFilledUpToHalfAPercent)
{
    for (const float percent : {0.0F, 0.004F, 0.005F, -1.0F}) {
        EXPECT_FALSE(barGeometry({100, 20}, percent).fill) << percent;
    }
    EXPECT_TRUE(barGeometry({100, 20}, std::nextafter(0.005F, 1.0F)).fill);
}

TEST(BarGeometry, notANumberFillsNothing)
{
    EXPECT_FALSE(barGeometry({100, 20}, std::numeric_limits<float>::quiet_NaN()).fill);
}

TEST(BarGeometry, smallPartEndsLeftOfItsStart)
{
    const auto fill = barGeometry({100, 20}, 0.006F).fill;
    ASSERT_TRUE(fill);
    EXPECT_EQ(fill->x1(), 7);
    EXPECT_EQ(fill->x2(), 96.0F * 0.006F - 3.0F);
    EXPECT_LT(fill->x2(), fill->x1());
}

TEST(BarGeometry, isComputedInSinglePrecision)
{
    const auto fill = barGeometry({1004, 20}, 0.1F).fill;
    ASSERT_TRUE(fill);
    EXPECT_EQ(fill->x2(), 1000.0F * 0.1F - 3.0F);
    EXPECT_NE(barGeometry({16'777'221, 20}, 1.0F).track.x2(), 16'777'214.0)
        << "a double would be exact here";
}

TEST(BarGeometry, isMirroredFromRightToLeft)
{
    const BarGeometry bar = barGeometry({100, 20}, 0.5F, Qt::RightToLeft);
    EXPECT_EQ(bar.track, QLineF(93, 10, 7, 10));
    EXPECT_EQ(bar.fill, QLineF(93, 10, 55, 10));
}

} // namespace
} // namespace tessaly
