#pragma once

#include "engine/tree/NodeArena.hpp"
#include "engine/tree/SizeNumber.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly::tree {

class LUMFileContainer;

/// One file of a scan tree: a name and a size. LUMFileContainer, its only subclass, is a folder.
///
/// Names:     the bytes that the file system gave, one path component; the root of a scanned tree
///            is named with the full path of the scanned folder. A tree read from a file may hold
///            nodes without a name.
/// Units:     sizes are logical bytes.
/// Ownership: a node owns nothing. Its name lies in the arena that it was made with, and a node
///            made by NodeArena::make() lies there itself. A ScanTree owns the arenas. Nodes are
///            small and plain on purpose: a tree has millions of them.
/// Threads:   one thread writes a node. A finished tree is read by any.
class LUMFileItem {
public:
    static constexpr std::string_view defaultItemName = "Empty Item";

    /// Required interface: a node named "Empty Item" of size 0.
    explicit LUMFileItem(NodeArena &arena);
    LUMFileItem(NodeArena &arena, std::string_view itemName, std::uint64_t itemSize);
    /// A node whose name an arena of the tree already holds; nullptr for no name.
    LUMFileItem(NodeArena &arena, NodeArena::StoredName itemName, std::uint64_t itemSize) noexcept;

    ~LUMFileItem() = default;
    LUMFileItem(const LUMFileItem &) = delete;
    LUMFileItem &operator=(const LUMFileItem &) = delete;

    /// The name; empty when there is none. The bytes stay valid for as long as the arena exists,
    /// also after setItemName().
    [[nodiscard]] std::string_view itemName() const noexcept
    {
        return NodeArena::nameBytes(m_itemName);
    }
    [[nodiscard]] bool hasItemName() const noexcept { return m_itemName != nullptr; }
    void setItemName(NodeArena &arena, std::string_view itemName);
    void setStoredName(NodeArena::StoredName itemName) noexcept { m_itemName = itemName; }

    /// Size in bytes; 0 for a folder that was scanned, whose total is computed on demand.
    [[nodiscard]] std::uint64_t itemSize() const noexcept { return m_itemSize; }
    void setItemSize(std::uint64_t itemSize) noexcept { m_itemSize = itemSize; }

    /// The folder that this node is, or nullptr when it is a file. Only folders have `subitems`.
    [[nodiscard]] const LUMFileContainer *asContainer() const noexcept;
    [[nodiscard]] LUMFileContainer *asContainer() noexcept;
    [[nodiscard]] bool isContainer() const noexcept { return (m_nextAndKind & containerBit) != 0; }

    /// A size text ("1.50 KB"); "--" for a number that reads as -1.
    [[nodiscard]] static std::string buildString(SizeNumber byteCount);

    /// Required interface: "ITEM name size:1.50 KB"; on a folder LUMFileContainer::description().
    [[nodiscard]] std::string description() const;

protected:
    enum class Kind : std::uint8_t { file, container };
    LUMFileItem(Kind kind, NodeArena::StoredName itemName, std::uint64_t itemSize) noexcept;

private:
    friend class LUMFileContainer;

    static constexpr std::uintptr_t containerBit = 1;

    [[nodiscard]] LUMFileItem *next() const noexcept
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the bit saves 8 bytes a node
        return reinterpret_cast<LUMFileItem *>(m_nextAndKind & ~containerBit);
    }
    void setNext(const LUMFileItem *next) noexcept
    {
        m_nextAndKind = reinterpret_cast<std::uintptr_t>(next) | (m_nextAndKind & containerBit);
    }

    NodeArena::StoredName m_itemName;
    std::uint64_t m_itemSize;
    /// The next child of the same folder (the first one after the last), and in its lowest bit
    /// whether this node is a folder.
    std::uintptr_t m_nextAndKind;
};

} // namespace tessaly::tree
