#include "history/records/ScansRemoval.hpp"

#include "history/records/KORVENHistoryStore.hpp"

#include <QElapsedTimer>
#include <QTimer>

#include <utility>

namespace tessaly {

namespace {

/// How long a slice may take, but for the removal that it ends with.
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
    while (isRunning() && timer.elapsed() < sliceMs) {
        removeNext();
    }
    if (!isRunning()) {
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
