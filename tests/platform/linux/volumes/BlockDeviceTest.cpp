#include "platform/linux/volumes/BlockDevice.hpp"

#include "tests/platform/linux/MadeUpSystem.hpp"

#include <gtest/gtest.h>

#include <sys/sysmacros.h>

namespace tessaly {

namespace {

scan::Mount mountOf(unsigned major, unsigned minor, const std::string &source = "none")
{
    scan::Mount mount;
    mount.device = makedev(major, minor);
    mount.source = source;
    return mount;
}

TEST(BlockDevice, isRemovableWhereTheDiskIs)
{
    MadeUpSystem system;
    system.addDisk("sda", "8:0", false);
    system.addPartition("sda", "sda1", "8:1");
    system.addDisk("sdb", "8:16", true);
    system.addPartition("sdb", "sdb1", "8:17");

    const auto fixed = BlockDevice::below(mountOf(8, 1), system.sources());
    ASSERT_TRUE(fixed);
    EXPECT_EQ(fixed->name(), "sda1");
    EXPECT_FALSE(fixed->isRemovable());
    const auto part = BlockDevice::below(mountOf(8, 17), system.sources());
    ASSERT_TRUE(part);
    EXPECT_EQ(part->name(), "sdb1");
    EXPECT_TRUE(part->isRemovable());
    const auto whole = BlockDevice::below(mountOf(8, 16), system.sources());
    ASSERT_TRUE(whole);
    EXPECT_TRUE(whole->isRemovable());
}

TEST(BlockDevice, isRemovableWhereTheDeviceBelowIs)
{
    MadeUpSystem system;
    system.addDisk("sdb", "8:16", true);
    system.addPartition("sdb", "sdb1", "8:17");
    system.addMapped("dm-0", "253:0", "sdb1");
    system.addMapped("dm-1", "253:1", "dm-0");
    system.addDisk("sda", "8:0", false);
    system.addMapped("dm-2", "253:2", "sda");

    EXPECT_TRUE(BlockDevice::below(mountOf(253, 1), system.sources())->isRemovable());
    EXPECT_FALSE(BlockDevice::below(mountOf(253, 2), system.sources())->isRemovable());
}

TEST(BlockDevice, comesToAnEndInACircle)
{
    MadeUpSystem system;
    system.addMapped("dm-0", "253:0", "dm-0");
    EXPECT_FALSE(BlockDevice::below(mountOf(253, 0), system.sources())->isRemovable());
}

TEST(BlockDevice, isFoundByItsSourceWhereTheNumberIsNotItsOwn)
{
    MadeUpSystem system;
    system.addDisk("sdb", "8:16", true);
    system.addMapped("dm-0", "253:0", "sdb");
    system.folder().link("dev/mapper/pool", "../dm-0");

    EXPECT_EQ(BlockDevice::below(mountOf(0, 50, "/dev/sdb"), system.sources())->name(), "sdb");
    const auto mapped = BlockDevice::below(mountOf(0, 51, "/dev/mapper/pool"), system.sources());
    ASSERT_TRUE(mapped);
    EXPECT_EQ(mapped->name(), "dm-0");
    EXPECT_TRUE(mapped->isRemovable());
}

TEST(BlockDevice, isMissingForFileSystemsWithoutOne)
{
    const MadeUpSystem system;
    EXPECT_FALSE(BlockDevice::below(mountOf(0, 50, "server:/home"), system.sources()));
    EXPECT_FALSE(BlockDevice::below(mountOf(0, 50, "/dev/missing"), system.sources()));
    EXPECT_FALSE(BlockDevice::below(mountOf(8, 1), system.sources()));
}

} // namespace

} // namespace tessaly
