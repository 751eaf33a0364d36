#include "platform/linux/volumes/UnmountPrograms.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"

#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>

namespace tessaly {

namespace {

/// A PATH with nothing on it but programs that the test makes up.
class UnmountProgramsTest : public testing::Test {
protected:
    void addProgram(const std::string &name, const std::string &script) const
    {
        writeFile(m_folder.path(name), "#!/bin/sh\n" + script + '\n');
        chmod(m_folder.path(name).c_str(), S_IRWXU);
    }

    /// A script that writes down what it was called with.
    [[nodiscard]] std::string recording(const std::string &name) const
    {
        return "printf '%s|' " + name + " \"$@\" > '" + m_folder.path("calls") + "'";
    }

    TemporaryFolder m_folder;
    ScopedVariable m_path{"PATH", m_folder.path()};
};

TEST_F(UnmountProgramsTest, isDoneByFusermount)
{
    addProgram("fusermount3", recording("fusermount3"));
    addProgram("fusermount", recording("fusermount"));

    EXPECT_EQ(unmountFuse("/mnt/my  \xff disk"), std::nullopt);
    EXPECT_EQ(textOfFile(m_folder.path("calls")), "fusermount3|-u|--|/mnt/my  \xff disk|");
}

TEST_F(UnmountProgramsTest, isDoneByTheOlderProgramWhereThereIsNoOther)
{
    addProgram("fusermount", recording("fusermount"));

    EXPECT_EQ(unmountFuse("/mnt"), std::nullopt);
    EXPECT_EQ(textOfFile(m_folder.path("calls")), "fusermount|-u|--|/mnt|");
}

TEST_F(UnmountProgramsTest, whatUsersMayMountIsUnmountedByUmount)
{
    addProgram("umount", recording("umount"));
    addProgram("fusermount3", recording("fusermount3"));

    EXPECT_EQ(unmountByUser("/mnt/my disk"), std::nullopt);
    EXPECT_EQ(textOfFile(m_folder.path("calls")), "umount|--|/mnt/my disk|");

    addProgram("umount", "echo 'target is busy' >&2; exit 32");
    EXPECT_EQ(unmountByUser("/mnt/my disk"), "target is busy");
}

TEST_F(UnmountProgramsTest, returnsTheErrorsOfTheProgram)
{
    addProgram("fusermount3", "echo 'target is busy' >&2; exit 1");
    EXPECT_EQ(unmountFuse("/mnt"), "target is busy");

    addProgram("fusermount3", "exit 1");
    EXPECT_EQ(unmountFuse("/mnt"), "fusermount has failed");

    addProgram("fusermount3", "kill -9 $$");
    EXPECT_EQ(unmountFuse("/mnt"), "fusermount has failed");
}

TEST_F(UnmountProgramsTest, reportsAMissingProgram)
{
    EXPECT_EQ(unmountFuse("/mnt"), "fusermount: No such file or directory");
}

} // namespace

} // namespace tessaly
