#pragma once

#include <stop_token>
#include <thread>

namespace tessaly {

class KORVENHistoryStore;

/// Finishes what an earlier run of the program left undone in the history, on a thread of its own:
/// deletes the scans whose deletion had begun, and gives a record back to each scan that was there
/// at the start without one.
///
/// Such a scan is left behind by a process that is killed after it wrote the scan and before it
/// saved the record, and by one that could not save.
///
/// Threads: the main thread.
class HistoryUpkeep {
public:
    HistoryUpkeep() = default;
    /// Stops after the file at hand and waits for that. The next start goes on.
    ~HistoryUpkeep() = default;
    HistoryUpkeep(const HistoryUpkeep &) = delete;
    HistoryUpkeep &operator=(const HistoryUpkeep &) = delete;
    HistoryUpkeep(HistoryUpkeep &&) = delete;
    HistoryUpkeep &operator=(HistoryUpkeep &&) = delete;

    /// Starts the thread. Does nothing when it is called again.
    /// Requires: `store` outlives this, and its history file was read.
    void start(KORVENHistoryStore &store);

    /// What the thread does. Threads: any.
    static void run(KORVENHistoryStore &store, const std::stop_token &stop = {});

private:
    std::jthread m_thread;
};

} // namespace tessaly
