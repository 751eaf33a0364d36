#include "app/controls/theme/NinePatch.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

/// Nine by seven pixels, each of a colour of its own.
QImage manyColors()
{
    QImage image(9, 7, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixelColor(x, y, QColor(10 + 20 * x, 10 + 30 * y, 77));
        }
    }
    return image;
}

TEST(NinePatch, imageAtItsOwnSizeIsTheSame)
{
    EXPECT_EQ(stretchNinePatch(manyColors(), 3, {9, 7}), manyColors());
}

TEST(NinePatch, cornersAreKeptPixelByPixel)
{
    const QImage image = manyColors();
    const QImage wide = stretchNinePatch(image, 3, {50, 31});
    ASSERT_EQ(wide.size(), QSize(50, 31));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(wide.pixel(x, y), image.pixel(x, y));
            EXPECT_EQ(wide.pixel(49 - x, y), image.pixel(8 - x, y));
            EXPECT_EQ(wide.pixel(x, 30 - y), image.pixel(x, 6 - y));
            EXPECT_EQ(wide.pixel(49 - x, 30 - y), image.pixel(8 - x, 6 - y));
        }
    }
}

TEST(NinePatch, edgesAreStretchedAlongThemselvesWithColoursOfTheImageOnly)
{
    const QImage image = manyColors();
    const QImage wide = stretchNinePatch(image, 3, {50, 31});
    for (int x = 3; x < 47; ++x) {
        for (int y = 0; y < 3; ++y) {
            bool found = false;
            for (int from = 3; from < 6; ++from) {
                found = found || wide.pixel(x, y) == image.pixel(from, y);
            }
            EXPECT_TRUE(found) << x << ' ' << y;
        }
    }
}

TEST(NinePatch, smallSizesLoseTheMiddleFirst)
{
    const QImage image = manyColors();
    const QImage small = stretchNinePatch(image, 3, {4, 5});
    ASSERT_EQ(small.size(), QSize(4, 5));
    EXPECT_EQ(small.pixel(0, 0), image.pixel(0, 0));
    EXPECT_EQ(small.pixel(3, 4), image.pixel(8, 6));
    EXPECT_EQ(stretchNinePatch(image, 3, {1, 1}).size(), QSize(1, 1));
}

TEST(NinePatch, imageWithMorePixelsAPointIsTakenByItsPixels)
{
    QImage image = manyColors();
    image.setDevicePixelRatio(2);
    EXPECT_EQ(stretchNinePatch(image, 3, {9, 7}), manyColors());
}

TEST(NinePatch, noPixelsGiveNoPixels)
{
    EXPECT_TRUE(stretchNinePatch({}, 3, {9, 7}).isNull());
    EXPECT_TRUE(stretchNinePatch(manyColors(), 3, {0, 7}).isNull());
    EXPECT_TRUE(stretchNinePatch(manyColors(), 3, {}).isNull());
}

} // namespace
} // namespace tessaly
