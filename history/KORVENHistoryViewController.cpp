#include "history/KORVENHistoryViewController.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/tables/CellTexts.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/tables/RowRemovalAnimation.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "history/KORVENHistoryCellView.hpp"
#include "history/records/HistoryOrder.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "platform/DateTexts.hpp"

#include <QItemSelectionModel>
#include <QLabel>
#include <QLocale>
#include <QShortcut>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString cellIdentifier = u"KORVENHistoryCell"_s;
constexpr int rowHeight = 58;

QString pathText(const KORVENHistoryItem &record)
{
    return textOfName(record.scanPath().value_or(std::string()));
}

QString totalText(const KORVENHistoryItem &record)
{
    return QString::fromStdString(record.scanTotal().value_or(std::string()));
}

} // namespace

KORVENHistoryViewController::KORVENHistoryViewController(const DateTexts &dates,
                                                         DocumentsFolder &documents,
                                                         const QString &nibName)
    : TableScreen(*this, nibName,
                  cellsOf<KORVENHistoryCellView>(cellIdentifier, cellIdentifier, this)),
      m_dates(dates), m_documents(documents), m_refreshButton(find<KORVENButton>("refreshButton")),
      m_sortButton(find<KORVENButton>("sortButton")),
      m_deleteButton(find<KORVENButton>("deleteButton")), m_countLabel(find<QLabel>("countLabel")),
      m_problemLabel(find<QLabel>("problemLabel"))
{
    table().setRowHeight(rowHeight);
    makeCaption(m_countLabel);
    m_problemLabel.hide();
    wire({{"refreshButton", [this] { scanClicked(); }},
          {"sortButton", [this] { sortClicked(); }},
          {"deleteButton", [this] { deleteAllClicked(); }}});
    makeShortcuts();
    connect(table().selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { m_selected = recordAt(current.row()); });
    connect(&m_removal, &ScansRemoval::ended, this, &KORVENHistoryViewController::updateButtons);
    connect(&m_watch, &HistoryFileWatch::mayHaveChanged, this,
            &KORVENHistoryViewController::readAgain);
}

KORVENHistoryViewController::~KORVENHistoryViewController()
{
    closeView();
}

void KORVENHistoryViewController::makeShortcuts()
{
    // Only while the table itself has the focus: with the focus on a button, Delete must not delete
    // a scan that the user does not look at.
    auto *shortcut = new QShortcut(QKeySequence(QKeySequence::Delete), &table(), nullptr, nullptr,
                                   Qt::WidgetShortcut);
    shortcut->setAutoRepeat(false); // each press deletes one scan
    connect(shortcut, &QShortcut::activated, this, &KORVENHistoryViewController::deleteSelected);
}

void KORVENHistoryViewController::setUp()
{
    TableScreen::setUp();
    setSortByDate(true);
    loadHistory();
}

void KORVENHistoryViewController::setSortByDate(bool isByDate)
{
    m_sortByDateFlag = isByDate;
    m_sortButton.setTitle(isByDate ? tr("Sort by name") : tr("Sort by date"));
}

void KORVENHistoryViewController::loadHistory()
{
    // Two failures look alike on the screen. A damaged file is an exception, and there is no store
    // at all. A file that the system does not give leaves a store that works for this run.
    HistoryRecords records;
    try {
        KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
        m_problem = QString::fromStdString(store.problem().value_or(std::string()));
        records = store.allItems();
        // The upkeep runs once. Before the records are known, it would find nothing to do.
        if (m_problem.isEmpty()) {
            m_upkeep.start(store);
        }
    } catch (const NamedException &exception) {
        m_problem = QString::fromStdString(exception.reason());
    }
    if (m_problem.isEmpty()) {
        m_watch.stop();
    } else {
        m_watch.start(KORVENHistoryStore::archivePath(m_documents));
    }
    std::reverse(records.begin(), records.end()); // of two of one date the later one comes first
    sortNewestFirst(records);
    {
        const std::scoped_lock lock(m_rowsLock);
        // The rows come from the store, so what was pruned before is not animated any more.
        m_historyArray = std::move(records);
        m_departed = {};
    }
    setSortByDate(true);
    reloadTable();
}

/// Tries again to read a history that could not be read. The watch has read the file on another
/// thread before. If its disk hangs, this is not called, and the window does not hang with it.
void KORVENHistoryViewController::readAgain()
{
    QString problem;
    try {
        KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
        store.readAgain();
        problem = QString::fromStdString(store.problem().value_or(std::string()));
    } catch (const NamedException &exception) {
        problem = QString::fromStdString(exception.reason());
    }
    // The watch also fires when nothing has changed. A reload would put the rows back into date
    // order each time.
    if (problem != m_problem) {
        reloadHistory();
    }
}

