#pragma once

#include <QLineF>
#include <QSizeF>
#include <Qt>

#include <optional>

namespace tessaly {

/// Where the two lines of a bar lie, in the widget's coordinates (points, y downwards).
///
/// Both are drawn lineWidth thick with square caps, so they reach 5 points beyond their ends. They
/// run 10 points above the widget's bottom edge.
struct BarGeometry {
    static constexpr float lineWidth = 10.0F;

    QLineF track;
    /// None for a share of half a percent or less. A small share ends left of its start, and is
    /// seen by its caps.
    std::optional<QLineF> fill;
};

/// `barPercent`: the filled part, 0 to 1; not a number fills nothing. From right to left the bar is
/// mirrored. Computed in 32-bit floats.
[[nodiscard]] BarGeometry barGeometry(QSizeF widgetSize, float barPercent,
                                      Qt::LayoutDirection direction = Qt::LeftToRight);

} // namespace tessaly
