#pragma once

#include "engine/tree/LUMFileContainer.hpp"

#include <vector>

namespace tessaly::tree {

/// Walks a tree depth first, children in order, without recursion, and calls the visitor once for
/// each node:
///
///     visitor.file(const LUMFileItem &)
///     visitor.enter(const LUMFileContainer &)   before the folder's children
///     visitor.leave(const LUMFileContainer &)   after them
///
/// The visitor must not change the tree. Memory: one entry for each level of depth.
template <typename Visitor>
void walkTree(const LUMFileContainer &top, Visitor &visitor)
{
    struct Level {
        const LUMFileContainer *folder;
        decltype(top.subitems().begin()) next;
    };

    std::vector<Level> levels;
    visitor.enter(top);
    levels.push_back({&top, top.subitems().begin()});
    while (!levels.empty()) {
        Level &level = levels.back();
        const LUMFileContainer *subfolder = nullptr;
        for (auto end = level.folder->subitems().end(); level.next != end;) {
            const LUMFileItem &child = *level.next;
            ++level.next;
            subfolder = child.asContainer();
            if (subfolder != nullptr) {
                break;
            }
            visitor.file(child);
        }
        if (subfolder != nullptr) {
            visitor.enter(*subfolder);
            levels.push_back({subfolder, subfolder->subitems().begin()});
        } else {
            visitor.leave(*level.folder);
            levels.pop_back();
        }
    }
}

} // namespace tessaly::tree
