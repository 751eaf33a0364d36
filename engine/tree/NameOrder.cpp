#include "engine/tree/NameOrder.hpp"

#include "engine/tree/EscapedName.hpp"

#include <algorithm>
#include <cstddef>

namespace tessaly::tree {

namespace {

/// Whether a byte is the second or a later one of a character in UTF-8.
bool isContinuation(char byte) noexcept
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isAsciiByte(char byte) noexcept
{
    return static_cast<unsigned char>(byte) < 0x80U;
}

} // namespace

std::strong_ordering compareByCodeUnits(std::string_view a, std::string_view b)
{
    const auto differing = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    const auto place = static_cast<std::size_t>(differing.first - a.begin());
    const bool aEnds = place == a.size();
    const bool bEnds = place == b.size();
    if ((aEnds || isAsciiByte(a[place])) && (bEnds || isAsciiByte(b[place]))) {
        // A name comes before every longer one that begins with it.
        if (aEnds || bEnds) {
            return a.size() <=> b.size();
        }
        return a[place] <=> b[place];
    }
    // The bytes that differ may belong to characters that began earlier. Only these characters are
    // converted, and not whole names: a sort compares each name many times.
    constexpr std::size_t maxCharacterBytes = 4;
    std::size_t start = place;
    const auto continues = [start](std::string_view name) {
        return start < name.size() && isContinuation(name[start]);
    };
    if (continues(a) || continues(b)) {
        while (start > 0 && isContinuation(a[--start])) {}
    }
    const std::size_t count = place - start + maxCharacterBytes;
    return escapedName(a.substr(start, count)) <=> escapedName(b.substr(start, count));
}

} // namespace tessaly::tree
