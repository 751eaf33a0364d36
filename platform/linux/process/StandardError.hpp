#pragma once

#include <string_view>

namespace tessaly {

/// Writes the text to standard error, up to the first error. Async-signal-safe; keeps errno.
void writeToStandardError(std::string_view text) noexcept;

} // namespace tessaly
