#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ByteSink.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/Result.hpp"
#include "history/records/KORVENHistoryItem.hpp"

#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// The records of a history, oldest first.
using HistoryRecords = std::vector<std::shared_ptr<const KORVENHistoryItem>>;

/// Reads a history file: a keyed archive whose root is the array of the records, in their order.
///
/// Errors: what no record or no archive can be made of is an error, and nothing is read then.
///         ArchiveError::Kind::unreadable when the system does not give the file, or there is none.
[[nodiscard]] archive::Result<HistoryRecords, archive::ArchiveError>
readHistoryFile(const std::string &path);

/// Writes a history file whole, in place of one that is there (see AtomicFile).
[[nodiscard]] archive::Result<archive::Done, archive::ArchiveError>
writeHistoryFile(const HistoryRecords &records, const std::string &path,
                 archive::FileCalls &calls = archive::FileCalls::system());

/// The content of a history file.
[[nodiscard]] archive::Result<archive::Done, archive::ArchiveError>
writeHistoryArchive(const HistoryRecords &records, archive::ByteSink &sink);

} // namespace tessaly
