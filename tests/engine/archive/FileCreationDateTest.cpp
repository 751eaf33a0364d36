#include "engine/archive/FileCreationDate.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {
namespace {

constexpr std::int64_t secondsFrom1970To2001 = 978'307'200;

/// What the system tells of a regular file that was made 10.5 s after 2001 began and changed 60 s
/// after it.
struct statx sample()
{
    struct statx file = {};
    file.stx_mode = S_IFREG | 0600;
    file.stx_mask = STATX_TYPE | STATX_MTIME | STATX_BTIME;
    file.stx_btime = {secondsFrom1970To2001 + 10, 500'000'000, 0};
    file.stx_mtime = {secondsFrom1970To2001 + 60, 0, 0};
    return file;
}

TEST(FileCreationDate, isTheBirthOfTheFile)
{
    EXPECT_EQ(creationDateOf(sample()), Timestamp{10.5});
}

TEST(FileCreationDate, isTheLastChangeWhereThereAreNoBirths)
{
    struct statx file = sample();
    file.stx_mask &= ~STATX_BTIME;
    EXPECT_EQ(creationDateOf(file), Timestamp{60});

    file = sample();
    file.stx_btime = {};
    EXPECT_EQ(creationDateOf(file), Timestamp{60}) << "a birth of 0 is none";
}

TEST(FileCreationDate, mayLieBefore2001)
{
    struct statx file = sample();
    file.stx_btime = {secondsFrom1970To2001 - 2, 500'000'000, 0};
    EXPECT_EQ(creationDateOf(file), Timestamp{-1.5});
}

TEST(FileCreationDate, isNothingWithoutARegularFile)
{
    struct statx file = sample();
    file.stx_mode = S_IFDIR | 0700;
    EXPECT_EQ(creationDateOf(file), std::nullopt);

    const TemporaryFolder folder;
    folder.link("nowhere", "missing");
    EXPECT_EQ(fileCreationDate(folder.path()), std::nullopt);
    EXPECT_EQ(fileCreationDate(folder.path("missing")), std::nullopt);
    EXPECT_EQ(fileCreationDate(folder.path("nowhere")), std::nullopt);
    EXPECT_EQ(fileCreationDate("/dev/null"), std::nullopt);
}

TEST(FileCreationDate, doesNotChangeWithTheFile)
{
    const TemporaryFolder folder;
    folder.file("a");
    const std::string path = folder.path("a");
    struct statx file = {};
    ASSERT_EQ(statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &file), 0);
    if ((file.stx_mask & STATX_BTIME) == 0) {
        GTEST_SKIP() << "needs a file system that keeps births";
    }
    const auto date = fileCreationDate(path);
    ASSERT_TRUE(date);
    EXPECT_EQ(date->systemTime().time_since_epoch().count(), file.stx_btime.tv_sec);

    const timespec longAgo[] = {{1, 0}, {1, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), longAgo, 0), 0);
    ASSERT_EQ(rename(path.c_str(), folder.path("b").c_str()), 0);
    EXPECT_EQ(fileCreationDate(folder.path("b")), date);
}

TEST(FileCreationDate, isTheChangeOnAFileSystemWithoutBirths)
{
    struct statx file = {};
    ASSERT_EQ(statx(AT_FDCWD, "/proc/version", 0, STATX_BTIME | STATX_MTIME, &file), 0);
    if ((file.stx_mask & STATX_BTIME) != 0) {
        GTEST_SKIP() << "needs a kernel whose /proc keeps no births";
    }
    const auto date = fileCreationDate("/proc/version");
    ASSERT_TRUE(date);
    EXPECT_EQ(date->systemTime().time_since_epoch().count(), file.stx_mtime.tv_sec);
}

} // namespace
} // namespace tessaly::archive
