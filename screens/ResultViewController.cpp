#include "screens/ResultViewController.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/tree/FilePath.hpp"
#include "screens/results/KORVENFolderCellView.hpp"

#include <QLabel>
#include <QProgressBar>
#include <QShortcut>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

void registerWidgets()
{
    InterfaceFile::registerWidget<KORVENFolderCellView>("KORVENFolderCellView");
}

/// Whether the keyboard is on this widget, or will be once the window is in use again: a dialog may
/// be in front of it.
bool holdsKeyboard(const QWidget &widget)
{
    return widget.window()->focusWidget() == &widget;
}

} // namespace

ResultViewController::ResultViewController(const QString &nibName, const QString &cellIdentifier)
{
    registerWidgets();
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    m_view = loaded.root.release();
    findOutlets(cellIdentifier);
}

ResultViewController::~ResultViewController()
{
    stopWorkers();
    if (m_view) {
        m_tableView->setDataSource(nullptr);
        delete m_view;
    }
}

void ResultViewController::findOutlets(const QString &cellIdentifier)
{
    QWidget &view = *m_view;
    setFolderNameField(&outlet<NameLabel>(view, "folderNameField"));
    m_tableView = &outlet<CellTableView>(view, "tableView");
    m_cells = std::make_unique<ResultCells>(
        *m_tableView, *this, cellIdentifier,
        [this](const KORVENFolderObject &row) { return trashImageName(row); });
    m_scanButton = &outlet<KORVENButton>(view, "scanButton");
    m_cancelButton = &outlet<KORVENButton>(view, "cancelButton");
    m_sortButton = &outlet<KORVENButton>(view, "sortButton");
    m_noticeLabel = &outlet<QLabel>(view, "noticeLabel");
    m_scanProgress = &outlet<QProgressBar>(view, "scanProgress");
    m_scanLabel = &outlet<NameLabel>(view, "scanLabel");
    m_resultPages = &outlet<QStackedWidget>(view, "resultPages");
    m_header = std::make_unique<ResultHeader>(view);
    m_emptyPage = std::make_unique<EmptyPage>(view);
    makeCaption(*m_scanLabel);
    for (KORVENButton *button : {m_scanButton, m_cancelButton, &m_emptyPage->button()}) {
        m_pressGuard.watch(*button);
    }

    const QStringList missing = wireActions(view, *this,
                                            {{"scanButton", [this] { scanButtonPressed(); }},
                                             {"emptyButton", [this] { scanButtonPressed(); }},
                                             {"cancelButton", [this] { cancelClicked(); }},
                                             {"sortButton", [this] { sortClicked(); }},
                                             {"backButton", [this] { drillUpOneLevel(); }}});
    if (!missing.isEmpty()) {
        qFatal("there are no buttons %s", qUtf8Printable(missing.join(u", ")));
    }
    for (const auto &key : {QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(Qt::Key_Backspace),
                            QKeySequence(Qt::ALT | Qt::Key_Up)}) {
        auto *shortcut = new QShortcut(key, m_view, nullptr, nullptr, Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (m_header->backButton().isVisibleTo(m_view)) {
                drillUpOneLevel();
            }
        });
    }
}

void ResultViewController::awakeFromNib()
{
    if (!m_firstRunFlag) {
        return;
    }
    m_firstRunFlag = false;
    resetOrder();
    m_header->showDate({});
    m_cells->registerCells();
    m_level.forgetPath();
    m_header->showBackButton(false);
    showTotal({});
    m_scanProgress->hide();
    m_scanLabel->hide();
    m_tableView->setDataSource(this);
    showStart();
    if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        for (auto *button : m_view->findChildren<KORVENButton *>()) {
            button->set10p7Mode();
        }
    }
}

void ResultViewController::startLoading()
{
    m_workers.startLoading();
}

