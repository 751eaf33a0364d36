#include "tests/platform/linux/OwnMounts.hpp"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sched.h>
#include <sys/mount.h>

namespace tessaly {

namespace {

bool ownsMounts = false;

} // namespace

void takeOwnMounts()
{
    ownsMounts = unshare(CLONE_NEWNS) == 0 &&
                 mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool hasOwnMounts()
{
    return ownsMounts;
}

ScopedMount::ScopedMount(const std::string &source, std::string path, const char *type,
                         unsigned long flags, const std::string &options)
    : m_path(std::move(path))
{
    if (mount(source.c_str(), m_path.c_str(), type, flags, options.c_str()) != 0) {
        throw std::system_error(errno, std::system_category(), m_path);
    }
}

ScopedMount::~ScopedMount()
{
    umount2(m_path.c_str(), MNT_DETACH);
}

} // namespace tessaly
