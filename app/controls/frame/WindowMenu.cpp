#include "app/controls/frame/WindowMenu.hpp"

#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/frame/KeyboardPlacement.hpp"

#include <QAction>

namespace tessaly {

WindowMenu::WindowMenu(KORVENWindow *window)
    : QMenu(window), m_window(window), m_restore(addAction(tr("&Restore"))),
      m_move(addAction(tr("&Move"))), m_size(addAction(tr("&Size"))),
      m_minimize(addAction(tr("Mi&nimize"))), m_maximize(addAction(tr("Ma&ximize"))),
      // The comma puts the separator in its place within the list of actions.
      m_close((addSeparator(), addAction(tr("&Close"))))
{
    setAccessibleName(tr("Window menu"));
    connect(m_restore, &QAction::triggered, window, &QWidget::showNormal);
    // By keys of our own: Qt can ask the desktop for a move or a resize with the pointer only.
    auto *placement = new KeyboardPlacement(window);
    connect(m_move, &QAction::triggered, placement,
            [placement] { placement->begin(KeyboardPlacement::Kind::move); });
    connect(m_size, &QAction::triggered, placement,
            [placement] { placement->begin(KeyboardPlacement::Kind::size); });
    connect(m_minimize, &QAction::triggered, window, &QWidget::showMinimized);
    connect(m_maximize, &QAction::triggered, window, &QWidget::showMaximized);
    connect(m_close, &QAction::triggered, window, &QWidget::close);
    connect(this, &QMenu::aboutToShow, this, &WindowMenu::updateActions);
}

void WindowMenu::showAt(QPoint place, bool isForKeyboard)
{
    popup(place);
    if (isForKeyboard) {
        setActiveAction(m_restore->isEnabled() ? m_restore : m_move->isEnabled() ? m_move : m_size);
    }
}

void WindowMenu::updateActions()
{
    const bool isFree = !m_window->isMaximized() && !m_window->isFullScreen();
    m_restore->setEnabled(!isFree);
    // On Wayland no program can move its window by itself.
    m_move->setEnabled(isFree && KORVENWindow::canBePlaced());
    m_size->setEnabled(isFree);
    m_maximize->setEnabled(isFree);
}

} // namespace tessaly
