#include "engine/scan/MountPointTree.hpp"

#include "engine/scan/MountTable.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace tessaly::scan {

namespace {

MountPointTree mountsFrom(std::string_view text, std::string_view folderPath)
{
    return MountPointTree::fromTable(MountTable::fromText(text), folderPath);
}

std::string line(const std::string &mountPoint, const std::string &type = "ext4")
{
    return "36 35 98:0 / " + mountPoint + " rw,noatime master:1 - " + type + " /dev/x rw\n";
}

} // namespace

TEST(MountPointTree, mustCheckEverywhereWhenNothingIsKnown)
{
    const MountPointTree mounts;

    EXPECT_TRUE(mounts.mustCheck(nullptr));
    EXPECT_TRUE(mounts.mayAutomount());
    EXPECT_EQ(mounts.top(), nullptr);
}

TEST(MountPointTree, mustCheckOnlyOnTheWayToMountPoints)
{
    const auto mounts = mountsFrom(
        line("/") + line("/home") + line("/home/me/a/b") + line("/home/mean"), "/home/me");

    const MountPointTree::Place *a = MountPointTree::inside(mounts.top(), "a");
    const MountPointTree::Place *b = MountPointTree::inside(a, "b");
    EXPECT_TRUE(mounts.mustCheck(a));
    EXPECT_TRUE(mounts.mustCheck(b));
    EXPECT_EQ(MountPointTree::inside(b, "c"), nullptr);
    EXPECT_EQ(MountPointTree::inside(a, "c"), nullptr);
    EXPECT_EQ(MountPointTree::inside(mounts.top(), "b"), nullptr);
    EXPECT_EQ(mounts.top()->inside.size(), 1U);
    EXPECT_EQ(MountPointTree::inside(nullptr, "a"), nullptr);
    EXPECT_FALSE(mounts.mustCheck(nullptr));
}

TEST(MountPointTree, haveNoTopWhereNothingIsMountedBelow)
{
    const auto mounts = mountsFrom(line("/") + line("/proc", "proc"), "/usr");

    EXPECT_EQ(mounts.top(), nullptr);
    EXPECT_FALSE(mounts.mustCheck(mounts.top()));
    EXPECT_FALSE(mounts.mayAutomount());
}

TEST(MountPointTree, workForTheWholeFileSystem)
{
    const auto mounts = mountsFrom(line("/") + line("/proc", "proc"), "/");

    ASSERT_NE(mounts.top(), nullptr);
    EXPECT_NE(MountPointTree::inside(mounts.top(), "proc"), nullptr);
    EXPECT_EQ(mounts.top()->inside.size(), 1U);
}

TEST(MountPointTree, readEscapedNames)
{
    const auto mounts =
        mountsFrom(line("/s/a\\040b") + line("/s/\\134\\012\\011\\043") + line("/s/\\04"), "/s");

    EXPECT_NE(MountPointTree::inside(mounts.top(), "a b"), nullptr);
    EXPECT_NE(MountPointTree::inside(mounts.top(), "\\\n\t#"), nullptr);
    EXPECT_NE(MountPointTree::inside(mounts.top(), "\\04"), nullptr);
}

TEST(MountPointTree, knowWhetherThereAreAutomounts)
{
    EXPECT_TRUE(mountsFrom(line("/net", "autofs"), "/usr").mayAutomount());
    EXPECT_FALSE(mountsFrom(line("/autofs", "ext4"), "/usr").mayAutomount());
}

TEST(MountPointTree, acceptMalformedLines)
{
    for (const std::string text : {"", "\n\n", "36", "36 35 98:0 / ", "36 35 98:0 / /s/a", " - ",
                                   "- - - - - - autofs", "a b c d /s/a e - "}) {
        const auto mounts = mountsFrom(text, "/s");
        EXPECT_FALSE(mounts.mustCheck(nullptr)) << text;
    }
}

TEST(MountPointTree, comeFromTheKernelsList)
{
    const TemporaryFolder folder;

    const auto mounts = MountPointTree::below(folder.descriptor(), "/proc/self/mountinfo");

    EXPECT_FALSE(mounts.mustCheck(nullptr));
    EXPECT_EQ(mounts.top(), nullptr);
}

TEST(MountPointTree, areUnknownWithoutTheKernelsListOrTheFoldersPath)
{
    const TemporaryFolder folder;

    EXPECT_TRUE(MountPointTree::below(folder.descriptor(), "/nowhere").mustCheck(nullptr));
    EXPECT_TRUE(MountPointTree::below(folder.descriptor(), folder.path()).mustCheck(nullptr));
    EXPECT_TRUE(MountPointTree::below(-1, "/proc/self/mountinfo").mustCheck(nullptr));
}

} // namespace tessaly::scan
