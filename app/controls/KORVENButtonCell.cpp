#include "app/controls/KORVENButtonCell.hpp"

#include "app/controls/Look.hpp"

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
    colors.setColor(QPalette::Button, look::lightButton);
    colors.setColor(QPalette::ButtonText, Qt::black);
    colors.setColor(QPalette::Disabled, QPalette::ButtonText, look::lightButtonDisabledText);
    setPalette(colors);
}

} // namespace tessaly
