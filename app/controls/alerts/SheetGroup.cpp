#include "app/controls/alerts/SheetGroup.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPainter>

namespace tessaly {

SheetGroup::SheetGroup(QWidget *parent) : QWidget(parent)
{
    // The controls in it fill their background with this.
    QPalette colors = palette();
    colors.setColor(QPalette::Window, theme::group);
    setPalette(colors);
}

void SheetGroup::paintEvent(QPaintEvent * /*event*/)
{
    constexpr qreal radius = 6;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::group);
    painter.drawRoundedRect(rect(), radius, radius);
}

} // namespace tessaly
