#include "platform/linux/bus/BusProbe.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace tessaly {
namespace {

/// A socket with a queue for one connection, that takes one when told to.
class Listener {
public:
    /// An abstract name starts with NUL.
    explicit Listener(const std::string &name)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), std::begin(address.sun_path));
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        EXPECT_EQ(bind(m_socket.number(), reinterpret_cast<const sockaddr *>(&address), size), 0);
        EXPECT_EQ(listen(m_socket.number(), 0), 0);
    }

    [[nodiscard]] scan::FileDescriptor connection() const
    {
        return scan::FileDescriptor(accept4(m_socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
    }

private:
    scan::FileDescriptor m_socket;
};

bool isReadable(const BusProbe &probe)
{
    pollfd waiting = {probe.descriptor(), POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}

TEST(BusProbe, isReadableOnceTheBusHasAnswered)
{
    const TemporaryFolder folder;
    const Listener bus(folder.path("bus"));
    const BusProbe probe("unix:path=" + folder.path("bus"));
    ASSERT_TRUE(probe.isConnected());
    const scan::FileDescriptor connection = bus.connection();
    std::array<char, 64> bytes{};
    const auto count = read(connection.number(), bytes.data(), bytes.size());
    EXPECT_EQ(std::string(bytes.data(), static_cast<std::size_t>(count)),
              std::string("\0AUTH\r\n", 7));
    EXPECT_FALSE(isReadable(probe));

    EXPECT_EQ(write(connection.number(), "REJECTED\r\n", 10), 10);
    EXPECT_TRUE(isReadable(probe));
}

TEST(BusProbe, isReadableOnceTheBusHasEnded)
{
    const TemporaryFolder folder;
    auto bus = std::make_unique<Listener>(folder.path("bus"));
    const BusProbe probe("unix:path=" + folder.path("bus"));
    EXPECT_FALSE(isReadable(probe));

    bus.reset();
    EXPECT_TRUE(isReadable(probe));
}

TEST(BusProbe, takesTheFirstAddressWhereThereIsAPlace)
{
    const TemporaryFolder folder;
    const Listener full(folder.path("full"));
    const std::string fullAddress = "unix:path=" + folder.path("full");
    const BusProbe inQueue(fullAddress);
    ASSERT_TRUE(inQueue.isConnected());
    EXPECT_FALSE(BusProbe(fullAddress).isConnected());
    EXPECT_EQ(BusProbe(fullAddress).descriptor(), -1);

    const Listener bus(folder.path("a,b;c"));
    const std::string address = "unix:guid=0,path=" + folder.path("a%2Cb%3bc");
    EXPECT_EQ(BusProbe("nonce-tcp:;" + fullAddress + ";" + address + ";").address(), address);
    EXPECT_EQ(inQueue.address(), fullAddress);
}

TEST(BusProbe, findsAnAbstractSocket)
{
    const TemporaryFolder folder; // for a name that nobody else has
    const Listener bus('\0' + folder.path("bus"));
    EXPECT_TRUE(BusProbe("unix:abstract=" + folder.path("bus") + ",guid=0").isConnected());
    EXPECT_FALSE(BusProbe("unix:path=" + folder.path("bus")).isConnected());
}

TEST(BusProbe, doesNotConnectElsewhere)
{
    const TemporaryFolder folder;
    const Listener bus(folder.path("bus"));
    const std::string path = folder.path("bus");
    const std::vector<std::string> addresses{"",
                                             ";;",
                                             "path=" + path,
                                             "unix:",
                                             "unix:path",
                                             "unix:path=",
                                             "unix:tmpdir=" + path,
                                             "unix:path=%00" + path,
                                             "unix:path=" + path + "%",
                                             "unix:path=" + path + "%2",
                                             "unix:path=" + path + "%zz",
                                             "tcp:path=" + path,
                                             "unixexec:path=" + path,
                                             "autolaunch:",
                                             "unix:path=/" + std::string(200, 'x'),
                                             "unix:path=" + folder.path("missing")};
    for (const std::string &address : addresses) {
        EXPECT_FALSE(BusProbe(address).isConnected()) << address;
    }
}

} // namespace
} // namespace tessaly
