#pragma once

#include <string>
#include <string_view>

namespace tessaly::tree {

/// A name or path as valid UTF-8 for one line of a message or a terminal: what would break the
/// line, drive a terminal or turn the direction of the text, and what is no text at all, becomes
/// "?". Not a name any more: no file is found by it.
[[nodiscard]] std::string printableText(std::string_view name);

} // namespace tessaly::tree
