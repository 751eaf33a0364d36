#include "app/controls/bars/WarningColors.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaly {
namespace {

enum Color { blue, yellow, red, another };

Color colorOf(float share)
{
    KORVENProgressBar bar;
    bar.setColorsBlue();
    const QColor before = bar.fColor();
    setWarningColors(bar, share);
    KORVENProgressBar sample;
    sample.setColorsYellow();
    if (bar.fColor() == sample.fColor()) {
        return yellow;
    }
    sample.setColorsRed();
    if (bar.fColor() == sample.fColor()) {
        return red;
    }
    return bar.fColor() == before ? blue : another;
}

TEST(WarningColors, warnOfLargeSharesAlone)
{
    EXPECT_EQ(colorOf(0.0F), blue);
    EXPECT_EQ(colorOf(0.79F), blue);
    EXPECT_EQ(colorOf(std::nextafter(0.8F, 0.0F)), blue);
    EXPECT_EQ(colorOf(0.8F), yellow);
    EXPECT_EQ(colorOf(0.85F), yellow);
    EXPECT_EQ(colorOf(0.9F), yellow) << "in single precision it is a little less than 0.9";
    EXPECT_EQ(colorOf(std::nextafter(0.9F, 1.0F)), red);
    EXPECT_EQ(colorOf(1.0F), red);
    EXPECT_EQ(colorOf(std::numeric_limits<float>::infinity()), red);
    EXPECT_EQ(colorOf(std::numeric_limits<float>::quiet_NaN()), blue);
}

} // namespace
} // namespace tessaly
