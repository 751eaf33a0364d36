#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

namespace tessaly {

/// Waits for the moment when a window is there and nothing is open in front of it: neither a
/// dialog, an alert nor a menu. For what may interrupt the user, but not then.
class DeferredPrompt : public QObject {
    Q_OBJECT

public:
    /// Calls `then` once, by the event loop and never at once. Not at all when the window or this
    /// goes before.
    DeferredPrompt(QWidget &window, std::function<void()> then);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void lookSoon();
    void look();
    void watch(QWidget &widget);

    QPointer<QWidget> m_window;
    QPointer<QWidget> m_watched; ///< what has to be shown, or to be hidden
    std::function<void()> m_then;
};

} // namespace tessaly
