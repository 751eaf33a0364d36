#include "platform/linux/volumes/VolumeSpace.hpp"

#include <algorithm>
#include <cstdint>

#include <sys/statvfs.h>

namespace tessaly {

namespace {

using Blocks = std::uint64_t;

/// As bytes, or the largest number where a file system claims more than fits.
std::uint64_t bytesIn(Blocks count, std::uint64_t blockSize)
{
    std::uint64_t byteCount = 0;
    return __builtin_mul_overflow(count, blockSize, &byteCount) ? UINT64_MAX : byteCount;
}

/// Some file systems report a negative number when the user has filled what is reserved, some FUSE
/// programs more than the total.
Blocks availableBlocks(const struct statvfs &status)
{
    const bool isBelowZero = static_cast<std::int64_t>(status.f_bavail) < 0;
    return isBelowZero ? 0 : std::min<Blocks>(status.f_bavail, status.f_blocks);
}

} // namespace

VolumeFigures spaceOf(const struct statvfs &status)
{
    return {bytesIn(status.f_blocks, status.f_frsize),
            bytesIn(availableBlocks(status), status.f_frsize)};
}

std::optional<VolumeFigures> spaceAt(const std::string &path)
{
    struct statvfs status = {};
    return statvfs(path.c_str(), &status) == 0 ? std::optional(spaceOf(status)) : std::nullopt;
}

} // namespace tessaly
