#include "app/controls/text/ClickableView.hpp"

#include <QMouseEvent>

#include <utility>

namespace tessaly {

ClickableView::ClickableView(QWidget *parent) : QWidget(parent) {}

void ClickableView::setClickable(bool isClickable)
{
    m_isClickable = isClickable;
    setCursor(isClickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ClickableView::mousePressEvent(QMouseEvent *event)
{
    m_isPressed = m_isClickable && event->button() == Qt::LeftButton &&
                  clickableRect().contains(event->position().toPoint());
    m_tookLastPress = m_isPressed;
    event->ignore(); // the row is selected as well
}

void ClickableView::mouseReleaseEvent(QMouseEvent *event)
{
    event->ignore();
    if (std::exchange(m_isPressed, false) && event->button() == Qt::LeftButton &&
        rect().contains(event->position().toPoint())) {
        m_isClickPending = true;
        // Queued: a click may open another level, whose rows may reuse this very cell while its
        // event is still being handled. forgetPress() drops a click that has become meaningless.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (std::exchange(m_isClickPending, false)) {
                    Q_EMIT clicked();
                }
            },
            Qt::QueuedConnection);
    }
}

void ClickableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // If its first press was on this, that was the click; else the row sees the double click.
    event->setAccepted(std::exchange(m_tookLastPress, false));
}

} // namespace tessaly
