#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ByteSink.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/Result.hpp"
#include "engine/tree/LUMFileContainer.hpp"

#include <string>

namespace tessaly::archive {

/// Writes the tree below (and with) `root` as a scan file, which readScanFile() and every reader of
/// keyed archives can read.
///
/// The file is written aside and takes the place of the one at `path` once it is whole and on disk
/// (see AtomicFile): at every moment there is the old file or the new one. Mode 0600.
///
/// Memory:  the tree is read where it is; beside it there are 4 bytes (8 in files of 4 GiB and
///          more) for each archived object, of which a file has three.
/// Threads: any; nothing may change the tree meanwhile.
[[nodiscard]] Result<Done, ArchiveError> writeScanFile(const tree::LUMFileContainer &root,
                                                       const std::string &path,
                                                       FileCalls &calls = FileCalls::system());

/// The same into a sink.
[[nodiscard]] Result<Done, ArchiveError> writeScanArchive(const tree::LUMFileContainer &root,
                                                          ByteSink &sink);

} // namespace tessaly::archive
