#include "app/controls/Look.hpp"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyle>
#include <QToolTip>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// From 1, the same, to 21, black on white; 4.5 is what small text needs.
double contrast(const QColor &one, const QColor &other)
{
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

TEST(Look, textCanBeReadOnEveryGround)
{
    for (const QColor &ground :
         {look::window, look::sidebar, look::sheet, look::group, look::evenRow, look::oddRow,
          look::selectedRow, look::selection, look::field, look::button, look::toolTip}) {
        EXPECT_GE(contrast(look::text, ground), 4.5) << qPrintable(ground.name());
    }
    for (const QColor &ground : {look::window, look::evenRow, look::oddRow, look::selectedRow}) {
        EXPECT_GE(contrast(look::dimmedText, ground), 4.5) << qPrintable(ground.name());
    }
}

TEST(Look, paletteSetsTextApartFromItsGround)
{
    const QPalette palette = lookPalette();
    struct {
        QPalette::ColorRole text;
        QPalette::ColorRole ground;
    } const pairs[]{
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},
        {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::Link, QPalette::Window},
        {QPalette::Link, QPalette::Base},
    };
    for (const auto &[text, ground] : pairs) {
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            EXPECT_GE(contrast(palette.color(group, text), palette.color(group, ground)), 4.5)
                << text << " on " << ground;
        }
    }
    EXPECT_LT(contrast(palette.color(QPalette::Disabled, QPalette::WindowText),
                       palette.color(QPalette::Disabled, QPalette::Window)),
              contrast(look::text, look::window));
}

TEST(Look, isGivenToTheWholeProgram)
{
    const double points = QApplication::font().pointSizeF();
    applyLook();
    EXPECT_EQ(QApplication::style()->name(), u"fusion"_s);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), look::window);
    EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), look::toolTip);
    applyFontAndIcon(*qApp);
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    EXPECT_EQ(QApplication::font().pointSizeF(), points);
    if (QFontDatabase::hasFamily(u"Inter"_s)) {
        EXPECT_EQ(QApplication::font().family(), u"Inter"_s);
    }
}

} // namespace
} // namespace tessaly
