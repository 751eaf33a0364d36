#include "screens/ResultViewController.hpp"

#include "app/controls/CellTableView.hpp"
#include "app/controls/IconView.hpp"
#include "app/controls/InterfaceFile.hpp"
#include "app/controls/KORVENButton.hpp"
#include "app/controls/KORVENProgressBar.hpp"
#include "app/controls/Look.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/LUMThreadedScanner.hpp"
#include "resources/Artwork.hpp"
#include "screens/KORVENFolderCellView.hpp"
#include "screens/NameText.hpp"

#include <QLabel>
#include <QProgressBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTextDocument>

#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString cellIdentifier = u"KORVENScanCell"_s;
const QString cellFile = u"KORVENFolderCell"_s;

/// From this length on a name has a tooltip: it may not be seen whole.
constexpr int longName = 21;

/// From which share on a bar warns. They are compared with shares of single precision, by which
/// nine tenths count as yellow still.
constexpr double yellowShare = 0.8;
constexpr double redShare = 0.9;

/// The row's part of the level, as the bars take it.
float shareOf(const KORVENFolderObject &row, float total)
{
    return static_cast<float>(row.sizeAsPercent(static_cast<double>(total)));
}

QString percentText(float share)
{
    if (std::isnan(share)) {
        return u"nan%"_s; // of either sign
    }
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%2.0f%%", static_cast<double>(100.0F * share));
    return QString::fromLatin1(text.data());
}

/// A tooltip that shows the text as it is, also if it looks like markup.
QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

void setBarColors(KORVENProgressBar &bar, float share)
{
    bar.setColorsBlue();
    if (KORVENAppDelegate::sharedDelegate().folderGraphColorPreference() == 0) {
        return;
    }
    const auto wide = static_cast<double>(share);
    if (wide >= yellowShare && wide < redShare) {
        bar.setColorsYellow();
    } else if (wide >= redShare) {
        bar.setColorsRed();
    }
}

/// A path without its last component: "/a/b" gives "/a", "/a" gives "/", "a" gives "".
std::string withoutLastComponent(const std::string &path)
{
    const std::size_t end = path.find_last_not_of('/');
    if (end == std::string::npos) {
        return path.empty() ? "" : "/";
    }
    const std::size_t slash = path.rfind('/', end);
    if (slash == std::string::npos) {
        return "";
    }
    const std::size_t last = path.find_last_not_of('/', slash);
    return last == std::string::npos ? "/" : path.substr(0, last + 1);
}

void registerWidgets()
{
    InterfaceFile::registerWidget<KORVENFolderCellView>("KORVENFolderCellView");
}

} // namespace

ResultViewController::ResultViewController(const QString &nibName)
{
    registerWidgets();
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    m_view = loaded.root.release();
    findOutlets();
}

ResultViewController::~ResultViewController()
{
    stopWorkers();
    if (m_view) {
        m_tableView->setDataSource(nullptr);
        delete m_view;
    }
}

