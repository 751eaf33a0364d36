#pragma once

#include "engine/tree/SizeNumber.hpp"

#include <string>

namespace tessaly {

/// Base of the row models: what a row of a folder's items and a row of a drive have in common.
class KORVENDiskObject {
public:
    /// A size text ("1.50 KB"); "--" for a number that reads as -1.
    [[nodiscard]] static std::string buildString(tree::SizeNumber byteCount);

protected:
    KORVENDiskObject() = default;
    ~KORVENDiskObject() = default;
    KORVENDiskObject(const KORVENDiskObject &) = default;
    KORVENDiskObject &operator=(const KORVENDiskObject &) = default;
    KORVENDiskObject(KORVENDiskObject &&) = default;
    KORVENDiskObject &operator=(KORVENDiskObject &&) = default;
};

} // namespace tessaly
