#pragma once

#include "engine/tree/ScanTree.hpp"

#include <memory>
#include <string>

namespace tessaly {

/// Scans a folder to the end. For tools that must not take a folder that cannot be listed for an
/// empty one: throws std::runtime_error, whose text is a line that says why, when it cannot.
[[nodiscard]] std::shared_ptr<tree::ScanTree> scannedFolder(const std::string &path);

} // namespace tessaly
