#pragma once

#include <compare>
#include <string_view>

namespace tessaly::tree {

/// The order of two names by the UTF-16 code units of their archived texts (see escapedName()):
/// upper case before lower case, and U+10000 onwards before U+E000–U+FFFF. Independent of the
/// locale. Converts nothing when the names differ in ASCII characters.
[[nodiscard]] std::strong_ordering compareByCodeUnits(std::string_view a, std::string_view b);

} // namespace tessaly::tree
