#include "tests/engine/ChildProcess.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr unsigned childTimeLimitSeconds = 120;
constexpr uid_t nobody = 65534;

bool separateMounts()
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// The exit status of a process that runs the body, or -1 when it was killed.
int statusOfChild(const std::function<int()> &body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(childTimeLimitSeconds);
        const int status = body();
        std::fflush(nullptr);
        _exit(status);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

/// The number of a process that runs the body.
pid_t startedChild(const std::function<void()> &body)
{
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        // Many bodies never end: none of them is to outlive the test, however that ends.
        alarm(childTimeLimitSeconds);
        if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || getppid() != parent) {
            _exit(1);
        }
        body();
        _exit(0);
    }
    return child;
}

int statusOf(const std::function<void()> &body)
{
    try {
        body();
    } catch (const std::exception &exception) {
        ADD_FAILURE() << exception.what();
    }
    return testing::Test::HasFailure() ? 1 : 0;
}

} // namespace

void runInChild(const std::function<void()> &body)
{
    EXPECT_EQ(statusOfChild([&] { return statusOf(body); }), 0) << "the child process failed";
}

void runUnprivileged(const std::function<void()> &body)
{
    runInChild([&] {
        ASSERT_EQ(setgroups(0, nullptr), 0);
        ASSERT_EQ(setgid(nobody), 0);
        ASSERT_EQ(setuid(nobody), 0);
        body();
    });
}

void runWithPrivateMounts(const std::function<void()> &body)
{
    runInChild([&] {
        ASSERT_TRUE(separateMounts());
        body();
    });
}

bool isRoot()
{
    return geteuid() == 0;
}

bool canMount()
{
    return isRoot() && statusOfChild([] { return separateMounts() ? 0 : 1; }) == 0;
}

int openDescriptorCount()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<int>(std::distance(begin(descriptors), end(descriptors))) - 1;
}

DescriptorLimit::DescriptorLimit(unsigned count)
{
    rlimit limit = {};
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    m_before = limit.rlim_cur;
    limit.rlim_cur = count;
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
}

DescriptorLimit::~DescriptorLimit()
{
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = m_before;
    setrlimit(RLIMIT_NOFILE, &limit);
}

KillableChild::KillableChild(const std::function<void()> &body) : m_process(startedChild(body)) {}

KillableChild::~KillableChild()
{
    if (m_process > 0) {
        kill();
        waitpid(m_process, nullptr, 0);
    }
}

void KillableChild::kill() const
{
    ::kill(m_process, SIGKILL);
}

bool KillableChild::wasKilled()
{
    int status = 0;
    EXPECT_EQ(waitpid(m_process, &status, 0), m_process);
    m_process = -1;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

} // namespace tessaly
