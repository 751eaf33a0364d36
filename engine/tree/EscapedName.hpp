#pragma once

#include <string>
#include <string_view>

namespace tessaly::tree {

/// The text under which a file name is archived and shown: valid UTF-16, from which
/// nameFromEscaped() restores the same bytes, whatever they are.
///
/// Valid UTF-8 stands for itself. A byte that is not part of valid UTF-8, and each byte of the
/// UTF-8 form of a code point U+EF80–U+EFFF, becomes the code point U+EF80 + (byte − 0x80). Names
/// hardly ever contain these private code points.
[[nodiscard]] std::u16string escapedName(std::string_view name);

/// The bytes of a name from its archived text: the inverse of escapedName(). A lone surrogate,
/// which only a file written elsewhere can hold, is encoded in three bytes like any other code
/// point.
[[nodiscard]] std::string nameFromEscaped(std::u16string_view text);

/// Whether every byte is below 0x80: such a name equals its archived text.
[[nodiscard]] bool isAscii(std::string_view name) noexcept;

} // namespace tessaly::tree
