#include "app/controls/theme/NinePatch.hpp"

#include <QPainter>

#include <algorithm>
#include <array>

namespace tessaly {

namespace {

/// The four lines that cut a length into cap, middle, cap.
std::array<int, 4> cuts(int length, int cap)
{
    return {0, cap, length - cap, length};
}

} // namespace

QImage stretchNinePatch(const QImage &image, int cap, QSize size)
{
    if (image.isNull() || size.isEmpty()) {
        return {};
    }
    QImage source = image;
    // All lengths here are pixels; a ratio would scale the source rectangles.
    source.setDevicePixelRatio(1);
    // At least one pixel of the image has to stay in the middle, to be stretched.
    const auto room = [cap](int imageLength, int length) {
        return std::clamp(std::min((imageLength - 1) / 2, length / 2), 0, std::max(cap, 0));
    };
    const int capX = room(source.width(), size.width());
    const int capY = room(source.height(), size.height());
    const auto fromX = cuts(source.width(), capX);
    const auto fromY = cuts(source.height(), capY);
    const auto toX = cuts(size.width(), capX);
    const auto toY = cuts(size.height(), capY);

    QImage stretched(size, QImage::Format_ARGB32_Premultiplied);
    stretched.fill(Qt::transparent);
    QPainter painter(&stretched);
    // Copied, not blended: the target is transparent, and the edges of the nine parts must meet
    // without a seam.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const QRect to(QPoint(toX.at(column), toY.at(row)),
                           QPoint(toX.at(column + 1) - 1, toY.at(row + 1) - 1));
            const QRect from(QPoint(fromX.at(column), fromY.at(row)),
                             QPoint(fromX.at(column + 1) - 1, fromY.at(row + 1) - 1));
            if (!to.isEmpty() && !from.isEmpty()) {
                painter.drawImage(to, source, from);
            }
        }
    }
    return stretched;
}

} // namespace tessaly