ScanWork::Step ResultViewController::loadResult()
{
    auto result = std::make_shared<std::optional<ScanResult>>(loadScanResults());
    if (!*result) {
        return {};
    }
    return [this, result] {
        // A scan that the user has started meanwhile is what they want to see.
        if (m_loadGeneration == 0) {
            updateScanResults(std::move(**result));
        }
    };
}

void ResultViewController::startScan(const std::string &folder,
                                     const std::optional<std::string> &grantedUrl)
{
    ++m_loadGeneration;
    m_scanFolder = folder;
    const QString folderText = textOfName(folder);
    m_cancelButton->setTitle(tr("Cancel"));
    m_cancelButton->show();
    m_cancelButton->setEnabled(true);
    takeKeyboardForScan();
    m_scanButton->hide();
    m_sortButton->hide();
    m_scanProgress->show();
    m_scanLabel->setText(tr("Scanning %1").arg(folderText));
    m_scanLabel->show();
    m_emptyPage->button().hide();
    if (m_scanArray.empty()) {
        m_emptyPage->say(tr("Scanning…"), drawableText(folderText));
    }
    showNotice({});
    m_isScanRunningNow = true;
    m_workers.startScan(folder, grantedUrl);
}

ScanWork::Step ResultViewController::scanCancelled()
{
    notifyCanceled();
    m_lockDrillDown = true;
    return [this] { cancelledScanResults(); };
}

ScanWork::Step ResultViewController::scanCompleted(const FinishedScan &scan)
{
    auto result = std::make_shared<ScanResult>(completedScan(scan));
    return [this, result] {
        if (result->keepsScanningLook) {
            showNotice(result->notice);
            m_lockDrillDown = true;
            takeResult(*result);
        } else {
            updateScanResults(std::move(*result));
        }
    };
}

void ResultViewController::cancelClicked()
{
    if (m_workers.cancelScan()) {
        m_cancelButton->setTitle(tr("Stopping…"));
    }
}

void ResultViewController::takeResult(ScanResult &result)
{
    m_level.setTree(result.tree);
    takeRows(std::move(result.rows));
}

void ResultViewController::takeRows(ResultRows rows)
{
    m_scanArray = std::move(rows.rows);
    m_scanTotal = rows.total;
}

void ResultViewController::populateScanTable(const tree::LUMFileContainer *folder)
{
    takeRows(ScanResult::rowsOf(folder));
}

void ResultViewController::updateScanResults(ScanResult result)
{
    ++m_loadGeneration;
    const bool isKeyboardForRows = scanFinishedOrCancelled();
    takeResult(result);
    m_level.takePathOfTree();
    if (m_level.path()) {
        m_scanFolder = *m_level.path();
    }
    folderNameField()->setText(textOfName(m_level.path().value_or(std::string())));
    m_header->showDate(result.dateText);
    showTotal(m_level.hasTree() ? buildString(m_scanTotal) : QString());
    showNotice(result.notice);
    resetOrder();
    if (result.emptyTitle.isEmpty()) {
        m_emptyPage->sayWhyThereAreNoRows(m_level.folder());
    } else {
        m_emptyPage->say(result.emptyTitle, result.emptyText);
    }
    reloadTable();
    if (isKeyboardForRows) {
        giveKeyboardToRows();
    }
    resultWasShown(result);
    m_isScanRunningNow = false;
    m_lockDrillDown = false;
    qCDebug(resultLog, "rows shown");
}

void ResultViewController::cancelledScanResults()
{
    const bool isKeyboardForRows = scanFinishedOrCancelled();
    m_scanArray.clear();
    folderNameField()->setText(textOfName(m_scanFolder));
    m_level.forgetPath();
    showTotal({});
    m_header->showDate({});
    reloadTable();
    showEmptyState(tr("The scan was canceled"), tr("Nothing of it was kept."));
    if (isKeyboardForRows) {
        giveKeyboardToRows();
    }
    m_lockDrillDown = false;
    m_isScanRunningNow = false;
}

