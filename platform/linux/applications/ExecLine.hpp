#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The values of the field codes of an "Exec" line that do not stand for files.
struct ExecFields {
    std::string name; ///< %c
    std::string icon; ///< %i becomes "--icon" and this; nothing when it is empty
    std::string path; ///< %k
};

/// Splits the "Exec" line of a desktop file by the rules in "The Exec key" of freedesktop.org's
/// Desktop Entry 1.5. The general escapes of values have been replaced before.
///
/// Returns the program and its arguments. The codes for files are left out, and so is a word that
/// consists of one. Empty when the line breaks the rules: a reserved character stands outside
/// quotes, a quote is not closed, or a code is unknown.
[[nodiscard]] std::vector<std::string> wordsOfExecLine(std::string_view line,
                                                       const ExecFields &fields);

} // namespace tessaly
