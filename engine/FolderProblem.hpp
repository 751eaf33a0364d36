#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// Why the content of a folder cannot be listed, as the system puts it ("Permission denied");
/// nothing when it can. Threads: any.
[[nodiscard]] std::optional<std::string> folderProblem(std::string_view path);

} // namespace tessaly
