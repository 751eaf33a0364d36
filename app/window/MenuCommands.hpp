#pragma once

#include "app/window/ApplicationMenu.hpp"

#include <QObject>

namespace tessaly {

class KORVENWindowController;
class RowActions;

/// Connects the program's menu to the main window: what its items do, and which are enabled.
/// "Enter Full Screen" is connected elsewhere. "Disk Utility" is there when the drives screen
/// has found one.
///
/// Threads: the main thread.
class MenuCommands final : public QObject {
    Q_OBJECT

public:
    /// Has to be destroyed before the controller and its screens. Requires: the drives screen has
    /// not been answered yet whether there is a disk utility.
    explicit MenuCommands(KORVENWindowController &controller);

    [[nodiscard]] ApplicationMenu &menu() noexcept { return m_menu; }

private:
    void connectWindowItems();
    void connectScreenItems();
    [[nodiscard]] ApplicationMenu::State state() const;
    void refreshDrives();
    void actOnSelectedRow(void (RowActions::*act)());

    KORVENWindowController &m_controller;
    ApplicationMenu m_menu;
};

} // namespace tessaly
