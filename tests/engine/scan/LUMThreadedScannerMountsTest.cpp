// Scans across mount points: kernel file systems, and places that mount themselves when touched.

#include "engine/scan/LUMThreadedScanner.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <functional>
#include <memory>
#include <ostream>

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

/// The server of automounts: it counts the requests, and lets the processes wait that make them.
///
/// The kernel lets this object's own helper process group through; every other process that
/// accesses a place makes a request.
class Automounter {
public:
    Automounter()
    {
        EXPECT_EQ(pipe2(m_pipe.data(), O_CLOEXEC), 0);
        std::array<int, 2> ready{};
        EXPECT_EQ(pipe(ready.data()), 0);
        m_helper = fork();
        if (m_helper == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL); // ends with this process
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

    /// False when the kernel has no automount file system.
    bool serve(const std::string &path, const std::string &kind) const
    {
        const std::string options = "fd=" + std::to_string(m_pipe[1]) +
                                    ",pgrp=" + std::to_string(m_helper) +
                                    ",minproto=5,maxproto=5," + kind;
        return mount("tessaly-test", path.c_str(), "autofs", 0, options.c_str()) == 0;
    }

    /// Runs something as the server, which makes no requests.
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

    /// Whether there was a request since the last call.
    bool wasAsked(int timeoutMs = 0) const
    {
        pollfd waiting = {m_pipe[0], POLLIN, 0};
        if (poll(&waiting, 1, timeoutMs) <= 0) {
            return false;
        }
        std::array<char, 4096> request{};
        return read(m_pipe[0], request.data(), request.size()) > 0;
    }

    /// Whether opening the path makes a request. The process that opens it is ended after that.
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

/// Something mounted in a folder, and what a scan of the folder finds.
struct MountedTree {
    std::string name;
    bool needsAutomounts;
    Lines folders; ///< made before anything is mounted
    std::function<void(const TemporaryFolder &, const Automounter *)> mountAll;
    Lines expected;
    bool isFoundWithoutMountList;

    friend void PrintTo(const MountedTree &tree, std::ostream *out) { *out << tree.name; }
};

class LUMThreadedScannerMountedTrees : public LUMThreadedScannerMounts,
                                       public testing::WithParamInterface<MountedTree> {};

TEST_P(LUMThreadedScannerMountedTrees, areScannedAsTheyAre)
{
    const MountedTree &mounted = GetParam();
    if (mounted.needsAutomounts && !kernelHas("autofs")) {
        GTEST_SKIP() << "this kernel has no automount file system";
    }
    const TemporaryFolder folder;
    for (const std::string &path : mounted.folders) {
        folder.folder(path);
    }

    runWithPrivateMounts([&] {
        const auto automounter =
            mounted.needsAutomounts ? std::make_unique<Automounter>() : nullptr;
        mounted.mountAll(folder, automounter.get());

        EXPECT_EQ(scannedLines(folder.path()), mounted.expected);
        if (mounted.isFoundWithoutMountList) {
            EXPECT_EQ(scannedLines(folder.path(), withoutMountList), mounted.expected);
        }
        EXPECT_FALSE(automounter && automounter->wasAsked());
    });
}

INSTANTIATE_TEST_SUITE_P(
    Mounts, LUMThreadedScannerMountedTrees,
    testing::Values(
        MountedTree{"fileSystemsThatHoldFiles",
                    false,
                    {"disk", "kernel"},
                    [](const TemporaryFolder &folder, const Automounter * /*none*/) {
                        mountAt(folder.path("disk"), "tmpfs");
                        folder.file("disk/a", 5);
                        mountAt(folder.path("kernel"), "proc");
                        mountAt(folder.path("kernel"), "tmpfs"); // covers the other
                        folder.file("kernel/b", 6);
                    },
                    {"disk/", "disk/a 5", "kernel/", "kernel/b 6"},
                    true},
        MountedTree{"aFileSystemByWhatCoversIt",
                    false,
                    {"covered"},
                    [](const TemporaryFolder &folder, const Automounter * /*none*/) {
                        mountAt(folder.path("covered"), "tmpfs");
                        folder.file("covered/a", 5);
                        mountAt(folder.path("covered"), "proc");
                    },
                    {"covered/"},
                    true},
        MountedTree{"whatIsMountedOverAnAutomountPoint",
                    true,
                    {"s", "s/place"},
                    [](const TemporaryFolder &folder, const Automounter *automounter) {
                        ASSERT_TRUE(automounter->serve(folder.path("s/place"), "direct"));
                        automounter->asServer([&] {
                            mountAt(folder.path("s/place"), "tmpfs");
                            folder.file("s/place/a", 5);
                        });
                    },
                    {"s/", "s/place/", "s/place/a 5"},
                    true},
        MountedTree{"whatIsMountedBelowAnAutomountPoint",
                    true,
                    {"s", "s/homes"},
                    [](const TemporaryFolder &folder, const Automounter *automounter) {
                        ASSERT_TRUE(automounter->serve(folder.path("s/homes"), "indirect"));
                        automounter->asServer([&] {
                            folder.folder("s/homes/away");
                            folder.folder("s/homes/here");
                            mountAt(folder.path("s/homes/here"), "tmpfs");
                            folder.folder("s/homes/here/in");
                            folder.file("s/homes/here/in/a", 5);
                        });
                        EXPECT_EQ(scannedLines(folder.path("s/homes")),
                                  (Lines{"here/", "here/in/", "here/in/a 5"}));
                        EXPECT_FALSE(automounter->wasAsked());
                        EXPECT_TRUE(automounter->isAskedByOpening(folder.path("s/homes/away")));
                    },
                    {"s/", "s/homes/", "s/homes/here/", "s/homes/here/in/", "s/homes/here/in/a 5"},
                    false}),
    [](const auto &mounted) { return mounted.param.name; });

TEST_F(LUMThreadedScannerMounts, neverTriggerAnAutomount)
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
