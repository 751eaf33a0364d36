#include "platform/linux/files/FolderDialog.hpp"

#include "app/controls/text/NameText.hpp"
#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/FileUrl.hpp"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStandardPaths>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize usualSize(680, 440);
constexpr int placesWidth = 150;
constexpr int pathRole = Qt::UserRole; ///< of items: a QByteArray

QString shownText(const std::string &path)
{
    return QString::fromStdString(tree::printableText(path));
}

std::string pathOf(const QListWidgetItem &item)
{
    return item.data(pathRole).toByteArray().toStdString();
}

/// $HOME as it is: asking the password database may block on a server of accounts.
std::string homeFolder()
{
    const char *home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? home : "/";
}

QListWidgetItem *newItem(const QIcon &icon, const std::string &name, const std::string &path)
{
    auto *item = new QListWidgetItem(icon, shownText(name));
    item->setData(pathRole, QByteArray::fromStdString(path));
    return item;
}

} // namespace

FolderDialog::FolderDialog(QWidget &window, const FolderChooser::Request &request,
                           const std::string &probe)
    : QDialog(window.window()), m_lister(probe), m_check(probe)
{
    setWindowTitle(tr("Choose a Folder"));
    makeWidgets(request.confirmTitle);
    makePlaces();
    connectListers();
    resize(usualSize);
    showFolder(request.initialFolder.starts_with('/') ? request.initialFolder : homeFolder());
    m_path->setFocus(); // so that a path can be typed or pasted at once
}

FolderDialog::~FolderDialog() = default;

void FolderDialog::makeWidgets(const std::string &confirmTitle)
{
    auto *up = new QToolButton;
    up->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
    up->setObjectName(u"upButton"_s);
    up->setAccessibleName(tr("Parent Folder"));
    up->setToolTip(tr("Parent Folder"));
    up->setShortcut(Qt::ALT | Qt::Key_Up);
    connect(up, &QToolButton::clicked, this, &FolderDialog::goUp);

    m_places = new QListWidget;
    m_places->setObjectName(u"places"_s);
    m_places->setAccessibleName(tr("Places"));
    m_places->setFixedWidth(placesWidth);
    // For Return, which a list passes on to the dialog.
    m_places->installEventFilter(this);
    connect(m_places, &QListWidget::itemClicked, this, &FolderDialog::enter);

    m_folders = new QListWidget;
    m_folders->setObjectName(u"folders"_s);
    m_folders->setAccessibleName(tr("Folders"));
    m_folders->setSortingEnabled(true);
    m_folders->setUniformItemSizes(true); // else each of thousands of items is measured
    m_folders->installEventFilter(this);
    connect(m_folders, &QListWidget::itemDoubleClicked, this, &FolderDialog::enter);
    connect(m_folders, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) {
        showPath(item != nullptr ? pathOf(*item) : m_folder);
    });

    m_message = new QLabel;
    m_message->setObjectName(u"message"_s);
    m_message->setTextFormat(Qt::PlainText); // a name may look like HTML
    m_message->setWordWrap(true);

    m_path = new QLineEdit;
    m_path->setObjectName(u"path"_s);
    auto *caption = new QLabel(tr("Directory:"));
    caption->setBuddy(m_path);
    // What the message says is about the path before.
    connect(m_path, &QLineEdit::textEdited, m_message, &QLabel::clear);

    m_showHidden = new QCheckBox(tr("Show hidden folders"));
    connect(m_showHidden, &QCheckBox::toggled, this, &FolderDialog::showHiddenFolders);

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    m_buttons->button(QDialogButtonBox::Open)->setText(QString::fromStdString(confirmTitle));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &FolderDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &FolderDialog::reject);

    auto *pathRow = new QHBoxLayout;
    pathRow->addWidget(up);
    pathRow->addWidget(caption);
    pathRow->addWidget(m_path, 1);
    auto *lists = new QHBoxLayout;
    lists->addWidget(m_places);
    lists->addWidget(m_folders, 1);
    auto *buttonRow = new QHBoxLayout;
    buttonRow->addWidget(m_showHidden);
    buttonRow->addWidget(m_buttons, 1);
    auto *all = new QVBoxLayout(this);
    all->addLayout(pathRow);
    all->addLayout(lists, 1);
    all->addWidget(m_message);
    all->addLayout(buttonRow);
}

void FolderDialog::makePlaces()
{
    using Place = QStandardPaths::StandardLocation;
    const std::string home = homeFolder();
    const QStyle &icons = *style();
    m_places->addItem(
        newItem(icons.standardIcon(QStyle::SP_DirHomeIcon), tr("Home").toStdString(), home));
    m_places->addItem(
        newItem(icons.standardIcon(QStyle::SP_ComputerIcon), tr("Computer").toStdString(), "/"));
    // QStandardPaths returns the home folder for a place that the user has not set up, so that one
    // is left out.
    for (const Place place :
         {Place::DesktopLocation, Place::DocumentsLocation, Place::DownloadLocation,
          Place::MusicLocation, Place::PicturesLocation, Place::MoviesLocation}) {
        const std::string path =
            QFile::encodeName(QStandardPaths::writableLocation(place)).toStdString();
        if (path.starts_with('/') && tree::cleanPath(path) != tree::cleanPath(home)) {
            m_places->addItem(
                newItem(icons.standardIcon(QStyle::SP_DirIcon), tree::fileName(path), path));
        }
    }
}

