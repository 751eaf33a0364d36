#include "platform/linux/bus/BusAddresses.hpp"

#include <QByteArray>

#include <cstdlib>

namespace tessaly {

namespace {

std::string variable(const char *name)
{
    const char *value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

std::string sessionBusAddress()
{
    if (std::string address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const std::string folder = variable("XDG_RUNTIME_DIR");
    if (folder.empty()) {
        return {};
    }
    // An address takes a few bytes as they are; all others, such as blanks and commas, as "%XX".
    const QByteArray path = QByteArray::fromStdString(folder + "/bus");
    return "unix:path=" + path.toPercentEncoding("/\\*", "~").toStdString();
}

std::string systemBusAddress()
{
    const std::string address = variable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

} // namespace tessaly
