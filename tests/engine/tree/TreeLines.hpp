#pragma once

#include "engine/scan/LUMThreadedScanner.hpp"
#include "engine/tree/LUMFileContainer.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Everything below a tree's root as sorted texts, "s/c 5" for a file of 5 bytes and "s/" for a
/// folder. Also expects what holds in every scanned tree: folders have the size 0 and know their
/// parents.
[[nodiscard]] std::vector<std::string> treeLines(const tree::LUMFileContainer &root);

/// The names of a folder's children in order.
[[nodiscard]] std::vector<std::string> childNames(const tree::LUMFileContainer &folder);

/// The names in a folder on disk in the file system's order, without "." and "..".
[[nodiscard]] std::vector<std::string> listedNames(const std::string &path);

/// A child by its name; nullptr when there is none.
[[nodiscard]] const tree::LUMFileItem *childNamed(const tree::LUMFileContainer &folder,
                                                  std::string_view name);

/// Scans a folder to the end.
[[nodiscard]] std::shared_ptr<const tree::LUMFileContainer> scanned(std::string_view path,
                                                                    scan::ScanSystem system = {});

/// The lines of a scan of the folder.
[[nodiscard]] inline std::vector<std::string> scannedLines(std::string_view path,
                                                           scan::ScanSystem system = {})
{
    return treeLines(*scanned(path, std::move(system)));
}

} // namespace tessaly
