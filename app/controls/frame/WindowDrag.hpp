#pragma once

#include <QPoint>

#include <optional>

class QMouseEvent;
class QWidget;

namespace tessaly {

/// A window's move by its title bar, for windows that have no frame from the desktop.
///
/// Threads: the main thread.
class WindowDrag {
public:
    /// `window` owns this.
    explicit WindowDrag(QWidget &window) : m_window(window) {}

    /// The left button was pressed on the title bar, at this point of the window.
    void press(QPoint point) { m_pressed = point; }
    /// Hands the move over to the desktop once the pointer is far enough from where it was pressed.
    void move(const QMouseEvent &event);
    void end() { m_pressed.reset(); }

private:
    QWidget &m_window;
    std::optional<QPoint> m_pressed;
};

} // namespace tessaly
