#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tessaly {

/// The frames of the window while it enters full screen and leaves it.
///
/// All lengths are device independent pixels, in doubles; halves are kept but where it says
/// otherwise. y goes down here. The formulas hold for either direction of y: a margin is the
/// same at both ends, and a centre frame is measured from the origin of the coordinates, which is
/// the top left corner of the first screen.
struct FullScreenGeometry {
    /// Room that is left free on each side of the screen.
    static constexpr double margin = 60.0;

    /// The proposed size without the margin on each side.
    [[nodiscard]] static QSizeF contentSize(QSizeF proposed);

    /// The window's frame in full screen on this screen: the content size in the middle, its
    /// distances from the screen's own corner rounded down.
    [[nodiscard]] static QRectF targetFrame(const QRectF &screen);

    /// The frame at which entering and leaving are halfway: of size `size`, centred in a rectangle
    /// of size `around` whose top left corner is the origin. So it is on the first screen, wherever
    /// the window is.
    [[nodiscard]] static QRectF centreFrame(QSizeF size, QSizeF around);
};

} // namespace tessaly
