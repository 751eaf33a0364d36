#include "screens/ScanWorkers.hpp"

#include "engine/tree/LUMFileContainer.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/fakes/FakeFolderBookmarks.hpp"
#include "tests/fakes/Gate.hpp"

#include <QObject>
#include <QTest>

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <latch>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// Work that notes what it is called for, and whose steps note that they are run.
class NotingWork final : public ScanWork {
public:
    [[nodiscard]] Step loadResult() override
    {
        note("load");
        beforeLoadEnds();
        return hasLastResult ? stepThatNotes("loaded") : Step();
    }
    [[nodiscard]] Step scanCompleted(const FinishedScan &scan) override
    {
        note("completed");
        beforeCompletionEnds();
        const std::scoped_lock lock(m_lock);
        m_finished = scan;
        return stepThatNotes("shown");
    }
    [[nodiscard]] Step scanCancelled() override
    {
        note("cancelled");
        return stepThatNotes("cleared");
    }

    [[nodiscard]] Names notes() const
    {
        const std::scoped_lock lock(m_lock);
        return m_notes;
    }
    [[nodiscard]] FinishedScan finished() const
    {
        const std::scoped_lock lock(m_lock);
        return m_finished;
    }

    bool hasLastResult = true;
    std::function<void()> beforeLoadEnds = [] {};
    std::function<void()> beforeCompletionEnds = [] {};

private:
    void note(const std::string &text)
    {
        const std::scoped_lock lock(m_lock);
        EXPECT_NE(std::this_thread::get_id(), m_mainThread) << text;
        m_notes.push_back(text);
    }
    Step stepThatNotes(const std::string &text)
    {
        return [this, text] {
            const std::scoped_lock lock(m_lock);
            EXPECT_EQ(std::this_thread::get_id(), m_mainThread) << text;
            m_notes.push_back(text);
        };
    }

    const std::thread::id m_mainThread = std::this_thread::get_id();
    mutable std::mutex m_lock;
    Names m_notes;           //< guarded by m_lock
    FinishedScan m_finished; //< guarded by m_lock
};

/// Whether a thread of this process is waiting for something, such as the end of another thread.
bool isWaiting(pid_t thread)
{
    std::string status;
    std::getline(std::ifstream("/proc/self/task/" + std::to_string(thread) + "/stat"), status);
    return status.find(") S ") != std::string::npos;
}

class ScanWorkersTest : public testing::Test {
protected:
    void waitForNotes(const Names &notes)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_work.notes() == notes; }, 60'000))
            << testing::PrintToString(m_work.notes());
    }
    [[nodiscard]] std::string diskUrl() const { return fileUrl(m_disk.path()).value(); }

    const TemporaryFolder m_disk;
    FakeFolderBookmarks m_bookmarks;
    NotingWork m_work;
    std::unique_ptr<QObject> m_screen = std::make_unique<QObject>();
    // A gate is opened before the workers are waited for.
    std::unique_ptr<ScanWorkers> m_workers =
        std::make_unique<ScanWorkers>(m_work, *m_screen, m_bookmarks);
    Gate m_gate;
};

TEST_F(ScanWorkersTest, loadOnceAndHandTheResultOverToTheMainThread)
{
    m_workers->startLoading();
    waitForNotes({"load", "loaded"});
    m_workers->startLoading();
    m_workers->stop();
    EXPECT_EQ(m_work.notes(), (Names{"load", "loaded"}));
}

TEST_F(ScanWorkersTest, handNothingOverWhenThereWasNothingToLoad)
{
    m_work.hasLastResult = false;
    m_workers->startLoading();
    m_workers->stop();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_work.notes(), Names{"load"});
}

TEST_F(ScanWorkersTest, scanAFolder)
{
    m_disk.folder("d");
    m_disk.file("d/a", 10);
    m_workers->startScan(m_disk.path(), std::nullopt);
    waitForNotes({"completed", "shown"});
    const FinishedScan scan = m_work.finished();
    ASSERT_NE(scan.tree, nullptr);
    EXPECT_EQ(scan.tree->root().itemName(), m_disk.path());
    EXPECT_EQ(treeLines(scan.tree->root()), (Names{"d/", "d/a 10"}));
    EXPECT_EQ(scan.rootProblem, std::nullopt);
}

