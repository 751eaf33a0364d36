// Scans of folders that hang in the kernel, as those of a server that is gone.

#include "tests/engine/UnansweredMount.hpp"
#include "tests/screens/HomeScreenTest.hpp"
#include "tests/screens/ScanScreenTest.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// For each thread of this process whether it is waiting for something; but for those that Qt keeps
/// for a while.
std::vector<bool> waitingThreads()
{
    std::vector<bool> waiting;
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string status;
        std::getline(std::ifstream(task.path() / "stat"), status);
        if (status.find("(Thread (pooled))") != std::string::npos) {
            continue;
        }
        const std::size_t nameEnd = status.rfind(')');
        waiting.push_back(nameEnd < status.size() &&
                          std::string("SD").find(status.at(nameEnd + 2)) != std::string::npos);
    }
    return waiting;
}

long threadCount()
{
    return static_cast<long>(waitingThreads().size());
}

/// Has the thread sanitizer start its own thread, which it does with the first other one. So it is
/// counted before a scan too.
void startFirstThread()
{
    std::thread([] {}).join();
}

/// Waits until there are so many threads, all of which wait but this one.
void waitUntilOthersWait(long count)
{
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const auto waiting = waitingThreads();
            return static_cast<long>(waiting.size()) == count &&
                   std::count(waiting.begin(), waiting.end(), false) == 1;
        },
        60'000));
}

template <typename Fixture>
class HangingScreenTest : public Fixture {
protected:
    void SetUp() override
    {
        if (const auto missing = UnansweredMount::missingRequirement()) {
            GTEST_SKIP() << *missing;
        }
        startFirstThread();
    }

    void mountAt(const std::string &path) { m_mount.emplace(path); }

    /// Cancels the scan that hangs in so many threads more than there were.
    void cancelHangingScan(long threadsBefore, long hangingThreads)
    {
        waitUntilOthersWait(threadsBefore + hangingThreads);
        EXPECT_EQ(this->button("cancelButton").text(), u"Cancel"_s);
        this->press("cancelButton");
        EXPECT_EQ(this->button("cancelButton").text(), u"Stopping…"_s);
        EXPECT_TRUE(this->button("cancelButton").isVisible());
        this->waitForScan();
        EXPECT_EQ(this->label("emptyTitle"), u"The scan was canceled"_s);
        EXPECT_TRUE(this->button("scanButton").isVisible());
        EXPECT_FALSE(this->button("cancelButton").isVisible());
        EXPECT_GT(threadCount(), threadsBefore) << "nothing was left behind";
    }

    /// What was left behind must not use anything of the screen.
    void closeAndUnmount(long threadsBefore)
    {
        this->m_screen.reset();
        m_mount.reset();
        EXPECT_TRUE(QTest::qWaitFor([&] { return threadCount() <= threadsBefore; }, 60'000));
    }

    std::optional<UnansweredMount> m_mount;
};

using HangingScanTest = HangingScreenTest<ScanScreenTest>;
using HangingHomeScanTest = HangingScreenTest<HomeScreenTest>;

TEST_F(HangingScanTest, ofADeadFolderIsLeftBehindWhenItIsCancelled)
{
    m_disk.folder("dead");
    m_disk.file("fine", 1'000);
    mountAt(m_disk.path("dead"));
    openScreen();
    const long threads = threadCount();
    chooseAndScan(m_disk.path("dead"));
    cancelHangingScan(threads, 2);
    EXPECT_EQ(m_services.notifier.notifications().back().text, "Scan canceled");
    EXPECT_TRUE(KORVENHistoryStore::sharedStore().allItems().empty());
    closeAndUnmount(threads);
}

TEST_F(HangingScanTest, ofADeadSubfolderIsLeftBehindAndTheNextScanCompletes)
{
    m_disk.folder("disk");
    m_disk.folder("disk/dead");
    m_disk.folder("fine");
    m_disk.file("fine/a", 1'000);
    mountAt(m_disk.path("disk/dead"));
    openScreen();
    const long threads = threadCount();
    chooseAndScan(m_disk.path("disk"));
    cancelHangingScan(threads, 3);

    chooseAndScan(m_disk.path("fine"));
    EXPECT_EQ(button("cancelButton").text(), u"Cancel"_s);
    waitForScan();
    EXPECT_EQ(rowNames(), Names{"a"});
    closeAndUnmount(threads);
}

TEST_F(HangingScanTest, doesNotHoldUpTheEndOfTheScreen)
{
    m_disk.folder("dead");
    mountAt(m_disk.path("dead"));
    openScreen();
    const long threads = threadCount();
    chooseAndScan(m_disk.path("dead"));
    waitUntilOthersWait(threads + 2);
    closeAndUnmount(threads);
    EXPECT_TRUE(m_services.notifier.notifications().empty());
}

TEST_F(HangingHomeScanTest, isLeftBehindBeforeTheAccessIsStarted)
{
    mountAt(homePath());
    grantHome();
    openScreen();
    const long threads = threadCount();
    press("scanButton");
    cancelHangingScan(threads, 2);
    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan canceled"});
    EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), 0);
    closeAndUnmount(threads);
}

} // namespace
} // namespace tessaly
