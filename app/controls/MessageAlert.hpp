#pragma once

#include <QMessageBox>

#include <functional>

namespace tessaly {

/// A message of the program on one of its windows, which takes no other input until the message has
/// been read. It has one button, "ok".
///
/// Threads: the main thread.
class MessageAlert final : public QMessageBox {
    Q_OBJECT

public:
    /// What an alert answers when it ended with its first button.
    static constexpr int firstButtonReturn = 1000;
    using Ended = std::function<void(int returnCode)>;

    /// Shows an alert and returns at once. The window owns it; it deletes itself when it has ended.
    static MessageAlert *begin(QWidget &window, const QString &messageText,
                               const QString &informativeText, const Ended &ended = {});

private:
    MessageAlert(QWidget &window, const QString &messageText, const QString &informativeText);
};

} // namespace tessaly
