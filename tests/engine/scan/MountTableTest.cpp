#include "engine/scan/MountTable.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace tessaly::scan {

namespace {

std::string line(int id, int parent, const std::string &mountPoint)
{
    return std::to_string(id) + ' ' + std::to_string(parent) + " 8:1 / " + mountPoint +
           " rw - ext4 /dev/sda1 rw\n";
}

/// The mount that a path leads into; 0 for none.
int idOf(const MountTable &table, const std::string &path)
{
    const Mount *mount = table.mountOf(path);
    return mount == nullptr ? 0 : mount->id;
}

} // namespace

TEST(MountTable, readsEveryFieldOfALine)
{
    const auto table = MountTable::fromText("36 35 259:300 /@home /mnt/a rw,noatime master:1 "
                                            "propagate_from:2 - btrfs /dev/x rw,ssd,subvol=/@home\n"
                                            "37 36 0:21 / /p rw - proc proc rw\n");

    ASSERT_EQ(table.mounts().size(), 2U);
    const Mount &mount = table.mounts()[0];
    EXPECT_EQ(mount.id, 36);
    EXPECT_EQ(mount.parentId, 35);
    EXPECT_EQ(mount.device, makedev(259, 300));
    EXPECT_EQ(mount.root, "/@home");
    EXPECT_EQ(mount.mountPoint, "/mnt/a");
    EXPECT_EQ(mount.type, "btrfs");
    EXPECT_EQ(mount.source, "/dev/x");
    EXPECT_EQ(mount.superOptions, "rw,ssd,subvol=/@home");
    EXPECT_EQ(table.mounts()[1].type, "proc");
}

TEST(MountTable, readsEscapesAsBytes)
{
    const auto table = MountTable::fromText(
        "1 0 8:1 /a\\040b /s/\\134\\012\\011\\043\xff\xfe - rw - fuse.a\\040b srv:/x\\040y rw\n"
        "2 0 8:1 / /s/\\04 rw - ext4 x rw\n");

    ASSERT_EQ(table.mounts().size(), 2U);
    EXPECT_EQ(table.mounts()[0].root, "/a b");
    EXPECT_EQ(table.mounts()[0].mountPoint, "/s/\\\n\t#\xff\xfe");
    EXPECT_EQ(table.mounts()[0].source, "srv:/x y");
    EXPECT_EQ(table.mounts()[1].mountPoint, "/s/\\04");
}

TEST(MountTable, findsOptionsByTheirNames)
{
    Mount mount;
    mount.superOptions = "rw,user_id=1000,errors=,nouser_id=3";

    EXPECT_EQ(mount.option("user_id"), "1000");
    EXPECT_EQ(mount.option("rw"), "");
    EXPECT_EQ(mount.option("errors"), "");
    EXPECT_EQ(mount.option("user"), std::nullopt);
    EXPECT_EQ(Mount().option("rw"), std::nullopt);
}

TEST(MountTable, acceptsMalformedLines)
{
    const std::string whole = line(36, 35, "/mnt/a");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto table = MountTable::fromText(whole.substr(0, length));
        EXPECT_LE(table.mounts().size(), 1U);
        (void)table.mountOf("/mnt/a");
    }
    for (const std::string text : {"\n\n", "x y z / /s", "- - - - - - autofs", " - ",
                                   "99999999999999999999 1 8:999999999999 / /s rw - a b c"}) {
        (void)MountTable::fromText(text).mountOf("/s");
    }
}

TEST(MountTable, leadsToTheMountThatHoldsAPath)
{
    const auto table = MountTable::fromText(line(1, 0, "/") + line(2, 1, "/home") +
                                            line(3, 2, "/home/me/usb") + line(4, 1, "/homes"));

    EXPECT_EQ(idOf(table, "/"), 1);
    EXPECT_EQ(idOf(table, "/usr"), 1);
    EXPECT_EQ(idOf(table, "/home"), 2);
    EXPECT_EQ(idOf(table, "/home/me"), 2);
    EXPECT_EQ(idOf(table, "/home/me/usb/a"), 3);
    EXPECT_EQ(idOf(table, "/homes/me"), 4);
}

TEST(MountTable, leadsToTheMountOnTop)
{
    const auto table = MountTable::fromText(line(1, 0, "/") + line(2, 1, "/") + line(3, 1, "/a") +
                                            line(4, 2, "/b") + line(5, 4, "/b") +
                                            line(6, 2, "/c/d") + line(7, 2, "/c"));

    EXPECT_EQ(idOf(table, "/"), 2);
    EXPECT_EQ(idOf(table, "/a"), 2); // mount 3 lies below what covers "/"
    EXPECT_EQ(idOf(table, "/b"), 5);
    EXPECT_EQ(idOf(table, "/c/d"), 7); // mount 6 is older than what covers its folder
}

TEST(MountTable, leadsNowhereWithoutARoot)
{
    const auto table = MountTable::fromText(line(3, 2, "/proc"));

    EXPECT_EQ(idOf(table, "/proc/1"), 3);
    EXPECT_EQ(idOf(table, "/"), 0);
    EXPECT_EQ(idOf(MountTable(), "/"), 0);
}

TEST(MountTable, endsInAListWithACycle)
{
    const auto table = MountTable::fromText(line(1, 1, "/") + line(2, 3, "/a") + line(3, 2, "/a") +
                                            line(4, 1, "/a") + line(4, 4, "/a"));

    EXPECT_EQ(idOf(table, "/a"), 4);
}

TEST(MountTable, readsTheKernelsList)
{
    const auto table = MountTable::read("/proc/self/mountinfo");

    ASSERT_TRUE(table);
    const Mount *proc = table->mountOf("/proc");
    ASSERT_NE(proc, nullptr);
    EXPECT_EQ(proc->type, "proc");
    struct stat status = {};
    ASSERT_EQ(stat("/proc", &status), 0);
    EXPECT_EQ(proc->device, status.st_dev);
}

TEST(MountTable, isNothingWhereThereIsNoList)
{
    const TemporaryFolder folder;

    EXPECT_FALSE(MountTable::read("/nowhere"));
    EXPECT_FALSE(MountTable::read(folder.path()));
}

} // namespace tessaly::scan
