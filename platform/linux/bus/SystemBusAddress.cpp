#include "platform/linux/bus/SystemBusAddress.hpp"

#include <cstdlib>

namespace tessaly {

std::string systemBusAddress()
{
    const char *address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return address != nullptr && *address != '\0' ? address
                                                  : "unix:path=/run/dbus/system_bus_socket";
}

} // namespace tessaly
