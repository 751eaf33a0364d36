#include "platform/linux/process/StartedChild.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/EndingProgram.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <sys/stat.h>
#include <sys/wait.h>

namespace tessaly {
namespace {

constexpr auto program = "some-program";

/// A PATH of two folders, and one that is missing.
class StartedChildTest : public testing::Test {
protected:
    StartedChildTest()
    {
        m_folder.folder("first");
        m_folder.folder("second");
    }

    void addProgram(const std::string &folder, int status, mode_t mode = S_IRWXU) const
    {
        const std::string path = m_folder.path(folder) + '/' + program;
        writeFile(path, "#!/bin/sh\nexit " + std::to_string(status) + '\n');
        chmod(path.c_str(), mode);
    }

    /// The exit status of the program.
    static int statusOf(const std::string &name)
    {
        pid_t process = 0;
        EXPECT_EQ(startChild({name}, -1, -1, process), 0);
        int status = 0;
        waitpid(process, &status, 0);
        return WEXITSTATUS(status);
    }

    static int errorOf(const std::string &name)
    {
        pid_t process = 0;
        return startChild({name}, -1, -1, process);
    }

    TemporaryFolder m_folder;
    ScopedVariable m_path{"PATH", m_folder.path("missing") + ':' + m_folder.path("first") + ':' +
                                      m_folder.path("second")};
};

TEST_F(StartedChildTest, isTheFirstOnThePath)
{
    addProgram("second", 2);
    EXPECT_EQ(statusOf(program), 2);
    addProgram("first", 1);
    EXPECT_EQ(statusOf(program), 1);
    EXPECT_EQ(statusOf(m_folder.path("second") + '/' + program), 2);
}

TEST_F(StartedChildTest, isTheFirstThatMayBeRun)
{
    addProgram("first", 1, S_IRUSR);
    EXPECT_EQ(errorOf(program), EACCES);
    addProgram("second", 2);
    EXPECT_EQ(statusOf(program), 2);
}

TEST_F(StartedChildTest, thatIsMissingIsAnError)
{
    EXPECT_EQ(errorOf(program), ENOENT);
    EXPECT_EQ(errorOf(m_folder.path("first") + '/' + program), ENOENT);
}

TEST_F(StartedChildTest, hasTheEnvironmentThatWasKept)
{
    EndingProgram starter("start-child-later", "SOME_VARIABLE",
                          {"PATH=/usr/bin:/bin", "SOME_VARIABLE=kept"});
    EXPECT_EQ(starter.reportedLine(), "kept");
    EXPECT_EQ(starter.result(), 0);
}

} // namespace
} // namespace tessaly