void ResultViewController::findOutlets()
{
    QWidget &view = *m_view;
    setFolderNameField(&outlet<NameLabel>(view, "folderNameField"));
    m_tableView = &outlet<CellTableView>(view, "tableView");
    m_scanButton = &outlet<KORVENButton>(view, "scanButton");
    m_cancelButton = &outlet<KORVENButton>(view, "cancelButton");
    m_sortButton = &outlet<KORVENButton>(view, "sortButton");
    m_backButton = &outlet<KORVENButton>(view, "backButton");
    m_folderLabel = &outlet<QLabel>(view, "folderLabel");
    m_totalLabel = &outlet<QLabel>(view, "totalLabel");
    m_dateLabel = &outlet<QLabel>(view, "dateLabel");
    m_scanProgress = &outlet<QProgressBar>(view, "scanProgress");
    m_resultPages = &outlet<QStackedWidget>(view, "resultPages");
    m_emptyPage = &outlet<QWidget>(view, "emptyPage");
    m_emptyTitle = &outlet<QLabel>(view, "emptyTitle");
    m_emptyText = &outlet<QLabel>(view, "emptyText");
    m_emptyButton = &outlet<KORVENButton>(view, "emptyButton");

    m_totalCaption = &outlet<QLabel>(view, "totalCaption");
    makeTitle(*m_totalLabel);
    makeTitle(*m_emptyTitle);
    makeCaption(*m_dateLabel);
    makeCaption(*m_totalCaption);
    makeCaption(*m_emptyText);

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
            if (m_backButton->isVisibleTo(m_view)) {
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
    const bool run10p7Mode = KORVENAppDelegate::sharedDelegate().run10p7Mode();
    resetOrder();
    m_dateLabel->clear();
    if (!run10p7Mode) {
        m_tableView->registerCells(cellIdentifier, [this] {
            return KORVENFolderCellView::tableCellViewWithNibNamed(cellFile, this);
        });
    }
    m_drillDownPath.reset();
    showBackButton(false);
    m_scanButton->show();
    m_cancelButton->hide();
    showTotal({});
    m_scanProgress->hide();
    m_tableView->setDataSource(this);
    showEmptyStart();
    if (run10p7Mode) {
        for (KORVENButton *button :
             {m_backButton, m_sortButton, m_scanButton, m_cancelButton, m_emptyButton}) {
            button->set10p7Mode();
        }
    }
}

void ResultViewController::startLoading()
{
    if (!m_loader.joinable()) {
        m_loader = std::thread([this] { runLoader(); });
    }
}

void ResultViewController::stopWorkers()
{
    {
        const std::scoped_lock lock(m_scannerLock);
        m_isCancelWanted = true;
        if (m_scanner) {
            m_scanner->cancelScanInProgress();
        }
    }
    for (std::thread *thread : {&m_loader, &m_worker}) {
        if (thread->joinable()) {
            thread->join();
        }
    }
}

void ResultViewController::handOver(std::function<void()> show)
{
    QMetaObject::invokeMethod(this, std::move(show), Qt::QueuedConnection);
}

void ResultViewController::runLoader()
{
    auto result = std::make_shared<std::optional<Result>>(loadScanResults());
    if (!*result) {
        return;
    }
    handOver([this, result] {
        // A scan that the user has started meanwhile is what they want to see.
        if (m_loadGeneration == 0) {
            updateScanResults(std::move(**result));
        }
    });
}

void ResultViewController::startScan(const std::string &folder)
{
    ++m_loadGeneration;
    m_scanFolder = folder;
    const bool hadFocus = m_scanButton->hasFocus() || m_emptyButton->hasFocus();
    m_cancelButton->show();
    m_cancelButton->setEnabled(true);
    if (hadFocus) {
        m_cancelButton->setFocus();
    }
    m_scanButton->hide();
    m_sortButton->hide();
    m_scanProgress->show();
    m_emptyButton->hide();
    if (m_scanArray.empty()) {
        m_emptyTitle->setText(tr("Scanning…"));
        m_emptyText->setText(drawableText(textOfName(folder)));
        m_emptyText->show();
    }
    if (m_worker.joinable()) {
        m_worker.join(); // has ended, or is about to
    }
    m_isScanRunningNow = true;
    {
        const std::scoped_lock lock(m_scannerLock);
        m_isCancelWanted = false;
        m_scanner = std::make_shared<LUMThreadedScanner>();
    }
    m_worker = std::thread([this, folder] { showScanResults(folder); });
}

void ResultViewController::showScanResults(const std::string &folder)
{
    std::shared_ptr<LUMThreadedScanner> scanner;
    {
        const std::scoped_lock lock(m_scannerLock);
        scanner = m_scanner;
    }
    scanner->scanRootFolder(folder);
    {
        // A request from before the scan is forgotten by the scanner, but not by the user.
        const std::scoped_lock lock(m_scannerLock);
        if (m_isCancelWanted) {
            scanner->cancelScanInProgress();
        }
    }
    scanner->waitUntilFinished();
    if (scanner->scanWasCancelled()) {
        notifyCanceled();
        m_lockDrillDown = true;
        handOver([this] { cancelledScanResults(); });
    } else {
        notifyCompleted();
        auto result = std::make_shared<Result>(completedScan(scanner->tree()));
        handOver([this, result] { updateScanResults(std::move(*result)); });
    }
    const std::scoped_lock lock(m_scannerLock);
    m_scanner.reset();
}

void ResultViewController::cancelClicked()
{
    const std::scoped_lock lock(m_scannerLock);
    m_isCancelWanted = true;
    if (m_scanner) {
        m_scanner->cancelScanInProgress();
    }
}

RowThresholds ResultViewController::thresholds()
{
    return {compareHiddenItem(), compareLargeFile()};
}

void ResultViewController::showRows(ResultRows rows)
{
    m_scanArray = std::move(rows.rows);
    m_scanTotal = rows.total;
}

void ResultViewController::populateScanTable(const LUMFileContainer *folder)
{
    showRows(resultRowsOf(folder, thresholds()));
}

void ResultViewController::updateScanResults(Result result)
{
    ++m_loadGeneration;
    scanFinishedOrCancelled();
    m_drillTree = result.tree;
    m_drillResults = m_drillTree ? &m_drillTree->root() : nullptr;
    m_drillDownPath.reset();
    if (m_drillResults != nullptr) {
        m_drillDownPath = std::string(m_drillResults->itemName());
        m_scanFolder = *m_drillDownPath;
    }
    folderNameField()->setText(textOfName(m_drillDownPath.value_or(std::string())));
    m_dateLabel->setText(result.dateText);
    showRows(std::move(result.rows));
    showTotal(m_drillResults != nullptr ? buildString(m_scanTotal) : QString());
    resetOrder();
    m_emptyTitle->setText(result.emptyTitle);
    m_emptyText->setText(result.emptyText);
    reloadTable();
    resultWasShown(result);
    m_isScanRunningNow = false;
    m_lockDrillDown = false;
}

void ResultViewController::cancelledScanResults()
{
    scanFinishedOrCancelled();
    m_scanArray.clear();
    folderNameField()->setText(textOfName(m_scanFolder));
    m_drillDownPath.reset();
    showTotal({});
    m_dateLabel->clear();
    reloadTable();
    showEmptyState(tr("The scan was canceled"), tr("Nothing of it was kept."));
    m_lockDrillDown = false;
    m_isScanRunningNow = false;
}

void ResultViewController::scanFinishedOrCancelled()
{
    // Where the keyboard was on a button that goes, it comes to the rows; elsewhere it stays.
    if (m_cancelButton->hasFocus() || m_emptyButton->hasFocus()) {
        m_tableView->setFocus();
    }
    m_scanProgress->hide();
    m_cancelButton->hide();
    m_cancelButton->setEnabled(false);
    m_scanButton->show();
    m_sortButton->show();
    showBackButton(false);
}

void ResultViewController::showTotal(const QString &total)
{
    m_totalLabel->setText(total);
    m_totalCaption->setVisible(!total.isEmpty());
}

void ResultViewController::showBackButton(bool isShown)
{
    m_backButton->setVisible(isShown);
    m_folderLabel->setVisible(!isShown);
}

void ResultViewController::drillDownOneLevel(std::string_view name)
{
    if (m_lockDrillDown) {
        return;
    }
    showBackButton(true);
    m_drillDownPath = m_drillDownPath ? pathBelow(*m_drillDownPath, name) : std::string(name);
    m_drillResults = drillDownToPath(name);
    populateScanTable(m_drillResults);
    updateScanResultsDrillDown();
}

const LUMFileContainer *ResultViewController::drillDownToPath(std::string_view name) const
{
    if (m_drillResults == nullptr) {
        return nullptr;
    }
    for (const LUMFileItem &child : m_drillResults->subitems()) {
        if (child.itemName() == name) {
            return child.asContainer();
        }
    }
    return nullptr;
}

void ResultViewController::drillUpOneLevel()
{
    if (m_lockDrillDown || m_drillResults == nullptr ||
        m_drillResults->parentContainer() == nullptr) {
        return;
    }
    m_drillResults = m_drillResults->parentContainer();
    if (m_drillResults->parentContainer() == nullptr) {
        showBackButton(false);
    }
    const std::string path = withoutLastComponent(m_drillDownPath.value_or(std::string()));
    m_drillDownPath = path.empty() ? "/" : path;
    populateScanTable(m_drillResults);
    updateScanResultsDrillDown();
}

void ResultViewController::updateScanResultsDrillDown()
{
    folderNameField()->setText(textOfName(m_drillDownPath.value_or(std::string())));
    showTotal(buildString(m_scanTotal));
    resetOrder();
    if (m_drillTree && !m_isScanRunningNow) {
        m_emptyTitle->clear(); // what it says is about another level
    }
    reloadTable();
}

void ResultViewController::refreshTable()
{
    populateScanTable(m_drillResults);
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
    showTableOrEmptyState();
}

void ResultViewController::showTableOrEmptyState()
{
    if (!m_scanArray.empty()) {
        m_resultPages->setCurrentWidget(m_tableView);
        return;
    }
    if (m_emptyTitle->text().isEmpty()) {
        const bool isReallyEmpty = m_drillResults == nullptr || m_drillResults->subitems().empty();
        m_emptyTitle->setText(isReallyEmpty ? tr("This folder is empty")
                                            : tr("Nothing to list here"));
        m_emptyText->setText(isReallyEmpty
                                 ? QString()
                                 : tr("All items of this folder are hidden by the preferences."));
    }
    showEmptyState(m_emptyTitle->text(), m_emptyText->text());
}

void ResultViewController::showEmptyState(const QString &title, const QString &text)
{
    m_emptyTitle->setText(title);
    m_emptyText->setText(text);
    m_emptyText->setVisible(!text.isEmpty());
    m_emptyButton->setVisible(!m_isScanRunningNow || m_scanButton->isVisibleTo(m_view));
    m_resultPages->setCurrentWidget(m_emptyPage);
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
    QWidget *cell = m_tableView->makeView(cellIdentifier);
    if (cell == nullptr) {
        std::unique_ptr<KORVENFolderCellView> made;
        if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
            made = KORVENFolderCellView::tableCellViewWithNibNamed(cellFile, this);
        }
        if (!made) {
            made = std::make_unique<KORVENFolderCellView>();
        }
        cell = m_tableView->adoptView(std::move(made), cellIdentifier);
    }
    fillCell(*cell, m_scanArray[static_cast<std::size_t>(row)]);
    return cell;
}

