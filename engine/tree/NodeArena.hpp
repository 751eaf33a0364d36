#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tessaly::tree {

/// Memory for the nodes and names of a scan tree, allocated in order and freed all at once.
///
/// Nodes and names lie in separate chunks: so totalling a tree touches no name, and names need no
/// alignment. Nothing is freed singly, so freeing a tree of a million nodes is a handful of
/// munmap() calls.
///
/// A stored name is its length in one to five bytes (seven bits each, low bits first, the top bit
/// set in all but the last) and its bytes. A name that repeats shortly after ("Makefile",
/// "index.html") is stored once: on a system folder this saves a quarter of the memory for names.
///
/// Threads: one thread at a time. A tree holds one arena for each thread that builds it.
/// Errors:  std::bad_alloc when the system gives no memory; std::length_error for a name of 2^32
///          bytes and more.
class NodeArena {
public:
    /// A name's place in an arena; nullptr stands for "no name".
    using StoredName = const unsigned char *;

    NodeArena() = default;
    ~NodeArena();
    NodeArena(const NodeArena &) = delete;
    NodeArena &operator=(const NodeArena &) = delete;

    /// Makes a node in the arena: `arena.make<LUMFileItem>("a", 10)` runs
    /// `LUMFileItem(arena, "a", 10)`. The node lives as long as the arena; it is never destroyed.
    template <typename Node, typename... Arguments>
    Node &make(Arguments &&...arguments)
    {
        static_assert(std::is_trivially_destructible_v<Node>, "an arena destroys nothing");
        static_assert(alignof(Node) <= nodeAlignment && sizeof(Node) % nodeAlignment == 0);
        return *new (m_nodes.take(sizeof(Node))) Node(*this, std::forward<Arguments>(arguments)...);
    }

    /// Copies a name into the arena, or returns a recent copy.
    StoredName storeName(std::string_view name);

    /// The bytes of a stored name; empty for nullptr.
    static std::string_view nameBytes(StoredName name) noexcept
    {
        if (name == nullptr) {
            return {};
        }
        std::size_t length = *name & 0x7fU;
        for (unsigned shift = 7; (*name++ & 0x80U) != 0; shift += 7) {
            length |= static_cast<std::size_t>(*name & 0x7fU) << shift;
        }
        return {reinterpret_cast<const char *>(name), length};
    }

    /// Frees the table in which storeName() finds recent names (32 KiB). The next name allocates it
    /// again.
    void forgetRecentNames() noexcept;

private:
    static constexpr std::size_t nodeAlignment = 8;

    /// Chunks of memory straight from the system, each filled from its start.
    class Chunks {
    public:
        Chunks() = default;
        ~Chunks();
        Chunks(const Chunks &) = delete;
        Chunks &operator=(const Chunks &) = delete;

        void *take(std::size_t byteCount)
        {
            if (byteCount > static_cast<std::size_t>(m_end - m_next)) {
                addChunk(byteCount);
            }
            return std::exchange(m_next, m_next + byteCount);
        }

    private:
        struct Chunk {
            std::byte *start;
            std::size_t byteCount;
        };

        void addChunk(std::size_t atLeast);

        std::byte *m_next = nullptr;
        std::byte *m_end = nullptr;
        std::vector<Chunk> m_chunks;
        std::size_t m_byteCount = 0; ///< of all chunks
    };

    struct RecentName {
        std::uint64_t hash = 0;
        StoredName name = nullptr;
    };

    StoredName copyName(std::string_view name);

    Chunks m_nodes;
    Chunks m_names;
    std::vector<RecentName> m_recentNames; ///< by hash; empty until the first name
};

} // namespace tessaly::tree
