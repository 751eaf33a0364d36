#pragma once

#include <string>

namespace tessaly {

// The D-Bus addresses of the two buses. Whether a bus is there is another question.
//
// Threads: any, as long as none changes the environment.

/// That of the session bus: the one in DBUS_SESSION_BUS_ADDRESS, else the one of the user's bus in
/// XDG_RUNTIME_DIR. Empty when the environment has neither.
[[nodiscard]] std::string sessionBusAddress();

/// That of the system bus: the one in DBUS_SYSTEM_BUS_ADDRESS, else the standard one.
[[nodiscard]] std::string systemBusAddress();

} // namespace tessaly
