#pragma once

#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/RowActions.hpp"
#include "engine/tree/ScanTree.hpp"
#include "screens/EmptyPage.hpp"
#include "screens/ScanWorkers.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultCells.hpp"
#include "screens/results/ResultHeader.hpp"
#include "screens/results/ScanResult.hpp"
#include "screens/results/ScanWork.hpp"
#include "screens/results/ShownLevel.hpp"

#include <QPointer>
#include <QString>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QProgressBar;
class QStackedWidget;

namespace tessaly {

class CellTableView;
class KORVENButton;
class KORVENFolderCellView;

/// What both scan screens do: scan a folder in the background, show one level of the tree at a
/// time, go down and up in it, sort, and say so when there is nothing to show.
///
/// Threads: the main thread, but for what is said to run on a worker. Rows, fields and buttons are
///          touched on the main thread alone: a worker hands over what it made. Whoever
///          derives from this calls stopWorkers() in its destructor: workers call its overrides.
class ResultViewController : public KORVENViewController,
                             public RowActions,
                             protected CellTableSource,
                             private ScanWork {
    Q_OBJECT

public:
    ~ResultViewController() override;
    ResultViewController(const ResultViewController &) = delete;
    ResultViewController &operator=(const ResultViewController &) = delete;
    ResultViewController(ResultViewController &&) = delete;
    ResultViewController &operator=(ResultViewController &&) = delete;

    /// The screen's widget. Whoever shows it may own it; else it goes with the controller.
    [[nodiscard]] QWidget *view() const noexcept { return m_view; }

    /// One-time set-up once the view is there. Does nothing when it is called again.
    void awakeFromNib();
    /// Starts to load the last result, on a worker. Once, after awakeFromNib(); best when the
    /// window has been painted, which then has the machine to itself.
    virtual void startLoading();

    /// From the start of a scan until its result, or that it was cancelled, is shown; for good when
    /// its result is one that keepsScanningLook.
    [[nodiscard]] bool isScanRunningNow() const noexcept { return m_isScanRunningNow; }

    /// Makes the rows of the level anew, by the preferences as they are now.
    void refreshTable();

    // What the buttons do.
    virtual void scanButtonPressed() = 0;
    void cancelClicked();
    void sortClicked();
    /// Shows the level above from its start, with the folder that was left selected.
    void drillUpOneLevel();
    /// Whether there is a level above that the user can go up to now.
    [[nodiscard]] bool canDrillUp() const noexcept;

    void drillDownOneLevel(std::string_view name) override;
    /// Not on the rows that come back after a cancelled scan: they have no path.
    [[nodiscard]] bool canActOnRows() const override { return m_level.path().has_value(); }

    // What the program's menu does.
    [[nodiscard]] bool hasSelectedRow() const override;
    [[nodiscard]] bool canShowQuickLook() const override;
    void showQuickLook() override;
    void showInFinder() override;
    void showInfo() override;

    [[nodiscard]] int numberOfRowsInTableView() const override;
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;
    bool shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed) override;

    // The state, for whoever wants to look.
    [[nodiscard]] const std::vector<KORVENFolderObject> &scanArray() const noexcept
    {
        return m_scanArray;
    }
    [[nodiscard]] float scanTotal() const noexcept { return m_scanTotal; }
    /// Path of the level, as bytes; nothing before anything is shown and after a cancelled scan.
    [[nodiscard]] const std::optional<std::string> &drillDownPath() const noexcept
    {
        return m_level.path();
    }
    [[nodiscard]] const tree::LUMFileContainer *drillResults() const noexcept
    {
        return m_level.folder();
    }
    [[nodiscard]] bool sortBySizeFlag() const noexcept { return m_sortBySizeFlag; }
    /// While this is so, the user can go neither down nor up: a worker is making the next result.
    [[nodiscard]] bool lockDrillDown() const noexcept { return m_lockDrillDown; }
    /// The folder of the scan, as bytes; empty before there is one.
    [[nodiscard]] const std::string &scanFolder() const noexcept { return m_scanFolder; }

protected:
    /// `nibName`: of the interface file with the screen's view. `cellIdentifier`: under which its
    /// table keeps its cells.
    ResultViewController(const QString &nibName, const QString &cellIdentifier);

    /// Ends what the workers do and waits for them. The results that they handed over last are not
    /// shown any more.
    void stopWorkers() { m_workers.stop(); }

    /// Shows the scan as running and starts the worker, which has access to the folder of
    /// `grantedUrl` while it scans. Requires: no scan is running.
    void startScan(const std::string &folder,
                   const std::optional<std::string> &grantedUrl = std::nullopt);

