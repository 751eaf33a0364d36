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

struct MadeMount {
    const char *path;
    const char *type;
    const char *device;
    const char *source = "none";
    const char *root = "/";
    const char *options = "rw";
};

struct FilterCase {
    const char *rule;
    std::vector<MadeMount> mounts;
    Paths volumes;
};

const std::vector<FilterCase> filterCases = {
    {"kernel file systems, memory and the desktop are left out",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/proc", "proc", "0:21"},
      {"/sys", "sysfs", "0:22"},
      {"/dev", "devtmpfs", "0:6"},
      {"/tmp", "tmpfs", "0:23"},
      {"/sys/fs/cgroup", "cgroup2", "0:24"},
      {"/run/user/1000/doc", "fuse.portal", "0:25"},
      {"/run/user/1000/gvfs", "fuse.gvfsd-fuse", "0:26"},
      {"/sys/fs/fuse/connections", "fusectl", "0:27"},
      {"/net", "autofs", "0:28"}},
     {"/"}},
    {"images of packages and containers are left out",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/snap/core/1", "squashfs", "7:0", "/dev/loop0"},
      {"/snap/core/2", "fuse.snapfuse", "0:30", "snapfuse"},
      {"/tmp/.mount_programXYZ", "fuse.program.AppImage", "0:31", "program.AppImage"},
      {"/var/lib/docker/overlay2/1/merged", "overlay", "0:32", "overlay"}},
     {"/"}},
    {"disks, shares and FUSE are listed",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/media/me/stick", "vfat", "8:17", "/dev/sdb1"},
      {"/media/me/image", "ext4", "7:1", "/dev/loop1"},
      {"/mnt/nfs", "nfs4", "0:40", "server:/home"},
      {"/mnt/cifs", "cifs", "0:41", "//server/share/folder", "/folder"},
      {"/mnt/afp", "afpfs", "0:42", "afp://server/share"},
      {"/home/me/remote", "fuse.sshfs", "0:43", "me@server:"}},
     {"/", "/media/me/stick", "/media/me/image", "/mnt/nfs", "/mnt/cifs", "/mnt/afp",
      "/home/me/remote"}},
    {"bind mounts are left out",
     {{"/", "overlay", "0:60", "overlay"},
      {"/etc/hosts", "ext4", "8:1", "/dev/sda1", "/var/lib/containers/hosts"},
      {"/b", "xfs", "8:2", "/dev/sda2", "/folder"},
      {"/mnt/data", "xfs", "8:2", "/dev/sda2"}},
     {"/", "/mnt/data"}},
    {"a file system is listed once, where its path is shortest",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/var/lib/root", "ext4", "8:1", "/dev/sda1"},
      {"/mnt/long", "xfs", "8:2", "/dev/sda2"},
      {"/srv/other", "ext4", "8:3", "/dev/sda3"},
      {"/data", "xfs", "8:2", "/dev/sda2"},
      {"/date", "xfs", "8:2", "/dev/sda2"}},
     {"/", "/data", "/srv/other"}},
    {"subvolumes are one file system",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/mnt/pool", "btrfs", "0:50", "/dev/sdb", "/@data", "rw,ssd,subvolid=257,subvol=/@data"},
      {"/home", "btrfs", "0:50", "/dev/sdb", "/@home", "rw,ssd,subvolid=258,subvol=/@home"},
      {"/b", "btrfs", "0:50", "/dev/sdb", "/@data/folder", "rw,ssd,subvolid=257,subvol=/@data"}},
     {"/", "/home"}},
    {"names may have any bytes",
     {{"/", "ext4", "8:1", "/dev/sda1"},
      {"/mnt/my\\040disk", "ext4", "8:2", "/dev/sda2"},
      {"/mnt/line\\012end", "ext4", "8:3", "/dev/sda3"},
      {"/mnt/back\\134slash", "ext4", "8:4", "/dev/sda4"},
      {"/mnt/\xff\xfe", "ext4", "8:5", "/dev/sda5"}},
     {"/", "/mnt/my disk", "/mnt/line\nend", "/mnt/back\\slash", "/mnt/\xff\xfe"}},
};

TEST_F(VolumeFilterTest, listsTheVolumesAmongTheMounts)
{
    for (const FilterCase &test : filterCases) {
        m_system.unmountAll();
        for (const MadeMount &mount : test.mounts) {
            m_system.mount(mount.path, mount.type, mount.device, mount.source, mount.root,
                           mount.options);
        }
        EXPECT_EQ(paths(), test.volumes) << test.rule;
    }
}

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

} // namespace

} // namespace tessaly
