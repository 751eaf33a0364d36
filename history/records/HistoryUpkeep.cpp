#include "history/records/HistoryUpkeep.hpp"

#include "engine/scan/AbandonableWork.hpp"
#include "history/records/HistoryOrder.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "history/records/ScanFiles.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

namespace tessaly {

namespace {

/// How long a scan that is being read is waited for when the thread is to stop.
constexpr std::chrono::milliseconds readTimeout{300};

std::optional<std::string> scanFilePath(const std::string &scanKey)
{
    KORVENHistoryItem record("", "");
    record.setScanKey(scanKey);
    return record.scanFilePath();
}

/// Reads a scan on a thread of its own. nullptr also when that was abandoned.
HistoryRecords::value_type readAbandonably(scan::AbandonableWork &reading,
                                           const HistoryUpkeep::RecordReader &readRecord,
                                           const std::string &scanKey)
{
    const auto path = scanFilePath(scanKey); // here, since it asks the application's services
    if (!path) {
        return nullptr;
    }
    const auto record = std::make_shared<HistoryRecords::value_type>();
    const bool hasEnded =
        reading.run([record, readRecord, scanKey, path] { *record = readRecord(scanKey, *path); });
    return hasEnded ? *record : nullptr;
}

void finishRemovals(KORVENHistoryStore &store, const std::stop_token &stop)
{
    // What cannot be deleted now stays noted, and the next start tries again.
    for (const auto &record : store.removalsLeft()) {
        if (stop.stop_requested()) {
            return;
        }
        store.deleteScanFile(*record);
    }
    store.endRemoval();
}

void recoverScans(KORVENHistoryStore &store, const HistoryUpkeep::RecordReader &readRecord,
                  const std::stop_token &stop)
{
    scan::AbandonableWork reading(readTimeout);
    // The callback runs on the thread that requests the stop, or here at once if that has happened
    // already. It ends run() even while a read hangs.
    const std::stop_callback giveUp(stop, [&reading] { reading.giveUp(); });
    HistoryRecords found;
    for (const std::string &key : store.takeKeysWithoutRecord()) {
        if (stop.stop_requested()) {
            break;
        }
        if (auto record = readAbandonably(reading, readRecord, key)) {
            found.push_back(std::move(record));
        }
    }
    // Also after a stop: what was read until then is kept. All in one save, since each save writes
    // the whole list.
    if (!found.empty()) {
        sortNewestFirst(found);
        // The store lists the oldest first.
        std::reverse(found.begin(), found.end());
        store.addItems(std::move(found));
        store.saveChanges();
    }
}

} // namespace

HistoryUpkeep::HistoryUpkeep() : HistoryUpkeep(recoveredRecord) {}

HistoryUpkeep::HistoryUpkeep(RecordReader readRecord) : m_readRecord(std::move(readRecord)) {}

void HistoryUpkeep::start(KORVENHistoryStore &store)
{
    if (!m_thread.joinable()) {
        // std::jthread requests the stop and joins in its destructor.
        m_thread = std::jthread([&store, this](const std::stop_token &stop) {
            finishRemovals(store, stop);
            recoverScans(store, m_readRecord, stop);
        });
    }
}

void HistoryUpkeep::run(KORVENHistoryStore &store, const std::stop_token &stop)
{
    finishRemovals(store, stop);
    recoverScans(store, recoveredRecord, stop);
}

} // namespace tessaly
