#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>

#include <cmath>

namespace tessaly {

/// What a widget looks like on a screen with `scale` pixels a point, over `ground`.
inline QImage pictureOf(QWidget &widget, double scale, const QColor &ground = Qt::black)
{
    QImage picture((QSizeF(widget.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(ground);
    widget.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
}

/// Whether two colours differ by no more than rounding does.
inline bool looksLike(const QColor &one, const QColor &other)
{
    constexpr int rounding = 2;
    return std::abs(one.red() - other.red()) <= rounding &&
           std::abs(one.green() - other.green()) <= rounding &&
           std::abs(one.blue() - other.blue()) <= rounding;
}

} // namespace tessaly
