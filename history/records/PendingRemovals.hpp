#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/Result.hpp"
#include "history/records/HistoryFile.hpp"

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace tessaly {

/// The scans whose deletion was asked for and may not be finished, kept in a file beside the
/// history.
///
/// The file is written before the first of the scans is deleted and removed after the last one. So
/// the next start finishes what this process did not, and never takes the file of a deleted scan
/// for a scan that has lost its record.
///
/// File:    a history file (see HistoryFile) with the records of these scans.
/// Records: told apart by their keys.
/// Threads: one at a time.
class PendingRemovals {
public:
    /// `path`: of the file. `calls` must outlive this.
    PendingRemovals(std::string path, archive::FileCalls &calls);

    /// Reads what the last process left. No file: nothing is pending.
    /// Errors: the file cannot be read; isKnown() is false then and nothing is pending.
    [[nodiscard]] archive::Result<archive::Done, archive::ArchiveError> load();
    [[nodiscard]] bool isKnown() const noexcept { return m_isKnown; }

    /// Adds records and writes the file. Errors: nothing was added.
    [[nodiscard]] archive::Result<archive::Done, archive::ArchiveError>
    add(const HistoryRecords &records);

    [[nodiscard]] bool contains(const std::optional<std::string> &scanKey) const;
    /// The records that were not marked, in no particular order.
    [[nodiscard]] HistoryRecords unfinished() const;

    /// Marks a scan as deleted. The file names it until settle().
    void markDeleted(const std::optional<std::string> &scanKey);

    /// Forgets the scans that are marked, and brings the file up to date: without any scan it is
    /// removed. Requires: the history file lists none of the scans that are marked.
    [[nodiscard]] archive::Result<archive::Done, archive::ArchiveError> settle();

private:
    using Key = std::optional<std::string>;

    [[nodiscard]] archive::Result<archive::Done, archive::ArchiveError> writeFile() const;

    const std::string m_path;
    archive::FileCalls &m_calls;
    bool m_isKnown = true;
    std::unordered_map<Key, HistoryRecords::value_type> m_records;
    std::unordered_set<Key> m_deleted; ///< keys of m_records
};

} // namespace tessaly
