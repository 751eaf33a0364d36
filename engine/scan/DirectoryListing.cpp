#include "engine/scan/DirectoryListing.hpp"

#include <cerrno>
#include <cstring>
#include <limits>

#include <dirent.h>

namespace tessaly::scan {

DirectoryListing::DirectoryListing()
    : m_buffer(std::make_unique_for_overwrite<std::byte[]>(bufferByteCount))
{
}

void DirectoryListing::open(int descriptor) noexcept
{
    m_descriptor = descriptor;
    m_position = 0;
    m_filled = 0;
    m_nextOffset = 0;
    m_error = 0;
}

const DirectoryEntry *DirectoryListing::next() noexcept
{
    for (;;) {
        if (m_position == m_filled && !fill()) {
            return nullptr;
        }
        const auto *record = reinterpret_cast<const dirent64 *>(m_buffer.get() + m_position);
        m_position += record->d_reclen;
        m_nextOffset = record->d_off;
        // To the zero byte: d_reclen includes padding.
        const std::string_view name(record->d_name);
        if (name != "." && name != "..") {
            m_entry = {name, record->d_type};
            return &m_entry;
        }
    }
}

bool DirectoryListing::fill() noexcept
{
    // An empty buffer: after a failure or the end, next() ends at once and does not read on.
    m_position = 0;
    m_filled = 0;
    // ext4, for one, gives the last entry the largest offset there is. Nothing can follow then,
    // which saves a last getdents64() for each folder that would only return 0.
    if (m_nextOffset == std::numeric_limits<std::int64_t>::max()) {
        return false;
    }
    ssize_t byteCount = 0;
    do {
        byteCount = getdents64(m_descriptor, m_buffer.get(), bufferByteCount);
    } while (byteCount < 0 && errno == EINTR);
    if (byteCount < 0) {
        m_error = errno;
        return false;
    }
    m_filled = static_cast<std::size_t>(byteCount);
    return m_filled > 0;
}

} // namespace tessaly::scan
