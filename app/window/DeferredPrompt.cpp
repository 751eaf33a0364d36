#include "app/window/DeferredPrompt.hpp"

#include "app/controls/alerts/WindowSheet.hpp"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <utility>

namespace tessaly {

DeferredPrompt::DeferredPrompt(QWidget &window, std::function<void()> then)
    : m_window(&window), m_then(std::move(then))
{
    lookSoon();
}

void DeferredPrompt::lookSoon()
{
    // Queued: several things may close at once, and a prompt must not open an event loop of its own
    // from within a constructor or an event filter.
    QMetaObject::invokeMethod(this, &DeferredPrompt::look, Qt::QueuedConnection);
}

void DeferredPrompt::look()
{
    if (m_window.isNull() || m_then == nullptr) {
        return;
    }
    // Only one of them is watched at a time. When it closes, look() finds the next one.
    QWidget *inFront = QApplication::activePopupWidget();
    if (inFront == nullptr) {
        inFront = QApplication::activeModalWidget();
    }
    if (inFront == nullptr) {
        inFront = WindowSheet::openOn(*m_window);
    }
    if (!m_window->isVisible()) {
        watch(*m_window);
    } else if (inFront != nullptr) {
        watch(*inFront);
    } else {
        // Cleared before the call: a prompt runs the event loop, in which further looks may be
        // queued.
        std::exchange(m_then, nullptr)();
    }
}

void DeferredPrompt::watch(QWidget &widget)
{
    if (m_watched != nullptr) {
        m_watched->removeEventFilter(this);
    }
    m_watched = &widget;
    widget.installEventFilter(this);
}

bool DeferredPrompt::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_watched && (event->type() == QEvent::Show || event->type() == QEvent::Hide)) {
        lookSoon(); // the widget has the new state only after the event
    }
    return false;
}

} // namespace tessaly
