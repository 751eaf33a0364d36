#include "app/window/RateMessageBox.hpp"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QList>
#include <QMessageBox>
#include <QPushButton>

namespace tessaly {

namespace {

/// Knows whether the program was told to quit while this lived. That closes dialogs as if the user
/// had.
class QuitWatch final : public QObject {
public:
    QuitWatch() { QCoreApplication::instance()->installEventFilter(this); }

    [[nodiscard]] bool isQuitting() const noexcept { return m_isQuitting; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Quit) {
            m_isQuitting = true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_isQuitting = false;
};

} // namespace

RateMessageBox::RateMessageBox(QWidget &window) : m_window(&window) {}

int RateMessageBox::runModal(const Request &request)
{
    // Not on the stack: the window may go, and its box with it, while the box waits.
    const QPointer<QMessageBox> box = new QMessageBox(
        QMessageBox::Information, {}, request.messageText, QMessageBox::NoButton, m_window);
    box->setInformativeText(request.informativeText);
    box->setWindowModality(Qt::ApplicationModal);
    QList<QAbstractButton *> buttons;
    for (const QString &title : request.buttons) {
        // The desktop lays buttons out by their roles.
        buttons.append(box->addButton(title, buttons.isEmpty() ? QMessageBox::AcceptRole
                                                               : QMessageBox::RejectRole));
    }
    if (!buttons.isEmpty()) {
        box->setDefaultButton(static_cast<QPushButton *>(buttons.first()));
        box->setEscapeButton(buttons.last());
    }
    const QuitWatch quitWatch;
    box->exec();
    if (box.isNull()) {
        return noAnswer;
    }
    const auto pressed = buttons.indexOf(box->clickedButton());
    delete box;
    return pressed < 0 || quitWatch.isQuitting() ? noAnswer
                                                 : firstButton + static_cast<int>(pressed);
}

} // namespace tessaly
