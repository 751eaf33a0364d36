#include "platform/linux/volumes/VolumeList.hpp"

#include "platform/linux/volumes/UDisksVolumes.hpp"
#include "tests/platform/linux/MadeUpSystem.hpp"
#include "tests/platform/linux/volumes/UDisksObjects.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {

namespace {

using Names = std::vector<std::string>;

Names namesOf(const std::vector<VolumeList::Entry> &entries)
{
    Names names;
    for (const auto &entry : entries) {
        names.push_back(entry.name);
    }
    return names;
}

/// A root, a stick with a label, and two folders of the same name.
class VolumeListTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_system.addDisk("sdb", "8:16", true);
        m_system.addPartition("sdb", "sdb1", "8:17");
        m_system.addLabel("My\\x20Stick", "sdb1");
        m_system.mount("/", "ext4", "8:1", "/dev/sda1");
        m_system.mount("/media/me/1234-5678", "vfat", "8:17", "/dev/sdb1");
        m_system.mount("/srv/data", "nfs", "0:40", "server:/data");
        m_system.mount("/mnt/data", "ext4", "8:2", "/dev/sda2");
    }

    MadeUpSystem m_system;
};

TEST_F(VolumeListTest, namesTheVolumes)
{
    VolumeList list(m_system.sources());
    const auto entries = list.entries(nullptr);

    EXPECT_EQ(namesOf(entries), (Names{"/", "My Stick", "data", "data 2"}));
    EXPECT_EQ(entries[1].path, "/media/me/1234-5678");
    EXPECT_TRUE(entries[1].isLocal);
    EXPECT_FALSE(entries[2].isLocal);
}

TEST_F(VolumeListTest, knowsWhereTheyAre)
{
    VolumeList list(m_system.sources());
    EXPECT_EQ(list.pathOf("data"), std::nullopt); // no volume has the name so far
    (void)list.entries(nullptr);

    EXPECT_EQ(list.pathOf("/"), "/");
    EXPECT_EQ(list.pathOf("My Stick"), "/media/me/1234-5678");
    EXPECT_EQ(list.pathOf("data 2"), "/mnt/data");
    EXPECT_EQ(list.pathOf("data/child/more"), "/srv/data/child/more");
    EXPECT_EQ(list.pathOf("/etc"), "/etc");
    EXPECT_EQ(list.pathOf("1234-5678"), std::nullopt);
    EXPECT_EQ(list.pathOf(""), std::nullopt);
}

TEST_F(VolumeListTest, knowsNoMoreWhereTheyWere)
{
    VolumeList list(m_system.sources());
    (void)list.entries(nullptr);
    m_system.unmountAll();
    m_system.mount("/mnt/data", "ext4", "8:2", "/dev/sda2");

    EXPECT_EQ(list.pathOf("My Stick"), std::nullopt);
    EXPECT_EQ(list.pathOf("data"), std::nullopt);
    EXPECT_EQ(list.pathOf("data 2"), "/mnt/data");
}

TEST_F(VolumeListTest, takesLabelsFromUDisksWhereDevicesHaveNone)
{
    m_system.addLabel("System", "sda1");
    UDisksObjects objects;
    objects.addDevice({.name = "sda2", .label = "Photos", .mountPoints = {"/mnt/data"}});
    objects.addDevice({.name = "sdb1", .label = "Other", .mountPoints = {"/media/me/1234-5678"}});
    const UDisksVolumes udisks(objects.objects());
    VolumeList list(m_system.sources());

    EXPECT_EQ(namesOf(list.entries(&udisks)), (Names{"/", "My Stick", "data", "Photos"}));
}

} // namespace

} // namespace tessaly
