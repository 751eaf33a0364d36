// Scans across mount points: kernel file systems, and places that mount themselves when touched.

#include "engine/scan/LUMThreadedScanner.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fstream>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly::scan {

namespace {

using Lines = std::vector<std::string>;

const ScanSystem withoutMountList{.startThread = startDetachedThread, .mountInfoPath = "/nowhere"};

void mountAt(const std::string &path, const char *type, const char *options = nullptr)
{
    ASSERT_EQ(mount("tessaly-test", path.c_str(), type, 0, options), 0)
        << type << " at " << path << ": " << errno;
}

/// The side of an automount that would do the mounting: it counts who asked, and lets them wait.
///
/// The kernel lets this object's own helper process group through; every other process that
/// touches a place is one that asks.
class Automounter {
public:
    Automounter()
    {
        EXPECT_EQ(pipe2(m_pipe.data(), O_CLOEXEC), 0);
        std::array<int, 2> ready{};
        EXPECT_EQ(pipe(ready.data()), 0);
        m_helper = fork();
        if (m_helper == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL); // not to be left behind
            setpgid(0, 0);
            EXPECT_EQ(write(ready[1], "", 1), 1);
            for (;;) {
                pause();
            }
        }
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~Automounter()
    {
        kill(m_helper, SIGKILL);
        waitpid(m_helper, nullptr, 0);
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
    Automounter(const Automounter &) = delete;
    Automounter &operator=(const Automounter &) = delete;
    Automounter(Automounter &&) = delete;
    Automounter &operator=(Automounter &&) = delete;

    /// False when the kernel has no automount file system.
    bool serve(const std::string &path, const std::string &kind) const
    {
        const std::string options = "fd=" + std::to_string(m_pipe[1]) +
                                    ",pgrp=" + std::to_string(m_helper) +
                                    ",minproto=5,maxproto=5," + kind;
        return mount("tessaly-test", path.c_str(), "autofs", 0, options.c_str()) == 0;
    }

    /// Does something as the one that serves, who is let through.
    template <typename Body>
    void asServer(Body body) const
    {
        const pid_t server = fork();
        if (server == 0) {
            setpgid(0, m_helper);
            body();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        waitpid(server, &status, 0);
        EXPECT_EQ(status, 0);
    }

    /// Whether anybody has asked for a mount since this was called last.
    bool wasAsked(int timeoutMs = 0) const
    {
        pollfd waiting = {m_pipe[0], POLLIN, 0};
        if (poll(&waiting, 1, timeoutMs) <= 0) {
            return false;
        }
        std::array<char, 4096> request{};
        return read(m_pipe[0], request.data(), request.size()) > 0;
    }

    /// Whether opening the path asks. The process that opens it is ended after that.
    bool isAskedByOpening(const std::string &path) const
    {
        const pid_t opener = fork();
        if (opener == 0) {
            static_cast<void>(::open(path.c_str(), O_RDONLY | O_DIRECTORY));
            _exit(0);
        }
        const bool asked = wasAsked(10'000);
        kill(opener, SIGKILL);
        waitpid(opener, nullptr, 0);
        return asked;
    }

private:
    std::array<int, 2> m_pipe{};
    pid_t m_helper = -1;
};

/// Whether this kernel has a file system of a type.
bool kernelHas(const std::string &type)
{
    std::ifstream types("/proc/filesystems");
    const std::string text(std::istreambuf_iterator<char>(types), {});
    return text.find("\t" + type + "\n") != std::string::npos;
}

} // namespace

class LUMThreadedScannerMounts : public testing::Test {
protected:
    void SetUp() override
    {
        if (!canMount()) {
            GTEST_SKIP() << "needs the right to mount";
        }
    }
    static void needAutomounts()
    {
        if (!kernelHas("autofs")) {
            GTEST_SKIP() << "this kernel has no automount file system";
        }
    }
};

TEST_F(LUMThreadedScannerMounts, listKernelFileSystemsAsEmptyFoldersWhereverTheyAre)
{
    const TemporaryFolder folder;
    Lines expected;
    Lines mounted;
    for (const std::string type : {"proc", "sysfs", "devpts", "cgroup2", "debugfs", "tracefs",
                                   "securityfs", "bpf", "mqueue", "hugetlbfs", "binfmt_misc"}) {
        if (kernelHas(type)) {
            mounted.push_back(type);
        }
    }
    for (const std::string where : {"", "s/", "s/a b\\c\n/"}) {
        if (!where.empty()) {
            folder.folder(where);
            expected.push_back(where);
        }
        for (const std::string &type : mounted) {
            folder.folder(where + type);
            expected.push_back(where + type + '/');
        }
    }
    std::sort(expected.begin(), expected.end());

    runWithPrivateMounts([&] {
        for (const std::string &line : expected) {
            const std::string type = line.substr(line.rfind('/', line.size() - 2) + 1);
            if (kernelHas(type.substr(0, type.size() - 1))) {
                mountAt(folder.path(line), type.substr(0, type.size() - 1).c_str());
            }
        }
        EXPECT_EQ(scannedLines(folder.path()), expected);
        EXPECT_EQ(scannedLines(folder.path(), withoutMountList), expected);
        for (const std::string &type : mounted) {
            EXPECT_EQ(scannedLines(folder.path(type)), Lines{}) << type;
            EXPECT_EQ(scannedLines(folder.path(type) + '/', withoutMountList), Lines{}) << type;
        }
    });
}

TEST_F(LUMThreadedScannerMounts, scanFileSystemsThatHoldFiles)
{
    const TemporaryFolder folder;
    folder.folder("disk");
    folder.folder("kernel");

    runWithPrivateMounts([&] {
        mountAt(folder.path("disk"), "tmpfs");
        folder.file("disk/a", 5);
        mountAt(folder.path("kernel"), "proc");
        mountAt(folder.path("kernel"), "tmpfs"); // covers the other
        folder.file("kernel/b", 6);

        const Lines expected{"disk/", "disk/a 5", "kernel/", "kernel/b 6"};
        EXPECT_EQ(scannedLines(folder.path()), expected);
        EXPECT_EQ(scannedLines(folder.path(), withoutMountList), expected);
    });
}

TEST_F(LUMThreadedScannerMounts, judgeACoveredFileSystemByWhatCoversIt)
{
    const TemporaryFolder folder;
    folder.folder("covered");

    runWithPrivateMounts([&] {
        mountAt(folder.path("covered"), "tmpfs");
        folder.file("covered/a", 5);
        mountAt(folder.path("covered"), "proc");
        EXPECT_EQ(scannedLines(folder.path()), Lines{"covered/"});
    });
}

TEST_F(LUMThreadedScannerMounts, neverMakeAPlaceMountItself)
{
    needAutomounts();
    if (IsSkipped()) {
        return;
    }
    const TemporaryFolder folder;
    folder.folder("s");
    folder.folder("s/place");
    folder.folder("place");
    folder.folder("links");
    folder.link("links/absolute", folder.path("place"));
    folder.link("links/relative", "../s/place");
    folder.link("links/twice", "absolute");
    folder.link("links/inside", folder.path("place") + "/deeper");
    folder.link("links/slash", folder.path("place") + "/");
    folder.link("links/through", folder.path("place") + "/../s");
    folder.link("links/plain", "../s");
    folder.link("links/loop", "loop");
    folder.link("links/broken", "../nowhere");
    const Lines expected{"links/",       "links/absolute/", "links/plain/", "links/relative/",
                         "links/slash/", "links/twice/",    "place/",       "s/",
                         "s/place/"};

    runWithPrivateMounts([&] {
        const Automounter automounter;
        ASSERT_TRUE(automounter.serve(folder.path("place"), "direct"));
        ASSERT_TRUE(automounter.serve(folder.path("s/place"), "direct"));

        EXPECT_EQ(scannedLines(folder.path()), expected);
        EXPECT_EQ(scannedLines(folder.path(), withoutMountList), expected);
        EXPECT_EQ(scannedLines(folder.path("place")), Lines{});
        EXPECT_EQ(scannedLines(folder.path("place/")), Lines{});
        EXPECT_EQ(scannedLines(folder.path("links/twice")), Lines{});

        EXPECT_FALSE(automounter.wasAsked());
        EXPECT_TRUE(automounter.isAskedByOpening(folder.path("place")));
    });
}

TEST_F(LUMThreadedScannerMounts, scanWhatIsAlreadyMountedOverAPlaceThatMountsItself)
{
    needAutomounts();
    if (IsSkipped()) {
        return;
    }
    const TemporaryFolder folder;
    folder.folder("s");
    folder.folder("s/place");

    runWithPrivateMounts([&] {
        const Automounter automounter;
        ASSERT_TRUE(automounter.serve(folder.path("s/place"), "direct"));
        automounter.asServer([&] {
            mountAt(folder.path("s/place"), "tmpfs");
            folder.file("s/place/a", 5);
        });

        const Lines expected{"s/", "s/place/", "s/place/a 5"};
        EXPECT_EQ(scannedLines(folder.path()), expected);
        EXPECT_EQ(scannedLines(folder.path(), withoutMountList), expected);
        EXPECT_FALSE(automounter.wasAsked());
    });
}

TEST_F(LUMThreadedScannerMounts, scanWhatIsMountedBelowAFolderOfPlacesThatMountThemselves)
{
    needAutomounts();
    if (IsSkipped()) {
        return;
    }
    const TemporaryFolder folder;
    folder.folder("s");
    folder.folder("s/homes");

    runWithPrivateMounts([&] {
        const Automounter automounter;
        ASSERT_TRUE(automounter.serve(folder.path("s/homes"), "indirect"));
        automounter.asServer([&] {
            folder.folder("s/homes/away");
            folder.folder("s/homes/here");
            mountAt(folder.path("s/homes/here"), "tmpfs");
            folder.folder("s/homes/here/in");
            folder.file("s/homes/here/in/a", 5);
        });

        EXPECT_EQ(scannedLines(folder.path()), (Lines{"s/", "s/homes/", "s/homes/here/",
                                                      "s/homes/here/in/", "s/homes/here/in/a 5"}));
        EXPECT_EQ(scannedLines(folder.path("s/homes")),
                  (Lines{"here/", "here/in/", "here/in/a 5"}));
        EXPECT_FALSE(automounter.wasAsked());
        EXPECT_TRUE(automounter.isAskedByOpening(folder.path("s/homes/away")));
    });
}

TEST_F(LUMThreadedScannerMounts, followLinksCarefullyWithFewDescriptors)
{
    needAutomounts();
    if (IsSkipped()) {
        return;
    }
    const TemporaryFolder folder;
    folder.folder("place");
    folder.nestedFolders("d", 50, 5, TemporaryFolder::Siblings::two);
    folder.link("d/link", "../d/d/d/..");

    runWithPrivateMounts([&] {
        const Automounter automounter;
        ASSERT_TRUE(automounter.serve(folder.path("place"), "direct"));
        const Lines expected = scannedLines(folder.path());
        EXPECT_EQ(expected.size(), 50U * 5 + 1 + 1 + 1);
        const DescriptorLimit limit(static_cast<unsigned>(openDescriptorCount()) + 10);

        EXPECT_EQ(scannedLines(folder.path()), expected);
        EXPECT_FALSE(automounter.wasAsked());
    });
}

} // namespace tessaly::scan
