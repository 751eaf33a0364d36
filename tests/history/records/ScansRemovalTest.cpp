// The deletion of all scans, from the screen.

#include "history/records/ScansRemoval.hpp"

#include "history/records/HistoryUpkeep.hpp"
#include "tests/history/HistoryScreenTest.hpp"
#include "tests/history/records/OwnHistoryStore.hpp"

#include <filesystem>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// So many that no machine deletes them in one slice.
constexpr int manyRecords = 10'000;

class ScansRemovalTest : public HistoryScreenTest {
protected:
    [[nodiscard]] std::size_t scanFileCount() const
    {
        std::size_t count = 0;
        for (const auto &entry :
             std::filesystem::directory_iterator(m_documents.path("documents"))) {
            count += entry.path().filename().string().starts_with("K") ? 1U : 0U;
        }
        return count;
    }
    [[nodiscard]] static std::size_t savedCount()
    {
        return readHistoryFile(store().itemArchivePath()).value().size();
    }
};

TEST_F(ScansRemovalTest, manyAreDeletedWhileTheEventLoopRuns)
{
    openMany(manyRecords);
    m_screen->deleteAllClicked();
    ASSERT_GT(m_screen->numberOfRowsInTableView(), 0) << "it is done in one go";
    EXPECT_LT(m_screen->numberOfRowsInTableView(), manyRecords) << "a slice is done at once";
    for (const char *name : {"deleteButton", "sortButton", "refreshButton"}) {
        EXPECT_FALSE(button(name).isEnabled()) << name;
    }
    EXPECT_FALSE(cell(0).deleteButton()->isEnabled());
    const int left = m_screen->numberOfRowsInTableView();
    m_screen->deleteAllClicked();
    table().selectRow(0);
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), left) << "the user has to wait";

    record("new", "/recorded meanwhile", 1e6);
    store().saveChanges();
    ASSERT_TRUE(QTest::qWaitFor([this] { return button("deleteButton").isEnabled(); }, 300'000));

    showRows(1);
    EXPECT_EQ(shownPaths(), Paths{"/recorded meanwhile"});
    EXPECT_TRUE(cell(0).deleteButton()->isEnabled());
    ASSERT_EQ(m_mainWindow.log.size(), std::size_t{manyRecords});
    for (int i = 0; i < manyRecords; ++i) {
        ASSERT_EQ(m_mainWindow.log[static_cast<std::size_t>(i)],
                  "reloadHistoryDelete K" + std::to_string(i));
    }
    EXPECT_EQ(savedCount(), 1U);
    EXPECT_EQ(scanFileCount(), 0U);
    EXPECT_FALSE(hasFile("scanHistory.removals"));
}

TEST_F(ScansRemovalTest, manyCostOneSaveOfTheHistory)
{
    openMany(static_cast<int>(ScansRemoval::fewRecords) + 1);
    store().saveChanges();
    std::vector<std::size_t> saved;
    bool isNoted = true;
    m_mainWindow.onDelete = [&] {
        saved.push_back(savedCount());
        isNoted = isNoted && (hasFile("scanHistory.removals") || !button("sortButton").isEnabled());
    };
    m_screen->deleteAllClicked();
    showRows(0);
    EXPECT_EQ(saved, std::vector<std::size_t>(ScansRemoval::fewRecords + 1, 0))
        << "the whole removal is saved before the first scan is deleted";
    EXPECT_FALSE(hasFile("scanHistory.removals"));
}

TEST_F(ScansRemovalTest, fewAreEachSavedAndNotedAllTheSame)
{
    openMany(static_cast<int>(ScansRemoval::fewRecords));
    std::vector<std::size_t> expected;
    std::vector<std::size_t> saved;
    m_mainWindow.onDelete = [&] {
        saved.push_back(savedCount());
        expected.push_back(ScansRemoval::fewRecords - saved.size());
        EXPECT_TRUE(hasFile("scanHistory.removals"));
    };
    m_screen->deleteAllClicked();
    showRows(0);
    EXPECT_EQ(saved, expected);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !hasFile("scanHistory.removals"); }));
}

TEST_F(ScansRemovalTest, quittingLeavesTheRestToTheNextStart)
{
    openMany(manyRecords);
    store().saveChanges();
    m_screen->deleteAllClicked();
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
    QCoreApplication::exec();

    EXPECT_GT(scanFileCount(), 0U) << "quitting has waited";
    EXPECT_EQ(savedCount(), 0U) << "a scan without its file may be listed";
    EXPECT_TRUE(hasFile("scanHistory.removals"));

    const auto next = OwnHistoryStore::open(m_delegate);
    HistoryUpkeep::run(*next);
    EXPECT_EQ(scanFileCount(), 0U);
    EXPECT_TRUE(next->allItems().empty());
    EXPECT_FALSE(hasFile("scanHistory.removals"));
}

TEST_F(ScansRemovalTest, theNextScreenGoesOnWithIt)
{
    for (int i = 0; i < 3; ++i) {
        record("K" + std::to_string(i), "/scan " + std::to_string(i), i);
    }
    store().saveChanges();
    ASSERT_TRUE(store().noteRemovals(store().allItems()));
    store().takeOut(store().allItems());

    openScreen();

    EXPECT_TRUE(QTest::qWaitFor([this] { return !hasFile("scanHistory.removals"); }));
    EXPECT_EQ(scanFileCount(), 0U);
}

TEST_F(ScansRemovalTest, whatCannotBeNotedIsRemovedOneByOne)
{
    const int count = static_cast<int>(ScansRemoval::fewRecords) + 1;
    openMany(count);
    m_documents.folder("documents/scanHistory.removals"); // cannot be replaced by a file
    std::vector<std::size_t> saved;
    m_mainWindow.onDelete = [&] { saved.push_back(savedCount()); };
    m_screen->deleteAllClicked();
    showRows(0);
    EXPECT_EQ(saved.front(), static_cast<std::size_t>(count) - 1);
    EXPECT_EQ(saved.back(), 0U);
    EXPECT_EQ(scanFileCount(), 0U);
}

} // namespace
} // namespace tessaly
