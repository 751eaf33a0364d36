#include "platform/linux/storage/PrivateFolder.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

TEST(PrivateFolder, isMadeWithTheMissingFoldersAboveIt)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(makePrivateFolder(folder.path("a/b/c")));

    for (const char *name : {"a", "a/b", "a/b/c"}) {
        EXPECT_EQ(modeOf(folder.path(name)), 0700U) << name;
    }
}

TEST(PrivateFolder, isForTheUserAloneWhateverTheMask)
{
    const TemporaryFolder folder;
    const mode_t before = umask(0);
    EXPECT_FALSE(makePrivateFolder(folder.path("a")));
    umask(before);

    EXPECT_EQ(modeOf(folder.path("a")), 0700U);
}

TEST(PrivateFolder, thatIsThereStaysAsItIs)
{
    const TemporaryFolder folder;
    folder.folder("a");
    EXPECT_FALSE(makePrivateFolder(folder.path("a")));
    EXPECT_FALSE(makePrivateFolder("/"));

    EXPECT_EQ(modeOf(folder.path("a")), 0755U);
}

TEST(PrivateFolder, mayBeRelative)
{
    const TemporaryFolder folder;
    runInChild([&] {
        ASSERT_EQ(chdir(folder.path().c_str()), 0);
        EXPECT_FALSE(makePrivateFolder("a/b"));
        EXPECT_FALSE(makePrivateFolder("."));
    });

    EXPECT_EQ(modeOf(folder.path("a/b")), 0700U);
}

TEST(PrivateFolder, isNotMadeWhereSomethingElseIs)
{
    const TemporaryFolder folder;
    folder.file("file");
    folder.link("dangling", "missing");

    EXPECT_EQ(makePrivateFolder(folder.path("file")), std::errc::not_a_directory);
    EXPECT_EQ(makePrivateFolder(folder.path("file/a/b")), std::errc::not_a_directory);
    EXPECT_EQ(makePrivateFolder(folder.path("dangling")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(makePrivateFolder(""), std::errc::no_such_file_or_directory);
}

TEST(PrivateFolder, isNotMadeWhereTheUserMayNotWrite)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    const TemporaryFolder folder;
    runUnprivileged(
        [&] { EXPECT_EQ(makePrivateFolder(folder.path("a/b")), std::errc::permission_denied); });
}

TEST(PrivateFolder, canBeMadeBySeveralAtOnce)
{
    const TemporaryFolder folder;
    std::string path = folder.path("x");
    for (int i = 0; i < 100; ++i) {
        path += "/x";
    }
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { EXPECT_FALSE(makePrivateFolder(path)); });
    }
    threads.clear();

    EXPECT_EQ(modeOf(path), 0700U);
}

} // namespace
} // namespace tessaly
