#include "engine/scan/KernelFileSystem.hpp"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace tessaly::scan {

namespace {

// Those that <linux/magic.h> does not name.
constexpr std::uint32_t configfsMagic = 0x62656570;
constexpr std::uint32_t fusectlMagic = 0x65735543;
constexpr std::uint32_t mqueueMagic = 0x19800202;
constexpr std::uint32_t rpcPipefsMagic = 0x67596969;

// Not tmpfs, ramfs and the like: files there do take space. By the number and not by the type's
// name, since fstatfs() needs no list of mounts and no path.
constexpr std::array<std::uint32_t, 19> kernelMagics = {
    PROC_SUPER_MAGIC, SYSFS_MAGIC,    DEVPTS_SUPER_MAGIC, CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC,
    DEBUGFS_MAGIC,    TRACEFS_MAGIC,  SECURITYFS_MAGIC,   SELINUX_MAGIC,      BPF_FS_MAGIC,
    PSTOREFS_MAGIC,   BINFMTFS_MAGIC, EFIVARFS_MAGIC,     NSFS_MAGIC,         HUGETLBFS_MAGIC,
    configfsMagic,    fusectlMagic,   mqueueMagic,        rpcPipefsMagic,
};

} // namespace

FileSystemKind fileSystemKind(int descriptor) noexcept
{
    struct statfs facts = {};
    if (fstatfs(descriptor, &facts) != 0) {
        return FileSystemKind::storage;
    }
    const auto magic = static_cast<std::uint32_t>(facts.f_type);
    if (magic == AUTOFS_SUPER_MAGIC) {
        return FileSystemKind::automount;
    }
    const bool isKernel =
        std::find(kernelMagics.begin(), kernelMagics.end(), magic) != kernelMagics.end();
    return isKernel ? FileSystemKind::kernel : FileSystemKind::storage;
}

} // namespace tessaly::scan
