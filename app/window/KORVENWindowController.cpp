#include "app/window/KORVENWindowController.hpp"

#include "app/controls/CellTableView.hpp"
#include "app/controls/InterfaceFile.hpp"
#include "app/controls/KORVENWindow.hpp"
#include "app/controls/Look.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "platform/SettingsStore.hpp"
#include "screens/KORVENScanViewController.hpp"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <array>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int sidebarWidth = 240;
constexpr int sidebarRowHeight = 52;
constexpr std::string_view placementKey = "windowPlacement";

/// The sidebar's cells, in the order of the pages; each is an interface file of its own.
const std::array<QString, KORVENWindowController::pageCount> cellNames{
    u"DriveCell"_s, u"FolderCell"_s, u"ScanCell"_s, u"HistoryCell"_s};

/// The sidebar with a little room above its first row.
QWidget *sidebarAround(QWidget *table)
{
    constexpr int roomAbove = 10;
    auto *sidebar = new QWidget;
    sidebar->setFixedWidth(sidebarWidth);
    sidebar->setAutoFillBackground(true);
    QPalette colors = sidebar->palette();
    colors.setColor(QPalette::Window, look::sidebar);
    sidebar->setPalette(colors);
    auto *layout = new QVBoxLayout(sidebar);
    layout->setContentsMargins(0, roomAbove, 0, 0);
    layout->addWidget(table);
    return sidebar;
}

KORVENWindow::Surface surfaceOfDesktop()
{
    // A Wayland compositor composes by its nature; on X11 there may be none.
    return QGuiApplication::platformName().startsWith(u"wayland"_s)
               ? KORVENWindow::Surface::composited
               : KORVENWindow::Surface::opaque;
}

} // namespace

KORVENWindowController::KORVENWindowController()
    : m_mainWindow(std::make_unique<KORVENWindow>(surfaceOfDesktop()))
{
}

KORVENWindowController::~KORVENWindowController()
{
    if (m_outlineTable != nullptr) {
        m_outlineTable->setDataSource(nullptr);
    }
    m_avc.reset(); // its view goes with it, while the window is still there
}

void KORVENWindowController::awakeFromNib()
{
    if (!m_firstRunFlag) {
        return;
    }
    m_firstRunFlag = false;
    auto *content = new QWidget;
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabView = new QStackedWidget;
    makeSidebar();
    layout->addWidget(sidebarAround(m_outlineTable));
    layout->addWidget(m_tabView, 1);
    m_mainWindow->setContentWidget(content);
    m_mainWindow->setWindowTitle(u"Tessaly"_s);

    m_avc = std::make_unique<KORVENScanViewController>();
    m_avc->awakeFromNib();
    for (int page = 0; page < pageCount; ++page) {
        m_tabView->addWidget(page == scanPage ? m_avc->view() : new QWidget);
    }
    selectPage(drivesPage);
    makeShortcuts();
    m_outlineTable->setFocus();
    restoreWindow();
    m_mainWindow->installEventFilter(this);
}

void KORVENWindowController::makeSidebar()
{
    m_outlineTable = new CellTableView;
    m_outlineTable->setObjectName(u"outlineTable"_s);
    m_outlineTable->setAccessibleName(tr("Screens"));
    m_outlineTable->setRowHeight(sidebarRowHeight);
    QPalette palette = m_outlineTable->palette();
    for (const auto role : {QPalette::Base, QPalette::AlternateBase, QPalette::Window}) {
        palette.setColor(role, look::sidebar);
    }
    palette.setColor(QPalette::Highlight, look::selection);
    m_outlineTable->setPalette(palette);
    for (const QString &name : cellNames) {
        m_outlineTable->registerCells(
            name, [name]() -> std::unique_ptr<QWidget> { return InterfaceFile::load(name).root; });
    }
    m_outlineTable->setDataSource(this);
    connect(m_outlineTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid()) {
                    m_tabView->setCurrentIndex(current.row());
                }
            });
}

void KORVENWindowController::makeShortcuts()
{
    for (int page = 0; page < pageCount; ++page) {
        auto *shortcut = new QShortcut(
            QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + page)), m_mainWindow.get());
        connect(shortcut, &QShortcut::activated, this, [this, page] { selectPage(page); });
    }
    auto *quit = new QShortcut(QKeySequence(QKeySequence::Quit), m_mainWindow.get());
    connect(quit, &QShortcut::activated, m_mainWindow.get(), &QWidget::close);
}

QWidget *KORVENWindowController::viewForTableColumn(int row)
{
    return row >= 0 && row < pageCount
               ? m_outlineTable->makeView(cellNames.at(static_cast<std::size_t>(row)))
               : nullptr;
}

QString KORVENWindowController::searchText(int row) const
{
    switch (row) {
    case drivesPage:
        return tr("Drives");
    case homePage:
        return tr("Home Folder");
    case scanPage:
        return tr("Folder Scan");
    default:
        return tr("History");
    }
}

bool KORVENWindowController::shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed)
{
    return m_avc->shouldTypeSelectForEvent(event, typed);
}

int KORVENWindowController::selectedPage() const
{
    return m_tabView->currentIndex();
}

void KORVENWindowController::selectPage(int page)
{
    m_outlineTable->selectRow(page);
}

void KORVENWindowController::windowLoaded()
{
    // The sidebar has its width from the start.
}

void KORVENWindowController::historyStoreUpdated() {}

void KORVENWindowController::reloadHistoryDelete(const std::optional<std::string> & /*scanKey*/) {}

void KORVENWindowController::loadHistoryItem(const std::string &scanKey)
{
    if (m_avc->isScanRunningNow()) {
        scanRunningAlert();
        return;
    }
    m_avc->loadHistoryItem(scanKey);
    selectPage(scanPage);
}

void KORVENWindowController::scanClicked()
{
    if (m_avc->isScanRunningNow()) {
        scanRunningAlert();
        return;
    }
    selectPage(scanPage);
    m_avc->scanButtonPressed();
}

void KORVENWindowController::refreshTables()
{
    m_avc->refreshTable();
}

void KORVENWindowController::scanRunningAlert()
{
    auto *alert = new QMessageBox(QMessageBox::Warning, {}, tr("Tessaly Message"),
                                  QMessageBox::NoButton, m_mainWindow.get());
    alert->setInformativeText(
        tr("There is a scan currently running.\nPlease try again after the scan completes."));
    alert->addButton(tr("ok"), QMessageBox::AcceptRole);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->open();
}

bool KORVENWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_mainWindow.get() && event->type() == QEvent::Close) {
        storeWindow();
    }
    if (watched == m_mainWindow.get() && event->type() == QEvent::Paint && !m_hasBeenPainted) {
        m_hasBeenPainted = true;
        QMetaObject::invokeMethod(this, &KORVENWindowController::startLoading,
                                  Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void KORVENWindowController::startLoading()
{
    m_avc->startLoading();
}

void KORVENWindowController::restoreWindow()
{
    const auto stored = KORVENAppDelegate::sharedDelegate().services().settings.data(placementKey);
    if (stored) {
        m_mainWindow->restorePlacement(QByteArray(reinterpret_cast<const char *>(stored->data()),
                                                  static_cast<qsizetype>(stored->size())));
    }
}

void KORVENWindowController::storeWindow()
{
    const QByteArray placement = m_mainWindow->placement();
    SettingsStore &settings = KORVENAppDelegate::sharedDelegate().services().settings;
    settings.setData(placementKey,
                     std::as_bytes(std::span(placement.constData(),
                                             static_cast<std::size_t>(placement.size()))));
    settings.flush();
}

} // namespace tessaly
