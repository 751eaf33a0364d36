#include "platform/linux/volumes/DeviceLabels.hpp"

#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/MadeUpSystem.hpp"

#include <gtest/gtest.h>

namespace tessaly {

namespace {

TEST(DeviceLabels, areReadWithTheirEscapes)
{
    MadeUpSystem system;
    system.addLabel("My\\x20Disk", "sda1");
    system.addLabel("a\\x2fb\\x5cc", "sda2");
    system.addLabel("Z\xc3\xbcrich", "dm-0");
    system.addLabel("end\\x2", "sda3");
    system.addLabel("\\xzz", "sda4");
    const DeviceLabels labels(system.sources().devices);

    EXPECT_EQ(labels.of("sda1"), "My Disk");
    EXPECT_EQ(labels.of("sda2"), "a/b\\c");
    EXPECT_EQ(labels.of("dm-0"), "Z\xc3\xbcrich");
    EXPECT_EQ(labels.of("sda3"), "end\\x2");
    EXPECT_EQ(labels.of("sda4"), "\\xzz");
    EXPECT_EQ(labels.of("sda"), std::nullopt);
}

TEST(DeviceLabels, comeFromLinksAlone)
{
    MadeUpSystem system;
    writeFile(system.folder().path("dev/disk/by-label/file"), "");
    EXPECT_EQ(DeviceLabels(system.sources().devices).of("file"), std::nullopt);
    EXPECT_EQ(DeviceLabels("/nowhere").of("sda1"), std::nullopt);
}

} // namespace

} // namespace tessaly
