#include "history/records/KORVENHistoryStore.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "engine/tree/PrintableText.hpp"
#include "history/records/ScanFiles.hpp"
#include "platform/DocumentsFolder.hpp"

#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <unordered_set>
#include <utility>

#include <sys/stat.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(historyLog, "tessaly.history", QtWarningMsg)

constexpr std::string_view historyFileName = "scanHistory.archive";
// No ".archive", so that no record's key names it.
constexpr std::string_view removalsFileName = "scanHistory.removals";

std::string inFolder(std::string path, std::string_view name)
{
    path += '/';
    path += name;
    return path;
}

void logError(const char *what, const archive::ArchiveError &error)
{
    qCWarning(historyLog, "%s: %s", what, tree::printableText(error.text()).c_str());
}

// lstat(), since a link whose target is not there is a history that cannot be read, and must not be
// replaced.
bool isMissing(const std::string &path)
{
    struct stat status;
    return lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

} // namespace

KORVENHistoryStore &KORVENHistoryStore::sharedStore()
{
    // Never destroyed: threads may still use it while the process ends.
    // If the constructor throws, the static stays uninitialized, and the next call tries again.
    static KORVENHistoryStore &store = []() -> KORVENHistoryStore & {
        return *new KORVENHistoryStore(KORVENAppDelegate::sharedDelegate());
    }();
    return store;
}

KORVENHistoryStore::KORVENHistoryStore()
    : m_delegate(KORVENAppDelegate::sharedDelegate()), m_calls(archive::FileCalls::system()),
      m_removals({}, m_calls)
{
    throw NamedException("Singleton", "Use +[KORVENHistoryStore sharedStore]");
}

KORVENHistoryStore::KORVENHistoryStore(KORVENAppDelegate &delegate, archive::FileCalls &calls)
    : m_delegate(delegate), m_folder(delegate.services().documents.path()), m_calls(calls),
      m_removals(inFolder(m_folder, removalsFileName), calls)
{
    load();
}

void KORVENHistoryStore::load()
{
    // Now, since a scan of this run has its file a moment before it has its record.
    m_keysAtStart = scanKeysIn(m_folder);
    // Before the history, since adopt() leaves out what is being removed.
    if (const auto loaded = m_removals.load(); !loaded) {
        logError("It is not known which scans were being deleted", loaded.error());
    }
    const std::string path = itemArchivePath();
    auto records = readHistoryFile(path);
    if (records) {
        adopt(std::move(records.value()));
        return;
    }
    // Without a store nothing can write over a damaged file.
    if (records.error().kind != archive::ArchiveError::Kind::unreadable) {
        throw NamedException("Unreadable History",
                             tree::printableText(path) + ": " + records.error().text());
    }
    // No file is an empty history. A file that cannot be read, such as one on a disk that is not
    // ready, may hold years of records and must not be written over.
    m_isFileKnown = isMissing(path);
    if (!m_isFileKnown) {
        m_problem = records.error().text();
        logError("The history is not read", records.error());
    }
}

/// Reads the file if that has failed so far. Requires: m_saving is held.
bool KORVENHistoryStore::tryToRead()
{
    if (m_isFileKnown) {
        return true;
    }
    const std::string path = itemArchivePath();
    auto records = readHistoryFile(path);
    if (!records && !isMissing(path)) {
        const std::scoped_lock lock(m_listLock);
        m_problem = records.error().text();
        return false;
    }
    m_isFileKnown = true;
    m_hasAdopted = true;
    adopt(records ? std::move(records.value()) : HistoryRecords());
    return true;
}

/// Puts the records of the file before those of this run.
void KORVENHistoryStore::adopt(HistoryRecords records)
{
    const auto isBeingRemoved = [this](const Record &record) {
        return m_removals.contains(record->scanKey());
    };
    // A process that was killed during a removal has left them in the file.
    m_isSaved = std::erase_if(records, isBeingRemoved) == 0;
    const std::scoped_lock lock(m_listLock);
    m_privateItems.insert(m_privateItems.begin(), std::make_move_iterator(records.begin()),
                          std::make_move_iterator(records.end()));
    m_problem.reset();
}

