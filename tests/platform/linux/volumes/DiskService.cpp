#include "tests/platform/linux/volumes/DiskService.hpp"

#include "engine/tree/FilePath.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr auto manager = "/usr/lib/systemd/systemd-udevd";
constexpr auto service = "/usr/libexec/udisks2/udisksd";

/// In here it keeps a record of what it has mounted.
constexpr auto recordFolder = "/var/lib";

/// In here it mounts what users ask it to.
constexpr auto mediaFolder = "/media";

/// What a loop device with such an image is taken for. Others may see it as well, so it has a name
/// and a number that nobody else's has.
std::string rulesFor(const std::string &image, DiskService::Hint hint)
{
    const char *isSystem = hint == DiskService::Hint::system ? "1" : "0";
    return R"(SUBSYSTEM=="block", KERNEL=="loop*", ATTR{loop/backing_file}=="*)" + image +
           R"(", ENV{ID_SERIAL}="Stick_)" + image + R"(", ENV{ID_SERIAL_SHORT}=")" + image +
           R"(", ENV{ID_BUS}="usb", ENV{ID_VENDOR}="Test", ENV{ID_MODEL}="Stick", )"
           R"(ENV{ID_DRIVE_FLASH}="1", ENV{UDISKS_SYSTEM}=")" +
           isSystem +
           R"(", ENV{UDISKS_AUTO}="1")"
           "\n";
}

} // namespace

std::optional<std::string> DiskService::missingRequirement()
{
    if (!hasOwnMounts()) {
        return "root, to mount something";
    }
    for (const char *program : {"udevadm", "losetup", "mkfs.ext4"}) {
        if (!StartedProgram::isInstalled(program)) {
            return program;
        }
    }
    if (access(manager, X_OK) != 0 || access(service, X_OK) != 0) {
        return "udisks2 and udev";
    }
    if (access(mediaFolder, X_OK) != 0) {
        return mediaFolder;
    }
    return PrivateBus::isInstalled() ? std::nullopt : std::optional<std::string>("dbus-daemon");
}

DiskService::~DiskService()
{
    run("losetup -n -l -O NAME,BACK-FILE | grep -F " + m_image +
        " | cut -d ' ' -f 1 | xargs -r losetup -d");
    m_service.reset();
    m_manager.reset();
    while (!m_mounts.empty()) {
        m_mounts.pop_back();
    }
}

DiskService::DiskService(Hint hint) : m_image(tree::fileName(m_folder.path()))
{
    m_folder.folder("dev");
    m_folder.folder("bin");
    writeFile(m_folder.path("bin/eject"), "#!/bin/sh\nexec losetup -d \"$1\"\n");
    chmod(m_folder.path("bin/eject").c_str(), S_IRWXU);

    // Links that the manager makes in "/dev" must not get into everybody's.
    const std::string devices = m_folder.path("dev");
    m_mounts.push_back(std::make_unique<ScopedMount>("devices", devices, "tmpfs"));
    run("cp -a /dev/null /dev/zero /dev/full /dev/random /dev/urandom /dev/tty /dev/loop* /dev/vd* "
        "/dev/sd* /dev/nvme* '" +
        devices + "'; ln -s /proc/self/fd '" + devices + "/fd'");
    m_folder.folder("dev/shm"); // folders of tests are in there
    m_mounts.push_back(
        std::make_unique<ScopedMount>("/dev/shm", devices + "/shm", nullptr, MS_BIND));
    m_mounts.push_back(std::make_unique<ScopedMount>(devices, "/dev", nullptr, MS_BIND | MS_REC));
    m_mounts.push_back(std::make_unique<ScopedMount>("state", "/run", "tmpfs"));
    m_mounts.push_back(std::make_unique<ScopedMount>("record", recordFolder, "tmpfs"));
    m_mounts.push_back(std::make_unique<ScopedMount>("media", mediaFolder, "tmpfs"));
    run("mkdir -p /run/udev/rules.d /run/udisks2 /run/lock /run/mount");
    writeFile("/run/udev/rules.d/99-test.rules", rulesFor(m_image, hint));

    m_manager = std::make_unique<StartedProgram>(std::vector<std::string>{manager});
    while (access("/run/udev/control", F_OK) != 0) {
        if (!m_manager->isRunning()) {
            throw std::runtime_error("no device manager: " + m_manager->complaints());
        }
        std::this_thread::yield();
    }
    run("udevadm trigger --subsystem-match=block --action=add; udevadm settle");
    m_service = std::make_unique<StartedProgram>(
        std::vector<std::string>{service},
        std::vector<std::string>{"DBUS_SYSTEM_BUS_ADDRESS=" + PrivateBus::address(),
                                 "PATH=" + m_folder.path("bin") + ':' + std::getenv("PATH")});
    if (!PrivateBus::waitForOwner("org.freedesktop.UDisks2", *m_service)) {
        throw std::runtime_error("no UDisks2: " + m_service->complaints());
    }
}

std::string DiskService::makeStick(const std::string &label) const
{
    // What the device is taken for, it is from when it is added, so that is told once more.
    const StartedProgram shell(
        {"sh", "-c",
         "image=/run/" + m_image + "; truncate -s 16M $image && mkfs.ext4 -q -L '" + label +
             "' $image && device=$(losetup -f --show $image) && udevadm settle && "
             "udevadm trigger --action=add $device && udevadm settle; echo $device >&3"});
    return shell.reportedLine();
}

bool DiskService::hasStick() const
{
    return run("losetup -n -l -O BACK-FILE | grep -q -F " + m_image);
}

bool DiskService::run(const std::string &script)
{
    const StartedProgram shell({"sh", "-c", script + "; echo $? >&3"});
    return shell.reportedLine() == "0";
}

} // namespace tessaly
