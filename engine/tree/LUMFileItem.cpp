#include "engine/tree/LUMFileItem.hpp"

#include "engine/tree/LUMFileContainer.hpp"
#include "engine/tree/SizeText.hpp"

namespace tessaly::tree {

LUMFileItem::LUMFileItem(NodeArena &arena) : LUMFileItem(arena, defaultItemName, 0) {}

LUMFileItem::LUMFileItem(NodeArena &arena, std::string_view itemName, std::uint64_t itemSize)
    : LUMFileItem(Kind::file, arena.storeName(itemName), itemSize)
{
}

LUMFileItem::LUMFileItem(NodeArena & /*arena*/, NodeArena::StoredName itemName,
                         std::uint64_t itemSize) noexcept
    : LUMFileItem(Kind::file, itemName, itemSize)
{
}

LUMFileItem::LUMFileItem(Kind kind, NodeArena::StoredName itemName, std::uint64_t itemSize) noexcept
    : m_itemName(itemName), m_itemSize(itemSize),
      m_nextAndKind(kind == Kind::container ? containerBit : 0)
{
}

void LUMFileItem::setItemName(NodeArena &arena, std::string_view itemName)
{
    // The old name stays in the arena, which frees nothing singly.
    m_itemName = arena.storeName(itemName);
}

std::string LUMFileItem::buildString(SizeNumber byteCount)
{
    // Kept on purpose (see docs/conventions.md): a number that reads as -1 has no size.
    return byteCount.asInt32() == -1 ? "--" : sizeText(byteCount.value());
}

std::string LUMFileItem::description() const
{
    if (const LUMFileContainer *container = asContainer()) {
        return container->description();
    }
    std::string text = "ITEM ";
    text += hasItemName() ? itemName() : std::string_view("(null)");
    text += " size:";
    text += buildString(m_itemSize);
    return text;
}

} // namespace tessaly::tree
