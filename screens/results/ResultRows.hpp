#pragma once

#include "screens/results/KORVENFolderObject.hpp"

#include <cstdint>
#include <vector>

namespace tessaly {

namespace tree {
class LUMFileContainer;
} // namespace tree

/// What an item must exceed to be listed, in bytes; 0: none is listed.
struct RowThresholds {
    std::uint64_t hiddenItem = 0; ///< items whose name begins with "."
    std::uint64_t largeFile = 0;  ///< other files; other folders are always listed
};

/// The name of the folder that is listed whatever the thresholds.
inline constexpr std::string_view trashName = ".Trash";

enum class RowOrder : std::uint8_t {
    size, ///< largest first
    name, ///< by code unit, upper case first
};

/// One level of a scan tree as the screens show it.
struct ResultRows {
    std::vector<KORVENFolderObject> rows;
    /// Bytes of all children of the level, listed or not. Single precision is what the screens have
    /// always shown and compared with, so it stays.
    float total = 0;
};

/// The rows of a folder's children, largest first. No folder: no rows. Takes the size of every
/// subfolder's whole tree. Threads: any, on a finished tree.
[[nodiscard]] ResultRows resultRowsOf(const tree::LUMFileContainer *folder,
                                      RowThresholds thresholds);

/// Rows that compare equal keep their order.
void sortRows(std::vector<KORVENFolderObject> &rows, RowOrder order);

} // namespace tessaly
