#include "app/controls/tables/KORVENDiskObject.hpp"

#include "engine/tree/LUMFileItem.hpp"

namespace tessaly {

std::string KORVENDiskObject::buildString(tree::SizeNumber byteCount)
{
    return tree::LUMFileItem::buildString(byteCount);
}

} // namespace tessaly
