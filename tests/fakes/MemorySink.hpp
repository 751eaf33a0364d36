#pragma once

#include "engine/archive/ByteSink.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace tessaly {

/// Keeps what is written. Full after `room` bytes: the write that would go past them fails, as one
/// to a full disk does.
class MemorySink final : public archive::ByteSink {
public:
    static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

    explicit MemorySink(std::size_t room = unlimited) : m_room(room) {}

    archive::Result<archive::Done, archive::ArchiveError>
    write(std::span<const std::byte> bytes) override
    {
        m_writesAfterFailure += m_failed ? 1 : 0;
        const std::size_t taken = std::min(bytes.size(), m_room - m_bytes.size());
        m_bytes.insert(m_bytes.end(), bytes.begin(),
                       bytes.begin() + static_cast<std::ptrdiff_t>(taken));
        if (taken < bytes.size()) {
            m_failed = true;
            return archive::ArchiveError{
                archive::ArchiveError::Kind::unwritable, "the sink is full", {}};
        }
        return archive::Done{};
    }

    [[nodiscard]] const std::vector<std::byte> &bytes() const { return m_bytes; }
    [[nodiscard]] int writesAfterFailure() const { return m_writesAfterFailure; }

private:
    std::size_t m_room;
    std::vector<std::byte> m_bytes;
    bool m_failed = false;
    int m_writesAfterFailure = 0;
};

} // namespace tessaly