void FolderDialog::connectListers()
{
    connect(&m_lister, &FolderLister::opened, this, [this] {
        m_isStarting = false;
        m_isThere = true;
    });
    connect(&m_lister, &FolderLister::failed, this, &FolderDialog::takeFailure);
    connect(&m_lister, &FolderLister::found, this, &FolderDialog::addFolders);
    connect(&m_lister, &FolderLister::finished, this, &FolderDialog::endReading);
    connect(&m_check, &FolderLister::opened, this, [this] {
        m_check.stop();
        m_chosen = m_checked;
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): it is confirmed by now
    });
    connect(&m_check, &FolderLister::failed, this, &FolderDialog::takeCheckFailure);
}

void FolderDialog::showFolder(const std::string &path)
{
    m_check.stop(); // turning to another folder takes back a confirmation that hangs
    m_folder = tree::cleanPath(path);
    m_isThere = false;
    m_folders->clear();
    if (!m_path->isModified()) { // what the user is typing stays
        showPath(m_folder);
    }
    m_message->setText(tr("Looking into “%1”…").arg(shownText(tree::fileName(m_folder))));
    m_isReading = true;
    // In another process: a folder on a server that does not answer would block this one.
    m_lister.list(m_folder);
}

void FolderDialog::endReading()
{
    if (std::exchange(m_isReading, false)) {
        m_message->clear();
    }
}

void FolderDialog::goUp()
{
    m_path->setModified(false);
    m_isStarting = false;
    showFolder(tree::parentPath(m_folder));
}

void FolderDialog::enter(const QListWidgetItem *item)
{
    if (item != nullptr) {
        m_path->setModified(false);
        m_isStarting = false;
        showFolder(pathOf(*item));
    }
}

void FolderDialog::addFolders(const std::vector<std::string> &names)
{
    endReading(); // there may be more, but what is there can be used
    const QIcon icon = style()->standardIcon(QStyle::SP_DirIcon);
    for (const std::string &name : names) {
        QListWidgetItem *item = newItem(icon, name, tree::joinPath(m_folder, name));
        // Items are sorted as they come. They appear while the folder is still being read.
        m_folders->addItem(item);
        // Hidden and not left out: the check box then works without reading the folder again.
        item->setHidden(name.starts_with('.') && !m_showHidden->isChecked());
    }
}

void FolderDialog::showHiddenFolders(bool areShown)
{
    for (int row = 0; row < m_folders->count(); ++row) {
        QListWidgetItem *item = m_folders->item(row);
        item->setHidden(!areShown && tree::fileName(pathOf(*item)).starts_with('.'));
    }
}

void FolderDialog::takeFailure(int error)
{
    // The folder to start in may be gone, or not readable: then the nearest one above it.
    if (m_isStarting && m_folder != "/") {
        showFolder(tree::parentPath(m_folder));
        return;
    }
    m_isReading = false;
    m_message->setText(tr("“%1” cannot be read: %2")
                           .arg(shownText(m_folder),
                                QString::fromStdString(std::generic_category().message(error))));
}

void FolderDialog::takeCheckFailure(int error)
{
    m_check.stop();
    if (error == ENOENT || error == ENOTDIR) {
        m_message->setText(tr("There is no folder “%1”.").arg(shownText(m_checked)));
    } else {
        m_message->setText(
            tr("“%1” cannot be read: %2")
                .arg(shownText(m_checked),
                     QString::fromStdString(std::generic_category().message(error))));
    }
    m_path->setFocus();
}

void FolderDialog::accept()
{
    const std::string path = tree::cleanPath(typedPath());
    if (path == m_folder && m_isThere) { // known to be a folder, also when it is not readable
        m_chosen = path;
        QDialog::accept();
        return;
    }
    m_checked = path;
    m_isReading = false;
    m_message->setText(tr("Looking for “%1”…").arg(shownText(path)));
    // The path is checked by opening it as a folder. The dialog stays usable, and another choice
    // takes the check back.
    m_check.list(path);
}

void FolderDialog::showPath(const std::string &path)
{
    m_shownPath = path;
    m_path->setText(textOfName(path));
    m_path->selectAll(); // typing replaces it
}

/// What the line says, as an absolute path.
std::string FolderDialog::typedPath() const
{
    // Unless it was edited, the bytes themselves are used: a line edit is not made for every byte
    // that a name can have.
    if (!m_path->isModified() && m_path->text() == textOfName(m_shownPath)) {
        return m_shownPath;
    }
    std::string text = nameOfText(m_path->text());
    if (text.starts_with('/')) {
        return text;
    }
    // As shells and file managers read it. "~name" needs the password database, and is a relative
    // path here.
    if (text == "~" || text.starts_with("~/")) {
        return homeFolder() + text.substr(1);
    }
    if (const auto path = pathOfFileUrl(text)) { // as file managers copy them
        return *path;
    }
    return text.empty() ? m_folder : tree::joinPath(m_folder, text);
}

bool FolderDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // Otherwise it would press the button, too.
            enter(static_cast<QListWidget *>(watched)->currentItem());
            return true;
        }
        if (key == Qt::Key_Backspace && watched == m_folders) {
            goUp();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace tessaly
