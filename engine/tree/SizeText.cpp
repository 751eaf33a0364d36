#include "engine/tree/SizeText.hpp"

#include <array>
#include <charconv>
#include <string_view>

namespace tessaly::tree {

namespace {

/// printf's "%.2f", but with a decimal point in every locale.
std::string withTwoDecimals(double value, std::string_view unit)
{
    std::array<char, 400> digits; // the largest double has 309 of them before the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, 2);
    std::string text(digits.data(), end.ptr);
    text += unit;
    return text;
}

} // namespace

std::string sizeText(double byteCount)
{
    const double kilobytes = byteCount / 1000;
    if (1000 > kilobytes) {
        return withTwoDecimals(kilobytes, " KB");
    }
    const double megabytes = kilobytes / 1000;
    if (1000 > megabytes) {
        return withTwoDecimals(megabytes, " MB");
    }
    // One division of the kilobytes, not a further one of the megabytes: the last digit may differ.
    const double gigabytes = kilobytes / 1'000'000;
    if (1000 > gigabytes) {
        return withTwoDecimals(gigabytes, " GB");
    }
    return withTwoDecimals(kilobytes / 1'000'000'000, " TB");
}

} // namespace tessaly::tree
