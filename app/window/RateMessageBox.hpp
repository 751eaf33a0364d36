#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace tessaly {

/// Asks the user one thing in a box of its own and waits for the answer. Escape, and closing the
/// box, stand for the last button.
///
/// Threads: the main thread, which runs its event loop meanwhile.
class RateMessageBox final {
public:
    /// What runModal() returns. The codes of the buttons follow each other as the buttons do.
    enum ReturnCode : int {
        noAnswer = 0, ///< the program, or the window, ended before there was one
        firstButton = 1000,
        secondButton = 1001,
        thirdButton = 1002,
    };

    struct Request {
        QString messageText;
        QString informativeText;
        QStringList buttons; ///< their titles, the one that is meant to be pressed first
    };

    /// The box is shown in front of `window` and destroyed with it.
    explicit RateMessageBox(QWidget &window) : m_window(&window) {}

    /// Shows the request. The whole program takes no other input until it is answered.
    [[nodiscard]] int runModal(const Request &request) const;

private:
    QPointer<QWidget> m_window;
};

} // namespace tessaly