void KORVENHistoryViewController::reloadHistory()
{
    // Many records may be added in a row. One reload in the event loop shows all of them.
    if (m_isLoadScheduled.exchange(true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            // Before the load, so that a request from another thread during it is not lost.
            m_isLoadScheduled = false;
            loadHistory();
        },
        Qt::QueuedConnection);
}

void KORVENHistoryViewController::reloadHistoryDelete(const std::optional<std::string> &scanKey)
{
    {
        const std::scoped_lock lock(m_rowsLock);
        // The row is taken out at once, on whatever thread tells of the removal. The table follows
        // later, so for a moment it has more rows than this array: recordAt() allows for that.
        const auto found =
            std::find_if(m_historyArray.begin(), m_historyArray.end(),
                         [&](const Record &record) { return record->scanKey() == scanKey; });
        if (found != m_historyArray.end()) {
            m_departed = {m_departed.count + 1, static_cast<int>(found - m_historyArray.begin())};
            m_historyArray.erase(found);
        }
    }
    // A removal of many scans tells of each of them. One reload covers all that arrive before the
    // event loop runs.
    if (m_isDeleteScheduled.exchange(true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isDeleteScheduled = false;
            loadHistoryDelete();
        },
        Qt::QueuedConnection);
}

void KORVENHistoryViewController::loadHistoryDelete()
{
    Departed departed;
    {
        const std::scoped_lock lock(m_rowsLock);
        departed = std::exchange(m_departed, {});
    }
    // It takes its picture of the table in the constructor, so it is made while the table still
    // shows the old rows. During "Delete all" each slice removes many rows, and an animation of
    // each would only cost time.
    RowRemovalAnimation *departure = nullptr;
    if (departed.count > 0 && !m_removal.isRunning() && RowRemovalAnimation::isWanted(table())) {
        departure = new RowRemovalAnimation(table(), *view());
    }
    reloadTable();
    // Only now: reloadTable() deletes the previous animation through this pointer.
    m_departure = departure;
    if (departure != nullptr) {
        // Several rows need not lie together, so the old picture fades out as a whole.
        departure->play(departed.count == 1 ? std::optional(departed.row) : std::nullopt);
    }
}

void KORVENHistoryViewController::scanClicked()
{
    KORVENAppDelegate::sharedDelegate().scanClicked();
}

void KORVENHistoryViewController::sortClicked()
{
    setSortByDate(!m_sortByDateFlag);
    sortTable();
}

void KORVENHistoryViewController::sortTable()
{
    {
        const std::scoped_lock lock(m_rowsLock);
        if (m_sortByDateFlag) {
            sortNewestFirst(m_historyArray);
        } else {
            sortByPath(m_historyArray);
        }
        m_departed = {};
    }
    reloadTable();
    // In another order the old scroll position means nothing.
    table().scrollToTop();
}

void KORVENHistoryViewController::deleteAllClicked()
{
    if (m_removal.isRunning()) {
        return;
    }
    try {
        // The store's list rather than the rows here, which may lag behind it by one event.
        m_removal.start(KORVENHistoryStore::sharedStore().allItems());
    } catch (const NamedException &) {
        loadHistory(); // which shows the problem
    }
    // The button is about to be disabled. Qt would then move the focus to the next widget of the
    // tab order.
    if (m_removal.isRunning() && m_deleteButton.hasFocus()) {
        table().setFocus();
    }
    updateButtons();
}

void KORVENHistoryViewController::deleteSelected()
{
    const int row = table().selectedRow();
    if (row < 0 || m_removal.isRunning()) {
        return;
    }
    table().scrollTo(table().currentIndex()); // a row that is out of sight has no cell
    if (auto *cell = cellAt<KORVENHistoryCellView>(row)) {
        cell->deleteClicked();
    }
}

void KORVENHistoryViewController::reloadTable()
{
    delete m_departure; // it shows the old rows
    // A model reset clears the selection, but QItemSelectionModel sends no signal for that. So
    // m_selected is still the record from before the reload.
    const int rowBefore = table().selectedRow();
    table().reloadData();
    selectAgain(rowBefore);
    showRowsOrEmptyState();
    updateButtons();
}

/// Selects the record that was selected before a reload, or the one now in its row.
void KORVENHistoryViewController::selectAgain(int rowBefore)
{
    const int rowCount = numberOfRowsInTableView();
    if (rowBefore < 0 || rowCount == 0) {
        return;
    }
    int row = std::min(rowBefore, rowCount - 1);
    {
        const std::scoped_lock lock(m_rowsLock);
        // The same object rather than the same key: a damaged history may have two records with one
        // key.
        const auto same = std::find(m_historyArray.begin(), m_historyArray.end(), m_selected);
        if (same != m_historyArray.end()) {
            row = static_cast<int>(same - m_historyArray.begin());
        }
    }
    selectInPlace(row);
}

