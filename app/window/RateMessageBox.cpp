#include "app/window/RateMessageBox.hpp"

#include "app/controls/alerts/AlertPanel.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace tessaly {

namespace {

/// Records whether the program was asked to quit while this exists. Quitting closes dialogs as if
/// the user had, and must not count as an answer.
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

/// A dialog that looks like the sheets of the main window.
class Prompt final : public QDialog {
public:
    Prompt(const RateMessageBox::Request &request, QWidget *window)
        : QDialog(window, Qt::Dialog | Qt::FramelessWindowHint)
    {
        setWindowTitle(request.messageText);
        setAccessibleDescription(request.informativeText);
        setWindowModality(Qt::ApplicationModal);
        auto *panel = new AlertPanel(request.messageText, request.informativeText, request.buttons);
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->addWidget(panel);
        if (!panel->buttons().isEmpty()) {
            panel->buttons().first()->setDefault(true);
            panel->buttons().first()->setFocus();
        }
        connect(panel, &AlertPanel::pressed, this,
                [this](int button) { done(RateMessageBox::firstButton + button); });
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(theme::sheetEdge);
        painter.setBrush(theme::sheet);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
};

} // namespace

int RateMessageBox::runModal(const Request &request) const
{
    // Not on the stack: the window may be destroyed, and the prompt with it, while it waits.
    const QPointer<Prompt> prompt = new Prompt(request, m_window);
    const QuitWatch quitWatch;
    const int pressed = prompt->exec();
    if (prompt.isNull()) {
        return noAnswer;
    }
    delete prompt;
    if (quitWatch.isQuitting() || request.buttons.isEmpty()) {
        return noAnswer;
    }
    const int lastButton = firstButton + static_cast<int>(request.buttons.size()) - 1;
    return pressed == QDialog::Rejected ? lastButton : pressed;
}

} // namespace tessaly