/// Requires: no lock is held.
void KORVENHistoryStore::tellOfAdoption()
{
    // The delegate may call the store back, even from another thread that this one waits for. So it
    // is told when no lock is held.
    if (m_hasAdopted.exchange(false)) {
        m_delegate.historyStoreUpdated();
    }
}

std::optional<std::string> KORVENHistoryStore::problem() const
{
    const std::scoped_lock lock(m_listLock);
    return m_problem;
}

bool KORVENHistoryStore::readAgain()
{
    bool isKnown = true;
    {
        const std::scoped_lock lock(m_saving);
        const bool isNew = !m_isFileKnown;
        const bool hasNewRecords = !allItems().empty();
        isKnown = tryToRead();
        // Without records of this run the file is up to date, and is not written.
        if (isKnown && isNew && hasNewRecords) {
            save();
        }
    }
    tellOfAdoption();
    return isKnown;
}

HistoryRecords KORVENHistoryStore::allItems() const
{
    const std::scoped_lock lock(m_listLock);
    return m_privateItems;
}

void KORVENHistoryStore::addItem(Record record)
{
    {
        const std::scoped_lock lock(m_listLock);
        m_privateItems.push_back(std::move(record));
    }
    m_delegate.historyStoreUpdated();
}

void KORVENHistoryStore::addItems(HistoryRecords records)
{
    {
        const std::scoped_lock lock(m_listLock);
        m_privateItems.insert(m_privateItems.end(), std::make_move_iterator(records.begin()),
                              std::make_move_iterator(records.end()));
    }
    m_delegate.historyStoreUpdated();
}

void KORVENHistoryStore::removeItem(const Record &record)
{
    // The caller's may be the one in the list, which does not live until the end.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const Record removed = record;
    if (!deleteScanFile(*removed)) {
        noteRemovals({removed}); // else the next start takes it for a scan without a record
    }
    {
        const std::scoped_lock lock(m_listLock);
        std::erase(m_privateItems, removed);
    }
    saveChanges();
    m_delegate.reloadHistoryDelete(removed->scanKey());
}

void KORVENHistoryStore::removeItemWithKey(std::string_view scanKey)
{
    // A damaged history may hold a key twice, and each call removes one of them.
    if (const Record record = itemForKey(scanKey)) {
        removeItem(record);
    }
}

void KORVENHistoryStore::removeItemCrashSafe(std::string_view scanKey)
{
    if (const Record record = itemForKey(scanKey)) {
        noteRemovals({record}); // if this fails, the scan is removed all the same
        removeItem(record);
        endRemoval();
    }
}

void KORVENHistoryStore::removeAllScans()
{
    // Over a copy, since each removal changes the list.
    for (const Record &record : allItems()) {
        removeItem(record);
    }
}

bool KORVENHistoryStore::noteRemovals(const HistoryRecords &records)
{
    const std::scoped_lock lock(m_saving);
    const auto noted = m_removals.add(records);
    if (!noted) {
        logError("Removals were not noted", noted.error());
    }
    return noted.hasValue();
}

void KORVENHistoryStore::takeOut(const HistoryRecords &records)
{
    // "Delete all" takes out thousands, so the list is passed through once.
    const std::unordered_set<Record> taken(records.begin(), records.end());
    {
        const std::scoped_lock lock(m_saving);
        {
            const std::scoped_lock listLock(m_listLock);
            std::erase_if(m_privateItems,
                          [&](const Record &record) { return taken.contains(record); });
        }
        // One save for all: it takes milliseconds, since the whole list is written and flushed to
        // the disk.
        save();
    }
    tellOfAdoption();
}

void KORVENHistoryStore::finishRemoval(const KORVENHistoryItem &record)
{
    deleteScanFile(record);
    // Also if the file could not be deleted: the record is out of the list, and the next start
    // tries again.
    m_delegate.reloadHistoryDelete(record.scanKey());
}

