#include "screens/FolderPath.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(FolderPath, standardPathsHaveNoSlashTooMany)
{
    EXPECT_EQ(standardPath("/a/b"), "/a/b");
    EXPECT_EQ(standardPath("//a///b//"), "/a/b");
    EXPECT_EQ(standardPath("/"), "/");
    EXPECT_EQ(standardPath("//"), "/");
    EXPECT_EQ(standardPath("a/"), "a");
    EXPECT_EQ(standardPath(""), "");
}

TEST(FolderPath, withoutTheLastComponentItIsTheFolderAbove)
{
    EXPECT_EQ(withoutLastComponent("/a/b"), "/a");
    EXPECT_EQ(withoutLastComponent("/a//b/"), "/a");
    EXPECT_EQ(withoutLastComponent("/a"), "/");
    EXPECT_EQ(withoutLastComponent("//a"), "/");
    EXPECT_EQ(withoutLastComponent("/"), "/");
    EXPECT_EQ(withoutLastComponent("//"), "/");
    EXPECT_EQ(withoutLastComponent("a/b"), "a");
    EXPECT_EQ(withoutLastComponent("a"), "");
    EXPECT_EQ(withoutLastComponent(""), "");
}

} // namespace
} // namespace tessaly
