#pragma once

#include "app/controls/CellTableSource.hpp"
#include "app/delegate/MainWindow.hpp"

#include <QObject>

#include <memory>

class QStackedWidget;

namespace tessaly {

class CellTableView;
class KORVENScanViewController;
class KORVENWindow;

/// Runs the main window: its frame, the sidebar, and the screens, one a page. The row of the
/// sidebar that is selected and the page that is shown have the same number.
///
/// Ownership: owns the window and the screens. When it goes, scans are cancelled and waited for.
/// Threads:   the main thread, but for historyStoreUpdated().
class KORVENWindowController final : public QObject, public MainWindow, private CellTableSource {
    Q_OBJECT

public:
    /// The pages in their order.
    enum Page { drivesPage, homePage, scanPage, historyPage, pageCount };

    KORVENWindowController();
    ~KORVENWindowController() override;
    KORVENWindowController(const KORVENWindowController &) = delete;
    KORVENWindowController &operator=(const KORVENWindowController &) = delete;
    KORVENWindowController(KORVENWindowController &&) = delete;
    KORVENWindowController &operator=(KORVENWindowController &&) = delete;

    /// Builds the window's content. Does nothing when it is called again.
    void awakeFromNib();

    [[nodiscard]] KORVENWindow &mainWindow() const noexcept { return *m_mainWindow; }
    [[nodiscard]] KORVENScanViewController &avc() const noexcept { return *m_avc; }
    [[nodiscard]] int selectedPage() const;
    void selectPage(int page);

    void windowLoaded() override;
    void historyStoreUpdated() override;
    void reloadHistoryDelete(const std::optional<std::string> &scanKey) override;
    void loadHistoryItem(const std::string &scanKey) override;
    void scanClicked() override;

    /// Makes the rows of the scan screens anew, after a preference that they go by has changed.
    void refreshTables();
    /// Tells the user that a scan is running, and that this has to wait.
    void scanRunningAlert();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeSidebar();
    void makeShortcuts();
    void startLoading();
    void restoreWindow();
    void storeWindow();

    [[nodiscard]] int numberOfRowsInTableView() const override { return pageCount; }
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;
    [[nodiscard]] QString searchText(int row) const override;
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed) override;

    bool m_firstRunFlag = true;
    bool m_hasBeenPainted = false;
    std::unique_ptr<KORVENWindow> m_mainWindow;
    CellTableView *m_outlineTable = nullptr; ///< the sidebar
    QStackedWidget *m_tabView = nullptr;
    std::unique_ptr<KORVENScanViewController> m_avc;
};

} // namespace tessaly
