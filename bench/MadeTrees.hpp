#pragma once

#include "engine/tree/ScanTree.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace tessaly {

/// Folders and trees of known shape to measure on.
///
/// Names are 5 to 25 characters, 15 on average; the same call gives the same names and sizes.

/// Creates the folder `path` with `fileCount` sparse files, spread evenly over `folderCount`
/// folders that are nested up to six levels deep. Throws std::system_error.
void makeFolderTree(const std::string &path, std::size_t folderCount, std::size_t fileCount);

/// A scan tree in memory of `nodeCount` nodes, of which a seventeenth are folders.
[[nodiscard]] std::shared_ptr<tree::ScanTree> makeScanTree(std::size_t nodeCount);

/// A folder of its own under the system's folder for temporary files, removed with all it holds.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    [[nodiscard]] std::string path(const std::string &name) const { return m_path + '/' + name; }

private:
    std::string m_path;
};

} // namespace tessaly
