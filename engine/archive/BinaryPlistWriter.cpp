#include "engine/archive/BinaryPlistWriter.hpp"

#include "engine/tree/EscapedName.hpp"

#include <algorithm>
#include <string>

namespace tessaly::archive {

BinaryPlistWriter::BinaryPlistWriter(ByteSink &sink, unsigned referenceWidth)
    : m_sink(sink), m_referenceWidth(referenceWidth),
      m_buffer(std::make_unique_for_overwrite<std::byte[]>(bufferSize))
{
    constexpr std::string_view header = "bplist00";
    copy(std::as_bytes(std::span(header)));
}

void BinaryPlistWriter::name(std::string_view name)
{
    // UTF-8 is no encoding of this format, so one accent makes the whole name UTF-16.
    if (tree::isAscii(name)) {
        counted(0x50, name.size());
        copy(std::as_bytes(std::span(name)));
        return;
    }
    const std::u16string text = tree::escapedName(name);
    counted(0x60, text.size());
    for (const char16_t unit : text) {
        bigEndian(unit, 2);
    }
}

void BinaryPlistWriter::integer(std::uint64_t number)
{
    // Readers take integers of 1, 2 and 4 bytes as unsigned, but those of 8 bytes as signed.
    if ((number >> 63U) != 0) {
        bigEndian(0x14, 1);
        // As 16 bytes, which are signed as well, the number stays positive.
        bigEndian(0, 8);
        bigEndian(number, 8);
        return;
    }
    const unsigned width = widthFor(number);
    bigEndian(0x10U | static_cast<unsigned>(std::countr_zero(width)), 1);
    bigEndian(number, width);
}

void BinaryPlistWriter::signedInteger(std::int64_t number)
{
    if (number < 0) {
        // Only integers of eight bytes are signed, so a small negative one takes as many.
        eightBytes(0x13, static_cast<std::uint64_t>(number));
    } else {
        integer(static_cast<std::uint64_t>(number));
    }
}

void BinaryPlistWriter::finish(std::span<const std::uint64_t> offsets, std::uint64_t topObject)
{
    // The table's own place is above all offsets in it, and has to fit into their width, too.
    const std::uint64_t tableOffset = position();
    const unsigned width = widthFor(tableOffset);
    for (const std::uint64_t each : offsets) {
        offset(each, width);
    }
    finish(offsets.size(), topObject, tableOffset, width);
}

void BinaryPlistWriter::finish(std::uint64_t objectCount, std::uint64_t topObject,
                               std::uint64_t tableOffset, unsigned offsetWidth)
{
    bigEndian(0, 6); // unused, and a version of 0
    bigEndian(offsetWidth, 1);
    bigEndian(m_referenceWidth, 1);
    bigEndian(objectCount, 8);
    bigEndian(topObject, 8);
    bigEndian(tableOffset, 8);
    flush();
}

void BinaryPlistWriter::copy(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        // Writing in large pieces: a system call for each number would take most of the time.
        if (m_used == bufferSize) {
            flush();
        }
        const std::size_t count = std::min(bytes.size(), bufferSize - m_used);
        std::memcpy(m_buffer.get() + m_used, bytes.data(), count);
        m_used += count;
        bytes = bytes.subspan(count);
    }
}

void BinaryPlistWriter::flush()
{
    // An exception, since every number written may end here: checking a result after each would be
    // most of the code, and of the time.
    const auto written = m_sink.write(std::span(m_buffer.get(), m_used));
    if (!written) {
        throw ArchiveFailure(written.error());
    }
    m_flushed += m_used;
    m_used = 0;
}

} // namespace tessaly::archive
