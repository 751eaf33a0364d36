#include "app/controls/buttons/KORVENButtonCell.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPalette>

namespace tessaly {

KORVENButtonCell::KORVENButtonCell(QWidget *parent) : KORVENButtonCell(QString(), parent) {}

KORVENButtonCell::KORVENButtonCell(const QString &title, QWidget *parent)
    : QPushButton(title, parent)
{
    setTextColor();
}

void KORVENButtonCell::setTextColor()
{
    QPalette colors = palette();
    // Fusion draws the face from this colour. A style sheet would replace the style's drawing as a
    // whole.
    colors.setColor(QPalette::Button, theme::lightButton);
    colors.setColor(QPalette::ButtonText, theme::lightButtonText);
    colors.setColor(QPalette::Disabled, QPalette::ButtonText, theme::lightButtonDisabledText);
    setPalette(colors);
}

} // namespace tessaly
