#pragma once

#include <string>
#include <string_view>

namespace tessaly::tree {

/// The text under which a file name is archived and shown: UTF-16 that any reader accepts, from
/// which nameFromEscaped() makes the very same bytes again, whatever they are.
///
/// Valid UTF-8 stands for itself. A byte that is not part of valid UTF-8, and each byte of the
/// UTF-8 form of a code point U+EF80–U+EFFF, becomes the code point U+EF80 + (byte − 0x80); these
/// private code points lie where no name in practice does.
[[nodiscard]] std::u16string escapedName(std::string_view name);

/// The bytes of a name from its archived text: the inverse of escapedName(). A lone surrogate,
/// which only a file written elsewhere can hold, becomes the three bytes that UTF-8's scheme gives.
[[nodiscard]] std::string nameFromEscaped(std::u16string_view text);

/// True when every byte is below 0x80: such a name is its own archived text.
[[nodiscard]] bool isAscii(std::string_view name) noexcept;

} // namespace tessaly::tree
