#pragma once

#include "engine/tree/LUMFileItem.hpp"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

namespace tessaly::tree {

/// One folder of a scan tree: a name, its children in the order in which the file system gave them,
/// and the folder that holds it.
///
/// Units:     sizes are logical bytes; a scanned folder's own size is 0, its total is computed on
///            demand.
/// Ownership: nothing is owned (see LUMFileItem); children and parent lie in one ScanTree's arenas.
/// Threads:   while a scan runs, one thread writes a given folder. A finished tree is read by any.
/// Depth:     nothing here recurses: a tree may be as deep as memory allows.
class LUMFileContainer final : public LUMFileItem {
    template <typename Node>
    class Iterator;
    template <typename Node>
    class View;

public:
    /// The children in order, to read and to append to. A view: it copies nothing.
    class Subitems;
    using ConstSubitems = View<const LUMFileItem>;

    /// A folder named "Empty Item" of size 0, without children and without parent.
    explicit LUMFileContainer(NodeArena &arena);
    LUMFileContainer(NodeArena &arena, std::string_view itemName, std::uint64_t itemSize);
    LUMFileContainer(NodeArena &arena, NodeArena::StoredName itemName,
                     std::uint64_t itemSize) noexcept;

    [[nodiscard]] Subitems subitems() noexcept;
    [[nodiscard]] ConstSubitems subitems() const noexcept;

    /// The folder that holds this one; nullptr for the root. Appending a folder sets it.
    [[nodiscard]] const LUMFileContainer *parentContainer() const noexcept { return m_parent; }
    [[nodiscard]] LUMFileContainer *parentContainer() noexcept { return m_parent; }
    void setParentContainer(LUMFileContainer *parent) noexcept { m_parent = parent; }

    /// This folder's own size and the sizes of all nodes below it, at every depth, in bytes.
    /// Walks the whole subtree. Wraps around at 2^64.
    [[nodiscard]] std::uint64_t valueOfSubitems() const;

    /// Required interface: the description of this folder ("ITEM name size:0, total: 1.50 KB") and
    /// of everything below it, a line each, all but the first marked "subitem: ".
    [[nodiscard]] std::string description() const;

private:
    void append(LUMFileItem &child) noexcept;
    [[nodiscard]] LUMFileItem *firstChild() const noexcept
    {
        return m_lastChild == nullptr ? nullptr : m_lastChild->next();
    }

    LUMFileContainer *m_parent = nullptr;
    LUMFileItem *m_lastChild = nullptr; ///< its next() is the first child
};

template <typename Node>
class LUMFileContainer::Iterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = Node *;
    using reference = Node &;

    Iterator() = default;

    reference operator*() const noexcept { return *m_node; }
    pointer operator->() const noexcept { return m_node; }
    Iterator &operator++() noexcept
    {
        m_node = m_node == m_last ? nullptr : m_node->next();
        return *this;
    }
    Iterator operator++(int) noexcept
    {
        Iterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const Iterator &a, const Iterator &b) noexcept
    {
        return a.m_node == b.m_node;
    }

private:
    friend class LUMFileContainer;
    Iterator(Node *node, const LUMFileItem *last) noexcept : m_node(node), m_last(last) {}

    Node *m_node = nullptr;
    const LUMFileItem *m_last = nullptr;
};

template <typename Node>
class LUMFileContainer::View {
public:
    [[nodiscard]] Iterator<Node> begin() const noexcept
    {
        return {m_folder->firstChild(), m_folder->m_lastChild};
    }
    [[nodiscard]] Iterator<Node> end() const noexcept { return {}; }
    [[nodiscard]] bool empty() const noexcept { return m_folder->m_lastChild == nullptr; }

    /// Number of children. Counts them.
    [[nodiscard]] std::size_t size() const noexcept
    {
        return static_cast<std::size_t>(std::distance(begin(), end()));
    }

protected:
    using Folder =
        std::conditional_t<std::is_const_v<Node>, const LUMFileContainer, LUMFileContainer>;

    friend class LUMFileContainer;
    explicit View(Folder &folder) noexcept : m_folder(&folder) {}

    Folder *m_folder;
};

class LUMFileContainer::Subitems : public View<LUMFileItem> {
public:
    /// Adds a node as the last child; a folder gets this one as its parent. The node must lie in
    /// an arena of the same tree and be no folder's child yet.
    void append(LUMFileItem &child) noexcept { m_folder->append(child); }

private:
    friend class LUMFileContainer;
    using View::View;
};

inline LUMFileContainer::Subitems LUMFileContainer::subitems() noexcept
{
    return Subitems(*this);
}

inline LUMFileContainer::ConstSubitems LUMFileContainer::subitems() const noexcept
{
    return ConstSubitems(*this);
}

inline const LUMFileContainer *LUMFileItem::asContainer() const noexcept
{
    return isContainer() ? static_cast<const LUMFileContainer *>(this) : nullptr;
}

inline LUMFileContainer *LUMFileItem::asContainer() noexcept
{
    return isContainer() ? static_cast<LUMFileContainer *>(this) : nullptr;
}

} // namespace tessaly::tree
