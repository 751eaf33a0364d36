#include "app/window/RateMessageBox.hpp"

#include <QAbstractButton>
#include <QList>
#include <QMessageBox>
#include <QPushButton>

namespace tessaly {

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
    box->exec();
    if (box.isNull()) {
        return noAnswer;
    }
    const auto pressed = buttons.indexOf(box->clickedButton());
    delete box;
    return pressed < 0 ? noAnswer : firstButton + static_cast<int>(pressed);
}

} // namespace tessaly
