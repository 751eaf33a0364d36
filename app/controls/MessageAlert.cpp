#include "app/controls/MessageAlert.hpp"

#include "app/controls/KORVENButton.hpp"
#include "resources/Artwork.hpp"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int iconSize = 64;

} // namespace

MessageAlert::MessageAlert(QWidget &window, const QString &messageText,
                           const QString &informativeText)
    : QMessageBox(QMessageBox::Warning, {}, messageText, QMessageBox::NoButton, &window)
{
    setInformativeText(informativeText);
    setIconPixmap(applicationIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    // What Qt calls the labels.
    if (auto *message = findChild<QLabel *>(u"qt_msgbox_label"_s)) {
        QFont font = message->font();
        font.setBold(true);
        message->setFont(font);
    }
    if (auto *text = findChild<QLabel *>(u"qt_msgbox_informativelabel"_s)) {
        text->setWordWrap(false); // lines end where the text says so
    }
    setAttribute(Qt::WA_DeleteOnClose);
    auto *button = new KORVENButton(tr("ok"));
    addButton(button, QMessageBox::AcceptRole);
    setDefaultButton(button);
}

MessageAlert *MessageAlert::begin(QWidget &window, const QString &messageText,
                                  const QString &informativeText, const Ended &ended)
{
    auto *alert = new MessageAlert(window, messageText, informativeText);
    if (ended) {
        // Escape and the window manager press the only button as well.
        connect(alert, &QDialog::finished, alert, [ended] { ended(firstButtonReturn); });
    }
    alert->open();
    return alert;
}

} // namespace tessaly
