#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// What the field codes of an "Exec" line stand for that are not about files.
struct ExecFields {
    std::string name; ///< %c
    std::string icon; ///< %i becomes "--icon" and this; nothing when it is empty
    std::string path; ///< %k
};

/// Takes the "Exec" line of a desktop file apart, by the rules in "The Exec key" of
/// freedesktop.org's Desktop Entry 1.5. The line has had its escapes replaced, as those of any
/// value.
///
/// Returns the program and its arguments. The codes for files are left out, and a word with them
/// that is nothing else. Empty when the line breaks the rules: a character that is reserved stands
/// outside quotes, a quote has no end, or there is a code that nobody knows.
[[nodiscard]] std::vector<std::string> wordsOfExecLine(std::string_view line,
                                                       const ExecFields &fields);

} // namespace tessaly
