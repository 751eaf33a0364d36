#include "history/ScansRemoval.hpp"

#include "history/KORVENHistoryStore.hpp"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <utility>

namespace tessaly {

namespace {

/// How long a slice may take, but for the removal that it ends with.
constexpr qint64 sliceMs = 40;

} // namespace

ScansRemoval::ScansRemoval(QObject *parent) : QObject(parent)
{
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &ScansRemoval::finish);
}

void ScansRemoval::start(HistoryRecords records)
{
    Q_ASSERT(!isRunning());
    m_records = std::move(records);
    m_next = 0;
    removeSlice();
    if (isRunning()) {
        continueLater();
    }
}

void ScansRemoval::continueLater()
{
    // A timer, not a queued call: what the window system has to say comes in between.
    QTimer::singleShot(0, this, [this] {
        if (!isRunning()) {
            return; // finish() was quicker
        }
        removeSlice();
        if (isRunning()) {
            continueLater();
        } else {
            Q_EMIT ended();
        }
    });
}

void ScansRemoval::finish()
{
    if (!isRunning()) {
        return;
    }
    while (isRunning()) {
        removeNext();
    }
    Q_EMIT ended();
}

void ScansRemoval::removeSlice()
{
    QElapsedTimer timer;
    timer.start();
    while (isRunning() && timer.elapsed() < sliceMs) {
        removeNext();
    }
}

void ScansRemoval::removeNext()
{
    // Out of the list first: what is told of the removal may ask whether this is running.
    KORVENHistoryStore::sharedStore().removeItem(std::exchange(m_records[m_next++], nullptr));
}

} // namespace tessaly
