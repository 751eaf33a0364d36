#include "app/controls/frame/KeyboardPlacement.hpp"

#include "app/controls/frame/WindowGeometry.hpp"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWidget>

namespace tessaly {

KeyboardPlacement::KeyboardPlacement(QWidget *window) : QObject(window), m_window(window) {}

KeyboardPlacement::~KeyboardPlacement()
{
    // An override cursor is kept on a stack of the application, and one that is not restored would
    // stay for good.
    end();
}

void KeyboardPlacement::begin(Kind kind)
{
    end();
    m_kind = kind;
    m_before = m_window->geometry();
    m_isActive = true;
    // The only sign on the screen that the arrow keys have another meaning now.
    QGuiApplication::setOverrideCursor(kind == Kind::move ? Qt::SizeAllCursor
                                                          : Qt::SizeFDiagCursor);
    // Any widget of the window may have the focus, so its keys are caught on the way.
    QCoreApplication::instance()->installEventFilter(this);
}

void KeyboardPlacement::end()
{
    if (!m_isActive) {
        return;
    }
    m_isActive = false;
    QCoreApplication::instance()->removeEventFilter(this);
    QGuiApplication::restoreOverrideCursor();
}

bool KeyboardPlacement::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (!m_window->isActiveWindow()) {
            end(); // another window has the keyboard
            return false;
        }
        event->accept(); // so that it comes as a key, not as a shortcut
        return true;
    case QEvent::KeyPress: {
        const auto *keyEvent = static_cast<QKeyEvent *>(event);
        handleKey(keyEvent->key(), keyEvent->modifiers());
        return true;
    }
    // Any click ends it, and is not used for anything else.
    case QEvent::MouseButtonPress:
        end();
        return true;
    case QEvent::WindowStateChange:
    case QEvent::Close:
        if (watched == m_window) {
            end();
        }
        return false;
    case QEvent::ApplicationDeactivate:
        end();
        return false;
    default:
        return false;
    }
}

void KeyboardPlacement::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    constexpr int wideStep = 10;
    const int length = modifiers.testFlag(Qt::ControlModifier) ? 1 : wideStep;
    switch (key) {
    case Qt::Key_Left:
        step({-length, 0});
        break;
    case Qt::Key_Right:
        step({length, 0});
        break;
    case Qt::Key_Up:
        step({0, -length});
        break;
    case Qt::Key_Down:
        step({0, length});
        break;
    case Qt::Key_Escape:
        m_window->setGeometry(m_before);
        end();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        end();
        break;
    default:
        break;
    }
}

void KeyboardPlacement::step(QPoint by)
{
    QRect frame = m_window->geometry();
    if (m_kind == Kind::move) {
        frame.translate(by);
    } else {
        const QSize size = frame.size() + QSize(by.x(), by.y());
        frame.setSize(size.expandedTo(m_window->minimumSize()));
    }
    // Bounded by all screens together, so that the window can be moved from one to the next.
    m_window->setGeometry(frameWithin(frame, m_window->screen()->availableVirtualGeometry()));
}

} // namespace tessaly
