#include "app/controls/bars/KORVENProgressBar.hpp"

#include "tests/app/controls/Pictures.hpp"

#include <QAccessible>
#include <QLocale>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// White at 0.8 over black.
const QColor trackColor(204, 204, 204);

class KORVENProgressBarTest : public testing::Test {
protected:
    KORVENProgressBarTest()
    {
        m_bar.resize(100, 20);
        m_bar.setColorsRed();
    }

    /// At a place in points.
    QColor colorAt(double x, double y, double scale = 1)
    {
        return pictureOf(m_bar, scale).pixelColor((QPointF(x, y) * scale).toPoint());
    }

    KORVENProgressBar m_bar;
};

TEST_F(KORVENProgressBarTest, isHalfFullAtFirst)
{
    EXPECT_EQ(KORVENProgressBar().barPercent(), 0.5F);
    EXPECT_FALSE(KORVENProgressBar().fColor().isValid());
}

TEST_F(KORVENProgressBarTest, settersGiveBothColours)
{
    struct {
        void (KORVENProgressBar::*set)();
        QColor color;
    } const cases[]{
        {&KORVENProgressBar::setColorsBlue, QColor::fromRgbF(0.011F, 0.356F, 1.0F, 0.75F)},
        {&KORVENProgressBar::setColorsGreen, QColor::fromRgbF(0.011F, 0.992F, 0.011F, 0.95F)},
        {&KORVENProgressBar::setColorsOrange, QColor::fromRgbF(1.0F, 0.792F, 0.019F, 1.0F)},
        {&KORVENProgressBar::setColorsYellow, QColor(255, 255, 0)},
        {&KORVENProgressBar::setColorsRed, QColor(255, 0, 0)},
    };
    for (const auto &[set, color] : cases) {
        m_bar.setBColor({});
        (m_bar.*set)();
        EXPECT_EQ(m_bar.fColor(), color);
        EXPECT_EQ(m_bar.bColor(), QColor::fromRgbF(0.9294F, 0.9294F, 0.9294F));
    }
}

TEST_F(KORVENProgressBarTest, drawsTheTrackAndTheFillWithTheirCaps)
{
    for (const double scale : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(scale);
        EXPECT_EQ(colorAt(1, 10, scale), Qt::black);
        EXPECT_EQ(colorAt(2, 10, scale), Qt::red);
        EXPECT_EQ(colorAt(49, 10, scale), Qt::red);
        EXPECT_TRUE(looksLike(colorAt(50, 10, scale), trackColor));
        EXPECT_TRUE(looksLike(colorAt(97, 10, scale), trackColor));
        EXPECT_EQ(colorAt(98, 10, scale), Qt::black);
    }
}

TEST_F(KORVENProgressBarTest, isTenPointsHighWithSharpEdges)
{
    for (const double scale : {1.0, 2.0}) {
        SCOPED_TRACE(scale);
        const double pixel = 1 / scale;
        EXPECT_EQ(colorAt(20, 5 - pixel, scale), Qt::black);
        EXPECT_EQ(colorAt(20, 5, scale), Qt::red);
        EXPECT_EQ(colorAt(20, 15 - pixel, scale), Qt::red);
        EXPECT_EQ(colorAt(20, 15, scale), Qt::black);
    }
}

TEST_F(KORVENProgressBarTest, fillLetsTheTrackShineThrough)
{
    m_bar.setFColor(QColor(0, 0, 255, 128));
    EXPECT_TRUE(looksLike(colorAt(20, 10), QColor(102, 102, 230)));
}

TEST_F(KORVENProgressBarTest, smallPartShowsItsCaps)
{
    m_bar.setBarPercent(0.006F);
    EXPECT_EQ(colorAt(0, 10), Qt::red);
    EXPECT_EQ(colorAt(11, 10), Qt::red);
    EXPECT_TRUE(looksLike(colorAt(12, 10), trackColor));
}

TEST_F(KORVENProgressBarTest, partThatEndsWhereItStartsIsASquare)
{
    m_bar.resize(204, 20);
    m_bar.setBarPercent(0.05F); // 200 * 0.05 - 3 = 7
    EXPECT_EQ(colorAt(2, 10), Qt::red);
    EXPECT_EQ(colorAt(11, 10), Qt::red);
    EXPECT_TRUE(looksLike(colorAt(12, 10), trackColor));
}

TEST_F(KORVENProgressBarTest, showsOnlyTheTrackWhenNothingIsToFill)
{
    for (const float percent : {0.0F, 0.005F, -3.0F, std::numeric_limits<float>::quiet_NaN()}) {
        SCOPED_TRACE(percent);
        m_bar.setBarPercent(percent);
        EXPECT_TRUE(looksLike(colorAt(4, 10), trackColor));
        EXPECT_TRUE(looksLike(colorAt(20, 10), trackColor));
    }
}

TEST_F(KORVENProgressBarTest, showsOnlyTheTrackWithoutAColour)
{
    m_bar.setFColor({});
    EXPECT_TRUE(looksLike(colorAt(20, 10), trackColor));
}

TEST_F(KORVENProgressBarTest, moreThanAllFillsTheWidget)
{
    for (const float percent : {2.0F, 1e30F, std::numeric_limits<float>::infinity()}) {
        SCOPED_TRACE(percent);
        m_bar.setBarPercent(percent);
        EXPECT_EQ(colorAt(50, 10), Qt::red);
        EXPECT_EQ(colorAt(97, 10), Qt::red);
    }
}

TEST_F(KORVENProgressBarTest, fillsFromTheRightInARightToLeftLayout)
{
    m_bar.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(colorAt(97, 10), Qt::red);
    EXPECT_EQ(colorAt(50, 10), Qt::red);
    EXPECT_TRUE(looksLike(colorAt(49, 10), trackColor));
}

TEST_F(KORVENProgressBarTest, hasItsPercentageForAssistiveTechnology)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&m_bar);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::ProgressBar);
    QAccessibleValueInterface *value = accessible->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue(), 0);
    EXPECT_EQ(value->maximumValue(), 100);

    struct {
        float percent;
        int value;
    } const cases[]{
        {0.0F, 0},   {0.456F, 46}, {1.0F, 100},
        {7.0F, 100}, {-1.0F, 0},   {std::numeric_limits<float>::quiet_NaN(), 0},
    };
    for (const auto &expected : cases) {
        m_bar.setBarPercent(expected.percent);
        EXPECT_EQ(value->currentValue(), expected.value) << expected.percent;
        EXPECT_EQ(accessible->text(QAccessible::Value),
                  QLocale().toString(expected.value) + QLocale().percent());
    }
}

} // namespace
} // namespace tessaly
