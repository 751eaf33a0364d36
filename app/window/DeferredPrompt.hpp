#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

namespace tessaly {

/// Waits until a window is visible and nothing is open in front of it: no dialog, alert or menu.
/// For prompts that must not interrupt the user there.
class DeferredPrompt : public QObject {
    Q_OBJECT

public:
    /// Calls `then` once, from the event loop and never within the constructor. Does not call it
    /// when the window or this is destroyed first.
    DeferredPrompt(QWidget &window, std::function<void()> then);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void lookSoon();
    void look();
    void watch(QWidget &widget);

    QPointer<QWidget> m_window;
    QPointer<QWidget> m_watched; ///< what has to be shown, or hidden, first
    std::function<void()> m_then;
};

} // namespace tessaly
