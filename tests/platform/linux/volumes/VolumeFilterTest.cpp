#include "platform/linux/volumes/VolumeFilter.hpp"

#include "tests/platform/linux/MadeUpSystem.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {

namespace {

using Paths = std::vector<std::string>;

class VolumeFilterTest : public testing::Test {
protected:
    [[nodiscard]] Paths paths() const
    {
        return pathsIn(*scan::MountTable::read(m_system.sources().mountInfo));
    }

    static Paths pathsIn(const scan::MountTable &table)
    {
        Paths paths;
        for (const scan::Mount &volume : volumesAmong(table)) {
            paths.push_back(volume.mountPoint);
        }
        return paths;
    }

    MadeUpSystem m_system;
};

TEST_F(VolumeFilterTest, takesTheRootFirstWhateverItIs)
{
    m_system.mount("/mnt/usb", "vfat", "8:17", "/dev/sdb1");
    m_system.mount("/", "overlay", "0:60", "overlay");
    EXPECT_EQ(paths(), (Paths{"/", "/mnt/usb"}));

    m_system.unmountAll();
    m_system.mount("/", "tmpfs", "0:1");
    EXPECT_EQ(paths(), Paths{"/"});
}

TEST_F(VolumeFilterTest, takesTheRootEvenIfTheListLacksIt)
{
    EXPECT_EQ(paths(), Paths{"/"});
    EXPECT_EQ(pathsIn(scan::MountTable()), Paths{"/"});
}

TEST_F(VolumeFilterTest, leavesOutKernelMemoryAndDesktop)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/proc", "proc", "0:21");
    m_system.mount("/sys", "sysfs", "0:22");
    m_system.mount("/dev", "devtmpfs", "0:6");
    m_system.mount("/tmp", "tmpfs", "0:23");
    m_system.mount("/sys/fs/cgroup", "cgroup2", "0:24");
    m_system.mount("/run/user/1000/doc", "fuse.portal", "0:25");
    m_system.mount("/run/user/1000/gvfs", "fuse.gvfsd-fuse", "0:26");
    m_system.mount("/sys/fs/fuse/connections", "fusectl", "0:27");
    m_system.mount("/net", "autofs", "0:28");
    EXPECT_EQ(paths(), Paths{"/"});
}

TEST_F(VolumeFilterTest, leavesOutImagesOfPackagesAndContainers)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/snap/core/1", "squashfs", "7:0", "/dev/loop0");
    m_system.mount("/snap/core/2", "fuse.snapfuse", "0:30", "snapfuse");
    m_system.mount("/tmp/.mount_programXYZ", "fuse.program.AppImage", "0:31", "program.AppImage");
    m_system.mount("/var/lib/docker/overlay2/1/merged", "overlay", "0:32", "overlay");
    EXPECT_EQ(paths(), Paths{"/"});
}

TEST_F(VolumeFilterTest, takesDisksSharesAndFuse)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/media/me/stick", "vfat", "8:17", "/dev/sdb1");
    m_system.mount("/media/me/image", "ext4", "7:1", "/dev/loop1");
    m_system.mount("/mnt/nfs", "nfs4", "0:40", "server:/home");
    m_system.mount("/mnt/cifs", "cifs", "0:41", "//server/share/folder", "/folder");
    m_system.mount("/mnt/afp", "afpfs", "0:42", "afp://server/share");
    m_system.mount("/home/me/remote", "fuse.sshfs", "0:43", "me@server:");
    EXPECT_EQ(paths(), (Paths{"/", "/media/me/stick", "/media/me/image", "/mnt/nfs", "/mnt/cifs",
                              "/mnt/afp", "/home/me/remote"}));
}

TEST_F(VolumeFilterTest, leavesOutBindMounts)
{
    m_system.mount("/", "overlay", "0:60", "overlay");
    m_system.mount("/etc/hosts", "ext4", "8:1", "/dev/sda1", "/var/lib/containers/hosts");
    m_system.mount("/b", "xfs", "8:2", "/dev/sda2", "/folder");
    m_system.mount("/mnt/data", "xfs", "8:2", "/dev/sda2");
    EXPECT_EQ(paths(), (Paths{"/", "/mnt/data"}));
}

TEST_F(VolumeFilterTest, takesAFileSystemOnceWhereItsPathIsShortest)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/var/lib/root", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/mnt/long", "xfs", "8:2", "/dev/sda2");
    m_system.mount("/srv/other", "ext4", "8:3", "/dev/sda3");
    m_system.mount("/data", "xfs", "8:2", "/dev/sda2");
    m_system.mount("/date", "xfs", "8:2", "/dev/sda2");
    EXPECT_EQ(paths(), (Paths{"/", "/data", "/srv/other"}));
}

TEST_F(VolumeFilterTest, takesSubvolumesAsTheirFileSystem)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/mnt/pool", "btrfs", "0:50", "/dev/sdb", "/@data",
                   "rw,ssd,subvolid=257,subvol=/@data");
    m_system.mount("/home", "btrfs", "0:50", "/dev/sdb", "/@home",
                   "rw,ssd,subvolid=258,subvol=/@home");
    m_system.mount("/b", "btrfs", "0:50", "/dev/sdb", "/@data/folder",
                   "rw,ssd,subvolid=257,subvol=/@data");
    EXPECT_EQ(paths(), (Paths{"/", "/home"}));
}

TEST_F(VolumeFilterTest, leavesOutWhatCannotBeReached)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    const int below = m_system.mount("/mnt", "ext4", "8:2", "/dev/sda2");
    m_system.mount("/gone//deleted", "ext4", "8:3", "/dev/sda3");
    const std::string rest = " 8:4 / /mnt rw - xfs /dev/sda4 rw\n";
    EXPECT_EQ(paths(), (Paths{"/", "/mnt"}));

    const auto covered =
        scan::MountTable::fromText("20 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                   "21 20 8:2 / /mnt rw - ext4 /dev/sda2 rw\n" +
                                   std::string("22 ") + std::to_string(below) + rest);
    const std::vector<scan::Mount> volumes = volumesAmong(covered);
    ASSERT_EQ(volumes.size(), 2U);
    EXPECT_EQ(volumes[1].source, "/dev/sda4");
}

TEST_F(VolumeFilterTest, takesOddNamesAsBytes)
{
    m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    m_system.mount("/mnt/my\\040disk", "ext4", "8:2", "/dev/sda2");
    m_system.mount("/mnt/line\\012end", "ext4", "8:3", "/dev/sda3");
    m_system.mount("/mnt/back\\134slash", "ext4", "8:4", "/dev/sda4");
    m_system.mount("/mnt/\xff\xfe", "ext4", "8:5", "/dev/sda5");
    EXPECT_EQ(paths(),
              (Paths{"/", "/mnt/my disk", "/mnt/line\nend", "/mnt/back\\slash", "/mnt/\xff\xfe"}));
}

} // namespace

} // namespace tessaly
