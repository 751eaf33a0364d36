#include "tests/platform/linux/PrivateBus.hpp"

#include "tests/platform/linux/BusConnection.hpp"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QString>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr auto addressVariable = "DBUS_SESSION_BUS_ADDRESS";

void writeFile(const std::string &path, const std::string &text)
{
    std::ofstream(path) << text;
}

} // namespace

PrivateBus::PrivateBus(std::vector<Service> services) : m_services(std::move(services))
{
    m_folder.folder("services");
    for (const Service &service : m_services) {
        writeFile(m_folder.path("services/" + service.name + ".service"),
                  "[D-BUS Service]\nName=" + service.name + "\nExec=" + service.command + '\n');
    }
    writeFile(m_folder.path("bus.conf"),
              "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
              " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
              "<busconfig>\n"
              "  <type>session</type>\n"
              "  <listen>" +
                  address() +
                  "</listen>\n"
                  "  <auth>EXTERNAL</auth>\n"
                  "  <servicedir>" +
                  m_folder.path("services") +
                  "</servicedir>\n"
                  "  <policy context=\"default\">\n"
                  "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
                  "    <allow eavesdrop=\"true\"/>\n"
                  "    <allow own=\"*\"/>\n"
                  "  </policy>\n"
                  "</busconfig>\n");
    start();
}

PrivateBus::~PrivateBus()
{
    stop();
}

void PrivateBus::suspend() const
{
    m_daemon->sendSignal(SIGSTOP);
}

void PrivateBus::resume() const
{
    m_daemon->sendSignal(SIGCONT);
}

void PrivateBus::stop()
{
    if (m_daemon != nullptr && m_daemon->isRunning()) {
        resume();
    }
    const std::vector<scan::FileDescriptor> services = startedServices();
    m_daemon.reset();
    for (const scan::FileDescriptor &service : services) {
        syscall(SYS_pidfd_send_signal, service.number(), SIGTERM, nullptr, 0);
        pollfd end = {service.number(), POLLIN, 0};
        poll(&end, 1, -1);
    }
}

std::vector<scan::FileDescriptor> PrivateBus::startedServices() const
{
    std::vector<scan::FileDescriptor> processes;
    if (m_services.empty() || m_daemon == nullptr || !m_daemon->isRunning()) {
        return processes;
    }
    BusConnection bus(address());
    for (const Service &service : m_services) {
        const QDBusReply<uint> process =
            bus->interface()->servicePid(QString::fromStdString(service.name));
        const auto number = static_cast<pid_t>(process.isValid() ? process.value() : 0);
        if (number > 0 && number != getpid()) {
            processes.emplace_back(static_cast<int>(syscall(SYS_pidfd_open, number, 0)));
        }
    }
    return processes;
}

void PrivateBus::start()
{
    m_daemon = std::make_unique<StartedProgram>(
        std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile", "--print-address=3",
                                 "--config-file=" + m_folder.path("bus.conf")});
    (void)m_daemon->reportedLine();
}

std::string PrivateBus::address()
{
    const char *address = std::getenv(addressVariable);
    return address == nullptr ? std::string() : std::string(address);
}

bool PrivateBus::waitForOwner(const std::string &name, StartedProgram &owner)
{
    BusConnection bus(address());
    while (!bus->interface()->isServiceRegistered(QString::fromStdString(name)).value()) {
        if (!owner.isRunning()) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

SessionBusPlace::SessionBusPlace()
{
    setenv(addressVariable, ("unix:path=" + m_folder.path("bus")).c_str(), 1);
}

} // namespace tessaly
