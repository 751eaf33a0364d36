#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <chrono>
#include <string>
#include <string_view>

namespace tessaly {

/// Finds out whether a bus serves connections at a D-Bus address, without blocking.
///
/// libdbus blocks in connect() when the queue of the socket is full, and in the handshake when the
/// bus does not answer. A bus that was stopped does both for as long as it is stopped. This
/// connects without blocking and begins the handshake; once there is an answer, the bus does serve.
///
/// Of a list of addresses the first is used that accepts the connection. Only local sockets are
/// tried ("unix:path=…", "unix:abstract=…"): others need the network or start programs, which may
/// block.
///
/// Threads: one at a time.
class BusProbe {
public:
    /// Connects to the first address that accepts, and begins the handshake there.
    explicit BusProbe(std::string_view addresses);

    [[nodiscard]] bool isConnected() const noexcept { return m_socket.isOpen(); }

    /// Whether one of the addresses tried has a listener whose queue of connections is full.
    [[nodiscard]] bool isQueueFull() const noexcept { return m_isQueueFull; }

    /// Blocks until there is an answer, for `timeout` at most. False without one, and when not
    /// connected. A bus that closes the connection has answered.
    [[nodiscard]] bool waitForAnswer(std::chrono::milliseconds timeout) const;

    /// The address that accepted the connection; empty without one.
    [[nodiscard]] const std::string &address() const noexcept { return m_address; }

    /// Becomes readable when the bus has answered or is gone; −1 when it is not connected.
    [[nodiscard]] int descriptor() const noexcept { return m_socket.number(); }

private:
    scan::FileDescriptor m_socket;
    bool m_isQueueFull = false;
    std::string m_address;
};

} // namespace tessaly
