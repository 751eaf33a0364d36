#pragma once

#include <string>

namespace tessaly {

/// The D-Bus address of the system bus: the one in DBUS_SYSTEM_BUS_ADDRESS, else where it always
/// is. Whether there is a bus is another question.
///
/// Threads: any, as long as none changes the environment.
[[nodiscard]] std::string systemBusAddress();

} // namespace tessaly
