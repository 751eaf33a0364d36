#pragma once

#include "app/delegate/MainWindow.hpp"
#include "app/window/Pages.hpp"
#include "platform/Services.hpp"

#include <QCoreApplication>
#include <QObject>

#include <functional>
#include <memory>
#include <string_view>

class QAction;
class QKeyEvent;
class QStackedWidget;

namespace tessaly {

class ApplicationMenu;
class FullScreen;
class HomeFolderGrant;
class KORVENRate;
class KORVENWindow;
class MenuCommands;
class PreferenceSheet;
class DeferredPrompt;
class QuitKey;
class Sidebar;
class SplitView;
class SpokenPages;

/// Runs the main window: its frame, the sidebar, the screens, one a page, the program's menu and
/// the sheet with the preferences. The row of the sidebar that is selected and the page that is
/// shown have the same number.
///
/// Ownership: owns the window and the screens. Its destructor cancels scans and waits for them.
/// Threads:   the main thread, but for historyStoreUpdated().
class KORVENWindowController final : public QObject, public MainWindow {
    Q_OBJECT

public:
    /// The pages in their order.
    enum Page { drivesPage, homePage, scanPage, historyPage };

    /// `terminate` ends the program, and may return before it has. Without one, the program's event
    /// loop is ended.
    explicit KORVENWindowController(const Services &services,
                                    std::function<void()> terminate = &QCoreApplication::quit);
    ~KORVENWindowController() override;
    Q_DISABLE_COPY_MOVE(KORVENWindowController)

    /// Shows the window where it was the last time. It is empty at first, so that the user sees it
    /// while the fonts and the screens are loaded. Calls `painted`, which has to call
    /// awakeFromNib(), once the window has been painted or after a timeout.
    void showWindow(std::function<void()> painted);

    /// The first time builds the window's content; later, when the preference sheet has been
    /// loaded, fits that to the system's release.
    void awakeFromNib();

    // What the window is made of. The pages are there from the first awakeFromNib() on.
    [[nodiscard]] KORVENWindow &mainWindow() const noexcept { return *m_mainWindow; }
    [[nodiscard]] KORVENDriveViewController &dvc() const noexcept { return m_pages->drives(); }
    [[nodiscard]] KORVENHomeViewController &hvc() const noexcept { return m_pages->home(); }
    [[nodiscard]] KORVENScanViewController &avc() const noexcept { return m_pages->scan(); }
    [[nodiscard]] KORVENHistoryViewController &lvc() const noexcept { return m_pages->history(); }
    [[nodiscard]] const Pages &pages() const noexcept { return *m_pages; }
    [[nodiscard]] SplitView &splitView() const noexcept { return *m_splitView; }
    [[nodiscard]] Sidebar &sidebar() const noexcept { return *m_sidebar; }
    [[nodiscard]] QStackedWidget &tabView() const noexcept { return *m_tabView; }
    [[nodiscard]] ApplicationMenu &applicationMenu() const;
    [[nodiscard]] QAction &fullscreenMenuItem() const;
    /// nullptr until it has been shown for the first time.
    [[nodiscard]] PreferenceSheet *preferenceSheet() const noexcept { return m_preferenceSheet; }

    [[nodiscard]] int selectedPage() const;
    void selectPage(int page);
    [[nodiscard]] Screen &shownScreen() const;

    void windowLoaded() override;
    void historyStoreUpdated() override;
    void reloadHistoryDelete(const std::optional<std::string> &scanKey) override;
    void loadHistoryItem(const std::string &scanKey) override;
    void scanClicked() override;
    /// Shows the home screen and scans what it scans.
    void scanHomeClicked();

    /// Rebuilds the rows of the scan screens after a preference that they depend on has changed.
    void refreshTables() const;
    /// The same for the drives.
    void refreshTable() const;

    /// Tells the user to wait until the running scan has ended.
    void scanRunningAlert();
    /// Tells the user that the program ends, and ends it when they close the alert.
    void restartAlert();

    void showPreferenceSheet();
    void closePreferenceSheet();

    void customHomeFolder();
    void removeHomeFolder();

    // Other programs of the desktop, and pages on the web.
    void openDiskUtility();
    void openFinder();
    void openSystemPreferences();
    void openInAppStore();
    void openWebHelp();
    void openUrlWebsite();
    void openUrlFacebook();
    void openUrlTwitter();
    void supportClicked();
    void googleClicked();

    void showAbout();

    /// Handles a key that no widget of the window has accepted: Return closes the preference sheet.
    /// Returns whether the key was used.
    bool keyDown(const QKeyEvent &event);
    /// Handles each key that is typed in the sidebar: the space bar shows or closes the preview
    /// panel. Returns whether the key may select a row, which is always true.
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeContent();
    void askToRate();
    void windowDidResize();
    void emptyWindowPainted();
    void startLoading();
    void restoreWindow();
    void storeWindow();

    const Services m_services;
    bool m_firstRunFlag = true;
    bool m_hasPlace = false;
    bool m_contentHasBeenPainted = false;
    std::function<void()> m_emptyWindowPainted;
    std::function<void()> m_terminate;
    // In the order in which they are made; destroyed in the reverse one.
    std::unique_ptr<KORVENWindow> m_mainWindow;
    std::unique_ptr<FullScreen> m_fullScreen;
    std::unique_ptr<HomeFolderGrant> m_homeFolderGrant;
    std::unique_ptr<Pages> m_pages; ///< their views are destroyed with them, before the window
    std::unique_ptr<KORVENRate> m_rateAndReview;
    std::unique_ptr<DeferredPrompt> m_rateMoment; ///< when the user may be asked
    // The window owns these.
    SplitView *m_splitView = nullptr;
    Sidebar *m_sidebar = nullptr;
    QStackedWidget *m_tabView = nullptr;
    PreferenceSheet *m_preferenceSheet = nullptr;

    std::unique_ptr<MenuCommands> m_menuCommands;
    std::unique_ptr<QuitKey> m_quitKey;
    std::unique_ptr<SpokenPages> m_spokenPages;
};

} // namespace tessaly
