#pragma once

#include "platform/linux/bus/BusLink.hpp"

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>

namespace tessaly {

/// Has a window's menu shown in the menu bar that some desktops have for the window in front, by
/// the name "com.canonical.AppMenu.Registrar" on the session bus. Where that name has no owner,
/// nothing changes.
///
/// Qt does the rest (QMenuBar). But it blocks on the bus, and draws a menu bar into the window
/// where there is no such desktop; so the bus is asked first.
///
/// Threads: the main thread.
class GlobalMenu final : public QObject {
public:
    /// `title` stands in the menu bar. The window is on the screen. Window and menu may be
    /// destroyed before this.
    GlobalMenu(QWidget &window, QMenu &menu, QString title, std::string busAddress);
    ~GlobalMenu() override;
    Q_DISABLE_COPY_MOVE(GlobalMenu)

private:
    void askForMenuBar();
    void show();

    QPointer<QWidget> m_window;
    QPointer<QMenu> m_menu;
    QString m_title;
    BusLink m_link;
};

} // namespace tessaly
