#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/Result.hpp"

#include <cstddef>
#include <span>
#include <string>

namespace tessaly::archive {

/// A regular file's bytes, mapped into memory for reading.
///
/// Another process may truncate the file meanwhile. Reading past the new end would normally end
/// this process with SIGBUS; here the missing part reads as zeros and wasTruncated() is true. For
/// this the first mapping installs a SIGBUS handler. It passes faults elsewhere to the previous
/// handler.
///
/// Threads: one at a time for each mapping; different mappings are independent.
class MappedFile {
public:
    /// Maps the file at `path` (bytes as the system takes them). FIFOs, devices and folders are
    /// refused without blocking, and so is the 65th file that a process maps at the same time.
    static Result<MappedFile, ArchiveError> open(const std::string &path);

    ~MappedFile();
    MappedFile(MappedFile &&other) noexcept;
    MappedFile &operator=(MappedFile &&) = delete;
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;

    [[nodiscard]] std::span<const std::byte> bytes() const noexcept { return m_bytes; }

    /// Whether any part that has been read so far was missing in the file.
    [[nodiscard]] bool wasTruncated() const noexcept;

private:
    MappedFile(std::span<const std::byte> bytes, std::size_t guard) noexcept
        : m_bytes(bytes), m_guard(guard)
    {
    }

    std::span<const std::byte> m_bytes;
    std::size_t m_guard; ///< this mapping's index in the signal handler's table
};

} // namespace tessaly::archive
