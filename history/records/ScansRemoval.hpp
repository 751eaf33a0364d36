#pragma once

#include "history/records/HistoryFile.hpp"

#include <QObject>

#include <cstddef>

namespace tessaly {

/// Removes scans from the shared history, in slices between which the event loop runs.
///
/// Before the first scan is deleted, all of them are noted on disk. So a removal that the end of
/// the program interrupts, whatever ends it, is finished by the next start (see HistoryUpkeep), and
/// quitting waits for nothing.
///
/// A few records are then removed like KORVENHistoryStore::removeAllScans() does it: each with its
/// file, its save and its message. Of more than that, the history is saved once without all of
/// them, since a save takes some milliseconds; each still has its message when its file is deleted.
///
/// A scan that is recorded meanwhile is not removed.
///
/// Errors:  what cannot be noted is removed like few records are. What is left of it when the
///          program ends stays in the history.
/// Threads: the main thread.
class ScansRemoval final : public QObject {
    Q_OBJECT

public:
    /// Up to so many records are each removed with a save.
    static constexpr std::size_t fewRecords = 32;

    using QObject::QObject;

    /// Removes these records, the first slice of them at once. Requires: none is being removed, and
    /// there is a shared store.
    void start(HistoryRecords records);
    [[nodiscard]] bool isRunning() const noexcept { return m_next < m_records.size(); }

Q_SIGNALS:
    /// All have been removed. Not sent by start() itself.
    void ended();

private:
    void removeNext();
    void removeSlice();
    void continueLater();

    HistoryRecords m_records;
    std::size_t m_next = 0;    ///< of m_records, the one to remove next
    bool m_isTakenOut = false; ///< the records are out of the list already
};

} // namespace tessaly
