#include "app/controls/theme/Theme.hpp"

#include "resources/Artwork.hpp"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QStyleFactory>
#include <QToolTip>
#include <QWidget>

namespace tessaly {

using namespace Qt::StringLiterals;

QPalette themePalette()
{
    // The shades of bevels follow from the first two.
    QPalette palette(theme::button, theme::window);
    palette.setColor(QPalette::WindowText, theme::text);
    palette.setColor(QPalette::Base, theme::field);
    palette.setColor(QPalette::AlternateBase, theme::sidebar);
    palette.setColor(QPalette::Text, theme::text);
    palette.setColor(QPalette::ButtonText, theme::text);
    palette.setColor(QPalette::BrightText, theme::text);
    palette.setColor(QPalette::PlaceholderText, theme::dimmedText.darker(125));
    palette.setColor(QPalette::Highlight, theme::selection);
    palette.setColor(QPalette::HighlightedText, theme::text);
    palette.setColor(QPalette::Link, theme::link);
    palette.setColor(QPalette::LinkVisited, theme::link);
    palette.setColor(QPalette::ToolTipBase, theme::toolTip);
    palette.setColor(QPalette::ToolTipText, theme::text);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, theme::disabledText);
    }
    // The shadow of disabled entries in menus: none to be seen.
    palette.setColor(QPalette::Disabled, QPalette::Light, theme::sidebar);
    palette.setColor(QPalette::Disabled, QPalette::Base, theme::window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, theme::separator);
    return palette;
}

void applyTheme()
{
    // Drawn in the palette's colours alone, the same on every desktop.
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(themePalette());
    QToolTip::setPalette(themePalette());
}

void applyFontAndIcon(QApplication &application)
{
    if (QFontDatabase::hasFamily(u"Inter"_s)) {
        QFont font = QApplication::font();
        font.setFamily(u"Inter"_s);
        application.setFont(font);
    }
    application.setWindowIcon(applicationIcon());
}

void makeTitle(QWidget &label)
{
    constexpr double titleScale = 1.5;
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * titleScale);
    font.setWeight(QFont::DemiBold);
    label.setFont(font);
}

void makeCaption(QWidget &label)
{
    constexpr double captionScale = 0.9;
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * captionScale);
    label.setFont(font);
    QPalette colors = label.palette();
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text}) {
        colors.setColor(role, theme::dimmedText); // the latter in the cells of tables
    }
    label.setPalette(colors);
}

} // namespace tessaly
