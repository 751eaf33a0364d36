#include "history/HistoryUpkeep.hpp"

#include "history/HistoryOrder.hpp"
#include "history/KORVENHistoryStore.hpp"
#include "history/ScanFiles.hpp"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

void finishRemovals(KORVENHistoryStore &store, const std::stop_token &stop)
{
    for (const auto &record : store.removalsLeft()) {
        if (stop.stop_requested()) {
            return;
        }
        store.deleteScanFile(*record);
    }
    store.endRemoval();
}

void recoverScans(KORVENHistoryStore &store, const std::stop_token &stop)
{
    HistoryRecords found;
    for (const std::string &key : store.takeKeysWithoutRecord()) {
        if (stop.stop_requested()) {
            break;
        }
        if (auto record = recoveredRecord(key)) {
            found.push_back(std::move(record));
        }
    }
    if (!found.empty()) {
        sortNewestFirst(found);
        std::reverse(found.begin(), found.end());
        store.addItems(std::move(found));
        store.saveChanges();
    }
}

} // namespace

void HistoryUpkeep::start(KORVENHistoryStore &store)
{
    if (!m_thread.joinable()) {
        m_thread = std::jthread([&store](const std::stop_token &stop) { run(store, stop); });
    }
}

void HistoryUpkeep::run(KORVENHistoryStore &store, const std::stop_token &stop)
{
    finishRemovals(store, stop);
    recoverScans(store, stop);
}

} // namespace tessaly
