#pragma once

#include <QKeySequence>
#include <QObject>

#include <functional>

class QWidget;

namespace tessaly {

/// Has the key of the menu's item "Quit" work in the windows that know nothing of the menu: the
/// preview panel, windows with information, messages and dialogs.
///
/// Threads: the main thread. Requires: the QApplication lives.
class QuitKey final : public QObject {
public:
    /// Calls `quit` when a window other than `mainWindow`, which looks after its keys itself, gets
    /// this key and has no use for it. The window outlives this.
    QuitKey(const QWidget &mainWindow, const QKeySequence &key, std::function<void()> quit);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QWidget &m_mainWindow;
    const QKeySequence m_key;
    const std::function<void()> m_quit;
};

} // namespace tessaly
