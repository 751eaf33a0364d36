#pragma once

#include "engine/tree/ScanTree.hpp"

#include <memory>
#include <string>

namespace tessaly {

/// Scans a folder and waits for the end. Throws std::runtime_error, with one line that says why,
/// when the folder cannot be listed: the scanner itself would return an empty tree.
[[nodiscard]] std::shared_ptr<tree::ScanTree> scannedFolder(const std::string &path);

} // namespace tessaly
