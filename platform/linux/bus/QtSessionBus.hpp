#pragma once

#include <chrono>
#include <cstdint>

namespace tessaly {

/// Keeps the session bus from Qt when Qt would block on it.
///
/// When the first widget gets an accessible name, Qt's accessibility bridge connects to the session
/// bus, asks there for the accessibility bus and connects to that, all on the main thread. A bus
/// that accepts connections and does not answer blocks it without a timeout; a service on one of
/// them that does not answer, for 25 seconds each time.
///
/// So the bus is asked before Qt uses it. When it does not answer in time, Qt's session bus counts
/// as missing until the process ends: there is no accessibility, and no menu in the desktop's menu
/// bar. Connections by BusLink are not affected, nor are the programs that this one starts.
///
/// Errors: go to the log "tessaly.bus".
class QtSessionBus {
public:
    enum class State : std::uint8_t { answers, missing, silent };

    static constexpr std::chrono::milliseconds usualTimeout = std::chrono::seconds(2);
    /// Longer, since the service may just be starting after the login, and screen readers need it.
    static constexpr std::chrono::milliseconds usualAccessibilityTimeout = std::chrono::seconds(5);

    /// Asks the session bus.
    ///
    /// Requires: no QCoreApplication yet, since platform themes may use the bus, and no other
    ///           thread: the environment is changed for a moment.
    explicit QtSessionBus(std::chrono::milliseconds timeout = usualTimeout);

    [[nodiscard]] State state() const noexcept { return m_state; }

    /// Asks the services of the accessibility bus, and has Qt connect to it when they answer.
    ///
    /// Requires: a QGuiApplication, and that nothing has used QDBusConnection::sessionBus() so far.
    void connectAccessibility(std::chrono::milliseconds timeout = usualAccessibilityTimeout) const;

private:
    State m_state;
};

} // namespace tessaly
