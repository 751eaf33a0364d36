#pragma once

#include <string>
#include <system_error>

namespace tessaly {

/// Makes the folder and those that it lies in, as far as they are missing, each for the user alone
/// (mode 0700). Folders that are there already stay as they are.
///
/// `path`:  bytes as the system takes them; no slash at its end.
/// Errors:  why there is no such folder now; none when there is.
/// Threads: any; processes that make the same folder at once all succeed.
[[nodiscard]] std::error_code makePrivateFolder(const std::string &path);

} // namespace tessaly
