#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ByteSink.hpp"
#include "engine/archive/Result.hpp"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tessaly::archive {

/// A point in time. Dates are equal when their bits are, so that every date equals itself.
struct PlistDate {
    double secondsSince2001 = 0; ///< since 2001-01-01 00:00 UTC

    friend bool operator==(const PlistDate &a, const PlistDate &b) noexcept
    {
        return std::bit_cast<std::uint64_t>(a.secondsSince2001) ==
               std::bit_cast<std::uint64_t>(b.secondsSince2001);
    }
};

/// What archives refer to their objects by.
struct PlistUid {
    std::uint32_t number = 0;

    friend bool operator==(const PlistUid &, const PlistUid &) = default;
};

class PlistValue;
using PlistNull = std::monostate;
using PlistData = std::vector<std::byte>;
using PlistArray = std::vector<PlistValue>;
using PlistDictionary = std::map<std::string, PlistValue, std::less<>>;

/// A value of a property list: one of a few types, or a container of such values.
///
/// A value is of the type that it was made as and stays so through a file: 1, 1.0, true and "1" are
/// four values. Integers are std::int64_t, but those past its end std::uint64_t. Texts and keys are
/// UTF-8; other bytes are kept as well (see escapedName()).
///
/// Equal values are of one type. Reals are equal when their bits are, so that NaN equals itself.
class PlistValue {
public:
    using Content = std::variant<PlistNull, bool, std::int64_t, std::uint64_t, double, PlistDate,
                                 PlistData, std::string, PlistUid, PlistArray, PlistDictionary>;

    /// Null.
    PlistValue() = default;

    // What the content is made of is the value: NOLINTBEGIN(google-explicit-constructor)
    template <std::integral Number>
    PlistValue(Number number) : m_content(contentOf(number))
    {
    }
    PlistValue(double number) : m_content(number) {}
    PlistValue(PlistDate date) : m_content(date) {}
    PlistValue(PlistData data) : m_content(std::move(data)) {}
    PlistValue(const char *text) : m_content(std::string(text)) {}
    PlistValue(std::string text) : m_content(std::move(text)) {}
    PlistValue(PlistUid uid) : m_content(uid) {}
    PlistValue(PlistArray array) : m_content(std::move(array)) {}
    PlistValue(PlistDictionary dictionary) : m_content(std::move(dictionary)) {}
    // NOLINTEND(google-explicit-constructor)

    /// The content if it is of that type, one of those of Content; else null.
    template <typename Type>
    [[nodiscard]] const Type *as() const noexcept
    {
        return std::get_if<Type>(&m_content);
    }
    /// Containers can be changed where they are.
    template <typename Type>
    requires std::same_as<Type, PlistArray> || std::same_as<Type, PlistDictionary>
    [[nodiscard]] Type *as() noexcept { return std::get_if<Type>(&m_content); }

    [[nodiscard]] const Content &content() const noexcept { return m_content; }

    friend bool operator==(const PlistValue &a, const PlistValue &b);

private:
    template <std::integral Number>
    [[nodiscard]] static Content contentOf(Number number)
    {
        if constexpr (std::same_as<Number, bool>) {
            return number;
        } else if (std::in_range<std::int64_t>(number)) {
            return static_cast<std::int64_t>(number);
        } else {
            return static_cast<std::uint64_t>(number);
        }
    }

    Content m_content;
};

/// How deep containers may nest in a file, the outermost one included.
inline constexpr std::size_t maxPlistDepth = 64;

/// The value that a binary property list holds. Of a key that stands twice in a dictionary the
/// first one counts.
///
/// The file may be hostile. Refused are containers that hold themselves, that nest too deep or that
/// are referred to so often that the value would be far larger than the file (64 times its size and
/// 1 MiB), and keys that are not strings.
[[nodiscard]] Result<PlistValue, ArchiveError> readPropertyList(std::span<const std::byte> file);

/// Writes a value as a binary property list, from which readPropertyList() makes an equal value.
/// One that nests too deep for that is refused (unsupported) before anything is written.
[[nodiscard]] Result<Done, ArchiveError> writePropertyList(const PlistValue &value, ByteSink &sink);

} // namespace tessaly::archive
