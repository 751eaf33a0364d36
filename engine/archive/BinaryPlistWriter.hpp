#pragma once

#include "engine/archive/ByteSink.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace tessaly::archive {

/// Writes a binary property list (see BinaryPlistReader for the format) from front to back.
///
/// The caller numbers the objects and writes them in any order, noting position() for each before
/// it does, and writes the offsets, in the order of the numbers, at the end. The width of
/// references has to be known before the first one is written: it follows from the number of
/// objects, so count them first.
///
/// Errors: ArchiveFailure when the sink fails.
class BinaryPlistWriter {
public:
    /// Bytes that references (or offsets) take when they are below `count`: 1, 2, 4 or 8. `count`
    /// itself has to fit as well; readers insist.
    [[nodiscard]] static constexpr unsigned widthFor(std::uint64_t count) noexcept
    {
        return count < 0x100 ? 1 : count < 0x10000 ? 2 : count < 0x100000000 ? 4 : 8;
    }
    [[nodiscard]] static constexpr unsigned uidByteCount(std::uint32_t uid) noexcept
    {
        return 1 + widthFor(uid);
    }

    /// Writes the header. The sink must outlive the writer.
    BinaryPlistWriter(ByteSink &sink, unsigned referenceWidth);

    /// Bytes written so far: the offset of what is written next.
    [[nodiscard]] std::uint64_t position() const noexcept { return m_flushed + m_used; }

    /// Starts an array; `count` references follow.
    void array(std::uint64_t count) { counted(0xA0, count); }
    /// Starts a dictionary; references to all keys, then to all values follow.
    void dictionary(std::uint64_t pairs) { counted(0xD0, pairs); }
    void reference(std::uint64_t reference) { bigEndian(reference, m_referenceWidth); }

    void null() { bigEndian(0x00, 1); }
    void boolean(bool value) { bigEndian(value ? 0x09 : 0x08, 1); }
    /// A string: ASCII if it can be, else UTF-16 of its archived text (see escapedName()).
    void name(std::string_view name);
    /// 1, 2, 4 or 8 bytes; 16 from 2^63 on, since 8 bytes are signed.
    void integer(std::uint64_t number);
    /// The same for a number that may be negative, which takes 8 bytes then.
    void signedInteger(std::int64_t number);
    /// Both take 8 bytes; a date is in seconds since 2001-01-01 00:00 UTC.
    void real(double number) { eightBytes(0x23, std::bit_cast<std::uint64_t>(number)); }
    void date(double seconds) { eightBytes(0x33, std::bit_cast<std::uint64_t>(seconds)); }
    void data(std::span<const std::byte> bytes)
    {
        counted(0x40, bytes.size());
        copy(bytes);
    }
    void uid(std::uint32_t uid)
    {
        const unsigned width = widthFor(uid);
        bigEndian(0x80U | (width - 1), 1);
        bigEndian(uid, width);
    }

    /// Ends the file: an offset for each object, by number, and the trailer.
    void finish(std::span<const std::uint64_t> offsets, std::uint64_t topObject);

    /// The same for callers that keep the offsets in another form: first an offset for each object,
    /// then finish().
    void offset(std::uint64_t offset, unsigned offsetWidth) { bigEndian(offset, offsetWidth); }
    void offsets(std::span<const std::byte> packed) { copy(packed); }
    void finish(std::uint64_t objectCount, std::uint64_t topObject, std::uint64_t tableOffset,
                unsigned offsetWidth);

private:
    void bigEndian(std::uint64_t number, unsigned width)
    {
        if (bufferSize - m_used < sizeof number) {
            flush();
        }
        number <<= 64U - 8U * width;
        if constexpr (std::endian::native == std::endian::little) {
            number = __builtin_bswap64(number);
        }
        std::memcpy(m_buffer.get() + m_used, &number, sizeof number);
        m_used += width;
    }
    void counted(unsigned marker, std::uint64_t count)
    {
        if (count < 0x0F) {
            bigEndian(marker | count, 1);
        } else {
            bigEndian(marker | 0x0FU, 1);
            integer(count);
        }
    }
    void eightBytes(unsigned marker, std::uint64_t number)
    {
        bigEndian(marker, 1);
        bigEndian(number, 8);
    }
    void copy(std::span<const std::byte> bytes);
    void flush();

    static constexpr std::size_t bufferSize = std::size_t{256} << 10U;

    ByteSink &m_sink;
    unsigned m_referenceWidth;
    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_flushed = 0;
};

/// The offsets of a run of objects, kept as they will be written.
class PlistOffsets {
public:
    PlistOffsets(std::uint64_t count, unsigned width)
        : m_width(width), m_packed(static_cast<std::size_t>(count * width))
    {
    }

    /// Requires: i < count.
    void set(std::uint64_t i, std::uint64_t offset) noexcept
    {
        for (unsigned byte = m_width; byte-- > 0; offset >>= 8U) {
            m_packed[i * m_width + byte] = static_cast<std::byte>(offset);
        }
    }
    [[nodiscard]] std::span<const std::byte> packed() const noexcept { return m_packed; }

private:
    unsigned m_width;
    std::vector<std::byte> m_packed;
};

} // namespace tessaly::archive
