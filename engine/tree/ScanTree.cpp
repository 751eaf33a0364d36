#include "engine/tree/ScanTree.hpp"

namespace tessaly::tree {

ScanTree::ScanTree()
{
    const ArenaLease arena = leaseArena();
    // A node as any other, so that it is freed with the rest.
    m_root = &arena->make<LUMFileContainer>();
}

ScanTree::ArenaLease ScanTree::leaseArena()
{
    const std::lock_guard lock(m_mutex);
    NodeArena *arena = nullptr;
    if (m_free.empty()) {
        // A deque, whose elements stay where they are: leases point to them.
        arena = &m_arenas.emplace_back();
        // Now, so that returnArena() needs no memory: it runs in destructors.
        m_free.reserve(m_arenas.size());
    } else {
        arena = m_free.back();
        m_free.pop_back();
    }
    return ArenaLease(arena, ReturnArena{this});
}

void ScanTree::returnArena(NodeArena *arena) noexcept
{
    const std::lock_guard lock(m_mutex);
    m_free.push_back(arena);
    if (m_free.size() == m_arenas.size()) {
        // No thread is building any more. Until then the next one profits from recent names.
        for (NodeArena &idle : m_arenas) {
            idle.forgetRecentNames();
        }
    }
}

} // namespace tessaly::tree
