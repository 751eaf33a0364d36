#include "platform/linux/process/LinuxSystemRelease.hpp"

namespace tessaly {

SystemRelease::Version LinuxSystemRelease::version() const
{
    return {0, 0};
}

} // namespace tessaly