    // What the screens do each in its own way.

    /// The last of the set-up: the buttons that are to be seen, and what the screen says before
    /// there was any scan.
    virtual void showStart() = 0;
    /// The last result, as it was kept. On a worker; nothing when there is none.
    [[nodiscard]] virtual std::optional<ScanResult> loadScanResults() = 0;
    /// Keeps a completed scan, tells the user and makes its result, in the order of the screen. On
    /// a worker.
    [[nodiscard]] virtual ScanResult completedScan(const FinishedScan &scan) = 0;
    /// Tells the user that a scan was cancelled. On a worker.
    virtual void notifyCanceled() = 0;
    /// The path of an entry of the level's folder.
    [[nodiscard]] virtual std::string pathBelow(const std::string &folder,
                                                std::string_view name) const = 0;
    /// The path of the folder above the level's: tree::parentPath() as it comes.
    /// Of no path it is none.
    [[nodiscard]] virtual std::optional<std::string>
    pathAbove(const std::optional<std::string> &folder) const;
    /// The image of the row of a ".Trash" folder.
    [[nodiscard]] virtual QString trashImageName(const KORVENFolderObject &row) const = 0;
    /// Told when a result, with its key, has become the one that is shown.
    virtual void resultWasShown(const ScanResult & /*result*/) {}

    /// Shows a result from its top level. The end of every load and completed scan.
    void updateScanResults(ScanResult result);
    void showEmptyState(const QString &title, const QString &text);
    void showTotal(const QString &total);
    void reloadTable();
    /// The names of the rows that are files, in the order in which they are shown.
    [[nodiscard]] std::vector<std::string> shownFileNames() const;
    [[nodiscard]] KORVENButton &scanButton() const noexcept { return *m_scanButton; }
    [[nodiscard]] KORVENButton &cancelButton() const noexcept { return *m_cancelButton; }

private:
    void findOutlets(const QString &cellIdentifier);

    [[nodiscard]] Step loadResult() override;
    [[nodiscard]] Step scanCompleted(const FinishedScan &scan) override;
    [[nodiscard]] Step scanCancelled() override;

    void populateScanTable(const tree::LUMFileContainer *folder);
    void takeResult(ScanResult &result);
    void takeRows(ResultRows rows);
    void updateScanResultsDrillDown();
    void cancelledScanResults();
    /// Returns whether the keyboard was on a button that goes. It is on the scan button then, and
    /// is for giveKeyboardToRows() once they are there. Elsewhere it stays.
    [[nodiscard]] bool scanFinishedOrCancelled();
    /// No rows, no change.
    void giveKeyboardToRows();
    void takeKeyboardForScan();
    void selectFolder(std::string_view name);
    void sortTable();
    void resetOrder();
    void showTableOrEmptyPage();
    void showEmptyPage();
    void showNotice(const QString &notice);

    [[nodiscard]] KORVENFolderCellView *selectedCell() const;

    [[nodiscard]] QString searchText(int row) const override;
    [[nodiscard]] QString accessibleText(int row) const override;
    [[nodiscard]] bool canActivateRow(int /*row*/) const override { return canActOnRows(); }
    [[nodiscard]] bool hasMenu(int /*row*/) const override { return true; }
    void activateRow(int row) override;
    void showMenu(int row, const QPoint &place) override;

    QPointer<QWidget> m_view;
    // Outlets: the view owns them.
    CellTableView *m_tableView = nullptr;
    KORVENButton *m_scanButton = nullptr;
    KORVENButton *m_cancelButton = nullptr;
    KORVENButton *m_sortButton = nullptr;
    QLabel *m_noticeLabel = nullptr;
    QProgressBar *m_scanProgress = nullptr;
    NameLabel *m_scanLabel = nullptr;
    QStackedWidget *m_resultPages = nullptr;

    std::unique_ptr<ResultHeader> m_header;
    std::unique_ptr<EmptyPage> m_emptyPage;
    std::unique_ptr<ResultCells> m_cells;
    std::vector<KORVENFolderObject> m_scanArray;
    float m_scanTotal = 0;
    ShownLevel m_level;
    std::string m_scanFolder;
    bool m_sortBySizeFlag = true;
    bool m_firstRunFlag = true;
    bool m_isScanRunningNow = false;
    std::atomic<bool> m_lockDrillDown = false;
    unsigned m_loadGeneration = 0; ///< counts what makes a load that is under way out of date

    PressGuard m_pressGuard{this}; ///< over Scan and Cancel, which take each other's place
    ScanWorkers m_workers{*this, *this};
};

} // namespace tessaly
