#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace tessaly::scan {

/// One entry of a directory, as the file system reports it.
struct DirectoryEntry {
    std::string_view name; ///< one path component, any bytes; a zero byte follows the last one
    unsigned char type;    ///< DT_REG, DT_DIR, ...; DT_UNKNOWN when the file system does not say
};

/// Reads the entries of open directories, one directory after the other, in the file system's own
/// order and without "." and "..".
///
/// The entries are read with getdents64() into one large buffer; nothing is allocated for an entry
/// or for a directory.
///
/// Ownership: the descriptor stays the caller's; it must stay open while it is read.
/// Threads:   one at a time. Each thread has a listing of its own.
/// Errors:    a directory that cannot be read further ends there; error() says why. The constructor
///            may throw std::bad_alloc.
class DirectoryListing {
public:
    static constexpr std::size_t bufferByteCount = std::size_t{64} << 10U;

    DirectoryListing();

    /// Starts with another directory, from its descriptor's position (the start for a new one).
    void open(int descriptor) noexcept;

    /// The next entry, or nullptr at the end. It stays valid until the next call.
    [[nodiscard]] const DirectoryEntry *next() noexcept;

    /// The errno value with which the last directory ended; 0 when it was read to its end.
    [[nodiscard]] int error() const noexcept { return m_error; }

private:
    [[nodiscard]] bool fill() noexcept;

    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_position = 0;
    std::size_t m_filled = 0;
    std::int64_t m_nextOffset = 0; ///< the directory's position after the current entry
    int m_descriptor = -1;
    int m_error = 0;
    DirectoryEntry m_entry{};
};

} // namespace tessaly::scan
