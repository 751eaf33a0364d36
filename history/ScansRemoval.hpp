#pragma once

#include "history/HistoryFile.hpp"

#include <QObject>

#include <cstddef>

namespace tessaly {

/// Removes scans from the shared history one by one, like KORVENHistoryStore::removeAllScans():
/// each with its file, its save and its message. A save takes some milliseconds and there may be
/// thousands of them, so this is done in slices, between which the event loop has its turn.
///
/// A scan that is recorded meanwhile is not removed. What is left when the program quits is removed
/// then, before its event loop returns.
///
/// Threads: the main thread.
class ScansRemoval final : public QObject {
    Q_OBJECT

public:
    explicit ScansRemoval(QObject *parent = nullptr);

    /// Removes these records, the first slice of them at once. Requires: none is being removed, and
    /// there is a shared store.
    void start(HistoryRecords records);
    [[nodiscard]] bool isRunning() const noexcept { return m_next < m_records.size(); }

    /// Removes what is left, however long it takes.
    void finish();

Q_SIGNALS:
    /// All have been removed. Not sent by start() itself.
    void ended();

private:
    void removeNext();
    void removeSlice();
    void continueLater();

    HistoryRecords m_records;
    std::size_t m_next = 0; ///< of m_records, the one to remove next
};

} // namespace tessaly
