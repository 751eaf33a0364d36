#include "engine/tree/LUMFileContainer.hpp"

#include "engine/tree/TreeWalk.hpp"

#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessaly::tree {

// An entry of /usr takes 40 bytes with its name (docs/performance.md). One more member would be
// noticed.
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
            // A folder's total is complete when it ends, and only then is added to the one above.
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

// The arena is not used: it is there for make(), which passes it to every constructor.
LUMFileContainer::LUMFileContainer(NodeArena & /*arena*/, NodeArena::StoredName itemName,
                                   std::uint64_t itemSize) noexcept
    : LUMFileItem(Kind::container, itemName, itemSize)
{
}

void LUMFileContainer::append(LUMFileItem &child) noexcept
{
    assert(child.next() == nullptr && "a node is the child of one folder, once");
    // The children are a ring, entered by its last one: that takes a single pointer for appending
    // and for the first child.
    if (m_lastChild == nullptr) {
        child.setNext(&child);
    } else {
        // The new last child leads to the first one.
        child.setNext(m_lastChild->next());
        m_lastChild->setNext(&child);
    }
    m_lastChild = &child;
    if (LUMFileContainer *folder = child.asContainer()) {
        // Files have no parent link: with one, each of millions would be a third larger.
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
    // Two walks: a folder's line has its total, which is known only after all lines below it.
    FolderTotals folders;
    walkTree(*this, folders);
    Describer describer{folders.totals, 0, 0, {}};
    walkTree(*this, describer);
    return std::move(describer.text);
}

} // namespace tessaly::tree
