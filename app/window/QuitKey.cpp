#include "app/window/QuitKey.hpp"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace tessaly {

QuitKey::QuitKey(const QWidget &mainWindow, const QKeySequence &key, std::function<void()> quit)
    : m_mainWindow(mainWindow), m_key(key), m_quit(std::move(quit))
{
    // Windows come and go, those of the preview module among them. Only the application sees the
    // keys of all.
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || watched == &m_mainWindow) {
        return false;
    }
    // Qt passes a key that the focus widget ignores to its parents, and to the window last.
    const auto *widget = qobject_cast<const QWidget *>(watched);
    const auto &key = static_cast<const QKeyEvent &>(*event);
    // A key that is held down must not quit again and again: auto-repeat keeps coming while the
    // windows close.
    if (widget == nullptr || !widget->isWindow() || key.isAutoRepeat() ||
        m_key != QKeySequence(QKeyCombination(key.modifiers() & ~Qt::KeypadModifier,
                                              static_cast<Qt::Key>(key.key())))) {
        return false;
    }
    m_quit();
    return true;
}

} // namespace tessaly
