#pragma once

#include "engine/FileCalls.hpp"
#include "history/KORVENHistoryStore.hpp"

#include <memory>

namespace tessaly {

/// Makes stores that are not the shared one: a test wants a fresh one, or the next start's.
struct OwnHistoryStore {
    [[nodiscard]] static std::unique_ptr<KORVENHistoryStore>
    open(HistoryListener &listener, FileCalls &calls = FileCalls::system())
    {
        return std::unique_ptr<KORVENHistoryStore>(new KORVENHistoryStore(listener, calls));
    }
};

} // namespace tessaly
