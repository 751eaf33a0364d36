#include "app/window/BringToFront.hpp"

#include <QWidget>

namespace tessaly {

void bringToFront(QWidget &window)
{
    // raise() and activateWindow() do not restore a minimised window.
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    // What the desktop makes of this is its own decision: most want the activation token of the
    // start that asked (see SingleInstance::setActivated()).
    window.activateWindow();
}

} // namespace tessaly
