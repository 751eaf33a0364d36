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
    // The window is shown before anything else is loaded. Fonts, icons and the four screens took
    // more than half of the time up to the first paint.
    m_emptyWindowPainted = std::move(painted);
    m_mainWindow->titleView()->setShowsName(false); // drawing it would load the fonts
    m_mainWindow->installEventFilter(this);
    // Before show(), so that the window appears in its place instead of moving there.
    restoreWindow();
    m_mainWindow->show();
    QTimer::singleShot(paintTimeout, this, &KORVENWindowController::emptyWindowPainted);
}

void KORVENWindowController::emptyWindowPainted()
{
    // Called by the paint, by each further paint that is queued before the first call, and by the
    // timeout. Only the first of them counts.
    if (const auto painted = std::exchange(m_emptyWindowPainted, nullptr)) {
        qCDebug(windowLog, "painted");
        painted();
    }
}

void KORVENWindowController::awakeFromNib()
{
    // Called once more when the preference sheet has been loaded: see showPreferenceSheet().
    if (!m_firstRunFlag) {
        if (m_preferenceSheet != nullptr && KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
            m_preferenceSheet->disableNotifications();
        }
        return;
    }
    m_firstRunFlag = false;
    makeContent();
    // Connected before the first row is selected, so that row and page agree from the start. From
    // here on the sidebar leads: a page is only ever changed by selecting its row.
    connect(m_sidebar, &Sidebar::selectionChanged, m_tabView, &QStackedWidget::setCurrentIndex);
    selectPage(drivesPage);
    m_spokenPages = std::make_unique<SpokenPages>(*m_tabView, *m_pages);
    // Within the same call as makeContent(): the drives screen has asked for a disk utility by
    // then, and its answer, which comes from the event loop, must not be missed.
    m_menuCommands = std::make_unique<MenuCommands>(*this);
    m_mainWindow->setApplicationMenu(&applicationMenu());
    // The menu's key works in this window alone. The preview panel and information windows are
    // windows of their own, which do not know the menu.
    m_quitKey = std::make_unique<QuitKey>(
        *m_mainWindow, applicationMenu().action(ApplicationMenu::Item::quit).shortcut(),
        [this] { m_terminate(); });
    m_splitView->parentWidget()->show(); // what is not shown gets no focus
    m_sidebar->outlineTable().setFocus();
    m_fullScreen->setFullscreenMenuItem(&fullscreenMenuItem());
    connect(&fullscreenMenuItem(), &QAction::triggered, m_fullScreen.get(),
            &FullScreen::toggleFullScreen);
    // For a window that showWindow() did not show; the second time it does nothing.
    restoreWindow();
    // Likewise: Qt keeps a filter that is installed again only once.
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
    // The screens exist before the views around them. Stack and sidebar take all that they know of
    // a page from this list.
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
    // The content needs the fonts anyway, so from here on the title costs nothing more.
    m_mainWindow->titleView()->setShowsName(true);
}

/// Asks the user to rate the program, once nothing else is in front of the window. Does not ask
/// when there is nowhere to rate it: the vendor has set no store, and there is no software centre.
void KORVENWindowController::askToRate()
{
    // The answer comes from the event loop, and the services outlive this controller: it may be
    // destroyed by then.
    const auto ask = [controller = QPointer(this)](bool canOpen) {
        if (canOpen && controller != nullptr) {
            controller->m_rateMoment =
                std::make_unique<DeferredPrompt>(*controller->m_mainWindow, [controller] {
                    controller->m_rateAndReview->checkRateAndReview();
                });
        }
    };
    const std::string page = storePage(storeIdentifier());
    // Before the question whether anything opens the page, which searches the installed programs: a
    // start that does not ask should not pay for that.
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
    // On the old releases the divider is put back at each resize. Elsewhere SplitView keeps the
    // width of the sidebar by itself.
    windowLoaded(); // the title bar follows the window by itself
}

void KORVENWindowController::historyStoreUpdated()
{
    // On the thread that added the record. reloadHistory() touches no view: it schedules one load
    // on the main thread, however many records come before that runs.
    lvc().reloadHistory();
}

void KORVENWindowController::reloadHistoryDelete(const std::optional<std::string> &scanKey)
{
    lvc().reloadHistoryDelete(scanKey);
}

void KORVENWindowController::loadHistoryItem(const std::string &scanKey)
{
    // The screen shows one result, and the running scan is about to set it.
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
    // The page first: the folder dialog opens over the screen that is going to scan.
    selectPage(scanPage);
    avc().scanButtonPressed();
}

void KORVENWindowController::scanHomeClicked()
{
    selectPage(homePage);
    hvc().scanButtonPressed();
}

void KORVENWindowController::refreshTables() const
{
    // Both, whichever is shown: the hidden one would otherwise come back with the rows of the old
    // preference.
    hvc().refreshTable();
    avc().refreshTable();
}

void KORVENWindowController::refreshTable() const
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
    // The home screen reads its folder once, when the program starts. So a changed grant ends the
    // program, and the alert has no button to refuse that.
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
        // Loaded when it is first asked for: another interface file would delay the content at each
        // start. The window owns it and keeps it.
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
    // The three names are required. The Linux launcher maps them to the desktop's own programs.
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
    // The sheet leaves Return alone, so it arrives here, like any key that no widget of the window
    // accepts.
    closePreferenceSheet();
    return true;
}

bool KORVENWindowController::shouldTypeSelectForEvent(const QKeyEvent &event,
                                                      const QString &typed) const
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
        // Before Qt hides the window, so that the placement is the one that the user left. Quitting
        // and signals close the window first, too.
        storeWindow();
        break;
    case QEvent::Paint:
        // Queued, both: a filter sees the event before the window has handled it, so nothing is on
        // the screen yet. Loading from here would delay the very paint that it waits for.
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
        // Qt hands a key to the focus widget, then to its parents, and to the window last. So this
        // sees only what nothing else has used, and a text field keeps its letters.
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
    // Scans that were shown last are read now and not earlier: a million nodes take 0.1 s, and the
    // window would stay empty for as long.
    for (const Pages::Page &page : m_pages->all()) {
        page.screen->startLoading();
    }
}

void KORVENWindowController::restoreWindow()
{
    if (std::exchange(m_hasPlace, true)) {
        return;
    }
    const auto stored = m_services.settings.data(settings_key::windowPlacement);
    if (stored) {
        m_mainWindow->restorePlacement(QByteArray(reinterpret_cast<const char *>(stored->data()),
                                                  static_cast<qsizetype>(stored->size())));
    }
    // Second, since it overrules the placement above. It has one only if the program ended in full
    // screen, and then that one is the window's.
    m_fullScreen->restoreState();
}

void KORVENWindowController::storeWindow()
{
    const QByteArray placement = m_mainWindow->placement();
    SettingsStore &settings = m_services.settings;
    settings.setData(settings_key::windowPlacement,
                     std::as_bytes(std::span(placement.constData(),
                                             static_cast<std::size_t>(placement.size()))));
    settings.flush();
}

} // namespace tessaly
