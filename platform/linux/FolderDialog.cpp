#include "platform/linux/FolderDialog.hpp"

#include "platform/FileUrl.hpp"
#include "platform/linux/CleanPath.hpp"

#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QUrl>

#include <cstdlib>

#include <sys/stat.h>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

/// What Qt calls the line in which names are typed.
const QString editName = u"fileNameEdit"_s;

bool isFolder(const std::string &path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Whether Qt, to which a path is a text, finds the same folder by it.
bool isPathForQt(const std::string &path)
{
    return QFile::encodeName(QFile::decodeName(path.c_str())) == path.c_str();
}

std::string homeFolder()
{
    const char *home = std::getenv("HOME");
    return home != nullptr ? home : "/";
}

/// The folder, or else the nearest one above it, in which the dialog can start.
std::string startFor(const std::string &wanted)
{
    std::string folder = cleanPath(wanted.starts_with('/') ? wanted : homeFolder());
    while (folder != "/" && !(isFolder(folder) && isPathForQt(folder))) {
        folder = folderOf(folder);
    }
    return folder;
}

} // namespace

FolderDialog::FolderDialog(QWidget &window, const FolderChooser::Request &request)
    : QFileDialog(window.window(), tr("Choose a Folder"),
                  QFile::decodeName(startFor(request.initialFolder).c_str()))
{
    setFileMode(QFileDialog::Directory);
    setOption(QFileDialog::ShowDirsOnly);
    setSupportedSchemes({u"file"_s});
    setLabelText(QFileDialog::Accept, QString::fromStdString(request.confirmTitle));
}

std::optional<std::string> FolderDialog::chosenFolder() const
{
    if (m_typedFolder) {
        return m_typedFolder;
    }
    const QList<QUrl> urls = selectedUrls();
    const auto path =
        urls.isEmpty() ? std::nullopt : pathOfFileUrl(urls.first().toEncoded().toStdString());
    return path ? std::optional(cleanPath(*path)) : std::nullopt;
}

void FolderDialog::showEvent(QShowEvent *event)
{
    QFileDialog::showEvent(event);
    // Only Qt's own dialog comes here, and only now it is sure to have its parts.
    if (const auto *edit = findChild<QLineEdit *>(editName)) {
        connect(edit, &QLineEdit::textChanged, this, &FolderDialog::letTypedFolderBeConfirmed,
                Qt::UniqueConnection);
    }
}

void FolderDialog::accept()
{
    m_typedFolder = typedFolder();
    if (m_typedFolder) {
        // Not by way of QFileDialog: it knows no URLs, and prefers what it has selected in its list
        // while a path was being typed, which may be another folder on the way.
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): as the comment above says
    } else {
        QFileDialog::accept();
    }
}

void FolderDialog::letTypedFolderBeConfirmed()
{
    const auto *buttons = findChild<QDialogButtonBox *>();
    QPushButton *button = buttons != nullptr ? buttons->button(QDialogButtonBox::Open) : nullptr;
    if (button != nullptr && typedFolder()) {
        button->setEnabled(true);
    }
}

std::optional<std::string> FolderDialog::typedFolder() const
{
    const auto *edit = findChild<QLineEdit *>(editName);
    if (edit == nullptr) {
        return std::nullopt;
    }
    const std::string text = edit->text().toStdString();
    const auto path = text.starts_with('/') ? std::optional(text) : pathOfFileUrl(text);
    return path && isFolder(*path) ? std::optional(cleanPath(*path)) : std::nullopt;
}

} // namespace tessaly
