#include "engine/archive/BinaryPlistReader.hpp"

#include "engine/tree/EscapedName.hpp"

#include <algorithm>
#include <cassert>
#include <limits>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

constexpr std::string_view magic = "bplist";
constexpr std::string_view version = "00";
constexpr std::uint64_t trailerSize = 32;

} // namespace

BinaryPlistReader::BinaryPlistReader(std::span<const std::byte> file)
    : m_file(reinterpret_cast<const unsigned char *>(file.data())), m_fileSize(file.size())
{
    const std::string_view start(reinterpret_cast<const char *>(file.data()),
                                 std::min<std::size_t>(file.size(), headerSize));
    if (start.empty()) {
        throw ArchiveFailure(Kind::notAnArchive, "not an archive: the file is empty");
    }
    if (start.substr(0, magic.size()) != magic.substr(0, start.size())) {
        throw ArchiveFailure(Kind::notAnArchive, "not an archive: no property list", 0);
    }
    // A file of eight bytes and less may be one that was truncated, so it gets the benefit of the
    // doubt.
    if (start.size() == headerSize && start.substr(magic.size()) != version) {
        throw ArchiveFailure(Kind::unsupported, "a property list of another version", magic.size());
    }
    // Between header and trailer there is at least one object of one byte and its offset.
    if (m_fileSize < headerSize + 2 + trailerSize) {
        throw ArchiveFailure(Kind::truncated, "the file is truncated", m_fileSize);
    }

    const std::uint64_t trailerOffset = m_fileSize - trailerSize;
    const unsigned char *trailer = m_file + trailerOffset;
    // Bytes 0 to 5 are unused, but for a version for sorting that readers ignore.
    m_offsetWidth = trailer[6];
    m_referenceWidth = trailer[7];
    m_objectCount = readBigEndian(trailer + 8, 8);
    m_topObject = readBigEndian(trailer + 16, 8);
    m_tableOffset = readBigEndian(trailer + 24, 8);

    // The count is checked by division first: multiplied, a hostile one could wrap around to the
    // size that fits.
    const auto isWidth = [](std::uint64_t width) { return width >= 1 && width <= 8; };
    if (!isWidth(m_offsetWidth) || !isWidth(m_referenceWidth) || m_tableOffset <= headerSize ||
        m_tableOffset >= trailerOffset || m_objectCount == 0 ||
        m_objectCount > (trailerOffset - m_tableOffset) / m_offsetWidth ||
        m_objectCount * m_offsetWidth != trailerOffset - m_tableOffset) {
        throw ArchiveFailure(Kind::truncated,
                             "the file is truncated or damaged: it does not end in a trailer",
                             trailerOffset);
    }
    // Each offset is checked when its object is read: checking all of them here would touch every
    // page of a large file.
    if (m_topObject >= m_objectCount) {
        throw ArchiveFailure(Kind::damaged, "the top object does not exist", trailerOffset + 16);
    }
    m_offsetTable = m_file + m_tableOffset;
    m_offsetShift = static_cast<unsigned>(64 - 8 * m_offsetWidth);
    m_referenceShift = static_cast<unsigned>(64 - 8 * m_referenceWidth);
}

BinaryPlistReader::Object BinaryPlistReader::objectOutOfLine(const unsigned char *start) const
{
    const unsigned char marker = *start;
    const unsigned kind = marker >> 4U;
    // The upper half of the marker is the type, the lower one a count or a size.
    if (kind < 0x4 || kind == 0x8) {
        return singleObject(start);
    }

    const unsigned char *content = start + 1;
    std::uint64_t count = marker & 0x0FU;
    if (count == 0x0FU) {
        // A count of 15 and more follows as an integer object, which has no number of its own.
        const Object counter =
            content < m_offsetTable && (*content >> 4U) == 0x1 ? singleObject(content) : Object{};
        if (counter.type != Type::integer || integer(counter).negative) {
            failAt(content, Kind::damaged, "a count is not a number");
        }
        count = integer(counter).bits;
        content = counter.content + counter.count;
    }

    Type type = Type::data;
    std::uint64_t unitSize = 1;
    switch (kind) {
    case 0x4:
        break;
    case 0x5:
        type = Type::asciiString;
        break;
    case 0x6:
        type = Type::utf16String;
        unitSize = 2;
        break;
    case 0xA:
    case 0xC: // a set reads as the array of its members
        type = Type::array;
        unitSize = m_referenceWidth;
        break;
    case 0xD:
        type = Type::dictionary;
        unitSize = 2 * m_referenceWidth;
        break;
    default:
        failAt(start, Kind::damaged, "an object of an unknown type");
    }
    // Divided, since count * unitSize could wrap around.
    const Object object{type, content, count};
    if (count > roomAt(content) / unitSize) {
        failEnd(object);
    }
    return object;
}

