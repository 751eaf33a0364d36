#include "screens/KORVENScanViewController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "engine/FolderProblem.hpp"
#include "engine/PrintableText.hpp"
#include "engine/ScanFileReader.hpp"
#include "engine/ScanFileWriter.hpp"
#include "history/KORVENHistoryStore.hpp"
#include "platform/DocumentsFolder.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"
#include "platform/FolderChooser.hpp"
#include "platform/SettingsStore.hpp"
#include "screens/KORVENQuicklookController.hpp"
#include "screens/NameText.hpp"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLoggingCategory>
#include <QWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(scanLog, "tessaly.screens.scan")

const Services &services()
{
    return KORVENAppDelegate::sharedDelegate().services();
}

using ReadScan = tessaly::Result<std::shared_ptr<ScanTree>, ArchiveError>;

/// A path without slashes too many.
std::string standardPath(std::string path)
{
    path.erase(
        std::unique(path.begin(), path.end(), [](char a, char b) { return a == '/' && b == '/'; }),
        path.end());
    if (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

QString shownPath(const std::string &path)
{
    return drawableText(textOfName(path));
}

} // namespace

KORVENScanViewController::KORVENScanViewController(const QString &nibName)
    : ResultViewController(nibName)
{
}

KORVENScanViewController::~KORVENScanViewController()
{
    stopWorkers();
}

void KORVENScanViewController::showEmptyStart()
{
    showEmptyState(tr("No folder scanned yet"),
                   tr("Choose a folder to see what takes up its space."));
}

void KORVENScanViewController::scanButtonPressed()
{
    services().folderChooser.chooseFolder(
        *view()->window(),
        {QFile::encodeName(QDir::homePath()).toStdString(), tr("Scan").toStdString()},
        [guard = QPointer(this)](const std::optional<std::string> &folder) {
            if (guard && folder && !guard->isScanRunningNow()) {
                guard->startScan(*folder);
            }
        });
}

std::optional<ResultViewController::Result> KORVENScanViewController::loadScanResults()
{
    try {
        const auto record = KORVENHistoryStore::sharedStore().getMostRecentScan();
        return record ? std::optional(recordedScan(*record)) : std::nullopt;
    } catch (const NamedException &exception) {
        return historyProblem(exception);
    }
}

ResultViewController::Result
KORVENScanViewController::historyProblem(const NamedException &exception)
{
    Result result;
    result.emptyTitle = tr("The history cannot be read");
    result.emptyText = tr("Scans are not recorded until it can be: %1")
                           .arg(QString::fromStdString(exception.reason()));
    return result;
}

ResultViewController::Result KORVENScanViewController::recordedScan(const KORVENHistoryItem &record)
{
    Result result;
    result.scanKey = record.scanKey();
    const auto path = record.scanFilePath();
    auto tree = path ? readScanFile(*path)
                     : ReadScan(ArchiveError{
                           ArchiveError::Kind::unreadable, "the record names no file", {}});
    if (!tree) {
        qCWarning(scanLog, "%s: %s", path.value_or("(none)").c_str(), tree.error().text().c_str());
        result.emptyTitle = tr("This scan cannot be opened");
        const QString reason = QString::fromStdString(printableText(tree.error().text()));
        // What the system says names the file already.
        const bool isNamed = !path || tree.error().kind == ArchiveError::Kind::unreadable;
        result.emptyText = isNamed ? reason : shownPath(*path) + u'\n' + reason;
        return result;
    }
    if (record.scanDate()) {
        result.dateText = formatDate(*record.scanDate());
    }
    result.tree = std::move(tree.value());
    result.rows = resultRowsOf(&result.tree->root(), thresholds());
    return result;
}

void KORVENScanViewController::notifyCompleted()
{
    KORVENAppDelegate::sharedDelegate().showCompletedNotification(tr("Scan completed"));
}

void KORVENScanViewController::notifyCanceled()
{
    KORVENAppDelegate::sharedDelegate().showCanceledNotification(tr("Scan canceled"));
}

ResultViewController::Result
KORVENScanViewController::completedScan(const std::shared_ptr<ScanTree> &tree)
{
    const LUMFileContainer &root = tree->root();
    const std::string folder(root.itemName());
    // The exact total: what the screen shows is rounded to single precision.
    const QString total = buildString(static_cast<double>(root.valueOfSubitems()));
    const KORVENHistoryItem item(folder, total.toStdString());
    record(tree, item);

    Result result;
    result.tree = tree;
    result.scanKey = item.scanKey();
    result.rows = resultRowsOf(&root, thresholds());
    result.dateText = formatDate(Timestamp::now());
    if (root.subitems().empty()) {
        if (const auto problem = folderProblem(folder)) {
            result.emptyTitle = tr("This folder cannot be read");
            result.emptyText = QString::fromLocal8Bit(problem->c_str());
        }
    }
    return result;
}

void KORVENScanViewController::record(const std::shared_ptr<ScanTree> &tree,
                                      const KORVENHistoryItem &item)
{
    SettingsStore &settings = services().settings;
    const auto url = fileUrl(item.scanPath().value());
    const auto bookmark = url ? services().bookmarks.makeBookmark(*url) : std::nullopt;
    if (bookmark) {
        settings.setData(*item.scanKey(), *bookmark);
    } else {
        settings.remove(*item.scanKey());
    }
    settings.flush();

    try {
        KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
        const auto written = writeScanFile(tree->root(), item.scanFilePath().value());
        if (!written) {
            qCWarning(scanLog, "The scan was not kept: %s", written.error().text().c_str());
            return;
        }
        store.addItem(std::make_shared<const KORVENHistoryItem>(item));
        store.saveChanges();
    } catch (const NamedException &exception) {
        qCWarning(scanLog, "The scan was not recorded: %s", exception.what());
    }
}

std::string KORVENScanViewController::pathBelow(const std::string &folder,
                                                std::string_view name) const
{
    return (folder == "/" ? folder : folder + '/') + std::string(name);
}

QString KORVENScanViewController::trashImageName(const KORVENFolderObject & /*row*/) const
{
    return u"trash_full.png"_s; // also of an empty one, on this screen
}

void KORVENScanViewController::resultWasShown(const Result &result)
{
    m_uuid = result.scanKey.value_or(std::string());
}

void KORVENScanViewController::loadHistoryItem(std::string_view scanKey)
{
    try {
        const auto record = KORVENHistoryStore::sharedStore().itemForKey(scanKey);
        if (record) {
            updateScanResults(recordedScan(*record));
            const std::string folder = drillResults() != nullptr
                                           ? scanFolder()
                                           : record->scanPath().value_or(std::string());
            folderNameField()->setText(textOfName(standardPath(folder)));
        }
    } catch (const NamedException &exception) {
        updateScanResults(historyProblem(exception));
    }
}

void KORVENScanViewController::quickLookItem(std::string_view path)
{
    KORVENQuicklookController::sharedStore().quickLookItem(path, m_uuid);
}

std::string KORVENScanViewController::itemArchivePath()
{
    return services().documents.path() + "/scan.archive";
}

} // namespace tessaly
