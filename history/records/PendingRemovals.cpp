#include "history/records/PendingRemovals.hpp"

#include "engine/tree/PrintableText.hpp"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace tessaly {

PendingRemovals::PendingRemovals(std::string path, archive::FileCalls &calls)
    : m_path(std::move(path)), m_calls(calls)
{
}

archive::Result<archive::Done, archive::ArchiveError> PendingRemovals::load()
{
    m_isKnown = true;
    auto records = readHistoryFile(m_path);
    if (!records) {
        // A missing file is the usual case. Any other failure leaves open which scans were being
        // deleted, so none is recovered then (see KORVENHistoryStore::takeKeysWithoutRecord()).
        m_isKnown = access(m_path.c_str(), F_OK) != 0 && errno == ENOENT;
        return m_isKnown ? archive::Result<archive::Done, archive::ArchiveError>(archive::Done{})
                         : records.error();
    }
    for (auto &record : records.value()) {
        m_records.insert_or_assign(record->scanKey(), std::move(record));
    }
    return archive::Done{};
}

archive::Result<archive::Done, archive::ArchiveError>
PendingRemovals::add(const HistoryRecords &records)
{
    std::vector<Key> added;
    for (const auto &record : records) {
        // Only what is new is taken back when the write fails. Records of an earlier call stay
        // noted.
        if (m_records.emplace(record->scanKey(), record).second) {
            added.push_back(record->scanKey());
        }
    }
    // One write for all of them, before the first scan is deleted: after a kill either all are
    // removed or none.
    auto written = writeFile();
    if (!written) {
        for (const Key &key : added) {
            m_records.erase(key);
        }
        return written;
    }
    m_isKnown = true; // what could not be read has been replaced
    return written;
}

bool PendingRemovals::contains(const std::optional<std::string> &scanKey) const
{
    return m_records.contains(scanKey);
}

HistoryRecords PendingRemovals::unfinished() const
{
    HistoryRecords records;
    for (const auto &[key, record] : m_records) {
        if (!m_deleted.contains(key)) {
            records.push_back(record);
        }
    }
    return records;
}

void PendingRemovals::markDeleted(const std::optional<std::string> &scanKey)
{
    // The file keeps naming it for now. Until the history is saved without the record, a kill would
    // bring the record back without its scan.
    if (m_records.contains(scanKey)) {
        m_deleted.insert(scanKey);
    }
}

archive::Result<archive::Done, archive::ArchiveError> PendingRemovals::settle()
{
    if (m_deleted.empty()) {
        return archive::Done{}; // the file is as it should be
    }
    // In memory first: if the file cannot be brought up to date, it names scans that have no file
    // any more, and the next start finds nothing to delete.
    for (const Key &key : std::exchange(m_deleted, {})) {
        m_records.erase(key);
    }
    if (!m_records.empty()) {
        return writeFile();
    }
    // No file, rather than an empty one, so that a start without removals has nothing to read.
    if (m_calls.unlink(m_path.c_str()) != 0 && errno != ENOENT) {
        return archive::systemError(archive::ArchiveError::Kind::unwritable,
                                    "cannot delete " + tree::printableText(m_path), errno);
    }
    return archive::Done{};
}

archive::Result<archive::Done, archive::ArchiveError> PendingRemovals::writeFile() const
{
    HistoryRecords records;
    records.reserve(m_records.size());
    for (const auto &entry : m_records) {
        records.push_back(entry.second);
    }
    return writeHistoryFile(records, m_path, m_calls);
}

} // namespace tessaly
