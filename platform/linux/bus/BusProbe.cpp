#include "platform/linux/bus/BusProbe.hpp"

#include "platform/FileUrl.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iterator>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace tessaly {

namespace {

using namespace std::string_view_literals;

constexpr auto transport = "unix:"sv;

/// "AUTH" without a mechanism: the bus answers with the SASL mechanisms that it offers. The NUL
/// byte before it is required at the start of a connection.
constexpr auto question = "\0AUTH\r\n"sv;

/// Takes the first part off a list.
std::string_view takePart(std::string_view &list, char separator)
{
    const std::string_view part = list.substr(0, list.find(separator));
    list.remove_prefix(std::min(list.size(), part.size() + 1));
    return part;
}

/// The socket's name as sockaddr_un has it: that of an abstract socket begins with a NUL. Empty
/// when the address names no socket.
std::string socketName(std::string_view address)
{
    if (!address.starts_with(transport)) {
        return {};
    }
    address.remove_prefix(transport.size());
    while (!address.empty()) {
        std::string_view value = takePart(address, ',');
        const std::string_view key = takePart(value, '=');
        if (key == "path" || key == "abstract") {
            const auto name = percentDecoded(value);
            if (!name || name->empty() || name->front() == '\0') {
                return {};
            }
            return key == "path" ? *name : '\0' + *name;
        }
    }
    return {};
}

/// A connection to the socket; none when that would block or is refused. `isQueueFull` becomes true
/// when the listener's queue was full.
scan::FileDescriptor connectionTo(const std::string &name, bool &isQueueFull)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.empty() || name.size() >= sizeof address.sun_path) {
        return {};
    }
    std::copy(name.begin(), name.end(), std::begin(address.sun_path));
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    scan::FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!connection.isOpen()) {
        return {};
    }
    if (connect(connection.number(), reinterpret_cast<const sockaddr *>(&address), size) != 0) {
        isQueueFull = isQueueFull || errno == EAGAIN;
        return {};
    }
    if (send(connection.number(), question.data(), question.size(), MSG_NOSIGNAL) < 0) {
        return {};
    }
    return connection;
}

} // namespace

BusProbe::BusProbe(std::string_view addresses)
{
    while (!addresses.empty() && !isConnected()) {
        const std::string_view address = takePart(addresses, ';');
        m_socket = connectionTo(socketName(address), m_isQueueFull);
        if (isConnected()) {
            m_address = address;
        }
    }
}

bool BusProbe::waitForAnswer(std::chrono::milliseconds timeout) const
{
    if (!isConnected()) {
        return false;
    }
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    pollfd answer = {m_socket.number(), POLLIN, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        const int count = poll(&answer, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        if (count >= 0 || errno != EINTR) {
            return count > 0;
        }
    }
}

} // namespace tessaly
