#pragma once

#include <QMenu>

namespace tessaly {

class KORVENWindow;

/// The menu of a window that has no frame from the desktop: what a frame's own menu has.
class WindowMenu : public QMenu {
    Q_OBJECT

public:
    explicit WindowMenu(KORVENWindow *window);

    /// Shows it at a place of the screen; for users of the keyboard with its first item chosen.
    void showAt(QPoint place, bool isForKeyboard);

private:
    void updateActions();

    KORVENWindow *m_window;
    QAction *m_restore;
    QAction *m_move;
    QAction *m_size;
    QAction *m_minimize;
    QAction *m_maximize;
    QAction *m_close;
};

} // namespace tessaly
