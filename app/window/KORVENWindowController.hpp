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
/// Ownership: owns the window and the screens. When it goes, scans are cancelled and waited for.
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

    /// Shows the window where it was the last time, without content at first, so that there is
    /// something to be seen while the desktop's fonts and the screens are read. `painted` is called
    /// once it has been painted, or could not be soon, and has to call awakeFromNib().
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

    /// Makes the rows of the scan screens anew, after a preference that they go by has changed.
    void refreshTables();
    /// The same for the drives.
    void refreshTable();

    /// Tells the user that a scan is running, and that this has to wait.
    void scanRunningAlert();
    /// Tells the user that the program ends now, and ends it when they have read it.
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

    /// Called for a key that nothing in the window has a use for: Return closes the preference
    /// sheet. Whether the key has done something.
    bool keyDown(const QKeyEvent &event);
    /// Called for each key that is typed in the sidebar: the space bar shows the preview panel or
    /// closes it. Whether the key may select a row, which is always so.
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed);

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
