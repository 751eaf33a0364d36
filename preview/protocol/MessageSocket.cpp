#include "preview/protocol/MessageSocket.hpp"

#include <array>
#include <cassert>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>

namespace tessaly {

namespace {

constexpr std::size_t maxDescriptorCount = 3;
constexpr std::size_t maxDescriptorBytes = maxDescriptorCount * sizeof(int);

/// What descriptors travel in.
struct Control {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(maxDescriptorBytes)> bytes{};
};

} // namespace

std::pair<MessageSocket, MessageSocket> MessageSocket::makePair()
{
    std::array<int, 2> numbers{-1, -1};
    // SOCK_SEQPACKET keeps messages apart and tells when the other end closes. Datagram sockets do
    // not do the latter.
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, numbers.data()) != 0) {
        numbers = {-1, -1};
    }
    return {MessageSocket(scan::FileDescriptor(numbers[0])),
            MessageSocket(scan::FileDescriptor(numbers[1]))};
}

void MessageSocket::shutDown() const noexcept
{
    shutdown(number(), SHUT_RDWR);
}

bool MessageSocket::sendBytes(const void *bytes, std::size_t byteCount,
                              const std::vector<int> &descriptors)
{
    // More would not fit into the control buffer.
    assert(descriptors.size() <= maxDescriptorCount);
    iovec part{const_cast<void *>(bytes), byteCount}; // sendmsg() only reads it
    Control control;
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        const std::size_t length = descriptors.size() * sizeof(int);
        message.msg_control = control.bytes.data();
        // With padding here, without it in cmsg_len: the kernel wants both.
        message.msg_controllen = CMSG_SPACE(length);
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(length);
        std::memcpy(CMSG_DATA(header), descriptors.data(), length);
    }
    ssize_t sent = -1;
    do {
        // MSG_NOSIGNAL: a decoder may end at any time, and SIGPIPE would end the program.
        sent = sendmsg(number(), &message, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(byteCount);
}

// NOLINTNEXTLINE(readability-make-member-function-const): takes what was sent
bool MessageSocket::receiveBytes(void *bytes, std::size_t byteCount,
                                 std::vector<scan::FileDescriptor> *descriptors)
{
    iovec part{bytes, byteCount};
    Control control;
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    ssize_t received = -1;
    do {
        // MSG_CMSG_CLOEXEC: another thread may start a program right now, which would inherit the
        // descriptors.
        received = recvmsg(number(), &message, MSG_CMSG_CLOEXEC);
    } while (received < 0 && errno == EINTR);
    // 0 bytes, the end of the connection, fails below: no message is empty.
    if (received < 0) {
        return false;
    }
    std::vector<scan::FileDescriptor> arrived; // closed again if the caller wants none
    // Descriptors are open from here on, so they are taken before anything is refused. Else they
    // would leak.
    for (cmsghdr *header = CMSG_FIRSTHDR(&message); header != nullptr;
         header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            // Copied, since the data need not be aligned for an int.
            std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof(int), sizeof(int));
            arrived.emplace_back(descriptor);
        }
    }
    if (descriptors != nullptr) {
        descriptors->swap(arrived);
    }
    return received == static_cast<ssize_t>(byteCount) &&
           (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0;
}

} // namespace tessaly
