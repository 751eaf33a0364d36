#pragma once

#include "engine/archive/ArchiveError.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tessaly::archive {

/// Random access to the objects of a binary property list ("bplist00") in memory.
///
/// Format: the eight bytes "bplist00"; objects, each a marker byte (type and small count) and its
/// content; a table of the objects' offsets; 32 bytes of trailer with the widths of offsets and
/// references, the number of objects, the top object and the place of the table, all big-endian.
///
/// The file may be hostile. Every offset, count and reference is checked before it is used; nothing
/// is allocated by a count, nothing is expanded, nothing recurses. Objects are read in place, one
/// at a time.
///
/// Errors:  ArchiveFailure, with the byte where the damage is.
/// Threads: any number of readers.
class BinaryPlistReader {
public:
    /// An object's number in the offset table.
    using Reference = std::uint64_t;

    enum class Type : std::uint8_t {
        null,
        boolean,
        integer,
        real,
        date,
        data,
        asciiString,
        utf16String,
        uid,
        array,
        dictionary,
    };

    /// One object, as its marker describes it. `content` is checked to lie inside the file.
    struct Object {
        Type type = Type::null;
        const unsigned char *content = nullptr;
        /// Integer, real, date, uid, data, ASCII: bytes. UTF-16: code units. Array: elements.
        /// Dictionary: pairs. Boolean: the value.
        std::uint64_t count = 0;

        [[nodiscard]] bool isString() const noexcept
        {
            return type == Type::asciiString || type == Type::utf16String;
        }
    };

    /// Integers take up to 16 bytes; those below −2^63 and above 2^64 − 1 are refused.
    struct Integer {
        bool negative = false;
        std::uint64_t bits = 0; ///< two's complement when negative
    };

    /// Checks header and trailer. The bytes must outlive the reader.
    explicit BinaryPlistReader(std::span<const std::byte> file);

    [[nodiscard]] Reference topObject() const noexcept { return m_topObject; }
    [[nodiscard]] std::uint64_t objectCount() const noexcept { return m_objectCount; }

    [[nodiscard]] Object object(Reference reference) const
    {
        // Fast path for the most common types; the rest is not inlined.
        const unsigned char *start = startOf(reference);
        const unsigned info = *start & 0x0FU;
        switch (*start >> 4U) {
        case 0x1:
            if (info < 4) {
                return checked({Type::integer, start + 1, std::uint64_t{1} << info}, 1U << info);
            }
            break;
        case 0x5:
            if (info < 0x0F) {
                return checked({Type::asciiString, start + 1, info}, info);
            }
            if (roomAt(start) > 3 && start[1] == 0x10) { // a count of one byte
                return checked({Type::asciiString, start + 3, start[2]}, start[2]);
            }
            break;
        case 0xD:
            if (info < 0x0F) {
                return checked({Type::dictionary, start + 1, info}, 2 * info * m_referenceWidth);
            }
            break;
        default:
            break;
        }
        return objectOutOfLine(start);
    }

    /// The number of a UID object; nothing when the object is of another type.
    [[nodiscard]] std::optional<std::uint64_t> uidAt(Reference reference) const
    {
        const unsigned char *start = startOf(reference);
        const unsigned width = (*start & 0x0FU) + 1;
        if ((*start >> 4U) != 0x8 || width > 8 || width >= roomAt(start)) {
            return std::nullopt;
        }
        return readBigEndian(start + 1, width);
    }

    /// Element `i` of an array, key `i` or value `i` of a dictionary. Requires: i < count.
    [[nodiscard]] Reference element(const Object &array, std::uint64_t i) const noexcept
    {
        return loadBigEndian(array.content + i * m_referenceWidth) >> m_referenceShift;
    }
    [[nodiscard]] Reference key(const Object &dictionary, std::uint64_t i) const noexcept
    {
        return element(dictionary, i);
    }
    [[nodiscard]] Reference value(const Object &dictionary, std::uint64_t i) const noexcept
    {
        return element(dictionary, dictionary.count + i);
    }

