#pragma once

#include "engine/tree/TreeWalk.hpp"

#include <cstddef>

namespace tessaly {

/// Number of nodes of a tree, its root included.
[[nodiscard]] inline std::size_t nodeCount(const LUMFileContainer &root)
{
    struct Counter {
        std::size_t nodes = 0;

        void file(const LUMFileItem & /*item*/) { ++nodes; }
        void enter(const LUMFileContainer & /*folder*/) { ++nodes; }
        void leave(const LUMFileContainer & /*folder*/) {}
    } counter;
    walkTree(root, counter);
    return counter.nodes;
}

} // namespace tessaly
