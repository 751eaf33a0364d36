#pragma once

#include <string>

namespace tessaly {

/// The D-Bus address of the session bus: the one in DBUS_SESSION_BUS_ADDRESS, else where a bus of
/// the user's is in XDG_RUNTIME_DIR. Empty when the environment says neither. Whether there is a
/// bus is another question.
///
/// Threads: any, as long as none changes the environment.
[[nodiscard]] std::string sessionBusAddress();

} // namespace tessaly
