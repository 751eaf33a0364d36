#include "platform/background/ChildProgram.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/EndingProgram.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {
namespace {

constexpr auto program = "some-program";

/// A PATH of two folders, and one that is missing.
class ChildProgramTest : public testing::Test {
protected:
    ChildProgramTest()
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
    static int statusOf(const ChildProgram &child)
    {
        pid_t process = 0;
        EXPECT_EQ(child.start(process), 0);
        int status = 0;
        waitpid(process, &status, 0);
        return WEXITSTATUS(status);
    }

    static int errorOf(const std::string &name)
    {
        pid_t process = 0;
        return ChildProgram{.words = {name}}.start(process);
    }

    TemporaryFolder m_folder;
    ScopedVariable m_path{"PATH", m_folder.path("missing") + ':' + m_folder.path("first") + ':' +
                                      m_folder.path("second")};
};

TEST_F(ChildProgramTest, isTheFirstOnThePath)
{
    addProgram("second", 2);
    EXPECT_EQ(statusOf({{program}}), 2);
    addProgram("first", 1);
    EXPECT_EQ(statusOf({{program}}), 1);
    EXPECT_EQ(statusOf({{m_folder.path("second") + '/' + program}}), 2);
}

TEST_F(ChildProgramTest, isTheFirstThatMayBeRun)
{
    addProgram("first", 1, S_IRUSR);
    EXPECT_EQ(errorOf(program), EACCES);
    addProgram("second", 2);
    EXPECT_EQ(statusOf({{program}}), 2);
}

TEST_F(ChildProgramTest, thatIsMissingIsAnError)
{
    EXPECT_EQ(errorOf(program), ENOENT);
    EXPECT_EQ(errorOf(m_folder.path("first") + '/' + program), ENOENT);
}

TEST_F(ChildProgramTest, hasTheEnvironmentThatWasKept)
{
    EndingProgram starter("start-child-later", "SOME_VARIABLE",
                          {"PATH=/usr/bin:/bin", "SOME_VARIABLE=kept"});
    EXPECT_EQ(starter.reportedLine(), "kept");
    EXPECT_EQ(starter.result(), 0);
}

TEST_F(ChildProgramTest, hasTheEnvironmentThatIsGiven)
{
    const ChildProgram child{.words = {"/bin/sh", "-c", "test \"$SOME_VARIABLE\" = given"},
                             .environment = {{"SOME_VARIABLE=given"}}};
    EXPECT_EQ(statusOf(child), 0);
}

TEST_F(ChildProgramTest, doesNotIgnoreTheSignalsThatAreIgnoredHere)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    // Its signals are the bits of a hexadecimal number; SIGPIPE is the lowest of the fourth digit.
    const ChildProgram child{
        .words = {"/bin/grep", "-q", "^SigIgn:.*[02468ace]...$", "/proc/self/status"}};
    EXPECT_EQ(statusOf(child), 0);
    std::signal(SIGPIPE, before);
}

TEST_F(ChildProgramTest, inheritsNoDescriptorButItsChannel)
{
    constexpr int otherNumber = 9;
    const scan::FileDescriptor channel(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, otherNumber));
    const scan::FileDescriptor other(fcntl(STDERR_FILENO, F_DUPFD, otherNumber));
    const ChildProgram child{.words = {"/bin/sh", "-c",
                                       "test -e /proc/$$/fd/3 && test ! -e /proc/$$/fd/" +
                                           std::to_string(other.number())},
                             .errors = STDERR_FILENO,
                             .channel = channel.number()};
    EXPECT_EQ(statusOf(child), 0);
}

TEST_F(ChildProgramTest, hasAProcessGroupOfItsOwnWhereThatIsWanted)
{
    const std::string ours = std::to_string(getpgrp());
    ChildProgram child{
        .words = {"/bin/sh", "-c",
                  "read -r _ _ _ _ group _ </proc/self/stat; test $group = " + ours}};
    EXPECT_EQ(statusOf(child), 0);
    child.hasOwnGroup = true;
    EXPECT_EQ(statusOf(child), 1);
}

} // namespace
} // namespace tessaly
