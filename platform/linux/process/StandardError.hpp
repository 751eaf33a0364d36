#pragma once

#include <string_view>

namespace tessaly {

/// Writes all of the text to standard error, as far as somebody takes it. May be called by the
/// handler of a signal, and leaves errno alone.
void writeToStandardError(std::string_view text) noexcept;

} // namespace tessaly
