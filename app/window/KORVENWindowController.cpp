#include "app/window/KORVENWindowController.hpp"

#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/frame/KORVENTitleView.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "app/window/DeferredPrompt.hpp"
#include "app/window/FullScreen.hpp"
#include "app/window/HomeFolderGrant.hpp"
#include "app/window/KORVENRate.hpp"
#include "app/window/MenuCommands.hpp"
#include "app/window/PageView.hpp"
#include "app/window/PreferenceSheet.hpp"
#include "app/window/QuitKey.hpp"
#include "app/window/RateMessageBox.hpp"
#include "app/window/Sidebar.hpp"
#include "app/window/SplitView.hpp"
#include "app/window/SpokenPages.hpp"
#include "app/window/VendorUrls.hpp"
#include "drives/KORVENDriveViewController.hpp"
#include "history/KORVENHistoryViewController.hpp"
#include "platform/ApplicationLauncher.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/UrlOpener.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "screens/KORVENScanViewController.hpp"

#include <QAction>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QPointer>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(windowLog, "tessaly.window")

/// Timeout for the first paint of the empty window: a window that is out of sight is not painted.
constexpr std::chrono::milliseconds paintTimeout{250};

KORVENWindow::Surface surfaceOfDesktop()
{
    // Wayland always composites; on X11 there may be no compositor.
    return QGuiApplication::platformName().startsWith(u"wayland"_s)
               ? KORVENWindow::Surface::composited
               : KORVENWindow::Surface::opaque;
}

} // namespace

KORVENWindowController::KORVENWindowController(const Services &services,
                                               std::function<void()> terminate)
    : m_services(services), m_terminate(std::move(terminate)),
      m_mainWindow(std::make_unique<KORVENWindow>(surfaceOfDesktop())),
      m_fullScreen(std::make_unique<FullScreen>(*m_mainWindow, services.settings,
                                                KORVENWindow::canBePlaced()
                                                    ? FullScreen::Motion::byProgram
                                                    : FullScreen::Motion::byDesktop)),
      m_homeFolderGrant(
          std::make_unique<HomeFolderGrant>(*m_mainWindow, services, [this] { restartAlert(); }))
{
}

KORVENWindowController::~KORVENWindowController() = default;

void KORVENWindowController::showWindow(std::function<void()> painted)
{
    m_emptyWindowPainted = std::move(painted);
    m_mainWindow->titleView()->setShowsName(false); // drawing it would load the fonts
    m_mainWindow->installEventFilter(this);
    restoreWindow();
    m_mainWindow->show();
    QTimer::singleShot(paintTimeout, this, &KORVENWindowController::emptyWindowPainted);
}

void KORVENWindowController::emptyWindowPainted()
{
    if (const auto painted = std::exchange(m_emptyWindowPainted, nullptr)) {
        qCDebug(windowLog, "painted");
        painted();
    }
}

void KORVENWindowController::awakeFromNib()
{
    if (!m_firstRunFlag) {
        if (m_preferenceSheet != nullptr && KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
            m_preferenceSheet->disableNotifications();
        }
        return;
    }
    m_firstRunFlag = false;
    makeContent();
    connect(m_sidebar, &Sidebar::selectionChanged, m_tabView, &QStackedWidget::setCurrentIndex);
    selectPage(drivesPage);
    m_spokenPages = std::make_unique<SpokenPages>(*m_tabView, *m_pages);
    m_menuCommands = std::make_unique<MenuCommands>(*this);
    m_mainWindow->setApplicationMenu(&applicationMenu());
    m_quitKey = std::make_unique<QuitKey>(
        *m_mainWindow, applicationMenu().action(ApplicationMenu::Item::quit).shortcut(),
        [this] { m_terminate(); });
    m_splitView->parentWidget()->show(); // what is not shown gets no focus
    m_sidebar->outlineTable().setFocus();
    m_fullScreen->setFullscreenMenuItem(&fullscreenMenuItem());
    connect(&fullscreenMenuItem(), &QAction::triggered, m_fullScreen.get(),
            &FullScreen::toggleFullScreen);
    restoreWindow();
    m_mainWindow->installEventFilter(this);
    m_rateAndReview = std::make_unique<KORVENRate>(
        storeIdentifier(), m_services.settings, m_services.urls,
        [box = RateMessageBox(*m_mainWindow)](const RateMessageBox::Request &request) {
            return box.runModal(request);
        });
    askToRate();
}

