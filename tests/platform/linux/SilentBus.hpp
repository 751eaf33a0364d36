#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "tests/platform/linux/PrivateBus.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tessaly {

/// A session bus that takes connections when told to, and says nothing on them.
class SilentBus {
public:
    /// So many connections, and one more, find a place in its queue.
    explicit SilentBus(int queueLength = 1)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const sockaddr_un address = socketAddress();
        unlink(&address.sun_path[0]);
        EXPECT_EQ(
            bind(m_socket.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address),
            0);
        EXPECT_EQ(listen(m_socket.number(), queueLength), 0);
    }

    /// A connection to it.
    [[nodiscard]] static scan::FileDescriptor connectionToBus()
    {
        const sockaddr_un address = socketAddress();
        scan::FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(connect(connection.number(), reinterpret_cast<const sockaddr *>(&address),
                          sizeof address),
                  0);
        return connection;
    }

    /// Blocks until there is a connection in its queue, and leaves it there.
    void waitForQueue() const
    {
        pollfd waiting = {m_socket.number(), POLLIN, 0};
        EXPECT_EQ(poll(&waiting, 1, -1), 1);
    }

    [[nodiscard]] bool hasQueue() const
    {
        pollfd waiting = {m_socket.number(), POLLIN, 0};
        return poll(&waiting, 1, 0) == 1;
    }

    /// Blocks until there is a connection.
    [[nodiscard]] scan::FileDescriptor connection() const
    {
        return scan::FileDescriptor(accept4(m_socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
    }

private:
    [[nodiscard]] static sockaddr_un socketAddress()
    {
        const std::string path = PrivateBus::address().substr(std::string("unix:path=").size());
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), std::begin(address.sun_path));
        return address;
    }

    scan::FileDescriptor m_socket;
};

} // namespace tessaly