void KORVENHistoryViewController::showRowsOrEmptyState()
{
    const int count = numberOfRowsInTableView();
    // With rows the reason stands above them. Without rows the empty page has room for it.
    m_problemLabel.setVisible(!m_problem.isEmpty() && count > 0);
    if (!m_problem.isEmpty()) {
        const QString title = tr("The history cannot be read");
        const QString text = tr("Scans are not recorded until it can be: %1").arg(m_problem);
        m_countLabel.clear();
        m_problemLabel.setText(title + u'\n' + text);
        setEmptyTexts(title, text);
    } else {
        m_countLabel.setText(count == 0   ? tr("No scans kept")
                             : count == 1 ? tr("1 scan kept")
                                          : tr("%1 scans kept").arg(QLocale().toString(count)));
        setEmptyTexts(
            tr("No scans kept yet"),
            tr("Each folder that you scan is listed here, to be opened again without a scan."));
    }
    if (count > 0) {
        showTable();
        return;
    }
    // Qt takes the focus from a widget that is hidden, and would give it to the next in the tab
    // order.
    const bool hadFocus = table().hasFocus();
    showEmptyPage();
    if (hadFocus) {
        m_refreshButton.setFocus(); // the likely next step
    }
}

void KORVENHistoryViewController::updateButtons()
{
    const bool isIdle = !m_removal.isRunning();
    m_refreshButton.setEnabled(isIdle);
    m_sortButton.setEnabled(isIdle);
    m_deleteButton.setEnabled(isIdle && numberOfRowsInTableView() > 0);
    // In place, since only the buttons have changed: a reload would fill every cell again.
    for (auto *cell : table().findChildren<KORVENHistoryCellView *>()) {
        if (cell->deleteButton() != nullptr) {
            cell->deleteButton()->setEnabled(isIdle);
        }
    }
}

HistoryRecords KORVENHistoryViewController::historyArray() const
{
    const std::scoped_lock lock(m_rowsLock);
    return m_historyArray;
}

int KORVENHistoryViewController::numberOfRowsInTableView() const
{
    const std::scoped_lock lock(m_rowsLock);
    return static_cast<int>(m_historyArray.size());
}

KORVENHistoryViewController::Record KORVENHistoryViewController::recordAt(int row) const
{
    const std::scoped_lock lock(m_rowsLock);
    // The table may ask for a row that another thread has pruned meanwhile.
    const bool isThere = row >= 0 && static_cast<std::size_t>(row) < m_historyArray.size();
    return isThere ? m_historyArray[static_cast<std::size_t>(row)] : nullptr;
}

QWidget *KORVENHistoryViewController::viewForTableColumn(int row)
{
    const Record record = recordAt(row);
    if (!record) {
        return nullptr;
    }
    auto &cell = makeCell<KORVENHistoryCellView>();
    fillCell(cell, *record);
    return &cell;
}

void KORVENHistoryViewController::fillCell(KORVENHistoryCellView &cell,
                                           const KORVENHistoryItem &record)
{
    cell.setScanKey(record.scanKey());
    if (cell.imageView() == nullptr) {
        return; // a bare cell
    }
    // After a deletion the next row moves up under the pointer. Without the guard a double click
    // deletes two scans.
    pressGuard().watch(*cell.deleteButton());
    cell.imageView()->setToolTip(tr("Load scan"));
    const QString path = pathText(record);
    cell.scanPath()->setText(path);
    // Qt takes a tooltip that looks like markup for rich text, and a path may contain any
    // characters.
    cell.scanPath()->setToolTip(plainToolTip(drawableText(path)));
    cell.scanTotal()->setText(totalText(record));
    cell.scanDate()->setText(dateText(record));
    cell.deleteButton()->setEnabled(!m_removal.isRunning());
}

QString KORVENHistoryViewController::dateText(const KORVENHistoryItem &record) const
{
    const auto date = record.scanDate();
    return date ? QString::fromStdString(
                      m_dates.text(date->systemTime(), DateStyle::medium, DateStyle::shortest))
                : QString();
}

QString KORVENHistoryViewController::searchText(int row) const
{
    const Record record = recordAt(row);
    return record ? pathText(*record) : QString();
}

QString KORVENHistoryViewController::accessibleText(int row) const
{
    const Record record = recordAt(row);
    if (!record) {
        return {};
    }
    QStringList parts{drawableText(pathText(*record)), totalText(*record), dateText(*record)};
    // A record out of an old or damaged history may lack any of them. A screen reader would speak
    // the commas.
    parts.removeAll(QString());
    return parts.join(u", ");
}

void KORVENHistoryViewController::activateRow(int row)
{
    if (auto *cell = cellAt<KORVENHistoryCellView>(row)) {
        cell->imageClicked();
    }
}

} // namespace tessaly