void KORVENWindowController::makeContent()
{
    m_pages = std::make_unique<Pages>(m_services);
    m_pages->awakeFromNib();
    m_tabView = new PageView;
    std::vector<Sidebar::Row> rows;
    for (const Pages::Page &page : m_pages->all()) {
        m_tabView->addWidget(page.screen->view());
        rows.push_back({page.cellIdentifier, page.title()});
    }
    m_sidebar = new Sidebar(std::move(rows), [this](const QKeyEvent &event, const QString &typed) {
        return shouldTypeSelectForEvent(event, typed);
    });
    m_splitView = new SplitView;
    m_splitView->addWidget(m_sidebar);
    m_splitView->addWidget(m_tabView);
    m_splitView->setPosition(Sidebar::usualWidth);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitView);
    m_mainWindow->setContentWidget(content);
    m_mainWindow->setWindowTitle(u"Tessaly"_s);
    m_mainWindow->titleView()->setShowsName(true);
}

/// Asks the user to rate the program, once nothing else is in front of the window. Does not ask
/// when there is nowhere to rate it: the vendor has set no store, and there is no software centre.
void KORVENWindowController::askToRate()
{
    const auto ask = [controller = QPointer(this)](bool canOpen) {
        if (canOpen && controller != nullptr) {
            controller->m_rateMoment =
                std::make_unique<DeferredPrompt>(*controller->m_mainWindow, [controller] {
                    controller->m_rateAndReview->checkRateAndReview();
                });
        }
    };
    const std::string page = storePage(storeIdentifier());
    if (!m_rateAndReview->isDue()) {
        return;
    }
    if (isSetByVendor(page)) {
        ask(true);
    } else {
        m_services.urls.canOpenUrl(page, ask);
    }
}

ApplicationMenu &KORVENWindowController::applicationMenu() const
{
    return m_menuCommands->menu();
}

QAction &KORVENWindowController::fullscreenMenuItem() const
{
    return applicationMenu().action(ApplicationMenu::Item::fullScreen);
}

Screen &KORVENWindowController::shownScreen() const
{
    return m_pages->screen(selectedPage());
}

int KORVENWindowController::selectedPage() const
{
    return m_tabView->currentIndex();
}

void KORVENWindowController::selectPage(int page)
{
    m_sidebar->selectRow(page);
}

void KORVENWindowController::windowLoaded()
{
    const KORVENAppDelegate &delegate = KORVENAppDelegate::sharedDelegate();
    if (delegate.run10p7Mode() || delegate.run10p8Mode()) {
        m_splitView->setPosition(Sidebar::usualWidth);
    }
}

void KORVENWindowController::windowDidResize()
{
    windowLoaded(); // the title bar follows the window by itself
}

void KORVENWindowController::historyStoreUpdated()
{
    lvc().reloadHistory();
}

void KORVENWindowController::reloadHistoryDelete(const std::optional<std::string> &scanKey)
{
    lvc().reloadHistoryDelete(scanKey);
}

void KORVENWindowController::loadHistoryItem(const std::string &scanKey)
{
    if (avc().isScanRunningNow()) {
        scanRunningAlert();
        return;
    }
    avc().loadHistoryItem(scanKey);
    selectPage(scanPage);
}

void KORVENWindowController::scanClicked()
{
    if (avc().isScanRunningNow()) {
        scanRunningAlert();
        return;
    }
    selectPage(scanPage);
    avc().scanButtonPressed();
}

void KORVENWindowController::scanHomeClicked()
{
    selectPage(homePage);
    hvc().scanButtonPressed();
}

void KORVENWindowController::refreshTables()
{
    hvc().refreshTable();
    avc().refreshTable();
}

void KORVENWindowController::refreshTable()
{
    dvc().refreshTable();
}

void KORVENWindowController::scanRunningAlert()
{
    MessageAlert::begin(
        *m_mainWindow, tr("Tessaly Message"),
        tr("There is a scan currently running.\nPlease try again after the scan completes."));
}

void KORVENWindowController::restartAlert()
{
    MessageAlert::begin(*m_mainWindow, tr("Tessaly Message"),
                        tr("Saving changes and exiting.\nPlease restart the app."),
                        [this](int returnCode) {
                            if (returnCode == MessageAlert::firstButtonReturn) {
                                m_terminate();
                            }
                        });
}

void KORVENWindowController::showPreferenceSheet()
{
    if (m_preferenceSheet == nullptr) {
        m_preferenceSheet = new PreferenceSheet(*m_mainWindow, m_services.settings);
        awakeFromNib();
        connect(m_preferenceSheet, &PreferenceSheet::resultRowsChanged, this,
                &KORVENWindowController::refreshTables);
        connect(m_preferenceSheet, &PreferenceSheet::driveRowsChanged, this,
                &KORVENWindowController::refreshTable);
        connect(m_preferenceSheet, &PreferenceSheet::customHomeFolderClicked, this,
                &KORVENWindowController::customHomeFolder);
        connect(m_preferenceSheet, &PreferenceSheet::removeHomeFolderClicked, this,
                &KORVENWindowController::removeHomeFolder);
        connect(m_preferenceSheet, &PreferenceSheet::closeClicked, this,
                &KORVENWindowController::closePreferenceSheet);
    }
    m_preferenceSheet->showPreferenceSheet();
}

