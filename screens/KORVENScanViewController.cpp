#include "screens/KORVENScanViewController.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/tree/FilePath.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "platform/DocumentsFolder.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderChooser.hpp"
#include "platform/StoredBookmark.hpp"
#include "screens/KORVENQuicklookController.hpp"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(scanLog, "tessaly.screens.scan")

// The path of a child is shown and handed to the file manager, so the root gets no second slash.
// The home screen does that differently, see homePathBelow().
std::string scanPathBelow(const std::string &folder, std::string_view name)
{
    return (folder == "/" ? folder : folder + '/') + std::string(name);
}

std::string scanPathAbove(const std::string &folder)
{
    const std::string path = tree::parentPath(folder);
    // A relative name, as a damaged scan file may have it, has no parent path.
    return path.empty() ? "/" : path;
}

QString scanTrashImage(const KORVENFolderObject & /*row*/)
{
    return u"trash_full.png"_s; // also of an empty one, on this screen
}

} // namespace

KORVENScanViewController::KORVENScanViewController(const Services &services, const QString &nibName)
    : ResultViewController(
          services,
          {nibName, u"KORVENScanCell"_s, {&scanPathBelow, &scanPathAbove}, &scanTrashImage})
{
}

KORVENScanViewController::~KORVENScanViewController()
{
    // Here and not in the base class alone: the workers call overrides of this class.
    stopWorkers();
}

void KORVENScanViewController::showStart()
{
    scanButton().show();
    cancelButton().hide();
    showEmptyState(tr("No folder scanned yet"),
                   tr("Choose a folder to see what takes up its space."));
}

void KORVENScanViewController::scanButtonPressed()
{
    services().folderChooser.chooseFolder(
        *view()->window(),
        {QFile::encodeName(QDir::homePath()).toStdString(), tr("Scan").toStdString()},
        [guard = QPointer(this)](const std::optional<std::string> &folder) {
            // The dialog does not block the program. Meanwhile the screen may have been destroyed,
            // or a scan started.
            if (guard && folder && !guard->isScanRunningNow()) {
                guard->startScan(*folder);
            }
        });
}

std::optional<ScanResult> KORVENScanViewController::loadScanResults()
{
    try {
        // The first call reads the history file. This is a worker, so the window does not wait for
        // it.
        const auto record = KORVENHistoryStore::sharedStore().getMostRecentScan();
        return record ? std::optional(recordedScan(*record)) : std::nullopt;
    } catch (const NamedException &exception) {
        return historyProblem(exception);
    }
}

ScanResult KORVENScanViewController::historyProblem(const NamedException &exception)
{
    return ScanResult::ofProblem(tr("The history cannot be read"),
                                 tr("Scans are not recorded until it can be: %1")
                                     .arg(QString::fromStdString(exception.reason())));
}

ScanResult KORVENScanViewController::recordedScan(const KORVENHistoryItem &record) const
{
    const auto path = record.scanFilePath();
    ScanResult result = path ? ScanResult::ofFile(*path)
                             : ScanResult::ofUnreadableFile(tr("the record names no file"));
    // Also without a tree: previews find the folder's bookmark under this key.
    result.scanKey = record.scanKey();
    if (result.tree && record.scanDate()) {
        result.dateText = formatDate(*record.scanDate());
    }
    return result;
}

void KORVENScanViewController::notifyCanceled()
{
    KORVENAppDelegate::sharedDelegate().showCanceledNotification(tr("Scan canceled"));
}

ScanResult KORVENScanViewController::completedScan(const FinishedScan &scan)
{
    // The user is told before the scan is written, which may take a while on a slow disk. The home
    // screen does it the other way round. Both orders are kept on purpose.
    KORVENAppDelegate::sharedDelegate().showCompletedNotification(tr("Scan completed"));
    const tree::LUMFileContainer &root = scan.tree->root();
    // The exact total: what the screen shows is rounded to single precision.
    const QString total = buildString(static_cast<double>(root.valueOfSubitems()));
    const KORVENHistoryItem item(std::string(root.itemName()), total.toStdString());
    const auto problem = record(*scan.tree, item);

    ScanResult result = ScanResult::ofScan(scan);
    if (problem) {
        // The result is in memory and is shown all the same.
        qCWarning(scanLog, "The scan was not kept: %s", problem->c_str());
        result.notice = ScanResult::noticeOfLostScan(*problem);
    }
    result.scanKey = item.scanKey();
    result.dateText = formatDate(archive::Timestamp::now());
    return result;
}

std::optional<std::string> KORVENScanViewController::record(const tree::ScanTree &tree,
                                                            const KORVENHistoryItem &item) const
{
    // A record that can be opened but has no bookmark could not be previewed, so the bookmark is
    // stored first.
    storeBookmark(fileUrl(item.scanPath().value()).value_or(std::string()), *item.scanKey(),
                  services().bookmarks, services().settings);
    try {
        KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
        // The scan's file comes before its record. Killed in between, the next start finds a file
        // without a record and makes one (HistoryUpkeep). The other order would leave a record that
        // opens nothing.
        const auto written = archive::writeScanFile(tree.root(), item.scanFilePath().value());
        if (!written) {
            return written.error().text();
        }
        // Also if the save below fails: the scan can then be opened again for as long as the
        // program runs.
        store.addItem(std::make_shared<const KORVENHistoryItem>(item));
        if (!store.saveChanges()) {
            return tr("the history could not be written").toStdString();
        }
        return std::nullopt;
    } catch (const NamedException &exception) {
        return exception.reason();
    }
}

void KORVENScanViewController::resultWasShown(const ScanResult &result)
{
    m_uuid = result.scanKey.value_or(std::string());
}

void KORVENScanViewController::loadHistoryItem(std::string_view scanKey)
{
    try {
        // On the main thread: a million nodes are read in a tenth of a second (see
        // docs/performance.md).
        const auto record = KORVENHistoryStore::sharedStore().itemForKey(scanKey);
        if (record) {
            updateScanResults(recordedScan(*record));
            // Without a tree the field names the folder that the record is of, beside the reason
            // why it is not shown.
            const std::string folder = drillResults() != nullptr
                                           ? scanFolder()
                                           : record->scanPath().value_or(std::string());
            folderNameField()->setText(textOfName(tree::cleanPath(folder)));
        }
    } catch (const NamedException &exception) {
        updateScanResults(historyProblem(exception));
    }
}

void KORVENScanViewController::quickLookItem(std::string_view path)
{
    KORVENQuicklookController::sharedStore().quickLookItem(path, m_uuid, shownFileNames());
}

// Required interface. Nothing is written there: each scan has a file of its own, named by its key.
std::string KORVENScanViewController::itemArchivePath() const
{
    return services().documents.path() + "/scan.archive";
}

} // namespace tessaly