    /// The content of an integer, real or date, string or data object of that type.
    [[nodiscard]] Integer integer(const Object &object) const
    {
        if (object.count < 8) {
            return {false, readBigEndian(object.content, static_cast<unsigned>(object.count))};
        }
        return largeInteger(object);
    }
    [[nodiscard]] double real(const Object &object) const;
    [[nodiscard]] std::string_view bytes(const Object &object) const noexcept
    {
        return {reinterpret_cast<const char *>(object.content),
                static_cast<std::size_t>(object.count)};
    }
    /// The same for an ASCII string; fails when a byte of it is not ASCII.
    [[nodiscard]] std::string_view ascii(const Object &object) const;
    [[nodiscard]] std::u16string utf16(const Object &object) const;

    /// The bytes of a dictionary's key references. Equal bytes mean the same keys in the same
    /// order.
    [[nodiscard]] std::string_view keyReferences(const Object &dictionary) const noexcept
    {
        return {reinterpret_cast<const char *>(dictionary.content),
                static_cast<std::size_t>(dictionary.count) * m_referenceWidth};
    }

    /// Whether the object is a string of just these ASCII characters, in either encoding.
    [[nodiscard]] bool isString(const Object &object, std::string_view ascii) const noexcept;

    /// Where an object's content lies in the file, for messages.
    [[nodiscard]] std::uint64_t offsetOf(const Object &object) const noexcept
    {
        return object.content == nullptr ? 0 : static_cast<std::uint64_t>(object.content - m_file);
    }

private:
    /// Big-endian number of 1 to 8 bytes. Always reads eight, which is quicker than a loop and
    /// stays inside the file: the 32 bytes of the trailer follow everything that is read this way.
    static std::uint64_t readBigEndian(const unsigned char *from, unsigned width) noexcept
    {
        return loadBigEndian(from) >> (64U - 8U * width);
    }
    static std::uint64_t loadBigEndian(const unsigned char *from) noexcept
    {
        std::uint64_t number = 0;
        std::memcpy(&number, from, sizeof number);
        if constexpr (std::endian::native == std::endian::little) {
            number = __builtin_bswap64(number);
        }
        return number;
    }

    [[nodiscard]] const unsigned char *startOf(Reference reference) const
    {
        if (reference >= m_objectCount) {
            failReference(reference);
        }
        const std::uint64_t offset =
            loadBigEndian(m_offsetTable + reference * m_offsetWidth) >> m_offsetShift;
        if (offset - headerSize >= m_tableOffset - headerSize) {
            failOffset(reference, offset);
        }
        return m_file + offset;
    }

    /// The object, once its content has been checked to end before the offset table.
    [[nodiscard]] Object checked(const Object &object, std::uint64_t byteCount) const
    {
        if (byteCount > roomAt(object.content)) {
            failEnd(object);
        }
        return object;
    }
    [[nodiscard]] std::uint64_t roomAt(const unsigned char *position) const noexcept
    {
        return static_cast<std::uint64_t>(m_offsetTable - position);
    }

    [[nodiscard]] Integer largeInteger(const Object &object) const;
    [[nodiscard]] Object objectOutOfLine(const unsigned char *start) const;
    [[nodiscard]] Object singleObject(const unsigned char *start) const;
    // Out of line, so that the checks cost a compare and nothing more.
    [[noreturn]] void failAt(const unsigned char *position, ArchiveError::Kind kind,
                             const char *message) const;
    [[noreturn]] void failReference(Reference reference) const;
    [[noreturn]] void failOffset(Reference reference, std::uint64_t offset) const;
    [[noreturn]] void failEnd(const Object &object) const;

    static constexpr std::uint64_t headerSize = 8;

    const unsigned char *m_file = nullptr;
    const unsigned char *m_offsetTable = nullptr;
    std::uint64_t m_fileSize = 0;
    std::uint64_t m_tableOffset = 0;
    std::uint64_t m_objectCount = 0;
    Reference m_topObject = 0;
    std::uint64_t m_offsetWidth = 0;
    std::uint64_t m_referenceWidth = 0;
    unsigned m_offsetShift = 0; ///< 64 bits less the width's
    unsigned m_referenceShift = 0;
};

} // namespace tessaly::archive
