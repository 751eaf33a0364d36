#include "history/HistoryFileWatch.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <chrono>

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

} // namespace
} // namespace tessaly
