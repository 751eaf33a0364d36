#include "screens/ResultViewController.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "engine/tree/LUMFileContainer.hpp"

#include <QLabel>
#include <QProgressBar>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

/// Whether the keyboard is on this widget, or will be once the window is in use again: a dialog may
/// be in front of it.
bool holdsKeyboard(const QWidget &widget)
{
    return widget.window()->focusWidget() == &widget;
}

} // namespace

ResultViewController::ResultViewController(const Services &services, Setup setup)
    : KORVENViewController(services), InterfaceScreen(*this, setup.nibName),
      m_model(std::move(setup.paths), &KORVENViewController::rowThresholds),
      m_scanButton(find<KORVENButton>("scanButton")),
      m_cancelButton(find<KORVENButton>("cancelButton")),
      m_sortButton(find<KORVENButton>("sortButton")),
      m_emptyButton(find<KORVENButton>("emptyButton")), m_noticeLabel(find<QLabel>("noticeLabel")),
      m_scanProgress(find<QProgressBar>("scanProgress")), m_scanLabel(find<NameLabel>("scanLabel")),
      m_header(*view()), m_workers(*this, *this, services.bookmarks)
{
    setFolderNameField(&find<NameLabel>("folderNameField"));
    makeCaption(m_scanLabel);
    wireButtons();
    connect(&m_model, &ResultModel::levelChanged, this, &ResultViewController::showLevel);
    connect(&m_model, &ResultModel::orderChanged, this, &ResultViewController::showOrder);
    // Before the pages change, so that the table has its rows when it comes into sight.
    m_rowsView = std::make_unique<RowsView>(find<CellTableView>("tableView"), m_model, *this,
                                            setup.cellIdentifier, std::move(setup.trashImage));
    connect(&m_model, &ResultModel::rowsChanged, this, &ResultViewController::showRowsOrEmptyPage);
}

ResultViewController::~ResultViewController()
{
    // First of all, since the workers use the members below. A derived class has called this
    // already, while its overrides still existed; a second call does nothing.
    stopWorkers();
    m_rowsView.reset();
    closeView();
}

void ResultViewController::wireButtons()
{
    // Scan and Cancel take each other's place: the second press of a double click would cancel the
    // scan that the first one has started.
    for (KORVENButton *button : {&m_scanButton, &m_cancelButton, &m_emptyButton}) {
        pressGuard().watch(*button);
    }
    wire({{"scanButton", [this] { scanButtonPressed(); }},
          {"emptyButton", [this] { scanButtonPressed(); }},
          {"cancelButton", [this] { cancelClicked(); }},
          {"sortButton", [this] { sortClicked(); }},
          {"backButton", [this] { drillUpOneLevel(); }}});
    for (const auto &key : {QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(Qt::Key_Backspace),
                            QKeySequence(Qt::ALT | Qt::Key_Up)}) {
        // For the window, since the focus may be on a button or the title bar. Qt ignores the
        // shortcuts of invisible widgets, so the two scan screens do not compete for these keys.
        auto *shortcut = new QShortcut(key, view(), nullptr, nullptr, Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] {
            // The keys do what the button does, so they do nothing where the button is hidden.
            if (m_header.backButton().isVisibleTo(view())) {
                drillUpOneLevel();
            }
        });
    }
}

void ResultViewController::setUp()
{
    showOrder();
    m_header.showDate({});
    m_header.showBackButton(false);
    showTotal({});
    m_scanProgress.hide();
    m_scanLabel.hide();
    showStart();
}

ScanWork::Step ResultViewController::loadResult()
{
    // A step is a std::function, which must be copyable. A result is not, and its rows may be a
    // million.
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
    // A load of the last result may still run. Its step sees this and does nothing.
    ++m_loadGeneration;
    m_scanFolder = folder;
    const QString folderText = textOfName(folder);
    m_cancelButton.setTitle(tr("Cancel"));
    m_cancelButton.show();
    m_cancelButton.setEnabled(true);
    // Before the scan button is hidden: Qt would move the focus to the next widget in the tab
    // order. And after the Cancel button is shown, since a hidden widget does not get the focus.
    takeKeyboardForScan();
    m_scanButton.hide();
    m_sortButton.hide();
    m_scanProgress.show();
    m_scanLabel.setText(tr("Scanning %1").arg(folderText));
    m_scanLabel.show();
    m_emptyButton.hide();
    // Rows from before stay and can be browsed while the scan runs.
    if (m_model.rows().empty()) {
        setEmptyTexts(tr("Scanning…"), drawableText(folderText));
    }
    showNotice({});
    // Before the worker starts, so that a second request is refused from here on.
    m_isScanRunningNow = true;
    m_workers.startScan(folder, grantedUrl);
}

ScanWork::Step ResultViewController::scanCancelled()
{
    notifyCanceled();
    m_model.setLocked(true); // until the main thread has taken the rows away
    return [this] { cancelledScanResults(); };
}

ScanWork::Step ResultViewController::scanCompleted(const FinishedScan &scan)
{
    // The rows are made and sorted here on the worker, so the main thread only swaps them in.
    auto result = std::make_shared<ScanResult>(completedScan(scan));
    return [this, result] {
        if (result->keepsScanningLook) {
            showNotice(result->notice);
            m_model.setLocked(true);
            // No signal: the views keep the old rows, which is the required behaviour of this case.
            // The lock keeps the user from going into the new tree by clicks on old rows.
            m_model.replaceSilently(result->tree, std::move(result->rows));
        } else {
            updateScanResults(std::move(*result));
        }
    };
}

void ResultViewController::cancelClicked()
{
    // False when the result is on its way. The button must not promise a stop that will not come.
    if (m_workers.cancelScan()) {
        // A scan that hangs in a dead folder is only given up after a moment.
        m_cancelButton.setTitle(tr("Stopping…"));
    }
}

