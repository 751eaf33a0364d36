#pragma once

#include "app/screen/InterfaceScreen.hpp"
#include "screens/ScanWorkers.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultCells.hpp"
#include "screens/results/ResultHeader.hpp"
#include "screens/results/ResultModel.hpp"
#include "screens/results/RowsView.hpp"
#include "screens/results/ScanResult.hpp"
#include "screens/results/ScanWork.hpp"

#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QProgressBar;

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
class ResultViewController : public KORVENViewController, public InterfaceScreen, private ScanWork {
    Q_OBJECT

public:
    ~ResultViewController() override;
    Q_DISABLE_COPY_MOVE(ResultViewController)

    /// What the views of this screen show.
    [[nodiscard]] const ResultModel &model() const noexcept { return m_model; }

    /// Starts to load the last result, on a worker.
    void startLoading() override { m_workers.startLoading(); }
    /// For good when the result is one that keepsScanningLook.
    [[nodiscard]] bool isScanRunningNow() const noexcept override { return m_isScanRunningNow; }
    void refreshTable() override { m_model.refresh(); }
    [[nodiscard]] bool canGoBack() const noexcept override { return m_model.canDrillUp(); }
    void goBack() override { drillUpOneLevel(); }
    [[nodiscard]] RowActions *rowActions() noexcept override { return m_rowsView.get(); }
    [[nodiscard]] CellTableView *rowsTable() const noexcept override { return m_rowsView->table(); }

    // What the buttons do.
    virtual void scanButtonPressed() = 0;
    void cancelClicked();
    void sortClicked() override;
    /// Shows the level above from its start, with the folder that was left selected.
    void drillUpOneLevel();

    void drillDownOneLevel(std::string_view name) override;
    /// Not on the rows that come back after a cancelled scan: they have no path.
    [[nodiscard]] bool canActOnRows() const override { return m_model.path().has_value(); }

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

    ResultViewController(const Services &services, Setup setup);

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
    void showTotal(const QString &total) { m_header.showTotal(total); }
    /// The names of the rows that are files, in the order in which they are shown.
    [[nodiscard]] std::vector<std::string> shownFileNames() const;
    [[nodiscard]] KORVENButton &scanButton() const noexcept { return m_scanButton; }
    [[nodiscard]] KORVENButton &cancelButton() const noexcept { return m_cancelButton; }

private:
    void setUp() override;
    void wireButtons();

    [[nodiscard]] Step loadResult() override;
    [[nodiscard]] Step scanCompleted(const FinishedScan &scan) override;
    [[nodiscard]] Step scanCancelled() override;

    void showLevel();
    void showOrder();
    void showRowsOrEmptyPage();
    void sayWhyThereAreNoRows();
    void showEmptyPageAndButton();
    void showNotice(const QString &notice);
    void cancelledScanResults();
    /// Returns whether the keyboard was on a button that is hidden now. It is on the scan button
    /// then, and is for giveKeyboardToRows() once they are there. Elsewhere it stays.
    [[nodiscard]] bool scanFinishedOrCancelled();
    /// No rows, no change.
    void giveKeyboardToRows();
    void takeKeyboardForScan();

    ResultModel m_model;
    // Outlets: the view owns them.
    KORVENButton &m_scanButton;
    KORVENButton &m_cancelButton;
    KORVENButton &m_sortButton;
    KORVENButton &m_emptyButton;
    QLabel &m_noticeLabel;
    QProgressBar &m_scanProgress;
    NameLabel &m_scanLabel;

    ResultHeader m_header;
    std::unique_ptr<RowsView> m_rowsView;
    std::string m_scanFolder;
    bool m_isScanRunningNow = false;
    unsigned m_loadGeneration = 0; ///< counts what makes a load that is under way out of date

    ScanWorkers m_workers;
};

} // namespace tessaly
