#include "app/controls/frame/WindowDrag.hpp"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWidget>
#include <QWindow>

namespace tessaly {

void WindowDrag::move(const QMouseEvent &event)
{
    if (!m_pressed || !event.buttons().testFlag(Qt::LeftButton)) {
        return;
    }
    const QPoint way = event.position().toPoint() - *m_pressed;
    if (way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance()) {
        return; // a move that starts at once would swallow the second press of a double click
    }
    // The desktop has the pointer from here on, and may never report the release of its button.
    end();
    if (QWindow *handle = m_window.windowHandle()) {
        handle->startSystemMove();
    }
}

} // namespace tessaly
