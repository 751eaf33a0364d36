#include "platform/linux/bus/BusAddresses.hpp"

#include "tests/platform/linux/ScopedVariable.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace tessaly {

namespace {

TEST(sessionBusAddress, isTheOneOfTheEnvironment)
{
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/a;unix:path=/b");
    const ScopedVariable folder("XDG_RUNTIME_DIR", "/run/user/1");
    EXPECT_EQ(sessionBusAddress(), "unix:path=/a;unix:path=/b");
}

TEST(sessionBusAddress, liesInTheUsersFolderOtherwise)
{
    const ScopedVariable folder("XDG_RUNTIME_DIR", "/run/user/1");
    {
        const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
        EXPECT_EQ(sessionBusAddress(), "unix:path=/run/user/1/bus");
    }
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "");
    EXPECT_EQ(sessionBusAddress(), "unix:path=/run/user/1/bus");
}

TEST(sessionBusAddress, escapesTheNameOfTheFolder)
{
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const ScopedVariable folder("XDG_RUNTIME_DIR", "/a b,c=d;e%f-g_h.i\xC3\xA9");
    EXPECT_EQ(sessionBusAddress(), "unix:path=/a%20b%2Cc%3Dd%3Be%25f-g_h.i%C3%A9/bus");
}

TEST(sessionBusAddress, isEmptyWhenNothingIsKnown)
{
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const ScopedVariable folder("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(sessionBusAddress(), "");
}

} // namespace

} // namespace tessaly
