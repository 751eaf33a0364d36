#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <chrono>
#include <string>
#include <string_view>

namespace tessaly {

/// Asks whether somebody takes connections at a D-Bus address, without ever waiting for it.
///
/// A D-Bus library that connects waits for a place in the queue of the bus. One that has stopped
/// keeps its places for ever, and takes no connection from its queue. Once it has answered here it
/// does take them.
///
/// Of a list of addresses the first one counts at which there is a place. Only sockets of this
/// machine do ("unix:path=…", "unix:abstract=…"): looking for others means to wait for the network
/// or to start programs.
///
/// Threads: one at a time.
class BusProbe {
public:
    /// Connects and sends a question, if there is somewhere to connect to.
    explicit BusProbe(std::string_view addresses);

    [[nodiscard]] bool isConnected() const noexcept { return m_socket.isOpen(); }

    /// Whether one of the addresses tried has a listener whose queue of connections is full.
    [[nodiscard]] bool isQueueFull() const noexcept { return m_isQueueFull; }

    /// Waits for the answer, at most for `timeout`. False without one, and when not connected. A
    /// bus that closes the connection has answered.
    [[nodiscard]] bool waitForAnswer(std::chrono::milliseconds timeout) const;

    /// The one address to which it is connected; empty when it is not.
    [[nodiscard]] const std::string &address() const noexcept { return m_address; }

    /// Becomes readable when the bus has answered or is gone; −1 when it is not connected.
    [[nodiscard]] int descriptor() const noexcept { return m_socket.number(); }

private:
    scan::FileDescriptor m_socket;
    bool m_isQueueFull = false;
    std::string m_address;
};

} // namespace tessaly
