#include "preview/decoder/Sandbox.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/DecoderProcesses.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {
namespace {

/// Each question is asked in a process of its own, since a sandbox has no way out.
class SandboxTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (isSanitized) {
            GTEST_SKIP() << "a sanitizer needs more than the limits";
        }
    }

    [[nodiscard]] bool isTrueInside(const std::function<bool()> &question) const
    {
        const Sandbox sandbox({m_folder.path()});
        const pid_t process = fork();
        if (process == 0) {
            Sandbox::limitMemory();
            sandbox.enter();
            _exit(question() ? 0 : 1);
        }
        int status = -1;
        waitpid(process, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    const TemporaryFolder m_folder;
};

TEST_F(SandboxTest, readsFilesOfItsFoldersAlone)
{
    const TemporaryFolder others;
    m_folder.file("a", 9);
    others.file("a", 9);
    const std::string inside = m_folder.path("a");
    const std::string outside = others.path("a");
    const auto opens = [](const std::string &path, int flags) {
        return open(path.c_str(), flags | O_CLOEXEC, 0600) >= 0;
    };
    EXPECT_TRUE(isTrueInside([&] { return opens(inside, O_RDONLY); }));
    EXPECT_FALSE(isTrueInside([&] { return opens(outside, O_RDONLY); }));
    EXPECT_FALSE(isTrueInside([&] { return opens("/etc/passwd", O_RDONLY); }));
    EXPECT_FALSE(isTrueInside([&] { return opens(inside, O_WRONLY); }));
    EXPECT_FALSE(isTrueInside([&] { return opens(m_folder.path("new"), O_RDWR | O_CREAT); }));
    EXPECT_FALSE(isTrueInside([&] { return unlink(inside.c_str()) == 0; }));
}

TEST_F(SandboxTest, readsTheFileThatItWasGiven)
{
    const TemporaryFolder others;
    others.file("a", 9);
    const int given = open(others.path("a").c_str(), O_RDONLY | O_CLOEXEC);
    char byte = 'a';
    EXPECT_TRUE(isTrueInside([&] { return read(given, &byte, 1) == 1 && byte == '\0'; }));
    close(given);
}

TEST_F(SandboxTest, hasNoNetwork)
{
    EXPECT_FALSE(isTrueInside([] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }));
    EXPECT_FALSE(isTrueInside([] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }));
    EXPECT_FALSE(isTrueInside([] { return socket(AF_NETLINK, SOCK_RAW, 0) >= 0; }));
}

TEST_F(SandboxTest, startsThreadsButNoProcesses)
{
    EXPECT_TRUE(isTrueInside([] {
        bool hasRun = false;
        std::thread([&hasRun] { hasRun = true; }).join();
        return hasRun;
    }));
    EXPECT_FALSE(isTrueInside([] { return fork() >= 0; }));
    EXPECT_FALSE(isTrueInside([] {
        return execl("/bin/true", "true", nullptr) == 0; // NOLINT: what is asked
    }));
    EXPECT_FALSE(isTrueInside([] { return kill(getppid(), 0) == 0; }));
}

TEST_F(SandboxTest, takesNoMoreMemoryThanItsLimit)
{
    const auto maps = [](std::size_t byteCount) {
        return mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                    0) != MAP_FAILED;
    };
    EXPECT_FALSE(isTrueInside([&] { return maps(Sandbox::maxMemoryBytes); }));
    EXPECT_FALSE(isTrueInside([] {
        const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
        return setrlimit(RLIMIT_AS, &none) == 0;
    }));
    EXPECT_TRUE(isTrueInside([] {
        rlimit limit{};
        return getrlimit(RLIMIT_CPU, &limit) == 0 && limit.rlim_max == Sandbox::maxCpuSeconds;
    }));
}

} // namespace
} // namespace tessaly