TEST_F(ScanWorkersTest, sayWhyAFolderCouldNotBeOpened)
{
    m_workers->startScan(m_disk.path("missing"), std::nullopt);
    waitForNotes({"completed", "shown"});
    EXPECT_EQ(m_work.finished().rootProblem, "No such file or directory");
}

TEST_F(ScanWorkersTest, scanAgainAfterAScan)
{
    m_workers->startScan(m_disk.path(), std::nullopt);
    waitForNotes({"completed", "shown"});
    m_disk.file("new", 10);
    m_workers->startScan(m_disk.path(), std::nullopt);
    waitForNotes({"completed", "shown", "completed", "shown"});
    EXPECT_EQ(treeLines(m_work.finished().tree->root()), Names{"new 10"});
}

TEST_F(ScanWorkersTest, haveAccessToAGrantedFolderWhileTheyScanAndNoLonger)
{
    m_bookmarks.whenStarted = [this] { m_disk.file("seen with access alone", 10); };
    m_work.beforeCompletionEnds = [this] { EXPECT_EQ(m_bookmarks.accessCount(diskUrl()), 0); };
    m_workers->startScan(m_disk.path(), diskUrl());
    waitForNotes({"completed", "shown"});
    EXPECT_EQ(treeLines(m_work.finished().tree->root()), Names{"seen with access alone 10"});
    EXPECT_EQ(m_bookmarks.startCount(diskUrl()), 1);
    EXPECT_EQ(m_bookmarks.stopCount(diskUrl()), 1);
}

TEST_F(ScanWorkersTest, doNotStopAnAccessThatWasRefused)
{
    m_bookmarks.setGone(diskUrl());
    m_workers->startScan(m_disk.path(), diskUrl());
    waitForNotes({"completed", "shown"});
    EXPECT_EQ(m_bookmarks.stopCount(diskUrl()), 0);
}

TEST_F(ScanWorkersTest, cancelTheRunningScan)
{
    std::latch isStarted(1);
    m_bookmarks.whenStarted = [&] {
        isStarted.count_down();
        m_gate.pass()();
    };
    m_workers->startScan(m_disk.path(), diskUrl());
    isStarted.wait();
    EXPECT_TRUE(m_workers->cancelScan());
    m_gate.open();
    waitForNotes({"cancelled", "cleared"});
    EXPECT_EQ(m_bookmarks.accessCount(diskUrl()), 0);
    EXPECT_FALSE(m_workers->cancelScan()) << "it has ended";
}

TEST_F(ScanWorkersTest, doNotCancelAScanWhoseResultIsOnTheWay)
{
    std::latch isCompleted(1);
    m_work.beforeCompletionEnds = [&] {
        isCompleted.count_down();
        m_gate.pass()();
    };
    m_workers->startScan(m_disk.path(), std::nullopt);
    isCompleted.wait();
    EXPECT_FALSE(m_workers->cancelScan());
    m_gate.open();
    waitForNotes({"completed", "shown"});
}

TEST_F(ScanWorkersTest, thatHaveNothingToCancelSaySo)
{
    EXPECT_FALSE(m_workers->cancelScan());
    m_workers->startLoading();
    EXPECT_FALSE(m_workers->cancelScan()) << "a load is no scan";
}

TEST_F(ScanWorkersTest, tellNobodyOfAScanThatTheyEndThemselves)
{
    std::latch isStarted(1);
    m_bookmarks.whenStarted = [&] {
        isStarted.count_down();
        m_gate.pass()();
    };
    m_workers->startScan(m_disk.path(), diskUrl());
    isStarted.wait();
    std::thread opener([this, stopping = gettid()] {
        while (!isWaiting(stopping)) {
            std::this_thread::yield();
        }
        m_gate.open();
    });
    m_workers.reset();
    opener.join();
    EXPECT_EQ(m_work.notes(), Names{});
    EXPECT_EQ(m_bookmarks.accessCount(diskUrl()), 0);
}

TEST_F(ScanWorkersTest, runNoStepsOfAScreenThatIsDestroyed)
{
    m_workers->startScan(m_disk.path(), std::nullopt);
    m_workers->startLoading();
    m_workers.reset(); // waits for both
    m_screen.reset();
    QCoreApplication::processEvents();
    for (const std::string &note : m_work.notes()) {
        EXPECT_TRUE(note == "completed" || note == "load") << note;
    }
}

} // namespace
} // namespace tessaly
