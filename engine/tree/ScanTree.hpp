#pragma once

#include "engine/tree/LUMFileContainer.hpp"
#include "engine/tree/NodeArena.hpp"

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace tessaly::tree {

/// A whole scan tree: the one owner of a root folder and of everything below it.
///
/// Ownership: held by std::shared_ptr. An aliasing std::shared_ptr to a node keeps the whole tree
///            alive.
/// Threads:   leaseArena() may be called from any thread; the rest follows the nodes' own rule (one
///            writer a node, any number of readers once the tree is finished).
class ScanTree {
public:
    /// Returns an arena to its tree, for the next thread to use.
    struct ReturnArena {
        ScanTree *tree;
        void operator()(NodeArena *arena) const noexcept { tree->returnArena(arena); }
    };
    /// The exclusive use of one arena of a tree. Must be destroyed before the tree.
    using ArenaLease = std::unique_ptr<NodeArena, ReturnArena>;

    /// A tree of one folder named "Empty Item".
    ScanTree();
    ~ScanTree() = default;
    ScanTree(const ScanTree &) = delete;
    ScanTree &operator=(const ScanTree &) = delete;

    [[nodiscard]] LUMFileContainer &root() noexcept { return *m_root; }
    [[nodiscard]] const LUMFileContainer &root() const noexcept { return *m_root; }

    /// An arena that no other lease holds: a returned one, or a new one.
    [[nodiscard]] ArenaLease leaseArena();

private:
    void returnArena(NodeArena *arena) noexcept;

    std::mutex m_mutex;
    std::deque<NodeArena> m_arenas;  ///< guarded by m_mutex; their content belongs to the leases
    std::vector<NodeArena *> m_free; ///< guarded by m_mutex; has room for all, for returnArena()
    LUMFileContainer *m_root;
};

} // namespace tessaly::tree
