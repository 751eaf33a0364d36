#pragma once

#include "engine/tree/TreeWalk.hpp"

#include <cstddef>

namespace tessaly {

/// Number of nodes of a tree, its root included.
[[nodiscard]] inline std::size_t nodeCount(const tree::LUMFileContainer &root)
{
    struct Counter {
        std::size_t nodes = 0;

        void file(const tree::LUMFileItem & /*item*/) { ++nodes; }
        void enter(const tree::LUMFileContainer & /*folder*/) { ++nodes; }
        void leave(const tree::LUMFileContainer & /*folder*/) {}
    } counter;
    tree::walkTree(root, counter);
    return counter.nodes;
}

} // namespace tessaly
