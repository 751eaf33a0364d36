#include "engine/tree/FilePath.hpp"

#include <gtest/gtest.h>

namespace tessaly::tree {

namespace {

TEST(FilePath, aCleanPathHasOneSlashAtATimeAndNoneAtItsEnd)
{
    EXPECT_EQ(cleanPath("/a/b"), "/a/b");
    EXPECT_EQ(cleanPath("//home/x"), "/home/x");
    EXPECT_EQ(cleanPath("/a//b"), "/a/b");
    EXPECT_EQ(cleanPath("//a///b//"), "/a/b");
    EXPECT_EQ(cleanPath("/a/b///"), "/a/b");
    EXPECT_EQ(cleanPath("a//b/"), "a/b");
    EXPECT_EQ(cleanPath("a/"), "a");
    EXPECT_EQ(cleanPath(""), "");
}

TEST(FilePath, aCleanPathKeepsTheRootAndTheBytesOfNames)
{
    EXPECT_EQ(cleanPath("/"), "/");
    EXPECT_EQ(cleanPath("//"), "/");
    EXPECT_EQ(cleanPath("///"), "/");
    EXPECT_EQ(cleanPath("/\xFF/ /."), "/\xFF/ /.");
    EXPECT_EQ(cleanPath("/a/../b"), "/a/../b");
}

TEST(FilePath, theParentIsThePathWithoutTheLastComponent)
{
    EXPECT_EQ(parentPath("/a/b"), "/a");
    EXPECT_EQ(parentPath("/a//b/"), "/a");
    EXPECT_EQ(parentPath("/a"), "/");
    EXPECT_EQ(parentPath("//a"), "/");
    EXPECT_EQ(parentPath("a/b"), "a");
    EXPECT_EQ(parentPath("/a/.."), "/a");
}

TEST(FilePath, theParentOfTheRootIsTheRootAndOfALoneNameNothing)
{
    EXPECT_EQ(parentPath("/"), "/");
    EXPECT_EQ(parentPath("//"), "/");
    EXPECT_EQ(parentPath("a"), "");
    EXPECT_EQ(parentPath("a/"), "");
    EXPECT_EQ(parentPath(""), "");
}

TEST(FilePath, aLoneNameIsContainedInTheCurrentFolder)
{
    EXPECT_EQ(containingFolder("a"), ".");
    EXPECT_EQ(containingFolder(""), ".");
    EXPECT_EQ(containingFolder("a/b"), "a");
    EXPECT_EQ(containingFolder("/a"), "/");
}

TEST(FilePath, theNameIsTheLastComponent)
{
    EXPECT_EQ(fileName("/a/b"), "b");
    EXPECT_EQ(fileName("/a/b//"), "b");
    EXPECT_EQ(fileName("/a"), "a");
    EXPECT_EQ(fileName("a"), "a");
    EXPECT_EQ(fileName("/"), "/");
    EXPECT_EQ(fileName("//"), "/");
    EXPECT_EQ(fileName(""), "");
}

TEST(FilePath, folderAndNameAreJoinedByOneSlash)
{
    EXPECT_EQ(joinPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinPath("/a", "b/c"), "/a/b/c");
    EXPECT_EQ(joinPath("/", "a"), "/a");
    EXPECT_EQ(joinPath("/a/", "b"), "/a/b");
    EXPECT_EQ(joinPath(".", "a"), "./a");
}

} // namespace

} // namespace tessaly::tree
