#include "engine/tree/PrintableText.hpp"

#include "engine/tree/EscapedName.hpp"

#include <algorithm>

namespace tessaly::tree {

namespace {

bool isUnprintable(char16_t unit) noexcept
{
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    // A name with line breaks could forge lines of the log.
    const bool isLineBreak = unit == 0x2028 || unit == 0x2029;
    // These reorder the text around them: a file could look as if it had another ending.
    const bool isDirection = unit == 0x200E || unit == 0x200F ||
                             (unit >= 0x202A && unit <= 0x202E) ||
                             (unit >= 0x2066 && unit <= 0x2069);
    const bool isRawByte = unit >= 0xEF80 && unit <= 0xEFFF; // see escapedName()
    return isControl || isLineBreak || isDirection || isRawByte;
}

} // namespace

std::string printableText(std::string_view name)
{
    std::u16string text = escapedName(name);
    std::replace_if(text.begin(), text.end(), isUnprintable, u'?');
    return nameFromEscaped(text);
}

} // namespace tessaly::tree
