#include "app/window/FullScreenGeometry.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(FullScreenGeometry, takesSixtyOffEachSide)
{
    EXPECT_EQ(FullScreenGeometry::contentSize({1920, 1080}), QSizeF(1800, 960));
    EXPECT_EQ(FullScreenGeometry::contentSize({1366.5, 768.25}), QSizeF(1246.5, 648.25));
}

TEST(FullScreenGeometry, putsTheTargetIntoTheMiddleOfTheScreen)
{
    EXPECT_EQ(FullScreenGeometry::targetFrame({0, 0, 1920, 1080}), QRectF(60, 60, 1800, 960));
    EXPECT_EQ(FullScreenGeometry::targetFrame({0, 0, 1367, 769}), QRectF(60, 60, 1247, 649));
}

TEST(FullScreenGeometry, measuresTheTargetFromTheScreensOwnCorner)
{
    EXPECT_EQ(FullScreenGeometry::targetFrame({-1280, 200.5, 1280, 1024}),
              QRectF(-1220, 260.5, 1160, 904));
}

TEST(FullScreenGeometry, centresByHalvesFromTheOrigin)
{
    EXPECT_EQ(FullScreenGeometry::centreFrame({1080, 700}, {1800, 960}),
              QRectF(360, 130, 1080, 700));
    EXPECT_EQ(FullScreenGeometry::centreFrame({801, 601}, {1160, 780}),
              QRectF(179.5, 89.5, 801, 601));
}

TEST(FullScreenGeometry, centresWhatIsLargerOutsideOfTheOrigin)
{
    EXPECT_EQ(FullScreenGeometry::centreFrame({2000, 1201}, {1160, 780}),
              QRectF(-420, -210.5, 2000, 1201));
}

} // namespace
} // namespace tessaly
