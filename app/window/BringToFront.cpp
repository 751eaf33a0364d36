#include "app/window/BringToFront.hpp"

#include <QWidget>

namespace tessaly {

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace tessaly
