#include "app/controls/frame/WindowEdges.hpp"

#include "app/controls/frame/WindowGeometry.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QColor>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QWindow>

namespace tessaly {

WindowEdges::WindowEdges(QWidget *parent) : QWidget(parent)
{
    // The cursor has to change before a button is pressed.
    setMouseTracking(true);
}

void WindowEdges::setRoundsCorners(bool isOn)
{
    m_roundsCorners = isOn;
    update();
}

void WindowEdges::mousePressEvent(QMouseEvent *event)
{
    QWindow *handle = window()->windowHandle();
    const Qt::Edges edges = edgesAt(event->position().toPoint(), size());
    if (event->button() == Qt::LeftButton && edges && handle != nullptr) {
        // By the desktop: on Wayland a program cannot move its own edges, and elsewhere the window
        // manager can snap.
        handle->startSystemResize(edges);
    }
    // Accepted in any case: a click on the resize edge must not reach the widget below it.
    event->accept();
}

void WindowEdges::mouseMoveEvent(QMouseEvent *event)
{
    setCursor(cursorForEdges(edgesAt(event->position().toPoint(), size())));
}

void WindowEdges::resizeEvent(QResizeEvent * /*event*/)
{
    const QRect inside = rect().adjusted(resizeMargin, resizeMargin, -resizeMargin, -resizeMargin);
    // A mask also keeps mouse events away, so what lies inside gets its own.
    setMask(QRegion(rect()) - QRegion(inside));
}

void WindowEdges::paintEvent(QPaintEvent * /*event*/)
{
    const qreal radius = m_roundsCorners ? windowCornerRadius : 0.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_roundsCorners) {
        QPainterPath corners;
        corners.addRect(rect());
        corners.addRoundedRect(rect(), radius, radius); // odd-even fill: what lies between both
        // Erasing, and on top of everything: whatever the content draws into its corners, they end
        // up transparent.
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(corners, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter.setPen(theme::windowEdge);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace tessaly
