#include "app/controls/buttons/PressGuard.hpp"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace tessaly {

namespace {

bool isPressKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_Return ||
           key == Qt::Key_Enter;
}

} // namespace

PressGuard::PressGuard(QObject *parent) : QObject(parent) {}

PressGuard::~PressGuard() = default;

void PressGuard::watch(QAbstractButton &button)
{
    if (!m_buttons.insert(&button).second) {
        return;
    }
    // The pointer has to be followed over every widget, and keys that repeat may be for any: only
    // the application sees all events.
    QCoreApplication::instance()->installEventFilter(this);
    connect(&button, &QAbstractButton::pressed, this, [this, &button] {
        // Taken when it is pressed: the button may move or be hidden by what it does.
        m_pressedPlace = QRect(button.mapToGlobal(QPoint()), button.size());
    });
    connect(&button, &QAbstractButton::clicked, this, &PressGuard::hold);
    connect(&button, &QObject::destroyed, this,
            [this](const QObject *destroyed) { m_buttons.erase(destroyed); });
}

void PressGuard::hold()
{
    m_hold = Hold{m_pressedPlace, m_clock()};
}

bool PressGuard::isHolding()
{
    // Looked at when needed, not by a timer: a hold that nobody asks about has no effect.
    if (m_hold && m_clock() - m_hold->since >= holdTime) {
        m_hold.reset();
    }
    return m_hold.has_value();
}

void PressGuard::notePointer(const QPointF &globalPosition)
{
    if (isHolding() && !m_hold->place.contains(globalPosition.toPoint())) {
        m_hold.reset();
    }
}

bool PressGuard::eventFilter(QObject *watched, QEvent *event)
{
    const bool isOnButton = m_buttons.contains(watched);
    switch (event->type()) {
    case QEvent::MouseMove:
        notePointer(static_cast<const QMouseEvent *>(event)->globalPosition());
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        notePointer(static_cast<const QMouseEvent *>(event)->globalPosition());
        return isOnButton && swallowsPress();
    case QEvent::MouseButtonRelease:
        // The button has not seen the press, so it must not see the release.
        return isOnButton && std::exchange(m_hasSwallowedPress, false);
    case QEvent::KeyPress:
        return isOnButton && swallowsKey(*event);
    case QEvent::ShortcutOverride: // comes before the shortcut, which itself does not say so
        m_isKeyRepeating = static_cast<const QKeyEvent *>(event)->isAutoRepeat();
        return false;
    case QEvent::Shortcut:
        // The event is sent to the button that has the shortcut, which may be another widget than
        // the one with the focus.
        return isOnButton && m_isKeyRepeating;
    default:
        return false;
    }
}

bool PressGuard::swallowsPress()
{
    m_hasSwallowedPress = isHolding();
    return m_hasSwallowedPress;
}

bool PressGuard::swallowsKey(QEvent &event)
{
    const auto &key = static_cast<const QKeyEvent &>(event);
    // Auto-repeat is swallowed without a hold, too: a key that is held down acts once.
    return isPressKey(key.key()) && (key.isAutoRepeat() || isHolding());
}

} // namespace tessaly
