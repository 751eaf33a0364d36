#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/Result.hpp"

#include <cstddef>
#include <span>

namespace tessaly::archive {

/// Takes an archive's bytes in order: a file, or memory in tests.
class ByteSink {
public:
    virtual ~ByteSink() = default;

    /// Takes all of the bytes, or fails.
    virtual Result<Done, ArchiveError> write(std::span<const std::byte> bytes) = 0;
};

} // namespace tessaly::archive
