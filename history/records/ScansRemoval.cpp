#include "history/records/ScansRemoval.hpp"

#include "history/records/KORVENHistoryStore.hpp"

#include <QElapsedTimer>
#include <QTimer>

#include <utility>

namespace tessaly {

namespace {

/// How long a slice may take, but for the removal that it ends with.
/// Short enough for the window to stay responsive.
constexpr qint64 sliceMs = 40;

} // namespace

void ScansRemoval::start(HistoryRecords records)
{
    Q_ASSERT(!isRunning());
    m_records = std::move(records);
    m_next = 0;
    if (!isRunning()) {
        return;
    }
    KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
    // Without the note, a kill after the one save would leave files without records, which the next
    // start would take for scans that lost theirs. So each is removed with a save of its own then.
    m_isTakenOut = store.noteRemovals(m_records) && m_records.size() > fewRecords;
    if (m_isTakenOut) {
        store.takeOut(m_records);
    }
    removeSlice();
    if (isRunning()) {
        continueLater();
    }
}

void ScansRemoval::continueLater()
{
    // A timer, not a queued call: what the window system has to say comes in between.
    QTimer::singleShot(0, this, [this] {
        removeSlice();
        if (isRunning()) {
            continueLater();
        } else {
            Q_EMIT ended();
        }
    });
}

void ScansRemoval::removeSlice()
{
    QElapsedTimer timer;
    timer.start();
    // By time rather than by number: how long a deletion takes depends on the disk and on what else
    // uses it.
    while (isRunning() && timer.elapsed() < sliceMs) {
        removeNext();
    }
    if (!isRunning()) {
        // Once for all: until then the note names every scan, also those that are deleted already.
        KORVENHistoryStore::sharedStore().endRemoval();
    }
}

void ScansRemoval::removeNext()
{
    KORVENHistoryStore &store = KORVENHistoryStore::sharedStore();
    // Out of the list first: the delegate, told of the removal, may ask whether this is running.
    const auto record = std::exchange(m_records[m_next++], nullptr);
    if (m_isTakenOut) {
        store.finishRemoval(*record);
    } else {
        store.removeItem(record);
    }
}

} // namespace tessaly
