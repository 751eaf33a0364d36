#pragma once

#include "app/controls/CellTableSource.hpp"
#include "engine/ScanTree.hpp"
#include "screens/KORVENViewController.hpp"
#include "screens/ResultRows.hpp"

#include <QPointer>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

class QLabel;
class QProgressBar;
class QStackedWidget;

namespace tessaly {

class CellTableView;
class KORVENButton;
class LUMThreadedScanner;

/// What both scan screens do: scan a folder in the background, show one level of the tree at a
/// time, go down and up in it, sort, and say so when there is nothing to show.
///
/// Threads: the main thread, but for what is said to run on a worker. Rows, fields and buttons are
///          touched on the main thread alone: a worker hands over what it made. Whoever
///          derives from this calls stopWorkers() in its destructor: workers call its overrides.
class ResultViewController : public KORVENViewController, protected CellTableSource {
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
    void startLoading();

    /// From the start of a scan until its result, or that it was cancelled, is shown.
    [[nodiscard]] bool isScanRunningNow() const noexcept { return m_isScanRunningNow; }

    /// Makes the rows of the level anew, by the preferences as they are now.
    void refreshTable();

    // What the buttons do.
    virtual void scanButtonPressed() = 0;
    void cancelClicked();
    void sortClicked();
    void drillUpOneLevel();

    void drillDownOneLevel(std::string_view name) override;

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
        return m_drillDownPath;
    }
    [[nodiscard]] const LUMFileContainer *drillResults() const noexcept { return m_drillResults; }
    [[nodiscard]] bool sortBySizeFlag() const noexcept { return m_sortBySizeFlag; }
    /// While this is so, the user can go neither down nor up: a worker is making the next result.
    [[nodiscard]] bool lockDrillDown() const noexcept { return m_lockDrillDown; }
    /// The folder of the scan, as bytes; empty before there is one.
    [[nodiscard]] const std::string &scanFolder() const noexcept { return m_scanFolder; }

protected:
    /// A result to be shown, made by a worker.
    struct Result {
        std::shared_ptr<ScanTree> tree; ///< nullptr: none; the screen stays or becomes empty
        ResultRows rows;
        QString dateText;
        std::optional<std::string> scanKey;
        /// What to say where the rows would be, instead of the usual; a title and a text.
        QString emptyTitle;
        QString emptyText;
    };

    /// `nibName`: of the interface file with the screen's view.
    explicit ResultViewController(const QString &nibName);

    /// Ends what the workers do and waits for them. The results that they handed over last are not
    /// shown any more.
    void stopWorkers();

    /// Shows the scan as running and starts the worker. Requires: no scan is running.
    void startScan(const std::string &folder);

    /// The last result, as it was kept. On a worker; nothing when there is none.
    [[nodiscard]] virtual std::optional<Result> loadScanResults() = 0;
    /// Keeps a completed scan and makes its result. On a worker.
    [[nodiscard]] virtual Result completedScan(const std::shared_ptr<ScanTree> &tree) = 0;
    /// Tells the user that a scan ended. On a worker.
    virtual void notifyCompleted() = 0;
    virtual void notifyCanceled() = 0;
    /// The path of an entry of the level's folder.
    [[nodiscard]] virtual std::string pathBelow(const std::string &folder,
                                                std::string_view name) const = 0;
    /// The image of the row of a ".Trash" folder.
    [[nodiscard]] virtual QString trashImageName(const KORVENFolderObject &row) const = 0;
    /// What the screen says before there was any scan.
    virtual void showEmptyStart() = 0;
    /// Told when a result, with its key, has become the one that is shown.
    virtual void resultWasShown(const Result & /*result*/) {}

    [[nodiscard]] static RowThresholds thresholds();

    /// Shows a result from its top level. The end of every load and completed scan.
    void updateScanResults(Result result);
    void showEmptyState(const QString &title, const QString &text);
    [[nodiscard]] QLabel *dateLabel() const noexcept { return m_dateLabel; }

private:
    void findOutlets();
    void showScanResults(const std::string &folder);
    void runLoader();
    void handOver(std::function<void()> show);

    void populateScanTable(const LUMFileContainer *folder);
    void showRows(ResultRows rows);
    void updateScanResultsDrillDown();
    void cancelledScanResults();
    void scanFinishedOrCancelled();
    [[nodiscard]] const LUMFileContainer *drillDownToPath(std::string_view name) const;
    void sortTable();
    void resetOrder();
    void reloadTable();
    void showTableOrEmptyState();
    void showBackButton(bool isShown);
    void showTotal(const QString &total);
    void fillCell(QWidget &widget, const KORVENFolderObject &row);

    [[nodiscard]] QString searchText(int row) const override;
    [[nodiscard]] QString accessibleText(int row) const override;
    void activateRow(int row) override;
    void showMenu(int row, const QPoint &place) override;

    QPointer<QWidget> m_view;
    // Outlets: the view owns them.
    CellTableView *m_tableView = nullptr;
    KORVENButton *m_scanButton = nullptr;
    KORVENButton *m_cancelButton = nullptr;
    KORVENButton *m_sortButton = nullptr;
    KORVENButton *m_backButton = nullptr;
    QLabel *m_folderLabel = nullptr;
    QLabel *m_totalLabel = nullptr;
    QLabel *m_totalCaption = nullptr;
    QLabel *m_dateLabel = nullptr;
    QProgressBar *m_scanProgress = nullptr;
    QStackedWidget *m_resultPages = nullptr;
    QWidget *m_emptyPage = nullptr;
    QLabel *m_emptyTitle = nullptr;
    QLabel *m_emptyText = nullptr;
    KORVENButton *m_emptyButton = nullptr;

    std::vector<KORVENFolderObject> m_scanArray;
    float m_scanTotal = 0;
    std::shared_ptr<ScanTree> m_drillTree; ///< keeps m_drillResults alive
    const LUMFileContainer *m_drillResults = nullptr;
    std::optional<std::string> m_drillDownPath;
    std::string m_scanFolder;
    bool m_sortBySizeFlag = true;
    bool m_firstRunFlag = true;
    bool m_isScanRunningNow = false;
    std::atomic<bool> m_lockDrillDown = false;
    unsigned m_loadGeneration = 0; ///< counts what makes a load that is under way out of date

    std::mutex m_scannerLock;
    std::shared_ptr<LUMThreadedScanner> m_scanner; ///< of the scan that is running
    bool m_isCancelWanted = false;
    std::thread m_loader;
    std::thread m_worker;
};

} // namespace tessaly
