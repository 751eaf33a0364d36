#include "app/controls/tables/KORVENDiskObject.hpp"

#include "engine/tree/SizeText.hpp"

namespace tessaly {

std::string KORVENDiskObject::buildString(tree::SizeNumber byteCount)
{
    return byteCount.asInt32() == -1 ? "--" : tree::sizeText(byteCount.value());
}

} // namespace tessaly
