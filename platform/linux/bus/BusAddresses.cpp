#include "platform/linux/bus/BusAddresses.hpp"

#include <cstdlib>
#include <string_view>

namespace tessaly {

namespace {

std::string variable(const char *name)
{
    const char *value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

/// As a value in an address: all bytes but the "optionally escaped" ones are written as "%XX".
std::string escaped(std::string_view value)
{
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_/.\\*";
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned radix = 16;
    std::string answer;
    for (const char letter : value) {
        if (plain.find(letter) != std::string_view::npos) {
            answer += letter;
        } else {
            const auto byte = static_cast<unsigned char>(letter);
            answer += '%';
            answer += digits[byte / radix];
            answer += digits[byte % radix];
        }
    }
    return answer;
}

} // namespace

std::string sessionBusAddress()
{
    if (std::string address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const std::string folder = variable("XDG_RUNTIME_DIR");
    return folder.empty() ? folder : "unix:path=" + escaped(folder + "/bus");
}

std::string systemBusAddress()
{
    const std::string address = variable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

} // namespace tessaly
