#include "app/controls/frame/WindowGeometry.hpp"

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tessaly {

namespace {

constexpr QPointF titleOffset{20.0, 4.0};

// This close to its end an edge is the corner: corners of a few pixels are hard to hit.
constexpr int cornerLength = 16;

constexpr QSize menuButton{27, 22};
constexpr int menuButtonLeft = 6;
constexpr QSize roundButton{21, 21};
constexpr int roundButtonDistance = 22;
constexpr int closeButtonRight = 8;
constexpr int roundButtonTop = 7;

/// In 64 bits: the frame may come from the settings, and two lengths that are plausible there
/// overflow an int.
std::int64_t areaOf(const QRect &rect)
{
    return rect.isEmpty() ? 0 : std::int64_t{rect.width()} * rect.height();
}

} // namespace

QRect titleBarRect(QSize window)
{
    return {0, 0, window.width(), titleBarHeight};
}

QRectF upperTitleHalf(const QRectF &titleBar)
{
    return {titleBar.topLeft(), QSizeF(titleBar.width(), std::floor(titleBar.height() * 0.5))};
}

QRectF lowerTitleHalf(const QRectF &titleBar)
{
    return titleBar.adjusted(0, upperTitleHalf(titleBar).height(), 0, 0);
}

QRectF titleTextRect(const QRectF &titleBar)
{
    QRectF moved = titleBar.translated(titleOffset);
    moved.setBottom(titleBar.bottom());
    return moved;
}

QRect titleBarPartRect(TitleBarPart part, int windowWidth)
{
    if (part == TitleBarPart::applicationMenu) {
        return {{menuButtonLeft, (titleBarHeight - menuButton.height()) / 2}, menuButton};
    }
    const int placesToClose = static_cast<int>(TitleBarPart::close) - static_cast<int>(part);
    const int left =
        windowWidth - closeButtonRight - roundButton.width() - placesToClose * roundButtonDistance;
    return {{left, roundButtonTop}, roundButton};
}

Qt::Edges edgesAt(QPoint point, QSize window, int margin)
{
    const int fromRight = window.width() - 1 - point.x();
    const int fromBottom = window.height() - 1 - point.y();
    const int nearest = std::min({point.x(), point.y(), fromRight, fromBottom});
    if (nearest < 0 || nearest >= margin) {
        return {};
    }
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, point.x() < cornerLength);
    edges.setFlag(Qt::TopEdge, point.y() < cornerLength);
    edges.setFlag(Qt::RightEdge, fromRight < cornerLength);
    edges.setFlag(Qt::BottomEdge, fromBottom < cornerLength);
    return edges;
}

Qt::CursorShape cursorForEdges(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge)) {
        return Qt::SizeBDiagCursor;
    }
    if (edges == Qt::LeftEdge || edges == Qt::RightEdge) {
        return Qt::SizeHorCursor;
    }
    if (edges == Qt::TopEdge || edges == Qt::BottomEdge) {
        return Qt::SizeVerCursor;
    }
    return Qt::ArrowCursor;
}

QRect frameWithin(const QRect &frame, const QRect &available)
{
    if (available.isEmpty()) {
        return frame;
    }
    const QSize size = frame.size().boundedTo(available.size());
    // QRect::bottomRight() lies inside the rectangle, hence the 1.
    const QPoint end = available.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
    return {{std::clamp(frame.x(), available.x(), end.x()),
             std::clamp(frame.y(), available.y(), end.y())},
            size};
}

QRect frameOnScreens(const QRect &frame, const QList<QRect> &availableAreas)
{
    if (availableAreas.isEmpty()) {
        return frame;
    }
    const auto shown = [&frame](const QRect &area) { return areaOf(area.intersected(frame)); };
    const QRect &best = *std::max_element(
        availableAreas.begin(), availableAreas.end(),
        [&shown](const QRect &left, const QRect &right) { return shown(left) < shown(right); });
    if (shown(best) > 0) {
        return frameWithin(frame, best);
    }
    QRect centred = frame;
    centred.moveCenter(availableAreas.first().center());
    return frameWithin(centred, availableAreas.first());
}

} // namespace tessaly
