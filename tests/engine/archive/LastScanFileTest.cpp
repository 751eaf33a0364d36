#include "engine/archive/LastScanFile.hpp"

#include "engine/archive/ScanFileReader.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace tessaly::archive {
namespace {

using Names = std::vector<std::string>;
using Former = LastScanFile::Former;

/// A disk on which nothing can be written.
class FullDisk final : public FileCalls {
public:
    ssize_t write(int /*descriptor*/, const void * /*bytes*/, std::size_t /*count*/) override
    {
        errno = ENOSPC;
        return -1;
    }
};

/// A disk on which nothing can be deleted.
class UndeletingDisk final : public FileCalls {
public:
    int unlink(const char * /*path*/) override
    {
        errno = EIO;
        return -1;
    }
};

/// A folder for the file "last".
class LastScanFileTest : public testing::Test {
protected:
    static std::shared_ptr<tree::ScanTree> treeWith(const std::string &name)
    {
        return makeTree("/f", {file(name, 1)});
    }
    [[nodiscard]] bool keep(const std::string &name, Former former = Former::deleted)
    {
        return m_last.replace(treeWith(name)->root(), former).hasValue();
    }
    [[nodiscard]] bool keepUnopened()
    {
        return m_last.replace(makeTree("/f")->root(), Former::kept).hasValue();
    }
    [[nodiscard]] Names names() const
    {
        Names names = listedNames(m_folder.path());
        std::sort(names.begin(), names.end());
        return names;
    }
    [[nodiscard]] Names content(const std::string &name) const
    {
        const auto tree = readScanFile(m_folder.path(name));
        return tree ? childNames(tree.value()->root()) : Names{"unreadable"};
    }

    TemporaryFolder m_folder;
    LastScanFile m_last{m_folder.path("last")};
};

TEST_F(LastScanFileTest, isReplacedByTheNextScan)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keep("new"));
    EXPECT_EQ(content("last"), Names{"new"});
    EXPECT_EQ(names(), Names{"last"});
}

TEST_F(LastScanFileTest, isKeptBesideAScanThatCouldNotOpenItsFolder)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keepUnopened());
    EXPECT_EQ(content("last"), Names{});
    EXPECT_EQ(content("last.kept"), Names{"old"});
    m_last.putBack();
    EXPECT_EQ(content("last"), Names{}) << "it was replaced all the same";
    EXPECT_EQ(content("last.kept"), Names{"old"});
}

TEST_F(LastScanFileTest, isKeptHoweverManySuchScansFollow)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keepUnopened());
    EXPECT_TRUE(keepUnopened());
    EXPECT_EQ(content("last"), Names{});
    EXPECT_EQ(content("last.kept"), Names{"old"});
    EXPECT_EQ(names(), (Names{"last", "last.kept"}));
}

TEST_F(LastScanFileTest, isKeptNoLongerThanUntilTheNextScanOfWorth)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keepUnopened());
    EXPECT_TRUE(keep("new"));
    EXPECT_EQ(content("last"), Names{"new"});
    EXPECT_EQ(names(), Names{"last"});
}

TEST_F(LastScanFileTest, theNewerOfTwoScansOfWorthIsKept)
{
    EXPECT_TRUE(keep("older"));
    EXPECT_TRUE(keepUnopened());
    UndeletingDisk disk; // what a kill before the deletion leaves, too
    LastScanFile interrupted(m_folder.path("last"), disk);
    EXPECT_TRUE(interrupted.replace(treeWith("newer")->root(), Former::deleted));
    ASSERT_EQ(content("last"), Names{"newer"});
    ASSERT_EQ(content("last.kept"), Names{"older"});

    m_last.putBack();
    EXPECT_TRUE(keepUnopened());
    EXPECT_EQ(content("last"), Names{});
    EXPECT_EQ(content("last.kept"), Names{"newer"});
    EXPECT_EQ(names(), (Names{"last", "last.kept"}));
}

TEST_F(LastScanFileTest, staysWhereItIsWhenItCannotBeKept)
{
    EXPECT_TRUE(keep("old"));
    m_folder.folder("last.kept"); // no file can take its place
    EXPECT_FALSE(keepUnopened());
    EXPECT_EQ(content("last"), Names{"old"});
}

TEST_F(LastScanFileTest, aDamagedFileDoesNotTakeThePlaceOfTheKeptOne)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keepUnopened());
    std::filesystem::resize_file(m_folder.path("last"), 10);
    EXPECT_TRUE(keepUnopened());
    EXPECT_EQ(content("last.kept"), Names{"old"});
}

TEST_F(LastScanFileTest, comesBackWhereItsSuccessorWasNotWritten)
{
    EXPECT_TRUE(keep("old"));
    FullDisk disk;
    LastScanFile failing(m_folder.path("last"), disk);
    EXPECT_FALSE(failing.replace(makeTree("/f")->root(), Former::kept));
    EXPECT_EQ(names(), Names{"last.kept"});
    m_last.putBack();
    EXPECT_EQ(names(), Names{"last"});
    EXPECT_EQ(content("last"), Names{"old"});
}

TEST_F(LastScanFileTest, aKeptOneStaysWhenTheNextScanOfWorthIsNotWritten)
{
    EXPECT_TRUE(keep("old"));
    EXPECT_TRUE(keepUnopened());
    FullDisk disk;
    LastScanFile failing(m_folder.path("last"), disk);
    EXPECT_FALSE(failing.replace(treeWith("new")->root(), Former::deleted));
    EXPECT_EQ(names(), Names{"last.kept"});
}

TEST_F(LastScanFileTest, aFolderInItsPlaceIsLeftAlone)
{
    m_folder.folder("last");
    EXPECT_FALSE(keepUnopened());
    EXPECT_TRUE(std::filesystem::is_directory(m_folder.path("last")));
    EXPECT_EQ(names(), Names{"last"});
}

} // namespace
} // namespace tessaly::archive
