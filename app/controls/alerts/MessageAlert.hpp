#pragma once

#include "app/controls/alerts/WindowSheet.hpp"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace tessaly {

class AlertPanel;
class KORVENButton;

/// A message on a sheet of a window, which takes no other input until the sheet is closed. It has
/// one button, "ok"; Return and Escape press it.
///
/// Threads: the main thread.
class MessageAlert final : public WindowSheet {
    Q_OBJECT

public:
    /// The return code of an alert that ended with its first button.
    static constexpr int firstButtonReturn = 1000;
    using Ended = std::function<void(int returnCode)>;

    /// Shows an alert and returns at once. The window owns it; it deletes itself when it has ended.
    /// `ended` is not called when the window is destroyed before.
    static MessageAlert *begin(QWidget &window, const QString &messageText,
                               const QString &informativeText, const Ended &ended = {});

    [[nodiscard]] const QString &text() const noexcept;
    [[nodiscard]] const QString &informativeText() const noexcept;
    [[nodiscard]] const QList<KORVENButton *> &buttons() const noexcept;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    MessageAlert(QWidget &window, std::unique_ptr<AlertPanel> alertPanel, Ended ended);
    void finish();

    AlertPanel *m_panel;
    Ended m_ended;
    bool m_isFinished = false;
};

} // namespace tessaly
