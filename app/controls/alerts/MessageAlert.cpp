#include "app/controls/alerts/MessageAlert.hpp"

#include "app/controls/alerts/AlertPanel.hpp"
#include "app/controls/buttons/KORVENButton.hpp"

#include <QKeyEvent>

#include <utility>

namespace tessaly {

MessageAlert::MessageAlert(QWidget &window, std::unique_ptr<AlertPanel> alertPanel, Ended ended)
    : WindowSheet(window, std::move(alertPanel)), m_panel(qobject_cast<AlertPanel *>(&panel())),
      m_ended(std::move(ended))
{
    setAccessibleName(text());
    setAccessibleDescription(informativeText());
    connect(m_panel, &AlertPanel::pressed, this, &MessageAlert::finish);
    connect(this, &WindowSheet::escaped, this, &MessageAlert::finish);
}

MessageAlert *MessageAlert::begin(QWidget &window, const QString &messageText,
                                  const QString &informativeText, const Ended &ended)
{
    auto panel = std::make_unique<AlertPanel>(messageText, informativeText, QStringList{tr("ok")});
    auto *alert = new MessageAlert(window, std::move(panel), ended);
    alert->WindowSheet::begin(*alert->buttons().first());
    return alert;
}

const QString &MessageAlert::text() const noexcept
{
    return m_panel->text();
}

const QString &MessageAlert::informativeText() const noexcept
{
    return m_panel->informativeText();
}

const QList<KORVENButton *> &MessageAlert::buttons() const noexcept
{
    return m_panel->buttons();
}

void MessageAlert::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        finish();
    } else {
        WindowSheet::keyPressEvent(event);
    }
}

void MessageAlert::finish()
{
    // The button and Return may both be pressed before the alert is deleted.
    if (std::exchange(m_isFinished, true)) {
        return;
    }
    end();
    deleteLater();
    if (m_ended) {
        m_ended(firstButtonReturn);
    }
}

} // namespace tessaly
