#pragma once

#include <QRect>
#include <QSize>

class QIcon;
class QPainter;

namespace tessaly {

/// Draws the icon in the middle of `place`, at most as large as `size`, both in points. Sharp or
/// smooth at every scale of the screen, unlike QIcon::paint(); a null icon draws nothing.
///
/// Leaves the painter's state as it was. Threads: the main thread.
void drawIcon(QPainter &painter, const QIcon &icon, QSize size, const QRect &place);

} // namespace tessaly
