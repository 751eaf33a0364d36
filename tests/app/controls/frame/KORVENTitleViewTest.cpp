#include "app/controls/frame/KORVENTitleView.hpp"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QSize viewSize{400, 100};

/// What the view draws over nothing, on a screen of that many pixels for each unit.
QImage drawn(KORVENTitleView &view, int scale)
{
    view.resize(viewSize);
    QImage image(viewSize * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

int greyAt(const QImage &image, int x, int y)
{
    const QColor colour = image.pixelColor(x, y);
    EXPECT_EQ(colour.red(), colour.green());
    EXPECT_EQ(colour.red(), colour.blue());
    EXPECT_EQ(colour.alpha(), 255);
    return colour.red();
}

/// The pixels that stand out from the title bar.
QRect boundsOfText(const QImage &image)
{
    constexpr int brighterThanTheBar = 100;
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).red() > brighterThanTheBar) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

/// What drawString() leaves on black, in a rectangle of that width.
QImage drawnString(const KORVENTitleView &view, const QString &text, int width)
{
    QImage image(viewSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    view.drawString(painter, text, QRectF(0, 0, width, titleBarHeight));
    return image;
}

class KORVENTitleViewTest : public testing::TestWithParam<int> {
protected:
    KORVENTitleView m_view;
};

TEST_P(KORVENTitleViewTest, isDarkestAtTopAndBottomAndLightestInTheMiddle)
{
    const int scale = GetParam();
    const QImage image = drawn(m_view, scale);
    const int height = titleBarHeight * scale;
    const int x = 60 * scale;

    // White 0.2 and 0.25 of 255 are 51 and 64; a pixel shows the value at its middle.
    EXPECT_NEAR(greyAt(image, x, 0), 51, 1);
    EXPECT_NEAR(greyAt(image, x, height / 4), 57, 1);
    EXPECT_NEAR(greyAt(image, x, height / 2 - 1), 64, 1);
    EXPECT_NEAR(greyAt(image, x, height / 2), 64, 1);
    EXPECT_NEAR(greyAt(image, x, height * 3 / 4), 57, 1);
    EXPECT_NEAR(greyAt(image, x, height - 1), 51, 1);
    for (int y = 1; y < height; ++y) {
        const int change = greyAt(image, x, y) - greyAt(image, x, y - 1);
        EXPECT_TRUE(y < height / 2 ? change >= 0 : change <= 0) << y;
    }
}

TEST_P(KORVENTitleViewTest, drawsNothingBelowTheTitleBar)
{
    const int scale = GetParam();
    const QImage image = drawn(m_view, scale);
    for (int y = titleBarHeight * scale; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ASSERT_EQ(image.pixelColor(x, y).alpha(), 0) << x << ' ' << y;
        }
    }
}

TEST_P(KORVENTitleViewTest, cutsTheUpperCornersOffAndNotTheLowerOnes)
{
    const int scale = GetParam();
    const QImage image = drawn(m_view, scale);
    const int right = image.width() - 1;
    const int bottom = titleBarHeight * scale - 1;
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(right, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(4 * scale, 0).alpha(), 255);
    EXPECT_EQ(image.pixelColor(0, 4 * scale).alpha(), 255);
    EXPECT_EQ(image.pixelColor(0, bottom).alpha(), 255);
    EXPECT_EQ(image.pixelColor(right, bottom).alpha(), 255);
}

TEST_P(KORVENTitleViewTest, fillsTheCornersOfASquareWindow)
{
    m_view.setCornerRadius(0);
    EXPECT_EQ(greyAt(drawn(m_view, GetParam()), 0, 0), 51);
}

TEST_P(KORVENTitleViewTest, writesTheNameTwentyRightOfTheMiddle)
{
    const int scale = GetParam();
    const QRect text = boundsOfText(drawn(m_view, scale));
    EXPECT_NEAR(QRectF(text).center().x(), (viewSize.width() / 2.0 + 20.0) * scale, 1.5 * scale);
    EXPECT_GT(text.width(), 30 * scale);
    EXPECT_LT(text.width(), 60 * scale);
}

TEST_P(KORVENTitleViewTest, writesTheNameALittleBelowTheMiddleAndWhole)
{
    const int scale = GetParam();
    const QRect text = boundsOfText(drawn(m_view, scale));
    const double lower = QRectF(text).center().y() - titleBarHeight * scale / 2.0;
    EXPECT_GE(lower, 0);
    EXPECT_LE(lower, 4.0 * scale);
    EXPECT_LT(text.bottom(), (titleBarHeight - 4) * scale);
}

TEST_P(KORVENTitleViewTest, writesTheNameInTwelvePointsOfTheWindow)
{
    const int scale = GetParam();
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(12 * scale);
    const QRectF expected = QFontMetricsF(font).tightBoundingRect(u"Tessaly"_s);
    const QRect text = boundsOfText(drawn(m_view, scale));
    EXPECT_NEAR(text.width(), expected.width(), 3.0 * scale);
    EXPECT_NEAR(text.height(), expected.height(), 1.0 * scale);
}

INSTANTIATE_TEST_SUITE_P(AtEachScale, KORVENTitleViewTest, testing::Values(1, 2));

TEST(KORVENTitleView, drawsNothingInTheModeOfOldReleases)
{
    KORVENTitleView view;
    EXPECT_FALSE(view.run10p7Mode());
    view.setRun10p7Mode(true);
    EXPECT_TRUE(view.run10p7Mode());

    const QImage image = drawn(view, 1);
    QImage plain(image.size(), image.format());
    plain.fill(Qt::transparent);
    QWidget widget;
    widget.resize(viewSize);
    widget.render(&plain, {}, {}, QWidget::RenderFlags());
    EXPECT_EQ(image, plain);
}

TEST(KORVENTitleView, elidesTheEndOfALongText)
{
    const KORVENTitleView view;
    const QString longText = u"Tessaly "_s.repeated(50);
    const QRect text = boundsOfText(drawnString(view, longText, 200));
    EXPECT_GE(text.left(), 20);
    EXPECT_LE(text.right(), 220);
    EXPECT_GT(text.width(), 150);
    // The beginning is what stays.
    const QImage other = drawnString(view, u"Other"_s + longText, 200);
    EXPECT_NE(drawnString(view, longText, 200), other);
    EXPECT_EQ(drawnString(view, longText, 200), drawnString(view, longText + u"Other"_s, 200));
}

TEST(KORVENTitleView, drawsInViewsOfAnySize)
{
    KORVENTitleView view;
    for (const QSize size : {QSize(1, 1), QSize(3, 200), QSize(5, 20)}) {
        view.resize(size);
        EXPECT_EQ(view.grab().size(), size);
    }
}

TEST(KORVENTitleView, writesDimmerInAWindowThatIsNotActive)
{
    KORVENTitleView view;
    const auto brightest = [&view] {
        const QImage image = drawnString(view, u"TESSALY"_s, 200);
        int most = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                most = std::max(most, image.pixelColor(x, y).red());
            }
        }
        return most;
    };
    const int inactive = brightest();
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    EXPECT_GT(brightest(), inactive + 50);
    EXPECT_GT(inactive, 100);
}

} // namespace
} // namespace tessaly