/// Objects of a fixed size: null, booleans, numbers, dates and UIDs.
BinaryPlistReader::Object BinaryPlistReader::singleObject(const unsigned char *start) const
{
    const unsigned char marker = *start;
    const unsigned info = marker & 0x0FU;
    const unsigned char *content = start + 1;
    switch (marker >> 4U) {
    case 0x0:
        if (info == 0x0) {
            return {Type::null, content, 0};
        }
        if (info == 0x8 || info == 0x9) {
            return {Type::boolean, content, info - 0x8U};
        }
        break;
    case 0x1:
        // 1, 2, 4, 8 or 16 bytes.
        if (info <= 4) {
            return checked({Type::integer, content, std::uint64_t{1} << info}, 1U << info);
        }
        break;
    case 0x2:
        // A float or a double.
        if (info == 2 || info == 3) {
            return checked({Type::real, content, std::uint64_t{1} << info}, 1U << info);
        }
        break;
    case 0x3:
        if (info == 3) {
            return checked({Type::date, content, 8}, 8);
        }
        break;
    case 0x8:
        if (info < 8) {
            return checked({Type::uid, content, info + 1U}, info + 1U);
        }
        failAt(start, Kind::damaged, "a UID of more than 8 bytes");
    default:
        break;
    }
    failAt(start, Kind::damaged, "an object of an unknown type");
}

BinaryPlistReader::Integer BinaryPlistReader::largeInteger(const Object &object) const
{
    assert(object.type == Type::integer);
    if (object.count == 8) {
        const std::uint64_t bits = readBigEndian(object.content, 8);
        return {(bits >> 63U) != 0, bits};
    }
    // Sixteen bytes are how a number from 2^63 on is written, since eight are signed.
    const std::uint64_t high = readBigEndian(object.content, 8);
    const std::uint64_t low = readBigEndian(object.content + 8, 8);
    const bool isSmallNegative =
        high == std::numeric_limits<std::uint64_t>::max() && (low >> 63U) != 0;
    if (high != 0 && !isSmallNegative) {
        failAt(object.content, Kind::unsupported, "a number of more than 64 bits");
    }
    return {isSmallNegative, low};
}

double BinaryPlistReader::real(const Object &object) const
{
    const std::uint64_t bits = readBigEndian(object.content, static_cast<unsigned>(object.count));
    if (object.count == 4) {
        return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    }
    return std::bit_cast<double>(bits);
}

std::string_view BinaryPlistReader::ascii(const Object &object) const
{
    // Bytes from 0x80 on could be read in several ways, so writers must not use them here.
    if (!tree::isAscii(bytes(object))) {
        failAt(object.content, Kind::damaged, "an ASCII string with bytes that are not");
    }
    return bytes(object);
}

std::u16string BinaryPlistReader::utf16(const Object &object) const
{
    std::u16string text(static_cast<std::size_t>(object.count), u'\0');
    const unsigned char *next = object.content;
    // Unit by unit: the text is big-endian, and need not be aligned in the file.
    for (char16_t &unit : text) {
        unit = static_cast<char16_t>(next[0] << 8U | next[1]);
        next += 2;
    }
    return text;
}

bool BinaryPlistReader::isString(const Object &object, std::string_view ascii) const noexcept
{
    // Decides most comparisons: the names looked for differ in length.
    if (object.count != ascii.size()) {
        return false;
    }
    if (object.type == Type::asciiString) {
        return bytes(object) == ascii;
    }
    if (object.type != Type::utf16String) {
        return false;
    }
    // Other writers use UTF-16 for any text; comparing the units here saves making a string of
    // them.
    for (std::size_t i = 0; i < ascii.size(); ++i) {
        if (object.content[2 * i] != 0 ||
            object.content[2 * i + 1] != static_cast<unsigned char>(ascii[i])) {
            return false;
        }
    }
    return true;
}

void BinaryPlistReader::failAt(const unsigned char *position, ArchiveError::Kind kind,
                               const char *message) const
{
    throw ArchiveFailure(kind, message, static_cast<std::uint64_t>(position - m_file));
}

void BinaryPlistReader::failReference(Reference reference) const
{
    throw ArchiveFailure(Kind::damaged, "object " + std::to_string(reference) + " of " +
                                            std::to_string(m_objectCount) +
                                            " is referred to but does not exist");
}

void BinaryPlistReader::failOffset(Reference reference, std::uint64_t offset) const
{
    throw ArchiveFailure(Kind::damaged,
                         "object " + std::to_string(reference) + " does not lie among the objects",
                         offset);
}

void BinaryPlistReader::failEnd(const Object &object) const
{
    failAt(object.content, Kind::damaged, "an object runs past the end of the objects");
}

} // namespace tessaly::archive
