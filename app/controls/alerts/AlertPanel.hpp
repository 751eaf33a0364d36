#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace tessaly {

class KORVENButton;

/// The inside of an alert: the program's icon, a message in bold, more text below it, and a row of
/// buttons at the end. The texts are plain, and wrapped at the greatest width of an alert.
class AlertPanel final : public QWidget {
    Q_OBJECT

public:
    AlertPanel(const QString &messageText, const QString &informativeText,
               const QStringList &buttonTitles, QWidget *parent = nullptr);

    [[nodiscard]] const QString &text() const noexcept { return m_text; }
    [[nodiscard]] const QString &informativeText() const noexcept { return m_informativeText; }
    /// In the order of their titles.
    [[nodiscard]] const QList<KORVENButton *> &buttons() const noexcept { return m_buttons; }

Q_SIGNALS:
    /// A button was pressed; its number, from 0.
    void pressed(int button);

private:
    QString m_text;
    QString m_informativeText;
    QList<KORVENButton *> m_buttons;
};

} // namespace tessaly
