#pragma once

#include <compare>
#include <string_view>

namespace tessaly::tree {

/// The order of two names by the UTF-16 code units of their archived texts (see escapedName()):
/// upper case before lower case, and what lies beyond U+FFFF before U+E000–U+FFFF. Neither language
/// nor country has a say in it. Makes no texts where the names differ in plain characters.
[[nodiscard]] std::strong_ordering compareByCodeUnits(std::string_view a, std::string_view b);

} // namespace tessaly::tree
