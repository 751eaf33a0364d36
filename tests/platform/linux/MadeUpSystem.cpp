#include "tests/platform/linux/MadeUpSystem.hpp"

#include "tests/platform/linux/FilesOnDisk.hpp"

#include <filesystem>
#include <fstream>

namespace tessaly {

MadeUpSystem::MadeUpSystem()
{
    for (const char *folder : {"sys", "sys/dev", "sys/dev/block", "sys/class", "sys/class/block",
                               "sys/block", "dev", "dev/disk", "dev/disk/by-label", "dev/mapper"}) {
        m_folder.folder(folder);
    }
    m_sources.mountInfo = m_folder.path("mountinfo");
    m_sources.fstab = m_folder.path("fstab");
    m_sources.sysfs = m_folder.path("sys");
    m_sources.devices = m_folder.path("dev");
    m_sources.bus = "unix:path=" + m_folder.path("no-bus");
    unmountAll();
}

int MadeUpSystem::mount(const std::string &mountPoint, const std::string &type,
                        const std::string &device, const std::string &source,
                        const std::string &root, const std::string &superOptions)
{
    const int rootId = 20;
    const int id = mountPoint == "/" ? rootId : ++m_lastId;
    std::ofstream(m_sources.mountInfo, std::ios::app)
        << id << ' ' << (id == rootId ? 1 : rootId) << ' ' << device << ' ' << root << ' '
        << mountPoint << " rw,relatime shared:1 - " << type << ' ' << source << ' ' << superOptions
        << '\n';
    return id;
}

void MadeUpSystem::unmountAll()
{
    writeFile(m_sources.mountInfo, "");
}

void MadeUpSystem::addDisk(const std::string &name, const std::string &device, bool isRemovable)
{
    m_folder.folder("sys/block/" + name);
    writeFile(m_folder.path("sys/block/" + name + "/removable"), isRemovable ? "1\n" : "0\n");
    addNumber(name, device, "sys/block/" + name);
}

void MadeUpSystem::addPartition(const std::string &disk, const std::string &name,
                                const std::string &device)
{
    const std::string folder = "sys/block/" + disk + '/' + name;
    m_folder.folder(folder);
    writeFile(m_folder.path(folder + "/partition"), "1\n");
    addNumber(name, device, folder);
}

void MadeUpSystem::addMapped(const std::string &name, const std::string &device,
                             const std::string &below)
{
    addDisk(name, device, false);
    m_folder.folder("sys/block/" + name + "/slaves");
    m_folder.link("sys/block/" + name + "/slaves/" + below,
                  m_folder.path("sys/class/block/" + below));
}

void MadeUpSystem::addLabel(const std::string &label, const std::string &device)
{
    m_folder.link("dev/disk/by-label/" + label, "../../" + device);
}

void MadeUpSystem::writeFstab(const std::string &text)
{
    writeFile(m_sources.fstab, text);
}

void MadeUpSystem::addNumber(const std::string &name, const std::string &device,
                             const std::string &target)
{
    m_folder.file("dev/" + name);
    m_folder.link("sys/dev/block/" + device, m_folder.path(target));
    m_folder.link("sys/class/block/" + name, m_folder.path(target));
}

} // namespace tessaly
