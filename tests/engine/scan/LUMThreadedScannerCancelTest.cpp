// Scans that are cancelled while a walk is in the middle of a folder, or cannot get on.

#include "engine/scan/LUMThreadedScanner.hpp"
#include "engine/scan/MountTable.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly::scan {

namespace {

using Names = std::vector<std::string>;

/// Does something on the thread that made this, each time that the thread has read a piece of a
/// folder's listing: the system sends it a signal. One at a time.
///
/// What is done interrupts the thread anywhere outside the kernel: it may only do what a signal
/// handler may.
class ListingTrap {
public:
    ListingTrap(const std::string &path, std::function<void()> whenRead)
        : m_folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          m_whenRead(std::move(whenRead))
    {
        current = this;
        struct sigaction action = {};
        action.sa_handler = [](int /*signal*/) { current->m_whenRead(); };
        action.sa_flags = SA_RESTART;
        EXPECT_EQ(sigaction(SIGUSR1, &action, &m_before), 0);
        const f_owner_ex thisThread = {F_OWNER_TID, gettid()};
        m_isSet = fcntl(m_folder.number(), F_SETSIG, SIGUSR1) == 0 &&
                  fcntl(m_folder.number(), F_SETOWN_EX, &thisThread) == 0 &&
                  fcntl(m_folder.number(), F_NOTIFY, DN_ACCESS | DN_MULTISHOT) == 0;
    }
    ~ListingTrap()
    {
        m_folder.close();
        sigaction(SIGUSR1, &m_before, nullptr);
        current = nullptr;
    }
    ListingTrap(const ListingTrap &) = delete;
    ListingTrap &operator=(const ListingTrap &) = delete;

    /// False where the system does not tell who reads a folder.
    [[nodiscard]] bool isSet() const { return m_isSet; }

private:
    inline static ListingTrap *current = nullptr;

    FileDescriptor m_folder;
    std::function<void()> m_whenRead;
    struct sigaction m_before = {};
    bool m_isSet = false;
};

bool canTrapListings()
{
    const TemporaryFolder folder; // one that nobody else reads
    return ListingTrap(folder.path(), [] {}).isSet();
}

/// Carries single letters from one thread to another; the reader waits for them.
class Letters {
public:
    Letters() { EXPECT_EQ(pipe2(m_ends.data(), O_CLOEXEC), 0); }
    ~Letters()
    {
        close(m_ends[0]);
        close(m_ends[1]);
    }
    Letters(const Letters &) = delete;
    Letters &operator=(const Letters &) = delete;

    /// Also for signal handlers.
    void send(char letter) const { (void)!write(m_ends[1], &letter, 1); }
    [[nodiscard]] char receive() const
    {
        char letter = 0;
        return read(m_ends[0], &letter, 1) == 1 ? letter : '\0';
    }

private:
    std::array<int, 2> m_ends{};
};

/// Returns once a thread of this process waits for something that is not there yet.
void waitUntilBlocked(pid_t thread)
{
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    for (;;) {
        std::string status;
        std::getline(std::ifstream(path), status);
        const std::size_t nameEnd = status.rfind(')');
        ASSERT_LT(nameEnd, status.size()) << "the thread has ended";
        if (status.substr(nameEnd).starts_with(") S")) {
            return;
        }
        std::this_thread::yield();
    }
}

} // namespace

TEST(LUMThreadedScannerCancel, stopsAWalkInTheMiddleOfALargeFolder)
{
    if (!canTrapListings()) {
        GTEST_SKIP() << "needs a system that tells who reads a folder";
    }
    const TemporaryFolder folder;
    folder.folder("d");
    for (int i = 0; i < 3000; ++i) { // many times what one call lists
        folder.file("d/" + std::string(200, 'n') + std::to_string(i));
    }
    const auto scan = std::make_shared<ScanState>();
    scan->mounts = MountPointTree::fromTable({}, folder.path());
    scan->budget.provide(DescriptorBudget::minShare);
    auto &d = scan->tree->leaseArena()->make<tree::LUMFileContainer>("d", std::uint64_t{0});
    scan->tree->root().subitems().append(d);
    const auto scanRoot =
        std::make_shared<const FileDescriptor>(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    scan->threadCount = 1;

    std::atomic<int> piecesRead = 0;
    {
        const ListingTrap trap(folder.path("d"), [&] {
            if (++piecesRead == 3) {
                scan->cancelScanFlag = 1;
            }
        });
        LUMThreadedScanner::scanFolderR({scan, scanRoot, {&d, nullptr}});
    }

    EXPECT_EQ(piecesRead, 3);
    EXPECT_EQ(scan->threadCount, 0);
    const Names listed = listedNames(folder.path("d"));
    const Names recorded = childNames(d);
    ASSERT_LT(recorded.size(), listed.size());
    EXPECT_GT(recorded.size(), 0U);
    EXPECT_EQ(recorded, Names(listed.begin(), listed.begin() + recorded.size()));
}

TEST(LUMThreadedScannerCancel, endsWalksThatWaitForDescriptorsWhileAnotherHangs)
{
    if (!canTrapListings()) {
        GTEST_SKIP() << "needs a system that tells who reads a folder";
    }
    const TemporaryFolder folder;
    for (const std::string name : {"a", "b"}) {
        folder.folder(name);
        folder.file(name + "/file", 1);
    }
    const std::string hanging = listedNames(folder.path()).front();
    const std::string waiting = hanging == "a" ? "b" : "a";

    runInChild([&] {
        // So few that the scan's budget is a single walk's.
        const DescriptorLimit limit(static_cast<unsigned>(openDescriptorCount()) + 14);
        const Letters fromHanging;
        const Letters toHanging;
        const Letters fromWaiting;
        std::atomic<pid_t> waitingThread = 0;
        int startedCount = 0;
        LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
            if (++startedCount == 1) {
                EXPECT_TRUE(startDetachedThread([&, work] {
                    const ListingTrap trap(folder.path(hanging), [&] {
                        fromHanging.send('h');
                        (void)toHanging.receive();
                    });
                    work();
                    fromHanging.send('e');
                }));
                EXPECT_EQ(fromHanging.receive(), 'h');
                return true;
            }
            return startDetachedThread([&, work] {
                waitingThread = gettid();
                waitingThread.notify_all();
                work();
                fromWaiting.send('e');
            });
        }});

        scanner.scanRootFolder(folder.path());
        waitingThread.wait(0);
        waitUntilBlocked(waitingThread);
        EXPECT_EQ(scanner.scanThreadCount(), 2);

        scanner.cancelScanInProgress();

        EXPECT_EQ(fromWaiting.receive(), 'e');
        EXPECT_EQ(scanner.scanThreadCount(), 1);
        toHanging.send('g');
        EXPECT_EQ(fromHanging.receive(), 'e');
        scanner.waitUntilFinished();
        EXPECT_EQ(childNames(*scanner.rootContainer()), (Names{hanging, waiting}));
        EXPECT_EQ(childNames(*childNamed(*scanner.rootContainer(), waiting)->asContainer()),
                  Names{});
    });
}

} // namespace tessaly::scan
