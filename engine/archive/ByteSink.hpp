#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/Result.hpp"

#include <cstddef>
#include <span>

namespace tessaly::archive {

/// Takes an archive's bytes in order: a file, or memory in tests.
class ByteSink {
public:
    ByteSink() = default;
    virtual ~ByteSink() = default;
    ByteSink(const ByteSink &) = delete;
    ByteSink &operator=(const ByteSink &) = delete;
    ByteSink(ByteSink &&) = delete;
    ByteSink &operator=(ByteSink &&) = delete;

    /// Takes all of the bytes, or fails.
    virtual Result<Done, ArchiveError> write(std::span<const std::byte> bytes) = 0;
};

} // namespace tessaly::archive
