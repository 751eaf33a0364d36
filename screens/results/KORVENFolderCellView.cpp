#include "screens/results/KORVENFolderCellView.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "platform/FileManager.hpp"
#include "screens/results/KORVENViewController.hpp"

#include <QAction>
#include <QLabel>
#include <QLoggingCategory>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(cellLog, "tessaly.screens")

} // namespace

// A copy of what an action needs. A menu stays open while the table is reloaded, and its cell may
// show another row by then.
struct KORVENFolderCellView::Target {
    QPointer<KORVENViewController> controller;
    QString folder; ///< the text of the path that the screen shows
    QString name;

    void preview() const
    {
        if (controller) {
            controller->quickLookItem(nameOfText(folder + u'/' + name));
        }
    }
    void showInFinder() const
    {
        // Control characters in a name must not reach the terminal, hence drawableText().
        qCInfo(cellLog, "name: %s", qUtf8Printable(drawableText(name)));
        if (controller) {
            controller->fileManager().reveal(path());
        }
    }
    void showInfo() const
    {
        if (controller) {
            controller->fileManager().showInformation(path());
        }
    }

private:
    /// With two slashes in front, of which the file manager makes one.
    [[nodiscard]] std::string path() const
    {
        return nameOfText(name == u"/" ? name : u'/' + folder + u'/' + name);
    }
};

KORVENFolderCellView::KORVENFolderCellView(QWidget *parent)
    : QWidget(parent), m_quickLookMenu(new QAction(tr("Quick Look"), this))
{
    connect(m_quickLookMenu, &QAction::triggered, this, &KORVENFolderCellView::showQuickLook);
}

KORVENFolderCellView::~KORVENFolderCellView() = default;

std::unique_ptr<KORVENFolderCellView>
KORVENFolderCellView::tableCellViewWithNibNamed(const QString &name, KORVENViewController *owner)
{
    InterfaceFile::Loaded loaded = InterfaceFile::load(name);
    auto *cell = qobject_cast<KORVENFolderCellView *>(loaded.root.get());
    if (cell == nullptr) {
        qCWarning(cellLog, "%s has no cell: %s", qUtf8Printable(name),
                  qUtf8Printable(loaded.error));
        return nullptr;
    }
    // The root and the cell are one object, which moves to a pointer of its own type.
    (void)loaded.root.release();
    std::unique_ptr<KORVENFolderCellView> owned(cell);
    owned->connectOutlets();
    owned->setMyViewController(owner);
    return owned;
}

void KORVENFolderCellView::connectOutlets()
{
    m_iconImage = &outlet<IconView>(*this, "iconImage");
    m_folderName = &outlet<NameLabel>(*this, "folderName");
    m_folderSize = &outlet<QLabel>(*this, "folderSize");
    m_folderGraph = &outlet<KORVENProgressBar>(*this, "folderGraph");
    auto *menuButton = &outlet<QToolButton>(*this, "menuButton");
    // The bars of all rows begin at the same place, at any size of the font.
    const QFontMetrics metrics = m_folderSize->fontMetrics();
    const int widestSize = metrics.horizontalAdvance(QStringLiteral("0000.00 MB"));
    m_folderSize->setMinimumWidth(std::max(m_folderSize->minimumWidth(), widestSize));
    m_iconImage->setClickable(true);
    m_folderName->setClickable(true);
    connect(m_iconImage, &IconView::clicked, this, &KORVENFolderCellView::clickedFolder);
    connect(m_folderName, &NameLabel::clicked, this, &KORVENFolderCellView::clickedName);
    connect(menuButton, &QToolButton::clicked, this, [this, menuButton] {
        popUpMenu(menuButton->mapToGlobal(menuButton->rect().bottomLeft()));
    });
}

void KORVENFolderCellView::setAllowsClickDrill(bool allows)
{
    m_allowsClickDrill = allows;
    // Hidden rather than disabled: a folder is never previewed by the menu, whatever the state of
    // the screen.
    m_quickLookMenu->setVisible(!allows);
}

KORVENViewController *KORVENFolderCellView::myViewController() const noexcept
{
    return m_myViewController;
}

void KORVENFolderCellView::setMyViewController(KORVENViewController *controller)
{
    m_myViewController = controller;
}

KORVENFolderCellView::Target KORVENFolderCellView::target() const
{
    const NameLabel *folder = m_myViewController ? m_myViewController->folderNameField() : nullptr;
    // The path and the name are taken from the labels, whose texts lead back to the same bytes (see
    // NameText.hpp). So the actions go by what the user sees.
    return {m_myViewController, folder != nullptr ? folder->text() : QString(),
            m_folderName != nullptr ? m_folderName->text() : QString()};
}

/// The paths of the actions begin with the folder that the screen shows. Without one they would
/// lead to the root folder.
bool KORVENFolderCellView::canAct() const
{
    return !m_myViewController || m_myViewController->canActOnRows();
}

void KORVENFolderCellView::goOrPreview()
{
    if (!m_allowsClickDrill) {
        showQuickLook();
    } else if (m_myViewController && canAct()) {
        // canAct() at the click: a scan may have been cancelled since the cell was filled.
        m_myViewController->drillDownOneLevel(nameOfText(target().name));
    }
}

void KORVENFolderCellView::showQuickLook()
{
    if (canAct()) {
        target().preview();
    }
}

void KORVENFolderCellView::showInFinder()
{
    if (canAct()) {
        target().showInFinder();
    }
}

void KORVENFolderCellView::showInfo()
{
    if (canAct()) {
        target().showInfo();
    }
}

QMenu *KORVENFolderCellView::popUpMenu(const QPoint &place)
{
    // A child of the window: the cell may be reused or destroyed while the menu is open.
    auto *menu = new QMenu(window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const Target chosen = target();
    const auto add = [&](const QString &title, void (Target::*run)() const) {
        // The lambda holds the copy. The screen in it is guarded by a QPointer.
        QAction *action = menu->addAction(title, menu, [chosen, run] { (chosen.*run)(); });
        action->setEnabled(canAct());
        return action;
    };
    add(m_quickLookMenu->text(), &Target::preview)->setVisible(!m_allowsClickDrill);
    add(tr("Show in File Manager"), &Target::showInFinder);
    add(tr("Show Info"), &Target::showInfo);
    menu->popup(place);
    return menu;
}

} // namespace tessaly
