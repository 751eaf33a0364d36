#include "platform/linux/files/ItemInformation.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {

namespace {

void setTimes(const std::string &path, time_t accessed, time_t modified)
{
    const timespec times[2]{{accessed, 0}, {modified, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

std::int64_t secondsOf(std::chrono::sys_seconds time)
{
    return time.time_since_epoch().count();
}

TEST(ItemInformation, tellsAboutAFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("\xFF\n");
    std::ofstream(path) << "hello";
    ASSERT_EQ(chmod(path.c_str(), 04751), 0);
    setTimes(path, 1'000'000'000, -5);

    const ItemInformation item = ItemInformation::of(path);
    EXPECT_EQ(item.error, 0);
    EXPECT_EQ(item.path, path);
    EXPECT_EQ(item.mode, S_IFREG | 04751U);
    EXPECT_EQ(item.byteCount, 5U);
    EXPECT_EQ(item.beginning, "hello");
    EXPECT_EQ(item.entryCount, std::nullopt);
    EXPECT_EQ(secondsOf(item.accessed), 1'000'000'000);
    EXPECT_EQ(secondsOf(item.modified), -5);
    if (item.created) { // where the file system knows it
        EXPECT_GT(secondsOf(*item.created), 1'700'000'000);
    }
}

TEST(ItemInformation, countsWhatLiesDirectlyInAFolder)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ItemInformation::of(folder.path()).entryCount, 0U);
    folder.file(".hidden");
    folder.folder("a");
    folder.file("a/b");
    folder.link("link", "nowhere");
    EXPECT_EQ(ItemInformation::of(folder.path()).entryCount, 3U);
}

TEST(ItemInformation, tellsWhereALinkLeads)
{
    const TemporaryFolder folder;
    folder.file("file", 7);
    folder.link("good", "file");
    folder.link("broken", "\xFF");
    folder.link("loop", "loop");

    const ItemInformation good = ItemInformation::of(folder.path("good"));
    EXPECT_TRUE(S_ISLNK(good.mode));
    EXPECT_EQ(good.target, "file");
    EXPECT_TRUE(good.isTargetThere);
    const ItemInformation broken = ItemInformation::of(folder.path("broken"));
    EXPECT_EQ(broken.target, "\xFF");
    EXPECT_FALSE(broken.isTargetThere);
    EXPECT_FALSE(ItemInformation::of(folder.path("loop")).isTargetThere);
}

TEST(ItemInformation, leavesTheTimeOfLastAccessAsItIs)
{
    const TemporaryFolder folder;
    folder.folder("folder");
    std::ofstream(folder.path("file")) << "hello";
    // Long ago, and before the last change: that is what systems keep up to date in any case.
    for (const std::string name : {"folder", "file"}) {
        setTimes(folder.path(name), 1'000'000'000, 1'000'000'001);
        (void)ItemInformation::of(folder.path(name));
        EXPECT_EQ(secondsOf(ItemInformation::of(folder.path(name)).accessed), 1'000'000'000)
            << name;
    }
}

TEST(ItemInformation, doesNotWaitForAPipe)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    const ItemInformation item = ItemInformation::of(folder.path("pipe"));
    EXPECT_TRUE(S_ISFIFO(item.mode));
    EXPECT_EQ(item.beginning, std::nullopt);
}

TEST(ItemInformation, readsNoMoreThanTheBeginningOfAFile)
{
    const TemporaryFolder folder;
    folder.file("large", std::uint64_t{1} << 40U);
    const ItemInformation item = ItemInformation::of(folder.path("large"));
    EXPECT_EQ(item.byteCount, std::uint64_t{1} << 40U);
    ASSERT_TRUE(item.beginning);
    EXPECT_EQ(item.beginning->size(), std::size_t{16} << 10U);
}

TEST(ItemInformation, namesOwnerAndGroupOrTheirNumbers)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to give a file away";
    }
    const TemporaryFolder folder;
    folder.file("file");
    const std::string path = folder.path("file");
    ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
    EXPECT_EQ(ItemInformation::of(path).owner, "root");
    EXPECT_EQ(ItemInformation::of(path).group, "root");
    ASSERT_EQ(chown(path.c_str(), 3'999'999'999, 3'999'999'998), 0);
    EXPECT_EQ(ItemInformation::of(path).owner, "3999999999");
    EXPECT_EQ(ItemInformation::of(path).group, "3999999998");
}

TEST(ItemInformation, saysWhyNothingIsKnown)
{
    const TemporaryFolder folder;
    folder.file("file");
    EXPECT_EQ(ItemInformation::of(folder.path("missing")).error, ENOENT);
    EXPECT_EQ(ItemInformation::of(folder.path("missing")).path, folder.path("missing"));
    EXPECT_EQ(ItemInformation::of(folder.path("file/inside")).error, ENOTDIR);
    EXPECT_EQ(ItemInformation::of(folder.path(std::string(300, 'x'))).error, ENAMETOOLONG);
}

TEST(ItemInformation, leavesOutWhatMayNotBeRead)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    folder.folder("closed");
    folder.file("closed/inside");
    folder.file("file", 5);
    ASSERT_EQ(chmod(folder.path("closed").c_str(), 0700), 0);
    ASSERT_EQ(chmod(folder.path("file").c_str(), 0600), 0);
    runUnprivileged([&] {
        const ItemInformation closed = ItemInformation::of(folder.path("closed"));
        EXPECT_EQ(closed.error, 0);
        EXPECT_EQ(closed.entryCount, std::nullopt);
        const ItemInformation file = ItemInformation::of(folder.path("file"));
        EXPECT_EQ(file.byteCount, 5U);
        EXPECT_EQ(file.beginning, std::nullopt);
        EXPECT_EQ(ItemInformation::of(folder.path("closed/inside")).error, EACCES);
    });
}

} // namespace

} // namespace tessaly
