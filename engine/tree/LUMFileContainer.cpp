#include "engine/tree/LUMFileContainer.hpp"

#include "engine/tree/TreeWalk.hpp"

#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessaly::tree {

static_assert(sizeof(LUMFileItem) == 24, "a tree has millions of these");
static_assert(sizeof(LUMFileContainer) == 40);

namespace {

struct SizeSum {
    std::uint64_t total = 0;

    void file(const LUMFileItem &item) noexcept { total += item.itemSize(); }
    void enter(const LUMFileContainer &folder) noexcept { total += folder.itemSize(); }
    void leave(const LUMFileContainer & /*folder*/) noexcept {}
};

/// The total of each folder, in the order in which the folders are entered. One pass: asking each
/// folder for its total would take quadratic time on a deep tree.
struct FolderTotals {
    std::vector<std::uint64_t> totals;
    std::vector<std::size_t> open;

    void file(const LUMFileItem &item) noexcept { totals[open.back()] += item.itemSize(); }
    void enter(const LUMFileContainer &folder)
    {
        open.push_back(totals.size());
        totals.push_back(folder.itemSize());
    }
    void leave(const LUMFileContainer & /*folder*/) noexcept
    {
        const std::uint64_t total = totals[open.back()];
        open.pop_back();
        if (!open.empty()) {
            totals[open.back()] += total;
        }
    }
};

struct Describer {
    const std::vector<std::uint64_t> &totals;
    std::size_t entered = 0;
    std::size_t depth = 0;
    std::string text;

    void file(const LUMFileItem &item)
    {
        text += "subitem: ";
        text += item.description();
        text += '\n';
    }
    void enter(const LUMFileContainer &folder)
    {
        if (depth++ > 0) {
            text += "subitem: ";
        }
        text += "ITEM ";
        text += folder.hasItemName() ? folder.itemName() : std::string_view("(null)");
        text += " size:";
        text += std::to_string(folder.itemSize());
        text += ", total: ";
        text += LUMFileItem::buildString(totals[entered++]);
        text += '\n';
    }
    void leave(const LUMFileContainer & /*folder*/)
    {
        if (--depth > 0) {
            text += '\n';
        }
    }
};

} // namespace

LUMFileContainer::LUMFileContainer(NodeArena &arena) : LUMFileContainer(arena, defaultItemName, 0)
{
}

LUMFileContainer::LUMFileContainer(NodeArena &arena, std::string_view itemName,
                                   std::uint64_t itemSize)
    : LUMFileContainer(arena, arena.storeName(itemName), itemSize)
{
}

LUMFileContainer::LUMFileContainer(NodeArena & /*arena*/, NodeArena::StoredName itemName,
                                   std::uint64_t itemSize) noexcept
    : LUMFileItem(Kind::container, itemName, itemSize)
{
}

void LUMFileContainer::append(LUMFileItem &child) noexcept
{
    assert(child.next() == nullptr && "a node is the child of one folder, once");
    if (m_lastChild == nullptr) {
        child.setNext(&child);
    } else {
        child.setNext(m_lastChild->next());
        m_lastChild->setNext(&child);
    }
    m_lastChild = &child;
    if (LUMFileContainer *folder = child.asContainer()) {
        folder->m_parent = this;
    }
}

std::uint64_t LUMFileContainer::valueOfSubitems() const
{
    SizeSum sum;
    walkTree(*this, sum);
    return sum.total;
}

std::string LUMFileContainer::description() const
{
    FolderTotals folders;
    walkTree(*this, folders);
    Describer describer{folders.totals, 0, 0, {}};
    walkTree(*this, describer);
    return std::move(describer.text);
}

} // namespace tessaly::tree
