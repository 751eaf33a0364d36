#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <Qt>

namespace tessaly {

// Where the parts of the main window lie. All lengths are device independent pixels; y grows
// downwards.

/// Height of the title bar.
inline constexpr int titleBarHeight = 34;
/// Radius of the window's corners.
inline constexpr qreal windowCornerRadius = 4.0;
/// How far inside the window a drag resizes it.
inline constexpr int resizeMargin = 6;
/// No window is made smaller.
inline constexpr QSize minWindowSize{760, 480};

/// The buttons of the title bar, as they follow each other from the left.
enum class TitleBarPart { applicationMenu, minimize, zoom, close };

/// The title bar of a window of that size.
[[nodiscard]] QRect titleBarRect(QSize window);

/// Upper part of the title bar: half of its height, rounded down.
[[nodiscard]] QRectF upperTitleHalf(const QRectF &titleBar);
/// What upperTitleHalf() leaves.
[[nodiscard]] QRectF lowerTitleHalf(const QRectF &titleBar);

/// Where the title is centred both ways: the title bar moved to the right by 20 and down by 4,
/// clipped at its bottom edge. Its width stays.
[[nodiscard]] QRectF titleTextRect(const QRectF &titleBar);

/// Where a button lies in a window of that width, where texts run from left to right. Elsewhere
/// the window mirrors it.
[[nodiscard]] QRect titleBarPartRect(TitleBarPart part, int windowWidth);

/// The edges that a drag from this point of a window of that size resizes: none further inside than
/// `margin`, two near a corner.
[[nodiscard]] Qt::Edges edgesAt(QPoint point, QSize window, int margin = resizeMargin);

/// The shape of the pointer for edgesAt().
[[nodiscard]] Qt::CursorShape cursorForEdges(Qt::Edges edges);

/// The frame, made as small as the available area and moved into it by the shortest way.
/// An empty area leaves the frame as it is.
[[nodiscard]] QRect frameWithin(const QRect &frame, const QRect &available);

/// The frame within one of the screens: the one that shows most of it; when none does, in the
/// middle of the first. Without screens the frame is left as it is.
[[nodiscard]] QRect frameOnScreens(const QRect &frame, const QList<QRect> &availableAreas);

} // namespace tessaly
