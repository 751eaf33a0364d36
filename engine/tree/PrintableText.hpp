#pragma once

#include <string>
#include <string_view>

namespace tessaly::tree {

/// A name or path as valid UTF-8 for one line of a message or a terminal. Line breaks, control
/// characters, characters that change the direction of the text and bytes that are no text become
/// "?". The result is for display only: it may not be the name of the file any more.
[[nodiscard]] std::string printableText(std::string_view name);

} // namespace tessaly::tree
