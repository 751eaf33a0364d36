#include "app/controls/theme/Theme.hpp"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QRegularExpression>
#include <QStyleFactory>
#include <QToolTip>
#include <QWidget>

#include <algorithm>

namespace tessaly {

using namespace Qt::StringLiterals;

theme::Fractions::operator QColor() const
{
    // QColor::fromRgbF() does not clamp.
    const auto part = [](float fraction) { return std::clamp(fraction, 0.0F, 1.0F); };
    return QColor::fromRgbF(part(red), part(green), part(blue), part(alpha));
}

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
    palette.setColor(QPalette::PlaceholderText, theme::placeholderText);
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
    // Fusion draws disabled menu entries with a shadow in this colour: make it invisible.
    palette.setColor(QPalette::Disabled, QPalette::Light, theme::sidebar);
    palette.setColor(QPalette::Disabled, QPalette::Base, theme::window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, theme::separator);
    return palette;
}

QPalette previewPalette()
{
    QPalette palette(theme::preview::window);
    palette.setColor(QPalette::Window, theme::preview::window);
    palette.setColor(QPalette::Base, theme::preview::page);
    palette.setColor(QPalette::Highlight, theme::preview::accent);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(role, theme::preview::text);
    }
    return palette;
}

QString styleSheetWithColors(const QString &styleSheet,
                             std::initializer_list<std::pair<QLatin1StringView, QColor>> colors)
{
    QString colored = styleSheet;
    for (const auto &[name, color] : colors) {
        // A name may be the beginning of another one's.
        colored.replace(QRegularExpression(u"@%1\\b"_s.arg(name)), color.name());
    }
    return colored;
}

void applyTheme()
{
    // Fusion draws in the palette's colours alone, the same on every desktop.
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(themePalette());
    // Tooltips have a palette of their own, which the application's does not reach.
    QToolTip::setPalette(themePalette());
}

void applyFont(QApplication &application)
{
    // An unknown family would be replaced by one of fontconfig's choice instead of the desktop's.
    if (QFontDatabase::hasFamily(u"Inter"_s)) {
        QFont font = QApplication::font();
        font.setFamily(u"Inter"_s);
        application.setFont(font);
    }
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
