#include "tests/engine/UnansweredMount.hpp"

#include "tests/engine/ChildProcess.hpp"

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace tessaly {

std::optional<std::string> UnansweredMount::missingRequirement()
{
    if (!canMount()) {
        return "needs root, to mount something";
    }
    return access("/dev/fuse", R_OK | W_OK) == 0 ? std::nullopt
                                                 : std::optional<std::string>("needs FUSE");
}

UnansweredMount::UnansweredMount(std::string path)
    : m_path(std::move(path)), m_server(open("/dev/fuse", O_RDWR | O_CLOEXEC))
{
    EXPECT_EQ(unshare(CLONE_NEWNS), 0);
    EXPECT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    const std::string options = "fd=" + std::to_string(m_server.number()) +
                                ",rootmode=40000,user_id=0,group_id=0,allow_other";
    EXPECT_EQ(mount("unanswered", m_path.c_str(), "fuse.unanswered", MS_NOSUID | MS_NODEV,
                    options.c_str()),
              0);
}

UnansweredMount::~UnansweredMount()
{
    m_server.close();
    umount2(m_path.c_str(), MNT_DETACH);
}

} // namespace tessaly
