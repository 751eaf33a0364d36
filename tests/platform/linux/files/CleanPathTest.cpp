#include "platform/linux/files/CleanPath.hpp"

#include <gtest/gtest.h>

namespace tessaly {

namespace {

TEST(CleanPath, hasOneSlashAtATimeAndNoneAtTheEnd)
{
    EXPECT_EQ(cleanPath("//home/x"), "/home/x");
    EXPECT_EQ(cleanPath("/a//b"), "/a/b");
    EXPECT_EQ(cleanPath("/a/b///"), "/a/b");
    EXPECT_EQ(cleanPath("/\xFF/ /."), "/\xFF/ /.");
    EXPECT_EQ(cleanPath("a//b/"), "a/b");
    EXPECT_EQ(cleanPath(""), "");
}

TEST(CleanPath, keepsTheRoot)
{
    EXPECT_EQ(cleanPath("/"), "/");
    EXPECT_EQ(cleanPath("///"), "/");
}

TEST(CleanPath, fallsApartIntoFolderAndName)
{
    EXPECT_EQ(folderOf("/a/b"), "/a");
    EXPECT_EQ(nameOf("/a/b"), "b");
    EXPECT_EQ(folderOf("/a"), "/");
    EXPECT_EQ(nameOf("/a"), "a");
    EXPECT_EQ(folderOf("/"), "/");
    EXPECT_EQ(nameOf("/"), "/");
}

TEST(CleanPath, isMadeOfFolderAndName)
{
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/a", "b/c"), "/a/b/c");
    EXPECT_EQ(joinedPath("/", "a"), "/a");
}

} // namespace

} // namespace tessaly
