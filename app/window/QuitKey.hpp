#pragma once

#include <QKeySequence>
#include <QObject>

#include <functional>

class QWidget;

namespace tessaly {

/// Makes the key of the menu item "Quit" work in windows without that menu: the preview panel,
/// information windows, messages and dialogs.
///
/// Threads: the main thread. Requires: the QApplication lives.
class QuitKey final : public QObject {
public:
    /// Calls `quit` when a window other than `mainWindow`, which handles its keys itself, ignores
    /// this key. `mainWindow` outlives this.
    QuitKey(const QWidget &mainWindow, const QKeySequence &key, std::function<void()> quit);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QWidget &m_mainWindow;
    const QKeySequence m_key;
    const std::function<void()> m_quit;
};

} // namespace tessaly
