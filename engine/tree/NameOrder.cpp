#include "engine/tree/NameOrder.hpp"

#include "engine/tree/EscapedName.hpp"

#include <algorithm>
#include <cstddef>

namespace tessaly::tree {

namespace {

/// A byte that is never the first of a character's several.
bool isContinuation(char byte) noexcept
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isPlain(char byte) noexcept
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
    if ((aEnds || isPlain(a[place])) && (bEnds || isPlain(b[place]))) {
        if (aEnds || bEnds) {
            return a.size() <=> b.size();
        }
        return a[place] <=> b[place];
    }
    // The characters that differ may have begun earlier. They end within three bytes from here.
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
