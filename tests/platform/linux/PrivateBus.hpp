#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/StartedProgram.hpp"

#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// A bus for one test, without any services but the test's own. While it exists it is
/// the session bus, for this process and those that it starts; otherwise there is none.
///
/// Requires: isInstalled(), and SessionBusPlace in main(). One at a time.
class PrivateBus {
public:
    /// A program that the bus starts when its name is called.
    struct Service {
        std::string name;
        std::string command; ///< words as a service file has them
    };

    explicit PrivateBus(std::vector<Service> services = {});
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// All connections are lost, and the programs end that the bus has started and that have taken
    /// their names. There is no bus until start().
    void stop();
    void start();

    /// It still accepts connections, but answers nothing until resume() or stop().
    void suspend() const;
    void resume() const;

    /// Where the session bus is, or would be.
    [[nodiscard]] static std::string address();

    /// Blocks until the name has an owner; false when the program that should has ended.
    [[nodiscard]] static bool waitForOwner(const std::string &name, StartedProgram &owner);

    /// Whether what it takes is there.
    [[nodiscard]] static bool isInstalled() { return StartedProgram::isInstalled("dbus-daemon"); }

private:
    [[nodiscard]] std::vector<scan::FileDescriptor> startedServices() const;

    TemporaryFolder m_folder;
    std::vector<Service> m_services;
    std::unique_ptr<StartedProgram> m_daemon;
};

/// A place for the session bus of this process where there is none so far: tests neither disturb
/// the user's, nor depend on it. Made before anything asks for the bus, since libdbus remembers
/// where it is.
class SessionBusPlace {
public:
    SessionBusPlace();

private:
    TemporaryFolder m_folder;
};

} // namespace tessaly
