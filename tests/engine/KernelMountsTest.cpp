#include "engine/KernelMounts.hpp"

#include "engine/MountTable.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace tessaly {

namespace {

KernelMounts mountsFrom(std::string_view text, std::string_view folderPath)
{
    return KernelMounts::fromTable(MountTable::fromText(text), folderPath);
}

std::string line(const std::string &mountPoint, const std::string &type = "ext4")
{
    return "36 35 98:0 / " + mountPoint + " rw,noatime master:1 - " + type + " /dev/x rw\n";
}

} // namespace

TEST(KernelMounts, mustAskEverywhereWhenNothingIsKnown)
{
    const KernelMounts mounts;

    EXPECT_TRUE(mounts.mustAsk(nullptr));
    EXPECT_TRUE(mounts.mayAutomount());
    EXPECT_EQ(mounts.top(), nullptr);
}

TEST(KernelMounts, mustAskOnlyOnTheWayToMountPoints)
{
    const auto mounts = mountsFrom(
        line("/") + line("/home") + line("/home/me/a/b") + line("/home/mean"), "/home/me");

    const KernelMounts::Place *a = KernelMounts::inside(mounts.top(), "a");
    const KernelMounts::Place *b = KernelMounts::inside(a, "b");
    EXPECT_TRUE(mounts.mustAsk(a));
    EXPECT_TRUE(mounts.mustAsk(b));
    EXPECT_EQ(KernelMounts::inside(b, "c"), nullptr);
    EXPECT_EQ(KernelMounts::inside(a, "c"), nullptr);
    EXPECT_EQ(KernelMounts::inside(mounts.top(), "b"), nullptr);
    EXPECT_EQ(mounts.top()->inside.size(), 1U);
    EXPECT_EQ(KernelMounts::inside(nullptr, "a"), nullptr);
    EXPECT_FALSE(mounts.mustAsk(nullptr));
}

TEST(KernelMounts, haveNoTopWhereNothingIsMountedBelow)
{
    const auto mounts = mountsFrom(line("/") + line("/proc", "proc"), "/usr");

    EXPECT_EQ(mounts.top(), nullptr);
    EXPECT_FALSE(mounts.mustAsk(mounts.top()));
    EXPECT_FALSE(mounts.mayAutomount());
}

TEST(KernelMounts, workForTheWholeFileSystem)
{
    const auto mounts = mountsFrom(line("/") + line("/proc", "proc"), "/");

    ASSERT_NE(mounts.top(), nullptr);
    EXPECT_NE(KernelMounts::inside(mounts.top(), "proc"), nullptr);
    EXPECT_EQ(mounts.top()->inside.size(), 1U);
}

TEST(KernelMounts, readEscapedNames)
{
    const auto mounts =
        mountsFrom(line("/s/a\\040b") + line("/s/\\134\\012\\011\\043") + line("/s/\\04"), "/s");

    EXPECT_NE(KernelMounts::inside(mounts.top(), "a b"), nullptr);
    EXPECT_NE(KernelMounts::inside(mounts.top(), "\\\n\t#"), nullptr);
    EXPECT_NE(KernelMounts::inside(mounts.top(), "\\04"), nullptr);
}

TEST(KernelMounts, knowWhetherAnythingMountsItself)
{
    EXPECT_TRUE(mountsFrom(line("/net", "autofs"), "/usr").mayAutomount());
    EXPECT_FALSE(mountsFrom(line("/autofs", "ext4"), "/usr").mayAutomount());
}

TEST(KernelMounts, takeBrokenLinesAsTheyAre)
{
    for (const std::string text : {"", "\n\n", "36", "36 35 98:0 / ", "36 35 98:0 / /s/a", " - ",
                                   "- - - - - - autofs", "a b c d /s/a e - "}) {
        const auto mounts = mountsFrom(text, "/s");
        EXPECT_FALSE(mounts.mustAsk(nullptr)) << text;
    }
}

TEST(KernelMounts, comeFromTheKernelsList)
{
    const TemporaryFolder folder;

    const auto mounts = KernelMounts::below(folder.descriptor(), "/proc/self/mountinfo");

    EXPECT_FALSE(mounts.mustAsk(nullptr));
    EXPECT_EQ(mounts.top(), nullptr);
}

TEST(KernelMounts, areUnknownWithoutTheKernelsListOrTheFoldersPath)
{
    const TemporaryFolder folder;

    EXPECT_TRUE(KernelMounts::below(folder.descriptor(), "/nowhere").mustAsk(nullptr));
    EXPECT_TRUE(KernelMounts::below(folder.descriptor(), folder.path()).mustAsk(nullptr));
    EXPECT_TRUE(KernelMounts::below(-1, "/proc/self/mountinfo").mustAsk(nullptr));
}

} // namespace tessaly
