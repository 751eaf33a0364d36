#pragma once

#include "history/HistoryFile.hpp"

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace tessaly {

class HistoryListener;

/// The scan history: the one list of records, kept in memory and mirrored in the history file. It
/// also deletes a scan's file along with its record, but neither the home screen's file nor the
/// folders' bookmarks in the settings.
///
/// The list in memory counts; the file is written from it and never read again.
///
/// Threads: any. A lock guards the list, and another one the file, so that of two saves the later
///          one has the later list. The listener is told on the calling thread, without a lock.
/// Errors:  ignored, but for a line in the log: a file that cannot be deleted stays behind, a save
///          that fails leaves the file as it was. A history file that is not understood is an
///          exception out of sharedStore(), and stays as it is.
class KORVENHistoryStore {
public:
    using Record = std::shared_ptr<const KORVENHistoryItem>;

    /// The store, which is made and loaded by the first call, whatever thread that comes from.
    ///
    /// A history file that the system does not give reads as an empty history. It is not written
    /// over: each save tries to read it again, and puts its records before those of this run.
    /// Requires: the application delegate lives.
    ///
    /// Errors: NamedException "Unreadable History" when there is a file and no history can be read
    ///         from it; the reason says why. The next call tries again.
    [[nodiscard]] static KORVENHistoryStore &sharedStore();

    /// Raises the NamedException "Singleton".
    [[noreturn]] KORVENHistoryStore();
    ~KORVENHistoryStore() = default;
    KORVENHistoryStore(const KORVENHistoryStore &) = delete;
    KORVENHistoryStore &operator=(const KORVENHistoryStore &) = delete;
    KORVENHistoryStore(KORVENHistoryStore &&) = delete;
    KORVENHistoryStore &operator=(KORVENHistoryStore &&) = delete;

    /// The records as of now, in the order in which they were added.
    [[nodiscard]] HistoryRecords allItems() const;

    /// Appends a record and tells the listener. It is not saved yet: call saveChanges().
    void addItem(Record record);

    /// Deletes the record's file, takes out every occurrence of this very record, saves, and tells
    /// the listener.
    void removeItem(const Record &record);
    /// Removes the first record with this key; without one, does nothing.
    void removeItemWithKey(std::string_view scanKey);
    /// Removes the records one by one: as many saves and messages as records.
    void removeAllScans();

    /// The history file's path.
    [[nodiscard]] std::string itemArchivePath() const;

    /// Writes all records to the history file. Whether that succeeded.
    bool saveChanges();

    /// The record with the latest date, of equal ones the last; nullptr when there is none. Records
    /// without a date come before all others.
    [[nodiscard]] Record getMostRecentScan() const;

    /// The first record with this key, or nullptr.
    [[nodiscard]] Record itemForKey(std::string_view scanKey) const;

private:
    friend struct OwnHistoryStore; // gives each test a store of its own

    explicit KORVENHistoryStore(HistoryListener &listener, FileCalls &calls = FileCalls::system());
    void load();
    [[nodiscard]] bool mayWrite();

    HistoryListener &m_listener;
    FileCalls &m_calls;
    std::mutex m_saving;
    bool m_isFileKnown = true; ///< false while there is a file that could not be read

    mutable std::mutex m_listLock;
    HistoryRecords m_privateItems;
};

} // namespace tessaly
