#pragma once

#include "tests/platform/linux/StartedProgram.hpp"

#include <string>

#include <unistd.h>

namespace tessaly {

/// An X display for a test alone, which nobody sees.
///
/// Requires: isInstalled().
class VirtualDisplay {
public:
    /// Its screen is as many pixels wide and high, and deep, as this says.
    /// It is not reset when its last client disconnects.
    explicit VirtualDisplay(const std::string &screen = "640x480x24")
        : m_server({"Xvfb", ownNumber(), "-displayfd", "3", "-screen", "0", screen, "-nolisten",
                    "tcp", "-noreset"})
    {
    }

    /// What DISPLAY has to be for programs to show their windows there.
    [[nodiscard]] const std::string &name() const { return m_name; }

    /// Whether what it takes is there.
    [[nodiscard]] static bool isInstalled() { return StartedProgram::isInstalled("Xvfb"); }

private:
    /// A number that no other test has. Servers that look for a free one take that of a server that
    /// is about to end, which then takes away the new one's socket.
    static std::string ownNumber() { return ':' + std::to_string(1000 + getpid() % 50'000); }

    StartedProgram m_server;
    std::string m_name = ':' + m_server.reportedLine();
};

} // namespace tessaly