void KORVENWindowController::closePreferenceSheet()
{
    if (m_preferenceSheet != nullptr) {
        m_preferenceSheet->end();
    }
}

void KORVENWindowController::customHomeFolder()
{
    m_homeFolderGrant->customHomeFolder();
}

void KORVENWindowController::removeHomeFolder()
{
    m_homeFolderGrant->removeHomeFolder();
}

void KORVENWindowController::openDiskUtility()
{
    m_services.applications.launchApplication("Disk Utility.app");
}

void KORVENWindowController::openFinder()
{
    m_services.applications.launchApplication("Finder.app");
}

void KORVENWindowController::openSystemPreferences()
{
    m_services.applications.launchApplication("System Preferences.app");
}

void KORVENWindowController::openInAppStore()
{
    m_services.urls.openUrl(storePage(storeIdentifier()));
}

void KORVENWindowController::openWebHelp()
{
    m_services.urls.openUrl(vendorHelpPage());
}

void KORVENWindowController::openUrlWebsite()
{
    m_services.urls.openUrl(vendorWebsite());
}

void KORVENWindowController::openUrlFacebook()
{
    m_services.urls.openUrl(vendorFacebookPage());
}

void KORVENWindowController::openUrlTwitter()
{
    m_services.urls.openUrl(vendorTwitterPage());
}

void KORVENWindowController::supportClicked()
{
    m_services.urls.openUrl(vendorSupportPage());
}

void KORVENWindowController::googleClicked()
{
    m_services.urls.openUrl(vendorGooglePage());
}

void KORVENWindowController::showAbout()
{
    MessageAlert::begin(*m_mainWindow,
                        tr("Tessaly %1").arg(QCoreApplication::applicationVersion()).trimmed(),
                        tr("Shows where the space on your disks has gone.\n"
                           "Licensed under the Apache License 2.0."));
}

bool KORVENWindowController::keyDown(const QKeyEvent &event)
{
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!isReturn || m_preferenceSheet == nullptr || !m_preferenceSheet->isVisible()) {
        return false;
    }
    closePreferenceSheet();
    return true;
}

bool KORVENWindowController::shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed)
{
    return avc().shouldTypeSelectForEvent(event, typed);
}

bool KORVENWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_mainWindow.get()) {
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Close:
        storeWindow();
        break;
    case QEvent::Paint:
        if (m_emptyWindowPainted != nullptr) {
            QMetaObject::invokeMethod(this, &KORVENWindowController::emptyWindowPainted,
                                      Qt::QueuedConnection);
        } else if (!m_firstRunFlag && !std::exchange(m_contentHasBeenPainted, true)) {
            QMetaObject::invokeMethod(this, &KORVENWindowController::startLoading,
                                      Qt::QueuedConnection);
        }
        break;
    case QEvent::Resize:
        if (!m_firstRunFlag) {
            windowDidResize();
        }
        break;
    case QEvent::KeyPress: {
        if (m_firstRunFlag) {
            break; // no content yet
        }
        const auto &key = static_cast<const QKeyEvent &>(*event);
        return keyDown(key) || applicationMenu().handleKey(key);
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void KORVENWindowController::startLoading()
{
    qCDebug(windowLog, "content painted");
    m_services.settings.flush(); // what the start has counted is there after a crash
    for (const Pages::Page &page : m_pages->all()) {
        page.screen->startLoading();
    }
}

void KORVENWindowController::restoreWindow()
{
    if (std::exchange(m_hasPlace, true)) {
        return;
    }
    const auto stored = m_services.settings.data(settingsKey::windowPlacement);
    if (stored) {
        m_mainWindow->restorePlacement(QByteArray(reinterpret_cast<const char *>(stored->data()),
                                                  static_cast<qsizetype>(stored->size())));
    }
    m_fullScreen->restoreState();
}

void KORVENWindowController::storeWindow()
{
    const QByteArray placement = m_mainWindow->placement();
    SettingsStore &settings = m_services.settings;
    settings.setData(settingsKey::windowPlacement,
                     std::as_bytes(std::span(placement.constData(),
                                             static_cast<std::size_t>(placement.size()))));
    settings.flush();
}

} // namespace tessaly
