#pragma once

class QWidget;

namespace tessaly {

/// Shows a window that may be hidden, minimised or behind others, and gives it the keyboard as far
/// as the desktop allows.
void bringToFront(QWidget &window);

} // namespace tessaly
