#pragma once

#include <string_view>

namespace tessaly {

/// The program's name, as users see it. Threads: any.
[[nodiscard]] std::string_view programName() noexcept;

/// The program's version, such as "0.1.0": the one that the build says, see CMakeLists.txt at the
/// root. Threads: any.
[[nodiscard]] std::string_view programVersion() noexcept;

} // namespace tessaly
