#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// An entry of a folder whose files are previewed.
struct PreviewFolderEntry {
    std::string name; ///< bytes
    bool isFolder;    ///< a link to a folder counts as one
};

/// The folder's entries in the file system's own order, but those whose name begins with ".". None
/// when the folder cannot be read. Asks the file system about an entry only if the listing does not
/// tell what it is.
[[nodiscard]] std::vector<PreviewFolderEntry> previewFolderEntries(const std::string &path);

} // namespace tessaly
