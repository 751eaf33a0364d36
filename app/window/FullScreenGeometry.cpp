#include "app/window/FullScreenGeometry.hpp"

#include <cmath>

namespace tessaly {

QSizeF FullScreenGeometry::contentSize(QSizeF proposed)
{
    return {proposed.width() - 2 * margin, proposed.height() - 2 * margin};
}

QRectF FullScreenGeometry::targetFrame(const QRectF &screen)
{
    const QSizeF size = contentSize(screen.size());
    return {{screen.x() + std::floor((screen.width() - size.width()) * 0.5),
             screen.y() + std::floor((screen.height() - size.height()) * 0.5)},
            size};
}

QRectF FullScreenGeometry::centreFrame(QSizeF size, QSizeF around)
{
    return {
        {around.width() * 0.5 - size.width() * 0.5, around.height() * 0.5 - size.height() * 0.5},
        size};
}

} // namespace tessaly
