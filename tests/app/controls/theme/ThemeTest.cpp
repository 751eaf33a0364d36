#include "app/controls/theme/Theme.hpp"

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

TEST(Theme, textCanBeReadOnEveryGround)
{
    for (const QColor &ground :
         {theme::window, theme::sidebar, theme::sheet, theme::group, theme::evenRow, theme::oddRow,
          theme::selectedRow, theme::selection, theme::field, theme::button, theme::toolTip}) {
        EXPECT_GE(contrast(theme::text, ground), 4.5) << qPrintable(ground.name());
    }
    for (const QColor &ground :
         {theme::window, theme::evenRow, theme::oddRow, theme::selectedRow}) {
        EXPECT_GE(contrast(theme::dimmedText, ground), 4.5) << qPrintable(ground.name());
    }
}

TEST(Theme, paletteSetsTextApartFromItsGround)
{
    const QPalette palette = themePalette();
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
              contrast(theme::text, theme::window));
}

TEST(Theme, isGivenToTheWholeProgram)
{
    const double points = QApplication::font().pointSizeF();
    applyTheme();
    EXPECT_EQ(QApplication::style()->name(), u"fusion"_s);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), theme::window);
    EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), theme::toolTip);
    applyFont(*qApp);
    EXPECT_EQ(QApplication::font().pointSizeF(), points);
    if (QFontDatabase::hasFamily(u"Inter"_s)) {
        EXPECT_EQ(QApplication::font().family(), u"Inter"_s);
    }
}

} // namespace
} // namespace tessaly
