#pragma once

#include "history/records/HistoryFile.hpp"
#include "history/records/PendingRemovals.hpp"

#include <QtGlobal>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

class DocumentsFolder;
class KORVENAppDelegate;

/// The scan history: the one list of records, kept in memory and mirrored in the history file. It
/// also deletes a scan's file along with its record, but neither the home screen's file nor the
/// folders' bookmarks in the settings.
///
/// The list in memory counts; the file is written from it and never read again.
///
/// Scans whose deletion has begun are listed in a file of their own (see PendingRemovals). What it
/// lists when the store is made is in no list any more; HistoryUpkeep deletes it.
///
/// Threads: any. A lock guards the list, and another one the files, so that of two saves the later
///          one has the later list. The delegate is told on the calling thread, without a lock.
/// Errors:  ignored, but for a line in the log: a file that cannot be deleted stays behind, a save
///          that fails leaves the file as it was. A history file that is not understood is an
///          exception out of sharedStore(), and stays as it is.
class KORVENHistoryStore {
public:
    using Record = std::shared_ptr<const KORVENHistoryItem>;

    /// The store, which is made and loaded by the first call, whatever thread that comes from.
    ///
    /// A history file that the system does not give reads as an empty history, and problem() says
    /// why. It is not written over: each save tries to read it again, see readAgain().
    /// Requires: the application delegate lives.
    ///
    /// Errors: NamedException "Unreadable History" when there is a file and no history can be read
    ///         from it; the reason says why. The next call tries again.
    [[nodiscard]] static KORVENHistoryStore &sharedStore();

    /// Raises the NamedException "Singleton".
    [[noreturn]] KORVENHistoryStore();
    ~KORVENHistoryStore() = default;
    Q_DISABLE_COPY_MOVE(KORVENHistoryStore)

    /// The records as of now, in the order in which they were added.
    [[nodiscard]] HistoryRecords allItems() const;

    /// Why the history file could not be read; nothing once it could. Until then nothing is saved.
    [[nodiscard]] std::optional<std::string> problem() const;
    /// Tries again to read a history file that could not be read. On success, or when the file has
    /// been deleted meanwhile, its records are put before those of this run, all are saved, and the
    /// delegate is told. Returns whether the file's content is known now.
    bool readAgain();

    /// Appends a record and tells the delegate. It is not saved yet: call saveChanges().
    void addItem(Record record);
    /// Appends records and tells the delegate once. They are not saved yet either.
    void addItems(HistoryRecords records);

    /// Deletes the record's file, takes out every occurrence of this very record, saves, and tells
    /// the delegate.
    void removeItem(const Record &record);
    /// Removes the first record with this key; without one, does nothing. Required interface.
    void removeItemWithKey(std::string_view scanKey);
    /// The same for a process that may be killed meanwhile: the removal is noted on disk first, and
    /// forgotten when it is done. If the process ends in between, the next start finishes it.
    void removeItemCrashSafe(std::string_view scanKey);
    /// Removes the records one by one: as many saves and messages as records.
    void removeAllScans();

    // The removal of many records (see ScansRemoval), and what the last process left of one.

    /// Notes on disk, in one write, that these records are being removed: what is left of them when
    /// the process ends is removed at the next start. False when this cannot be noted.
    bool noteRemovals(const HistoryRecords &records);
    /// Takes these very records out of the list and saves once. Their files stay.
    void takeOut(const HistoryRecords &records);
    /// Deletes the file of a record that was taken out, and tells the delegate that it is removed.
    void finishRemoval(const KORVENHistoryItem &record);
    /// Forgets what was noted, but for the scans whose files are still there.
    void endRemoval();

    /// The scans that are noted and whose files may still be there. The history file on disk lists
    /// none of them any more, if it can be written.
    [[nodiscard]] HistoryRecords removalsLeft();
    /// Deletes the file of a record. False when there is one and it cannot be deleted.
    bool deleteScanFile(const KORVENHistoryItem &record);

    /// The keys of the scans that had a file when the store was made, have no record, and are not
    /// noted for removal. Empty for every call but the first, and as long as it is not known which
    /// records or removals there are.
    [[nodiscard]] std::vector<std::string> takeKeysWithoutRecord();

    /// The history file's path.
    [[nodiscard]] std::string itemArchivePath() const;
    /// The same without a store. Requires: the application delegate lives.
    [[nodiscard]] static std::string archivePath(DocumentsFolder &documents);

    /// Writes all records to the history file. Whether that succeeded.
    bool saveChanges();

    /// The record with the latest date, of equal ones the last; nullptr when there is none. Records
    /// without a date come before all others.
    [[nodiscard]] Record getMostRecentScan() const;

    /// The first record with this key, or nullptr.
    [[nodiscard]] Record itemForKey(std::string_view scanKey) const;

private:
    friend struct OwnHistoryStore; // gives each test a store of its own

    explicit KORVENHistoryStore(KORVENAppDelegate &delegate,
                                archive::FileCalls &calls = archive::FileCalls::system());
    void load();
    [[nodiscard]] bool tryToRead();
    void adopt(HistoryRecords records);
    bool save();
    void tellOfAdoption();

    KORVENAppDelegate &m_delegate;
    const std::string m_folder; ///< with the history file and the files of the scans
    archive::FileCalls &m_calls;

    std::mutex m_saving;        ///< held while files are read or written
    bool m_isFileKnown = true;  ///< the file, if any, could be read; guarded by m_saving
    bool m_isSaved = true;      ///< no removed record is left in the file; guarded by m_saving
    PendingRemovals m_removals; ///< guarded by m_saving
    std::vector<std::string> m_keysAtStart; ///< of scans that had a file; guarded by m_saving
    std::atomic<bool> m_hasAdopted = false; ///< and the delegate is to be told of it

    mutable std::mutex m_listLock;
    HistoryRecords m_privateItems;        ///< guarded by m_listLock
    std::optional<std::string> m_problem; ///< guarded by m_listLock
};

} // namespace tessaly
