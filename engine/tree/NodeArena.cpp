#include "engine/tree/NodeArena.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

#include <sys/mman.h>

namespace tessaly::tree {

namespace {

constexpr std::size_t minChunkBytes = std::size_t{64} << 10U;
constexpr std::size_t maxChunkBytes = std::size_t{4} << 20U;
constexpr unsigned recentNameBits = 11;

std::uint64_t loadEight(const char *bytes) noexcept
{
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight;
}

/// A hash of a name's first and last eight bytes: quick, and names that differ only in the middle
/// merely evict each other.
std::uint64_t quickHash(std::string_view name) noexcept
{
    constexpr std::uint64_t oddA = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t oddB = 0xC2B2AE3D27D4EB4FU;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (name.size() >= sizeof first) {
        first = loadEight(name.data());
        last = loadEight(name.data() + name.size() - sizeof last);
    } else {
        for (const char c : name) {
            first = first << 8U | static_cast<unsigned char>(c);
        }
    }
    const std::uint64_t mixed = (first * oddA ^ last) * oddB + name.size();
    return (mixed ^ mixed >> 32U) * oddA;
}

} // namespace

// Nodes are trivially destructible (see make()), so the chunks free everything.
NodeArena::~NodeArena() = default;

NodeArena::StoredName NodeArena::storeName(std::string_view name)
{
    if (m_recentNames.empty()) {
        m_recentNames.resize(std::size_t{1} << recentNameBits);
    }
    // No chains: each place holds one name, and a collision costs a second copy and no time.
    const std::uint64_t hash = quickHash(name);
    RecentName &recent = m_recentNames[hash >> (64U - recentNameBits)];
    // The names are compared as well: the hash leaves out the middle of a long name.
    if (recent.hash != hash || recent.name == nullptr || nameBytes(recent.name) != name) {
        recent = {hash, copyName(name)};
    }
    return recent.name;
}

NodeArena::StoredName NodeArena::copyName(std::string_view name)
{
    if (name.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a name of 4 GiB or more");
    }
    std::size_t prefixLength = 1;
    for (std::size_t rest = name.size(); rest >= 0x80U; rest >>= 7U) {
        ++prefixLength;
    }
    // One block for both, so that a node needs a single pointer and no length.
    auto *stored = static_cast<unsigned char *>(m_names.take(prefixLength + name.size()));
    unsigned char *next = stored;
    std::size_t rest = name.size();
    for (; rest >= 0x80U; rest >>= 7U) {
        *next++ = static_cast<unsigned char>(rest | 0x80U);
    }
    *next++ = static_cast<unsigned char>(rest);
    if (!name.empty()) {
        std::memcpy(next, name.data(), name.size());
    }
    return stored;
}

void NodeArena::forgetRecentNames() noexcept
{
    // clear() would keep the memory.
    std::vector<RecentName>().swap(m_recentNames);
}

NodeArena::Chunks::~Chunks()
{
    for (const Chunk &chunk : m_chunks) {
        munmap(chunk.start, chunk.byteCount);
    }
}

void NodeArena::Chunks::addChunk(std::size_t atLeast)
{
    const std::size_t doubled =
        m_chunks.empty() ? minChunkBytes : std::min(m_chunks.back().byteCount * 2, maxChunkBytes);
    const std::size_t byteCount =
        (std::max(doubled, atLeast) + minChunkBytes - 1) / minChunkBytes * minChunkBytes;
    // Small trees get no huge pages, of which they would fill a part only.
    const bool isLarge = m_byteCount >= maxChunkBytes * 2 - minChunkBytes;
    m_chunks.reserve(m_chunks.size() + 1); // so that push_back() cannot throw and leak the memory
    // From the system and not from the heap: freed chunks go back at once, and pages that are never
    // touched take no memory.
    void *memory = mmap(nullptr, byteCount, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    if (isLarge) {
        // Huge pages are quicker to fault in, to walk and to unmap. The last one is half empty on
        // average, which is little compared with the rest. It is only a hint: errors do not matter.
        madvise(memory, byteCount, MADV_HUGEPAGE);
    }
    m_next = static_cast<std::byte *>(memory);
    m_end = m_next + byteCount;
    m_chunks.push_back({m_next, byteCount});
    m_byteCount += byteCount;
}

} // namespace tessaly::tree
