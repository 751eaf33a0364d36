#include "app/controls/theme/IconDrawing.hpp"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <cmath>

namespace tessaly {

void drawIcon(QPainter &painter, const QIcon &icon, QSize size, const QRect &place)
{
    // At a fractional scale QIcon::paint() takes the image for the whole scale below and enlarges
    // it without smoothing. So take the one for the scale above, and draw it smaller. The scale is
    // the painter's, which may draw on another screen than the widget's, or on an image.
    const QPixmap image = icon.pixmap(size, std::ceil(painter.deviceTransform().m11()));
    QRect target({0, 0}, image.deviceIndependentSize().toSize());
    target.moveCenter(place.center());
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, image);
    painter.restore();
}

} // namespace tessaly
