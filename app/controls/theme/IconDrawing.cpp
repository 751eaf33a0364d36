#include "app/controls/theme/IconDrawing.hpp"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <cmath>

namespace tessaly {

void drawIcon(QPainter &painter, const QIcon &icon, QSize size, const QRect &place)
{
    // QIcon::paint() enlarges the image for one scale at a scale between two, pixel by pixel. So
    // take the one for the next whole scale, and draw it smaller. The painter may draw on another
    // screen than the widget's, or on an image: its own scale counts.
    const QPixmap image = icon.pixmap(size, std::ceil(painter.deviceTransform().m11()));
    QRect target({0, 0}, image.deviceIndependentSize().toSize());
    target.moveCenter(place.center());
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, image);
    painter.restore();
}

} // namespace tessaly
