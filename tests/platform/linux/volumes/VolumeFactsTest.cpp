#include "platform/linux/volumes/VolumeFacts.hpp"

#include "platform/linux/volumes/UDisksVolumes.hpp"
#include "tests/platform/linux/MadeUpSystem.hpp"
#include "tests/platform/linux/volumes/UDisksObjects.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tessaly {

namespace {

VolumeInformation information(bool isRemovable, bool isUnmountable, std::string typeName)
{
    VolumeInformation information;
    information.isRemovable = isRemovable;
    information.isUnmountable = isUnmountable;
    information.typeName = std::move(typeName);
    return information;
}

/// Two disks, one of which can be taken away, and shares.
class VolumeFactsTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_system.addDisk("sda", "8:0", false);
        m_system.addPartition("sda", "sda1", "8:1");
        m_system.addPartition("sda", "sda2", "8:2");
        m_system.addDisk("sdb", "8:16", true);
        m_system.addPartition("sdb", "sdb1", "8:17");
        m_system.mount("/", "ext4", "8:1", "/dev/sda1");
        m_system.mount("/data", "ext4", "8:2", "/dev/sda2");
        m_system.mount("/media/my\\040stick", "vfat", "8:17", "/dev/sdb1");
        m_system.mount("/mnt/mac", "hfsplus", "8:18", "/dev/sdb2");
        m_system.mount("/proc", "proc", "0:20");
        m_system.mount("/home/me/r", "fuse.sshfs", "0:41", "me@server:", "/", "rw,user_id=1000");
        m_system.sources().user = 1000;
    }

    MadeUpSystem m_system;
};

TEST_F(VolumeFactsTest, comeFromTheKernelAndFstabWithoutUDisks)
{
    m_system.writeFstab("/dev/sda2 /data ext4 user 0 0\n");
    const VolumeFacts facts(m_system.sources());

    EXPECT_EQ(facts.informationAbout("/media/my stick", nullptr),
              information(true, false, "msdos"));
    EXPECT_EQ(facts.informationAbout("/data", nullptr), information(false, true, "ext4"));
    EXPECT_EQ(facts.informationAbout("/home/me/r", nullptr),
              information(false, true, "fuse.sshfs"));
    EXPECT_EQ(facts.informationAbout("/mnt/mac", nullptr), information(false, false, "hfs"));
}

TEST_F(VolumeFactsTest, letTheUserUnmountWhatUDisksHasMountedForHim)
{
    UDisksObjects objects;
    m_system.sources().userName = "me";
    for (const std::string path : {"/media/me/disk", "/run/media/me/disk", "/media/you/disk",
                                   "/media/me/folder/disk", "/media/disk"}) {
        m_system.mount(path, "ext4", "8:3", "/dev/sda3");
        objects.addDevice({.name = "sda3", .mountPoints = {path}, .isSystem = true});
        const UDisksVolumes udisks(objects.objects());
        const bool isHis = path == "/media/me/disk" || path == "/run/media/me/disk";
        const VolumeFacts facts(m_system.sources());
        EXPECT_EQ(facts.informationAbout(path, &udisks).isUnmountable, isHis) << path;
        EXPECT_FALSE(facts.informationAbout(path, nullptr).isUnmountable) << path;
        m_system.unmountAll();
        m_system.mount("/", "ext4", "8:1", "/dev/sda1");
    }
}

TEST_F(VolumeFactsTest, knowAllMountsOfADeviceInTheirOrder)
{
    const int first = m_system.mount("/b", "ext4", "8:3", "/dev/sda3");
    m_system.mount("/c", "ext4", "8:4", "/dev/sda4");
    const int last = m_system.mount("/a", "btrfs", "0:70", "/dev/sda3", "/folder");
    const VolumeFacts facts(m_system.sources());
    const auto mounts = facts.mountsOfDevice(*facts.volumeOf("/b"));
    ASSERT_EQ(mounts.size(), 2U);
    EXPECT_EQ(mounts[0].id, first);
    EXPECT_EQ(mounts[1].id, last);
    EXPECT_TRUE(facts.mountsOfDevice(*facts.volumeOf("/home/me/r")).empty());
}

TEST_F(VolumeFactsTest, comeFromUDisksWhereItKnowsTheVolume)
{
    UDisksObjects objects;
    objects.addDrive({.name = "Disk", .isRemovable = true});
    objects.addDevice({.name = "sda2", .mountPoints = {"/data"}, .drive = "Disk"});
    objects.addDevice({.name = "sdb1", .mountPoints = {"/media/my stick"}, .isSystem = true});
    const UDisksVolumes udisks(objects.objects());
    const VolumeFacts facts(m_system.sources());

    EXPECT_EQ(facts.informationAbout("/data", &udisks), information(true, true, "ext4"));
    EXPECT_EQ(facts.informationAbout("/media/my stick", &udisks),
              information(false, false, "msdos"));
    EXPECT_EQ(facts.informationAbout("/home/me/r", &udisks),
              information(false, true, "fuse.sshfs"));
}

TEST_F(VolumeFactsTest, leaveTheRootWhereItIs)
{
    m_system.writeFstab("/dev/sda1 / ext4 user 0 0\n");
    UDisksObjects objects;
    objects.addDrive({.name = "Disk", .isRemovable = true, .isEjectable = true});
    objects.addDevice({.name = "sda1", .mountPoints = {"/"}, .drive = "Disk"});
    const UDisksVolumes udisks(objects.objects());
    const VolumeFacts facts(m_system.sources());

    EXPECT_EQ(facts.informationAbout("/", &udisks), information(false, false, "ext4"));
}

TEST_F(VolumeFactsTest, areThoseOfTheVolumeThatHoldsAFolder)
{
    const VolumeFacts facts(m_system.sources());

    EXPECT_EQ(facts.informationAbout("/media/my stick/child", nullptr),
              information(true, false, "msdos"));
    EXPECT_EQ(facts.volumeOf("/media/my stick/child")->mountPoint, "/media/my stick");
    for (const char *path : {"/Volumes/missing", "/proc", "/etc", "/media/my stickers", ""}) {
        EXPECT_EQ(facts.informationAbout(path, nullptr), VolumeInformation()) << path;
        EXPECT_EQ(facts.volumeOf(path), nullptr) << path;
    }
}

} // namespace

} // namespace tessaly
