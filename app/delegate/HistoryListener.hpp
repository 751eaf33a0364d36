#pragma once

#include <optional>
#include <string>

namespace tessaly {

/// Who is told of changes to the history.
///
/// Threads: called on the thread that made the change, which may be a worker's.
class HistoryListener {
public:
    HistoryListener() = default;
    virtual ~HistoryListener() = default;
    HistoryListener(const HistoryListener &) = delete;
    HistoryListener &operator=(const HistoryListener &) = delete;
    HistoryListener(HistoryListener &&) = delete;
    HistoryListener &operator=(HistoryListener &&) = delete;

    /// A record was added.
    virtual void historyStoreUpdated() = 0;
    /// The record with this key, or one without a key, was removed.
    virtual void reloadHistoryDelete(const std::optional<std::string> &scanKey) = 0;
};

} // namespace tessaly