void ResultViewController::updateScanResults(ScanResult result)
{
    ++m_loadGeneration;
    const bool isKeyboardForRows = scanFinishedOrCancelled();
    m_header.showDate(result.dateText);
    showNotice(result.notice);
    m_model.setResult(result.tree, std::move(result.rows));
    if (m_model.hasTree()) {
        m_scanFolder = *m_model.path();
    } else {
        showTotal({});
    }
    // After setResult(), whose signal has set the usual texts of an empty folder.
    if (!result.emptyTitle.isEmpty()) {
        setEmptyTexts(result.emptyTitle, result.emptyText);
    }
    if (isKeyboardForRows) {
        giveKeyboardToRows();
    }
    // The scan counts as running until everything of its result is shown. Only then can rows be
    // entered, and a new scan be started.
    resultWasShown(result);
    m_isScanRunningNow = false;
    m_model.setLocked(false);
    qCDebug(resultLog, "rows shown");
}

void ResultViewController::cancelledScanResults()
{
    const bool isKeyboardForRows = scanFinishedOrCancelled();
    // The path is cleared as well: nothing leads back to the level before, whose folder the header
    // no longer names.
    m_model.clearRows();
    folderNameField()->setText(textOfName(m_scanFolder));
    showTotal({});
    m_header.showDate({});
    showEmptyState(tr("The scan was canceled"), tr("Nothing of it was kept."));
    if (isKeyboardForRows) {
        giveKeyboardToRows();
    }
    m_model.setLocked(false);
    m_isScanRunningNow = false;
}

bool ResultViewController::scanFinishedOrCancelled()
{
    const bool isKeyboardForRows = holdsKeyboard(m_cancelButton) || holdsKeyboard(m_emptyButton) ||
                                   holdsKeyboard(m_header.backButton());
    m_scanButton.show();
    m_sortButton.show();
    if (isKeyboardForRows) {
        m_scanButton.setFocus(); // where it is while the rows are out of sight
    }
    m_scanProgress.hide();
    m_scanLabel.hide();
    m_cancelButton.hide();
    m_cancelButton.setEnabled(false);
    m_header.showBackButton(false);
    return isKeyboardForRows;
}

void ResultViewController::giveKeyboardToRows()
{
    // isVisibleTo(), since the screen itself may be hidden behind another page of the window.
    if (m_rowsView->widget().isVisibleTo(view())) {
        m_rowsView->widget().setFocus();
    }
}

/// The user works next on the screen that scans. Within the screen the keyboard stays where it is,
/// unless that is a button which a scan hides.
void ResultViewController::takeKeyboardForScan()
{
    const bool isElsewhere =
        view()->isVisible() && !view()->isAncestorOf(view()->window()->focusWidget());
    if (isElsewhere && m_rowsView->widget().isVisibleTo(view())) {
        m_rowsView->widget().setFocus();
    } else if (isElsewhere || holdsKeyboard(m_scanButton) || holdsKeyboard(m_sortButton) ||
               holdsKeyboard(m_emptyButton)) {
        m_cancelButton.setFocus();
    }
}

void ResultViewController::showNotice(const QString &notice)
{
    m_noticeLabel.setText(notice);
    m_noticeLabel.setVisible(!notice.isEmpty());
}

void ResultViewController::drillDownOneLevel(std::string_view name)
{
    if (m_model.drillDown(name)) {
        // All rows are others at once, so they are spoken like those of a page that opens.
        m_rowsView->speak();
    }
}

void ResultViewController::drillUpOneLevel()
{
    if (m_model.drillUp()) {
        m_rowsView->speak();
    }
}

void ResultViewController::showLevel()
{
    // A result that keeps the look of a running scan also keeps the button.
    if (!m_model.isLocked()) {
        m_header.showBackButton(m_model.isBelowTop());
    }
    folderNameField()->setText(textOfName(m_model.path().value_or(std::string())));
    showTotal(buildString(m_model.total()));
    if (m_model.hasTree()) { // else the page keeps saying why there is none
        sayWhyThereAreNoRows();
    }
}

void ResultViewController::showOrder()
{
    m_sortButton.setTitle(sortBySizeFlag() ? tr("Sort by name") : tr("Sort by size"));
}

void ResultViewController::sortClicked()
{
    m_model.setOrder(sortBySizeFlag() ? RowOrder::name : RowOrder::size);
}

void ResultViewController::showRowsOrEmptyPage()
{
    if (m_model.rows().empty()) {
        showEmptyPageAndButton();
    } else {
        showPage(m_rowsView->widget());
    }
}

void ResultViewController::sayWhyThereAreNoRows()
{
    if (m_model.folder() == nullptr || m_model.folder()->subitems().empty()) {
        setEmptyTexts(tr("This folder is empty"), {});
    } else {
        setEmptyTexts(tr("Nothing to list here"),
                      tr("All items of this folder are hidden by the preferences."));
    }
}

void ResultViewController::showEmptyPageAndButton()
{
    // While a result is being shown, the scan still counts as running, but the scan button is back
    // already.
    m_emptyButton.setVisible(!m_isScanRunningNow || m_scanButton.isVisibleTo(view()));
    showEmptyPage();
}

void ResultViewController::showEmptyState(const QString &title, const QString &text)
{
    setEmptyTexts(title, text);
    showEmptyPageAndButton();
}

std::vector<std::string> ResultViewController::shownFileNames() const
{
    std::vector<std::string> names;
    for (const KORVENFolderObject &row : m_model.rows()) {
        if (!row.folderIsDirectory()) {
            names.emplace_back(row.folderName());
        }
    }
    return names;
}

} // namespace tessaly