bool ResultViewController::scanFinishedOrCancelled()
{
    const bool isKeyboardForRows = holdsKeyboard(*m_cancelButton) ||
                                   holdsKeyboard(m_emptyPage->button()) ||
                                   holdsKeyboard(m_header->backButton());
    m_scanButton->show();
    m_sortButton->show();
    if (isKeyboardForRows) {
        m_scanButton->setFocus(); // where it is while the rows are out of sight
    }
    m_scanProgress->hide();
    m_scanLabel->hide();
    m_cancelButton->hide();
    m_cancelButton->setEnabled(false);
    m_header->showBackButton(false);
    return isKeyboardForRows;
}

void ResultViewController::giveKeyboardToRows()
{
    if (m_tableView->isVisibleTo(m_view)) {
        m_tableView->setFocus();
    }
}

/// The user works next on the screen that scans. Within the screen the keyboard stays where it is,
/// unless that is a button which a scan hides.
void ResultViewController::takeKeyboardForScan()
{
    const bool isElsewhere =
        m_view->isVisible() && !m_view->isAncestorOf(m_view->window()->focusWidget());
    if (isElsewhere && m_tableView->isVisibleTo(m_view)) {
        m_tableView->setFocus();
    } else if (isElsewhere || holdsKeyboard(*m_scanButton) || holdsKeyboard(*m_sortButton) ||
               holdsKeyboard(m_emptyPage->button())) {
        m_cancelButton->setFocus();
    }
}

void ResultViewController::showTotal(const QString &total)
{
    m_header->showTotal(total);
}

void ResultViewController::showNotice(const QString &notice)
{
    m_noticeLabel->setText(notice);
    m_noticeLabel->setVisible(!notice.isEmpty());
}

void ResultViewController::drillDownOneLevel(std::string_view name)
{
    if (m_lockDrillDown) {
        return;
    }
    m_header->showBackButton(true);
    m_level.goDown(name, m_level.path() ? pathBelow(*m_level.path(), name) : std::string(name));
    populateScanTable(m_level.folder());
    updateScanResultsDrillDown();
    m_tableView->speakRows();
}

bool ResultViewController::canDrillUp() const noexcept
{
    return !m_lockDrillDown && m_level.canGoUp();
}

void ResultViewController::drillUpOneLevel()
{
    if (!canDrillUp()) {
        return;
    }
    const std::string_view left = m_level.folder()->itemName();
    m_level.goUp(pathAbove(m_level.path()));
    if (m_level.isTop()) {
        m_header->showBackButton(false);
    }
    populateScanTable(m_level.folder());
    updateScanResultsDrillDown();
    selectFolder(left);
    m_tableView->speakRows();
}

/// The rows in sight stay where they are.
void ResultViewController::selectFolder(std::string_view name)
{
    const auto row = std::find_if(m_scanArray.begin(), m_scanArray.end(),
                                  [&](const auto &object) { return object.folderName() == name; });
    if (row != m_scanArray.end()) {
        m_tableView->setAutoScroll(false);
        m_tableView->selectRow(static_cast<int>(row - m_scanArray.begin()));
        m_tableView->setAutoScroll(true);
    }
}

std::optional<std::string>
ResultViewController::pathAbove(const std::optional<std::string> &folder) const
{
    return folder ? std::optional(tree::parentPath(*folder)) : std::nullopt;
}

void ResultViewController::updateScanResultsDrillDown()
{
    folderNameField()->setText(textOfName(m_level.path().value_or(std::string())));
    showTotal(buildString(m_scanTotal));
    resetOrder();
    if (m_level.hasTree()) {
        m_emptyPage->sayWhyThereAreNoRows(m_level.folder());
    }
    reloadTable();
}

void ResultViewController::refreshTable()
{
    populateScanTable(m_level.folder());
    updateScanResultsDrillDown();
}

void ResultViewController::resetOrder()
{
    m_sortBySizeFlag = true;
    m_sortButton->setTitle(tr("Sort by name"));
}

