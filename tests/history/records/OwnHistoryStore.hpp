#pragma once

#include "engine/archive/FileCalls.hpp"
#include "history/records/KORVENHistoryStore.hpp"

#include <memory>
#include <mutex>

namespace tessaly {

/// Makes stores that are not the shared one: a test wants a fresh one, or the next start's. Gives
/// tests of what happens while a lock is held that lock.
struct OwnHistoryStore {
    [[nodiscard]] static std::unique_ptr<KORVENHistoryStore>
    open(KORVENAppDelegate &delegate, archive::FileCalls &calls = archive::FileCalls::system())
    {
        return std::unique_ptr<KORVENHistoryStore>(new KORVENHistoryStore(delegate, calls));
    }
    [[nodiscard]] static std::mutex &listLock(KORVENHistoryStore &store)
    {
        return store.m_listLock;
    }
    [[nodiscard]] static std::mutex &filesLock(KORVENHistoryStore &store) { return store.m_saving; }
};

} // namespace tessaly
