#include "platform/linux/files/QtFolderChooser.hpp"

#include "platform/linux/files/FolderDialog.hpp"
#include "platform/linux/process/ProbeProcess.hpp"

#include <QMetaObject>

#include <utility>

namespace tessaly {

QtFolderChooser::QtFolderChooser(std::string probe)
    : m_probe(probe.empty() ? ProbeProcess::programOfInstallation() : std::move(probe))
{
}

QtFolderChooser::~QtFolderChooser()
{
    // A QPointer: the dialog's parent window may have destroyed it already.
    delete m_dialog.data();
}

void QtFolderChooser::chooseFolder(QWidget &window, const Request &request, Answer answer)
{
    // A second request while a dialog is open, as by two quick clicks. Its answer comes later, like
    // every other: callers rely on that.
    if (m_dialog != nullptr) {
        m_dialog->raise();
        m_dialog->activateWindow();
        QMetaObject::invokeMethod(
            &m_context, [answer = std::move(answer)] { answer(std::nullopt); },
            Qt::QueuedConnection);
        return;
    }
    m_dialog = new FolderDialog(window, request, m_probe);
    QObject::connect(
        m_dialog, &QDialog::finished, &m_context, [this, answer = std::move(answer)](int result) {
            // No longer the open one, so that the answer may lead to the next request.
            FolderDialog *dialog = std::exchange(m_dialog, nullptr);
            // Not deleted here: this runs inside of its own signal.
            dialog->deleteLater();
            answer(result == QDialog::Accepted ? dialog->chosenFolder() : std::nullopt);
        });
    m_dialog->open(); // modal to the window, without an event loop of its own
}

} // namespace tessaly
