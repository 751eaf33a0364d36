#pragma once

#include "engine/archive/ArchiveError.hpp"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace tessaly {

/// One of the archives in tests/data/archive, and what reading it has to give.
struct ArchiveVector {
    std::string file;
    std::string content; ///< "tree" or "history"
    std::string outcome; ///< "read", or the kind of error
    std::string dump;    ///< the file with the expected dump; "-" when there is none
};

/// The archives of that content, as vectors.txt lists them.
[[nodiscard]] std::vector<ArchiveVector> archiveVectors(const std::string &content);

/// For the names of tests and their messages.
void PrintTo(const ArchiveVector &vector, std::ostream *out);

[[nodiscard]] std::string vectorPath(const std::string &file);

/// "damaged", "truncated" and so on.
[[nodiscard]] std::string kindName(archive::ArchiveError::Kind kind);

/// A file's content.
[[nodiscard]] std::string fileText(const std::string &path);
[[nodiscard]] std::vector<std::byte> vectorBytes(const std::string &file);

} // namespace tessaly
