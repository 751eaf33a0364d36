#include "history/records/HistoryFileWatch.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

using namespace std::chrono_literals;

class HistoryFileWatchTest : public testing::Test {
protected:
    HistoryFileWatchTest() { m_folder.folder("documents"); }

    TemporaryFolder m_folder;
    const std::string m_file = m_folder.path("documents/history");
};

TEST_F(HistoryFileWatchTest, tellsOfWhatHappensToTheFile)
{
    m_folder.file("documents/history");
    HistoryFileWatch watch(nullptr, 1h);
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    EXPECT_TRUE(watch.isActive());

    ASSERT_EQ(chmod(m_file.c_str(), 0), 0);
    EXPECT_TRUE(told.wait()) << "other permissions";
    told.clear();
    ASSERT_EQ(unlink(m_file.c_str()), 0);
    EXPECT_TRUE(told.wait()) << "gone";
    told.clear();
    m_folder.folder("documents/history");
    EXPECT_TRUE(told.wait()) << "something else in its place";
}

TEST_F(HistoryFileWatchTest, tellsOfTheFoldersPermissions)
{
    HistoryFileWatch watch(nullptr, 1h);
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    ASSERT_EQ(chmod(m_folder.path("documents").c_str(), 0500), 0);
    EXPECT_TRUE(told.wait());
}

TEST_F(HistoryFileWatchTest, tellsOfAFolderThatIsThereAgain)
{
    ASSERT_EQ(rmdir(m_folder.path("documents").c_str()), 0);
    HistoryFileWatch watch(nullptr, 1h);
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    m_folder.folder("documents");
    EXPECT_TRUE(told.wait());
}

TEST_F(HistoryFileWatchTest, tellsNowAndThenOfWhatNobodyTellsOf)
{
    HistoryFileWatch watch(nullptr, 1ms);
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    EXPECT_TRUE(told.wait());
    EXPECT_TRUE(told.wait());
}

TEST_F(HistoryFileWatchTest, isSilentOnceItIsStopped)
{
    HistoryFileWatch watch(nullptr, 1h);
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    watch.stop();
    EXPECT_FALSE(watch.isActive());
    m_folder.file("documents/history");
    // Another watch is told of the next change, and by then this one would have been, too.
    HistoryFileWatch other(nullptr, 1h);
    QSignalSpy otherTold(&other, &HistoryFileWatch::mayHaveChanged);
    other.start(m_file);
    m_folder.file("documents/another");
    EXPECT_TRUE(otherTold.wait());
    EXPECT_EQ(told.count(), 0);

    watch.start(m_file);
    m_folder.file("documents/a third");
    EXPECT_TRUE(told.wait()) << "it can be started again";
}

/// A read of the file that hangs until it is let go on.
struct HangingRead {
    std::promise<std::thread::id> started;
    std::promise<void> hangs;
    std::promise<void> ended;

    void read()
    {
        started.set_value(std::this_thread::get_id());
        hangs.get_future().wait();
        ended.set_value();
    }
};

TEST_F(HistoryFileWatchTest, isSilentWhileTheFileHangs)
{
    const auto hanging = std::make_shared<HangingRead>();
    const auto count = std::make_shared<std::atomic<int>>(0);
    HistoryFileWatch watch(nullptr, 1ms, [hanging, count](const std::string & /*path*/) {
        if (++*count == 1) {
            hanging->read();
        }
    });
    QSignalSpy told(&watch, &HistoryFileWatch::mayHaveChanged);
    watch.start(m_file);
    std::future<std::thread::id> started = hanging->started.get_future();
    ASSERT_TRUE(QTest::qWaitFor([&] { return started.wait_for(0s) == std::future_status::ready; }));
    EXPECT_NE(started.get(), std::this_thread::get_id());

    // Meanwhile the timer goes on, and the event loop runs.
    QTimer other;
    QSignalSpy otherTold(&other, &QTimer::timeout);
    other.start(1ms);
    ASSERT_TRUE(QTest::qWaitFor([&] { return otherTold.count() >= 5; }));
    EXPECT_EQ(told.count(), 0);
    EXPECT_EQ(*count, 1) << "one read at a time";

    hanging->hangs.set_value();
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.count() >= 2; }));
}

TEST_F(HistoryFileWatchTest, leavesAReadThatHangsBehind)
{
    const auto hanging = std::make_shared<HangingRead>();
    {
        HistoryFileWatch watch(nullptr, 1ms,
                               [hanging](const std::string & /*path*/) { hanging->read(); });
        watch.start(m_file);
        std::future<std::thread::id> started = hanging->started.get_future();
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return started.wait_for(0s) == std::future_status::ready; }));
    }
    hanging->hangs.set_value();
    hanging->ended.get_future().wait();
}

} // namespace
} // namespace tessaly
