#include "app/controls/Look.hpp"

#include "resources/Artwork.hpp"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QStyleFactory>
#include <QToolTip>
#include <QWidget>

namespace tessaly {

using namespace Qt::StringLiterals;

QPalette lookPalette()
{
    // The shades of bevels follow from the first two.
    QPalette palette(look::button, look::window);
    palette.setColor(QPalette::WindowText, look::text);
    palette.setColor(QPalette::Base, look::field);
    palette.setColor(QPalette::AlternateBase, look::sidebar);
    palette.setColor(QPalette::Text, look::text);
    palette.setColor(QPalette::ButtonText, look::text);
    palette.setColor(QPalette::BrightText, look::text);
    palette.setColor(QPalette::PlaceholderText, look::dimmedText.darker(125));
    palette.setColor(QPalette::Highlight, look::selection);
    palette.setColor(QPalette::HighlightedText, look::text);
    palette.setColor(QPalette::Link, look::link);
    palette.setColor(QPalette::LinkVisited, look::link);
    palette.setColor(QPalette::ToolTipBase, look::toolTip);
    palette.setColor(QPalette::ToolTipText, look::text);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, look::disabledText);
    }
    // The shadow of disabled entries in menus: none to be seen.
    palette.setColor(QPalette::Disabled, QPalette::Light, look::sidebar);
    palette.setColor(QPalette::Disabled, QPalette::Base, look::window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, look::separator);
    return palette;
}

void applyLook()
{
    // Drawn in the palette's colours alone, the same on every desktop.
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(lookPalette());
    QToolTip::setPalette(lookPalette());
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
        colors.setColor(role, look::dimmedText); // the latter in the cells of tables
    }
    label.setPalette(colors);
}

} // namespace tessaly
