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
    /// None when there is next to nothing to fill. May run backwards: a small part ends before it
    /// starts, and its caps still show.
    std::optional<QLineF> fill;
};

/// `barPercent`: the filled part, 0 to 1; not a number fills nothing. From right to left the bar is
/// mirrored. All is reckoned in 32-bit floats.
[[nodiscard]] BarGeometry barGeometry(QSizeF widgetSize, float barPercent,
                                      Qt::LayoutDirection direction = Qt::LeftToRight);

} // namespace tessaly
