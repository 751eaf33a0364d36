#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace tessaly {

/// A file name or path as a text for a field, from which nameOfText() makes the same bytes again
/// (see escapedName()). NameLabel draws it readably.
[[nodiscard]] QString textOfName(std::string_view name);

/// The bytes of a name from its text.
[[nodiscard]] std::string nameOfText(const QString &text);

} // namespace tessaly
