#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace tessaly {

/// A file name or path as a text that a field can hold, from which nameOfText() makes the very same
/// bytes again (see escapedName()). Fields for names draw it readably (see NameLabel).
[[nodiscard]] QString textOfName(std::string_view name);

/// The bytes of a name from its text.
[[nodiscard]] std::string nameOfText(const QString &text);

} // namespace tessaly
