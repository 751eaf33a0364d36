#include "tests/engine/UnansweredMount.hpp"

#include "tests/engine/ChildProcess.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <linux/fuse.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// The next request, waited for.
fuse_in_header takenRequest(int server)
{
    std::array<char, FUSE_MIN_READ_BUFFER> buffer{};
    fuse_in_header request = {};
    if (read(server, buffer.data(), buffer.size()) < static_cast<ssize_t>(sizeof request)) {
        throw std::system_error(errno, std::system_category(), "/dev/fuse");
    }
    std::memcpy(&request, buffer.data(), sizeof request);
    return request;
}

/// Without this answer the kernel would send no other request.
void answerInit(int server, std::uint64_t request)
{
    struct {
        fuse_out_header header;
        fuse_init_out body;
    } answer = {};
    answer.header.len = sizeof answer;
    answer.header.unique = request;
    answer.body.major = FUSE_KERNEL_VERSION;
    answer.body.minor = FUSE_KERNEL_MINOR_VERSION;
    if (write(server, &answer, sizeof answer) != sizeof answer) {
        throw std::system_error(errno, std::system_category(), "/dev/fuse");
    }
}

} // namespace

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

void UnansweredMount::takeRequest() const
{
    const fuse_in_header first = takenRequest(m_server.number());
    EXPECT_EQ(first.opcode, FUSE_INIT);
    answerInit(m_server.number(), first.unique);
    (void)takenRequest(m_server.number());
}

} // namespace tessaly
