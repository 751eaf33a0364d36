#pragma once

#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/tables/RowActions.hpp"
#include "screens/EmptyPage.hpp"
#include "screens/ScanWorkers.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultCells.hpp"
#include "screens/results/ResultHeader.hpp"
#include "screens/results/ResultModel.hpp"
#include "screens/results/RowsView.hpp"
#include "screens/results/ScanResult.hpp"
#include "screens/results/ScanWork.hpp"

#include <QPointer>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QProgressBar;
class QStackedWidget;

namespace tessaly {

class KORVENButton;

/// What both scan screens do: they scan a folder in the background, show the result by way of a
/// ResultModel and its views, and say so when there is nothing to show. The controller has the
/// buttons, the header and the workers; where the user is in the result, and what is listed there,
/// is the model's.
///
/// Threads: the main thread, but for what is said to run on a worker. Model, fields and buttons are
///          touched on the main thread alone: a worker hands over what it made. A derived class
///          calls stopWorkers() in its destructor: workers call its overrides.
class ResultViewController : public KORVENViewController, public RowActions, private ScanWork {
    Q_OBJECT

public:
    ~ResultViewController() override;
    ResultViewController(const ResultViewController &) = delete;
    ResultViewController &operator=(const ResultViewController &) = delete;
    ResultViewController(ResultViewController &&) = delete;
    ResultViewController &operator=(ResultViewController &&) = delete;

    /// The screen's widget. A layout that shows it may own it; else the controller destroys it.
    [[nodiscard]] QWidget *view() const noexcept { return m_view; }
    /// What the views of this screen show.
    [[nodiscard]] const ResultModel &model() const noexcept { return m_model; }

    /// One-time set-up once the view is there. Does nothing when it is called again.
    void awakeFromNib();
    /// Starts to load the last result, on a worker. Once, after awakeFromNib(); best when the
    /// window has been painted, which then has the machine to itself.
    virtual void startLoading();

    /// From the start of a scan until its result, or that it was cancelled, is shown; for good when
    /// its result is one that keepsScanningLook.
    [[nodiscard]] bool isScanRunningNow() const noexcept { return m_isScanRunningNow; }

    /// Rebuilds the rows of the level, by the preferences as they are now.
    void refreshTable() { m_model.refresh(); }

    // What the buttons do.
    virtual void scanButtonPressed() = 0;
    void cancelClicked();
    void sortClicked();
    /// Shows the level above from its start, with the folder that was left selected.
    void drillUpOneLevel();
    /// Whether there is a level above that the user can go up to now.
    [[nodiscard]] bool canDrillUp() const noexcept { return m_model.canDrillUp(); }

    void drillDownOneLevel(std::string_view name) override;
    /// Not on the rows that come back after a cancelled scan: they have no path.
    [[nodiscard]] bool canActOnRows() const override { return m_model.path().has_value(); }

    // What the program's menu does.
    [[nodiscard]] bool hasSelectedRow() const override { return m_rowsView->hasSelectedRow(); }
    [[nodiscard]] bool canShowQuickLook() const override { return m_rowsView->canShowQuickLook(); }
    void showQuickLook() override { m_rowsView->showQuickLook(); }
    void showInFinder() override { m_rowsView->showInFinder(); }
    void showInfo() override { m_rowsView->showInfo(); }

    // Required interface
    [[nodiscard]] int numberOfRowsInTableView() const
    {
        return m_rowsView->numberOfRowsInTableView();
    }
    [[nodiscard]] QWidget *viewForTableColumn(int row)
    {
        return m_rowsView->viewForTableColumn(row);
    }
    [[nodiscard]] const std::vector<KORVENFolderObject> &scanArray() const noexcept
    {
        return m_model.rows();
    }
    [[nodiscard]] float scanTotal() const noexcept { return m_model.total(); }
    [[nodiscard]] const std::optional<std::string> &drillDownPath() const noexcept
    {
        return m_model.path();
    }
    [[nodiscard]] const tree::LUMFileContainer *drillResults() const noexcept
    {
        return m_model.folder();
    }
    [[nodiscard]] bool sortBySizeFlag() const noexcept { return m_model.order() == RowOrder::size; }
    [[nodiscard]] bool lockDrillDown() const noexcept { return m_model.isLocked(); }
    /// The folder of the scan, as bytes; empty before there is one.
    [[nodiscard]] const std::string &scanFolder() const noexcept { return m_scanFolder; }

protected:
    /// What tells the screens apart, beside what they override.
    struct Setup {
        QString nibName;        ///< the interface file with the screen's view
        QString cellIdentifier; ///< under which its table keeps its cells
        ResultModel::PathRules paths;
        ResultCells::TrashImage trashImage;
    };

    explicit ResultViewController(Setup setup);

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
    /// Told when a result, with its key, has become the one that is shown.
    virtual void resultWasShown(const ScanResult & /*result*/) {}

    /// Shows a result from its top level. The end of every load and completed scan.
    void updateScanResults(ScanResult result);
    void showEmptyState(const QString &title, const QString &text);
    void showTotal(const QString &total) { m_header->showTotal(total); }
    /// The names of the rows that are files, in the order in which they are shown.
    [[nodiscard]] std::vector<std::string> shownFileNames() const;
    [[nodiscard]] KORVENButton &scanButton() const noexcept { return *m_scanButton; }
    [[nodiscard]] KORVENButton &cancelButton() const noexcept { return *m_cancelButton; }

private:
    void findOutlets();
    void wireButtons();

    [[nodiscard]] Step loadResult() override;
    [[nodiscard]] Step scanCompleted(const FinishedScan &scan) override;
    [[nodiscard]] Step scanCancelled() override;

    void showLevel();
    void showOrder();
    void showRowsOrEmptyPage();
    void showEmptyPage();
    void showNotice(const QString &notice);
    void cancelledScanResults();
    /// Returns whether the keyboard was on a button that is hidden now. It is on the scan button
    /// then, and is for giveKeyboardToRows() once they are there. Elsewhere it stays.
    [[nodiscard]] bool scanFinishedOrCancelled();
    /// No rows, no change.
    void giveKeyboardToRows();
    void takeKeyboardForScan();

    ResultModel m_model;
    QPointer<QWidget> m_view;
    // Outlets: the view owns them.
    KORVENButton *m_scanButton = nullptr;
    KORVENButton *m_cancelButton = nullptr;
    KORVENButton *m_sortButton = nullptr;
    QLabel *m_noticeLabel = nullptr;
    QProgressBar *m_scanProgress = nullptr;
    NameLabel *m_scanLabel = nullptr;
    QStackedWidget *m_resultPages = nullptr;

    std::unique_ptr<ResultHeader> m_header;
    std::unique_ptr<EmptyPage> m_emptyPage;
    std::unique_ptr<RowsView> m_rowsView;
    std::string m_scanFolder;
    bool m_firstRunFlag = true;
    bool m_isScanRunningNow = false;
    unsigned m_loadGeneration = 0; ///< counts what makes a load that is under way out of date

    PressGuard m_pressGuard{this}; ///< over Scan and Cancel, which take each other's place
    ScanWorkers m_workers;
};

} // namespace tessaly