void ResultViewController::sortClicked()
{
    m_sortBySizeFlag = !m_sortBySizeFlag;
    m_sortButton->setTitle(m_sortBySizeFlag ? tr("Sort by name") : tr("Sort by size"));
    sortTable();
}

void ResultViewController::sortTable()
{
    sortRows(m_scanArray, m_sortBySizeFlag ? RowOrder::size : RowOrder::name);
    reloadTable();
}

void ResultViewController::reloadTable()
{
    m_tableView->reloadData();
    m_tableView->scrollToTop();
    if (!m_scanArray.empty()) {
        m_tableView->selectRow(0);
    }
    showTableOrEmptyPage();
}

void ResultViewController::showTableOrEmptyPage()
{
    if (!m_scanArray.empty()) {
        m_resultPages->setCurrentWidget(m_tableView);
        return;
    }
    showEmptyPage();
}

void ResultViewController::showEmptyPage()
{
    m_emptyPage->button().setVisible(!m_isScanRunningNow || m_scanButton->isVisibleTo(m_view));
    m_resultPages->setCurrentWidget(&m_emptyPage->widget());
}

void ResultViewController::showEmptyState(const QString &title, const QString &text)
{
    m_emptyPage->say(title, text);
    showEmptyPage();
}

int ResultViewController::numberOfRowsInTableView() const
{
    return static_cast<int>(m_scanArray.size());
}

QWidget *ResultViewController::viewForTableColumn(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= m_scanArray.size()) {
        return nullptr;
    }
    return m_cells->cellFor(m_scanArray[static_cast<std::size_t>(row)], m_scanTotal);
}

bool ResultViewController::hasSelectedRow() const
{
    return canActOnRows() && m_tableView->selectedRow() >= 0;
}

bool ResultViewController::canShowQuickLook() const
{
    // The table may not have been told of the rows yet.
    const auto row = static_cast<std::size_t>(m_tableView->selectedRow());
    return hasSelectedRow() && row < m_scanArray.size() && !m_scanArray[row].folderIsDirectory();
}

KORVENFolderCellView *ResultViewController::selectedCell() const
{
    return qobject_cast<KORVENFolderCellView *>(m_tableView->selectedCell());
}

std::vector<std::string> ResultViewController::shownFileNames() const
{
    std::vector<std::string> names;
    for (const KORVENFolderObject &row : m_scanArray) {
        if (!row.folderIsDirectory()) {
            names.emplace_back(row.folderName());
        }
    }
    return names;
}

void ResultViewController::showQuickLook()
{
    if (KORVENFolderCellView *cell = selectedCell()) {
        cell->showQuickLook();
    }
}

void ResultViewController::showInFinder()
{
    if (KORVENFolderCellView *cell = selectedCell()) {
        cell->showInFinder();
    }
}

void ResultViewController::showInfo()
{
    if (KORVENFolderCellView *cell = selectedCell()) {
        cell->showInfo();
    }
}

QString ResultViewController::searchText(int row) const
{
    return textOfName(m_scanArray[static_cast<std::size_t>(row)].folderName());
}

QString ResultViewController::accessibleText(int row) const
{
    return ResultCells::accessibleText(m_scanArray[static_cast<std::size_t>(row)], m_scanTotal);
}

bool ResultViewController::shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed)
{
    return KORVENViewController::shouldTypeSelectForEvent(event, typed);
}

void ResultViewController::activateRow(int row)
{
    if (auto *cell = qobject_cast<KORVENFolderCellView *>(m_tableView->cellForRow(row))) {
        cell->clickedName();
    }
}

void ResultViewController::showMenu(int row, const QPoint &place)
{
    if (auto *cell = qobject_cast<KORVENFolderCellView *>(m_tableView->cellForRow(row))) {
        cell->popUpMenu(place);
    }
}

} // namespace tessaly
