#include "app/window/QuitKey.hpp"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace tessaly {

QuitKey::QuitKey(const QWidget &mainWindow, const QKeySequence &key, std::function<void()> quit)
    : m_mainWindow(mainWindow), m_key(key), m_quit(std::move(quit))
{
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
    if (widget == nullptr || !widget->isWindow() || key.isAutoRepeat() ||
        m_key != QKeySequence(QKeyCombination(key.modifiers() & ~Qt::KeypadModifier,
                                              static_cast<Qt::Key>(key.key())))) {
        return false;
    }
    m_quit();
    return true;
}

} // namespace tessaly
