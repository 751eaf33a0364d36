#include "history/KORVENHistoryStore.hpp"

#include "app/delegate/HistoryListener.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "engine/PrintableText.hpp"
#include "platform/DocumentsFolder.hpp"

#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <sys/stat.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(historyLog, "tessaly.history", QtWarningMsg)

constexpr std::string_view historyFileName = "scanHistory.archive";

void logError(const char *what, const ArchiveError &error)
{
    qCWarning(historyLog, "%s: %s", what, printableText(error.text()).c_str());
}

bool isMissing(const std::string &path)
{
    struct stat status;
    return lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

} // namespace

KORVENHistoryStore &KORVENHistoryStore::sharedStore()
{
    // Never destroyed: threads may still hold on to it while the process ends.
    static KORVENHistoryStore &store = []() -> KORVENHistoryStore & {
        return *new KORVENHistoryStore(KORVENAppDelegate::sharedDelegate());
    }();
    return store;
}

KORVENHistoryStore::KORVENHistoryStore()
    : m_listener(KORVENAppDelegate::sharedDelegate()), m_calls(FileCalls::system())
{
    throw NamedException("Singleton", "Use +[KORVENHistoryStore sharedStore]");
}

KORVENHistoryStore::KORVENHistoryStore(HistoryListener &listener, FileCalls &calls)
    : m_listener(listener), m_calls(calls)
{
    load();
}

void KORVENHistoryStore::load()
{
    const std::string path = itemArchivePath();
    auto records = readHistoryFile(path);
    if (records) {
        m_privateItems = std::move(records.value());
        return;
    }
    if (records.error().kind != ArchiveError::Kind::unreadable) {
        throw NamedException("Unreadable History",
                             printableText(path) + ": " + records.error().text());
    }
    m_isFileKnown = isMissing(path);
    if (!m_isFileKnown) {
        logError("The history is not read", records.error());
    }
}

bool KORVENHistoryStore::mayWrite()
{
    if (m_isFileKnown) {
        return true;
    }
    const std::string path = itemArchivePath();
    auto records = readHistoryFile(path);
    if (!records && !isMissing(path)) {
        return false;
    }
    if (records) {
        const std::scoped_lock lock(m_listLock);
        m_privateItems.insert(m_privateItems.begin(), records.value().begin(),
                              records.value().end());
    }
    m_isFileKnown = true;
    return true;
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
    m_listener.historyStoreUpdated();
}

void KORVENHistoryStore::removeItem(const Record &record)
{
    // The caller's may be the one in the list, which does not live until the end.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const Record removed = record;
    if (const auto file = removed->scanFilePath()) {
        if (m_calls.unlink(file->c_str()) != 0 && errno != ENOENT) {
            logError("A scan was not deleted",
                     systemError(ArchiveError::Kind::unwritable, "cannot delete " + *file, errno));
        }
    } else {
        qCWarning(historyLog, "A record's key names no scan's file; nothing is deleted.");
    }
    {
        const std::scoped_lock lock(m_listLock);
        std::erase(m_privateItems, removed);
    }
    saveChanges();
    m_listener.reloadHistoryDelete(removed->scanKey());
}

void KORVENHistoryStore::removeItemWithKey(std::string_view scanKey)
{
    if (const Record record = itemForKey(scanKey)) {
        removeItem(record);
    }
}

void KORVENHistoryStore::removeAllScans()
{
    for (const Record &record : allItems()) {
        removeItem(record);
    }
}

std::string KORVENHistoryStore::itemArchivePath() const
{
    std::string path = services().documents.path();
    path += '/';
    path += historyFileName;
    return path;
}

bool KORVENHistoryStore::saveChanges()
{
    const std::scoped_lock lock(m_saving);
    if (!mayWrite()) {
        return false;
    }
    const auto written = writeHistoryFile(allItems(), itemArchivePath(), m_calls);
    if (!written) {
        logError("The history was not saved", written.error());
    }
    return written.hasValue();
}

KORVENHistoryStore::Record KORVENHistoryStore::getMostRecentScan() const
{
    const HistoryRecords records = allItems();
    const auto latest =
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
