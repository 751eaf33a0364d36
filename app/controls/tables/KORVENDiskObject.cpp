#include "app/controls/tables/KORVENDiskObject.hpp"

#include "engine/tree/SizeText.hpp"

namespace tessaly {

std::string KORVENDiskObject::buildString(SizeNumber byteCount)
{
    return byteCount.asInt32() == -1 ? "--" : sizeText(byteCount.value());
}

} // namespace tessaly
