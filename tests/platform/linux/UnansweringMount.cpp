#include "tests/platform/linux/UnansweringMount.hpp"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tessaly {

namespace {

FileDescriptor openedDevice()
{
    FileDescriptor device(open("/dev/fuse", O_RDWR | O_CLOEXEC));
    if (!device.isOpen()) {
        throw std::system_error(errno, std::system_category(), "/dev/fuse");
    }
    return device;
}

/// The only answer that is ever given: without it the kernel would not send requests.
void answerInit(int device, std::uint64_t request)
{
    struct {
        fuse_out_header header;
        fuse_init_out body;
    } answer = {};
    answer.header.len = sizeof answer;
    answer.header.unique = request;
    answer.body.major = FUSE_KERNEL_VERSION;
    answer.body.minor = FUSE_KERNEL_MINOR_VERSION;
    (void)!write(device, &answer, sizeof answer);
}

} // namespace

UnansweringMount::UnansweringMount(const std::string &path)
    : m_device(openedDevice()), m_stopping(eventfd(0, EFD_CLOEXEC)),
      m_mount("gone", path, "fuse", 0,
              "fd=" + std::to_string(m_device.number()) + ",rootmode=40000,user_id=0,group_id=0"),
      m_server([this] { serve(); })
{
}

UnansweringMount::~UnansweringMount()
{
    eventfd_write(m_stopping.number(), 1);
    m_server.join();
    m_device.close(); // ends the requests that wait
}

void UnansweringMount::serve()
{
    std::array<char, FUSE_MIN_READ_BUFFER> buffer{};
    bool isUsed = false;
    for (;;) {
        std::array<pollfd, 2> events{
            {{m_device.number(), POLLIN, 0}, {m_stopping.number(), POLLIN, 0}}};
        if (poll(events.data(), events.size(), -1) < 0 || events[1].revents != 0) {
            return;
        }
        const ssize_t size = read(m_device.number(), buffer.data(), buffer.size());
        fuse_in_header request = {};
        if (size < static_cast<ssize_t>(sizeof request)) {
            return;
        }
        std::memcpy(&request, buffer.data(), sizeof request);
        if (request.opcode == FUSE_INIT) {
            answerInit(m_device.number(), request.unique);
        } else if (!isUsed) {
            isUsed = true;
            m_used.set_value();
        }
    }
}

} // namespace tessaly
