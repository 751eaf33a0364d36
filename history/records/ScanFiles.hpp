#pragma once

#include "history/records/HistoryFile.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// The keys of the scans that have a file in `folder`, in no particular order. The file's name is
/// all that counts: a key of ours, which is a UUID, and ".archive". So the other files of the
/// program, the home folder's scan among them, and what the user put there name none.
///
/// Errors: a folder that cannot be read has no scans.
[[nodiscard]] std::vector<std::string> scanKeysIn(const std::string &folder);

/// Makes a record of the scan whose file is there and whose record is lost: the path and the total
/// are those of its tree, the date is the time at which the file was written. The file is not
/// changed.
///
/// nullptr: the file is gone, is no regular file, is being written by some process (which holds a
///          lock on it, see AtomicFile), or is damaged; the latter is logged.
/// `path`:  of the scan's file.
/// Threads: any; it uses none of the application's services. Takes the time and the memory of
///          reading the whole tree.
[[nodiscard]] HistoryRecords::value_type recoveredRecord(const std::string &scanKey,
                                                         const std::string &path);

} // namespace tessaly