void ResultViewController::fillCell(QWidget &widget, const KORVENFolderObject &row)
{
    auto &cell = static_cast<KORVENFolderCellView &>(widget);
    cell.setAllowsClickDrill(row.folderIsDirectory());
    cell.setMyViewController(this);
    if (cell.folderName() == nullptr) {
        return; // a bare cell
    }
    const QString name = textOfName(row.folderName());
    cell.folderName()->setText(name);
    cell.folderName()->setToolTip(name.size() >= longName ? plainToolTip(drawableText(name))
                                                          : QString());
    cell.folderSize()->setText(QString::fromStdString(row.folderSizeAsString()));

    const float share = shareOf(row, m_scanTotal);
    cell.folderGraph()->setBarPercent(share);
    setBarColors(*cell.folderGraph(), share);
    cell.folderGraph()->setToolTip(percentText(share));

    QString image = u"file.png"_s;
    if (row.folderIsDirectory()) {
        image = row.folderName() == trashName ? trashImageName(row) : u"folder.png"_s;
    }
    cell.iconImage()->setImage(artworkIcon(image), image);
    cell.iconImage()->setToolTip(row.folderIsDirectory() ? tr("Drill down") : tr("Quick look"));
}

QString ResultViewController::searchText(int row) const
{
    return textOfName(m_scanArray[static_cast<std::size_t>(row)].folderName());
}

QString ResultViewController::accessibleText(int row) const
{
    const KORVENFolderObject &object = m_scanArray[static_cast<std::size_t>(row)];
    return u"%1, %2, %3"_s.arg(drawableText(searchText(row)),
                               QString::fromStdString(object.folderSizeAsString()),
                               percentText(shareOf(object, m_scanTotal)).trimmed());
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
