#pragma once

#include "engine/archive/ScanFileReader.hpp"

#include <iosfwd>
#include <string>
#include <string_view>

namespace tessaly {

/// Prints a tree for comparison, one line a node in preorder, tab separated: depth; "C" (folder) or
/// "F" (file); the node's own size, "-" when the file has none; the parent ("P" the enclosing
/// folder, "0" none, "-" missing, "x" another); the name as a JSON string of its archived text, "-"
/// when there is none. `details` are those of the scan file that the tree was read from.
void dumpTree(std::ostream &out, const tree::LUMFileContainer &root,
              const archive::ScanFileDetails &details = {});

/// A JSON string, quoted, of ASCII characters only.
[[nodiscard]] std::string jsonString(std::u16string_view text);

} // namespace tessaly
