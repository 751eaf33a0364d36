#pragma once

#include "history/records/HistoryFile.hpp"

#include <QtGlobal>

#include <functional>
#include <stop_token>
#include <string>
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
    /// Reads the scan with this key from the file at `path`; nullptr when there is none to be read.
    /// It may be left behind on its thread, so it uses nothing that is destroyed.
    using RecordReader = std::function<HistoryRecords::value_type(const std::string &scanKey,
                                                                  const std::string &path)>;

    HistoryUpkeep();
    explicit HistoryUpkeep(RecordReader readRecord);
    /// Stops the thread and joins it, which takes a moment: reading a scan, which may be large or
    /// hang, is abandoned on a thread of its own. The next start of the program continues.
    ~HistoryUpkeep() = default;
    Q_DISABLE_COPY_MOVE(HistoryUpkeep)

    /// Starts the thread. Does nothing when it is called again.
    /// Requires: `store` outlives this, and its history file was read.
    void start(KORVENHistoryStore &store);

    /// What the thread does. Threads: any.
    static void run(KORVENHistoryStore &store, const std::stop_token &stop = {});

private:
    RecordReader m_readRecord;
    std::jthread m_thread;
};

} // namespace tessaly
