#include "platform/linux/volumes/UDisksVolumes.hpp"

#include "tests/platform/linux/volumes/UDisksObjects.hpp"

#include <gtest/gtest.h>

namespace tessaly {

namespace {

TEST(UDisksVolumes, areFoundByMountPointOrElseByNumber)
{
    UDisksObjects objects;
    objects.addDevice({.name = "sda1", .number = 1, .label = "one", .mountPoints = {"/a b", "/c"}});
    objects.addDevice({.name = "sda2", .number = 2, .label = "two"});
    const UDisksVolumes volumes(objects.objects());

    ASSERT_NE(volumes.find("/c", 2), nullptr);
    EXPECT_EQ(volumes.find("/c", 2)->label, "one");
    EXPECT_EQ(volumes.find("/a b", 0)->label, "one");
    ASSERT_NE(volumes.find("/d", 2), nullptr);
    EXPECT_EQ(volumes.find("/d", 2)->label, "two");
    EXPECT_EQ(volumes.find("/d", 0), nullptr);
    EXPECT_EQ(volumes.find("/d", 3), nullptr);
    EXPECT_EQ(UDisksVolumes().find("/c", 1), nullptr);
}

TEST(UDisksVolumes, keepMountPointsAsBytes)
{
    UDisksObjects objects;
    objects.addDevice({.name = "sda1", .mountPoints = {"/\xff\n"}});
    const UDisksVolumes volumes(objects.objects());
    EXPECT_NE(volumes.find("/\xff\n", 0), nullptr);
}

TEST(UDisksVolumes, areWhatTheirDrivesAre)
{
    UDisksObjects objects;
    objects.addDrive({.name = "Stick", .isRemovable = true, .isEjectable = true});
    objects.addDrive({.name = "Usb_Disk", .isRemovable = true});
    objects.addDrive({.name = "Optical", .isEjectable = true});
    objects.addDrive({.name = "Internal"});
    objects.addDevice({.name = "stick", .mountPoints = {"/stick"}, .drive = "Stick"});
    objects.addDevice({.name = "disk", .mountPoints = {"/disk"}, .drive = "Usb_Disk"});
    objects.addDevice({.name = "optical", .mountPoints = {"/optical"}, .drive = "Optical"});
    objects.addDevice(
        {.name = "internal", .mountPoints = {"/internal"}, .isSystem = true, .drive = "Internal"});
    objects.addDevice({.name = "loop", .mountPoints = {"/loop"}});
    const UDisksVolumes volumes(objects.objects());

    EXPECT_TRUE(volumes.find("/stick", 0)->isRemovable);
    EXPECT_TRUE(volumes.find("/stick", 0)->isUnmountable);
    EXPECT_EQ(volumes.find("/stick", 0)->removableDrive, UDisksObjects::drivePath("Stick"));
    EXPECT_TRUE(volumes.find("/disk", 0)->isRemovable);
    EXPECT_EQ(volumes.find("/disk", 0)->removableDrive, UDisksObjects::drivePath("Usb_Disk"));
    EXPECT_TRUE(volumes.find("/optical", 0)->isRemovable);
    EXPECT_FALSE(volumes.find("/internal", 0)->isRemovable);
    EXPECT_FALSE(volumes.find("/internal", 0)->isUnmountable);
    EXPECT_TRUE(volumes.find("/internal", 0)->removableDrive.isEmpty());
    EXPECT_FALSE(volumes.find("/loop", 0)->isRemovable);
    EXPECT_TRUE(volumes.find("/loop", 0)->isUnmountable);
}

TEST(UDisksVolumes, areWhatTheDriveIsThatTheyAreEncryptedOn)
{
    UDisksObjects objects;
    objects.addDrive({.name = "Stick", .isRemovable = true, .isEjectable = true});
    objects.addEncryptedDevice("sdb1", "Stick");
    objects.addDevice({.name = "dm_0", .mountPoints = {"/secret"}, .encryptedIn = "sdb1"});
    const UDisksVolumes volumes(objects.objects());

    EXPECT_TRUE(volumes.find("/secret", 0)->isRemovable);
    EXPECT_EQ(volumes.find("/secret", 0)->encrypted, UDisksObjects::devicePath("sdb1"));
    EXPECT_EQ(volumes.find("/secret", 0)->removableDrive, UDisksObjects::drivePath("Stick"));
}

TEST(UDisksVolumes, takeObjectsThatLackEverything)
{
    BusObjects objects;
    const QDBusObjectPath path(UDisksObjects::devicePath("sda1"));
    objects[path][QStringLiteral("org.freedesktop.UDisks2.Block")] = {
        {QStringLiteral("Drive"),
         QVariant::fromValue(QDBusObjectPath(QStringLiteral("/missing")))}};
    EXPECT_EQ(UDisksVolumes(objects), UDisksVolumes()); // no file system

    objects[path][QStringLiteral("org.freedesktop.UDisks2.Filesystem")] = {
        {QStringLiteral("MountPoints"), 5}};
    const UDisksVolumes volumes(objects);
    EXPECT_NE(volumes, UDisksVolumes());
    EXPECT_EQ(volumes.find("", 0), nullptr);
}

} // namespace

} // namespace tessaly
