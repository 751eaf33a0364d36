#pragma once

#include <concepts>
#include <cstdint>

namespace tessaly::tree {

/// A number of bytes for the size texts: an integer of any width, or a real number.
///
/// A few values stand for something else than a size. They are recognised by the number's value as
/// a signed 32-bit integer, which other numbers share:
///   integers  have the value of their low 32 bits: 4,294,967,295 has -1; reals     are truncated
///   towards zero and clamped to the range: -1.9 has -1, 4,294,967,295.0 and
///             1e300 have 2,147,483,647. NaN has 0.
class SizeNumber {
public:
    template <std::integral Integer>
    requires(!std::same_as<Integer, bool>)
        // NOLINTNEXTLINE(google-explicit-constructor): any number will do
        constexpr SizeNumber(Integer number) noexcept
        : m_value(static_cast<double>(number)),
          m_int32(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)))
    {
    }
    // NOLINTNEXTLINE(google-explicit-constructor): likewise
    constexpr SizeNumber(double number) noexcept : m_value(number), m_int32(int32Of(number)) {}

    [[nodiscard]] constexpr double value() const noexcept { return m_value; }
    [[nodiscard]] constexpr std::int32_t asInt32() const noexcept { return m_int32; }

private:
    static constexpr std::int32_t int32Of(double number) noexcept
    {
        if (!(number > INT32_MIN)) {
            return number <= INT32_MIN ? INT32_MIN : 0;
        }
        return number < INT32_MAX ? static_cast<std::int32_t>(number) : INT32_MAX;
    }

    double m_value;
    std::int32_t m_int32;
};

} // namespace tessaly::tree
