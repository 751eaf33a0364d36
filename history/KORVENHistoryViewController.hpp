#pragma once

#include "app/screen/TableScreen.hpp"
#include "history/records/HistoryFile.hpp"
#include "history/records/HistoryFileWatch.hpp"
#include "history/records/HistoryUpkeep.hpp"
#include "history/records/ScansRemoval.hpp"

#include <QObject>
#include <QPointer>
#include <QString>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>

class QLabel;

namespace tessaly {

class DateTexts;
class DocumentsFolder;
class KORVENButton;
class KORVENHistoryCellView;

/// The history screen: lists the recorded scans, newest first or by path. Each can be opened again
/// or deleted. When there are none, or the history cannot be read, the screen says so.
///
/// The rows are a copy of the store's list, sorted and pruned here without touching the store.
///
/// While the history cannot be read, the screen says why, above the rows of this run's scans, and
/// watches the file; the old rows are shown as soon as it can be read. What an earlier run left
/// undone in the history (see HistoryUpkeep) is finished after the history was read.
///
/// Keys:    Return opens the selected scan again, Delete deletes it and does not repeat.
/// Mouse:   of a double click on a delete button, the second click deletes nothing (PressGuard).
/// Threads: the main thread, but for reloadHistory() and reloadHistoryDelete().
class KORVENHistoryViewController : public QObject, public TableScreen {
    Q_OBJECT

public:
    KORVENHistoryViewController(
        const DateTexts &dates, DocumentsFolder &documents,
        const QString &nibName = QStringLiteral("KORVENHistoryViewController"));
    ~KORVENHistoryViewController() override;
    Q_DISABLE_COPY_MOVE(KORVENHistoryViewController)

    /// Takes the rows from the store, and shows them newest first, whatever the order was.
    void loadHistory();
    /// Schedules loadHistory() on the main thread, once for all requests until then. Threads: any;
    /// does not block.
    void reloadHistory();
    /// Removes the first row with this key from historyArray() at once, and schedules
    /// loadHistoryDelete(). Neither sorts nor asks the store. Threads: any; does not block.
    void reloadHistoryDelete(const std::optional<std::string> &scanKey);
    /// Shows the rows as they are now.
    void loadHistoryDelete();

    // What the buttons do.
    /// Asks the application delegate for a new scan.
    void scanClicked();
    /// Turns to the other order.
    void sortClicked() override;
    /// Deletes all scans without confirmation (see ScansRemoval). With many scans this continues in
    /// the event loop, and the buttons are disabled meanwhile.
    void deleteAllClicked();

    /// Sorts the rows by the order that is set, and shows them from the first one on.
    void sortTable();

    [[nodiscard]] int numberOfRowsInTableView() const override;
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;

    // The state.
    /// The rows in the order of the table, as of now. Threads: any.
    [[nodiscard]] HistoryRecords historyArray() const;
    /// By date, newest first; else by path.
    [[nodiscard]] bool sortByDateFlag() const noexcept { return m_sortByDateFlag; }

private:
    using Record = HistoryRecords::value_type;

    /// The rows that were removed from historyArray() and are still in the table.
    struct Departed {
        int count = 0;
        int row = 0; ///< of the last one
    };

    void setUp() override;
    void makeShortcuts();
    void setSortByDate(bool isByDate);
    void reloadTable();
    void selectAgain(int rowBefore);
    void showRowsOrEmptyState();
    void readAgain();
    void updateButtons();
    void deleteSelected();

    [[nodiscard]] QString dateText(const KORVENHistoryItem &record) const;
    [[nodiscard]] Record recordAt(int row) const; ///< nullptr beyond the rows
    void fillCell(KORVENHistoryCellView &cell, const KORVENHistoryItem &record);

    [[nodiscard]] QString searchText(int row) const override;
    [[nodiscard]] QString accessibleText(int row) const override;
    [[nodiscard]] bool canActivateRow(int /*row*/) const override { return true; }
    void activateRow(int row) override;

    const DateTexts &m_dates;
    DocumentsFolder &m_documents;
    // Outlets: the view owns them.
    KORVENButton &m_refreshButton;
    KORVENButton &m_sortButton;
    KORVENButton &m_deleteButton;
    QLabel &m_countLabel;
    QLabel &m_problemLabel;
    QPointer<QWidget> m_departure; ///< the animation of a removed row, while it runs

    mutable std::mutex m_rowsLock;
    HistoryRecords m_historyArray; ///< guarded by m_rowsLock
    Departed m_departed;           ///< guarded by m_rowsLock
    std::atomic<bool> m_isLoadScheduled = false;
    std::atomic<bool> m_isDeleteScheduled = false;

    bool m_sortByDateFlag = true;
    QString m_problem; ///< why the history cannot be read; empty when it can
    Record m_selected; ///< of the row that was selected last
    ScansRemoval m_removal;
    HistoryFileWatch m_watch{this};
    HistoryUpkeep m_upkeep;
};

} // namespace tessaly