void KORVENHistoryStore::endRemoval()
{
    const std::scoped_lock lock(m_saving);
    if (!m_isSaved && !save()) {
        return; // the next start takes the records out
    }
    if (const auto settled = m_removals.settle(); !settled) {
        logError("Removals are still noted", settled.error());
    }
}

HistoryRecords KORVENHistoryStore::removalsLeft()
{
    const std::scoped_lock lock(m_saving);
    if (!m_isSaved) {
        save(); // before a file is deleted, so that no record is ever without one
    }
    return m_removals.unfinished();
}

bool KORVENHistoryStore::deleteScanFile(const KORVENHistoryItem &record)
{
    if (const auto file = record.scanFilePath()) {
        // A file that is gone already is as good as deleted.
        if (m_calls.unlink(file->c_str()) != 0 && errno != ENOENT) {
            logError("A scan was not deleted",
                     archive::systemError(archive::ArchiveError::Kind::unwritable,
                                          "cannot delete " + tree::printableText(*file), errno));
            return false;
        }
    } else {
        qCWarning(historyLog, "A record's key names no scan's file; nothing is deleted.");
    }
    const std::scoped_lock lock(m_saving);
    m_removals.markDeleted(record.scanKey());
    return true;
}

std::vector<std::string> KORVENHistoryStore::takeKeysWithoutRecord()
{
    const std::scoped_lock lock(m_saving);
    // Without both lists every scan would look as if it had lost its record, even one that the user
    // has deleted.
    if (!m_isFileKnown || !m_removals.isKnown()) {
        return {};
    }
    std::unordered_set<std::optional<std::string>> recorded;
    for (const Record &record : allItems()) {
        recorded.insert(record->scanKey());
    }
    // Given out once. A scan of this run is never among them: it was not there at the start.
    std::vector<std::string> keys = std::exchange(m_keysAtStart, {});
    std::erase_if(keys, [&](const std::string &key) {
        return recorded.contains(key) || m_removals.contains(key);
    });
    return keys;
}

std::string KORVENHistoryStore::itemArchivePath() const
{
    // Asking for the folder makes it again if the user has removed it meanwhile.
    return archivePath(m_delegate.services().documents);
}

std::string KORVENHistoryStore::archivePath(DocumentsFolder &documents)
{
    return inFolder(documents.path(), historyFileName);
}

bool KORVENHistoryStore::saveChanges()
{
    bool isSaved = false;
    {
        const std::scoped_lock lock(m_saving);
        isSaved = save();
    }
    tellOfAdoption();
    return isSaved;
}

/// Requires: m_saving is held, and m_listLock is not.
bool KORVENHistoryStore::save()
{
    if (!tryToRead()) {
        qCWarning(historyLog, "The history was not saved, since it cannot be read: %s",
                  tree::printableText(problem().value_or(std::string())).c_str());
        m_isSaved = false;
        return false;
    }
    // The list is copied under m_saving. So of two saves that wait for each other the later one
    // writes the later list.
    const auto written = writeHistoryFile(allItems(), itemArchivePath(), m_calls);
    m_isSaved = written.hasValue();
    if (!written) {
        logError("The history was not saved", written.error());
    }
    return m_isSaved;
}

KORVENHistoryStore::Record KORVENHistoryStore::getMostRecentScan() const
{
    const HistoryRecords records = allItems();
    const auto latest =
        // From the end, since max_element() returns the first of equal elements, and the last one
        // is wanted.
        std::max_element(records.rbegin(), records.rend(), [](const Record &a, const Record &b) {
            return a->scanDate() < b->scanDate(); // nothing comes before every date
        });
    return latest == records.rend() ? nullptr : *latest;
}

KORVENHistoryStore::Record KORVENHistoryStore::itemForKey(std::string_view scanKey) const
{
    const std::scoped_lock lock(m_listLock);
    const auto found =
        std::find_if(m_privateItems.begin(), m_privateItems.end(),
                     [&](const Record &record) { return record->scanKey() == scanKey; });
    return found == m_privateItems.end() ? nullptr : *found;
}

} // namespace tessaly
