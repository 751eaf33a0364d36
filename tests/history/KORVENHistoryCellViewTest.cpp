#include "history/KORVENHistoryCellView.hpp"

#include "tests/history/HistoryScreenTest.hpp"

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class KORVENHistoryCellViewTest : public HistoryScreenTest {
protected:
    /// Clicks on the image; the click is told of when the event loop runs.
    void clickImage(int row) const { QTest::mouseClick(cell(row).imageView(), Qt::LeftButton); }
};

TEST_F(KORVENHistoryCellViewTest, aClickOnTheImageLoadsTheScan)
{
    record("A", "/a", 1);
    record("B", "/b", 2);
    openScreen();

    clickImage(1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_mainWindow.log.empty(); }));

    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem A"});
    EXPECT_EQ(store().allItems().size(), 2U);
    EXPECT_EQ(cell(0).imageView()->imageName(), u"history.png"_s);
}

TEST_F(KORVENHistoryCellViewTest, aClickBesideTheImageOnlySelectsTheRow)
{
    record("A", "/a", 1);
    openScreen();
    QTest::mouseClick(cell(0).scanPath(), Qt::LeftButton, {}, QPoint(4, 4));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_mainWindow.log, Log{});
    EXPECT_EQ(table().selectedRow(), 0);
}

TEST_F(KORVENHistoryCellViewTest, aClickThatTheRowsWereReplacedUnderLoadsNothing)
{
    record("A", "/a", 1);
    openScreen();
    clickImage(0);
    record("B", "/b", 2);
    m_screen->loadHistory(); // before the click is told of
    QCoreApplication::processEvents();
    EXPECT_EQ(m_mainWindow.log, Log{});
}

TEST_F(KORVENHistoryCellViewTest, theDeleteButtonDeletesTheRowsScanWithoutAsking)
{
    record("A", "/a", 1);
    record("B", "/b", 2);
    openScreen();
    table().clearSelection(); // the window's activation may have selected a row
    clickDelete(1);
    EXPECT_EQ(m_mainWindow.log, Log{"reloadHistoryDelete A"});
    EXPECT_EQ(store().allItems().size(), 1U);
    EXPECT_EQ(table().selectedRow(), -1);
}

TEST_F(KORVENHistoryCellViewTest, aDeletionIsNotedUntilItIsSaved)
{
    record("A", "/a", 1);
    record("B", "/b", 2);
    openScreen();
    const std::string noted = m_documents.path("documents/scanHistory.removals");
    bool wasNoted = false;
    m_mainWindow.onDelete = [&] { wasNoted = access(noted.c_str(), F_OK) == 0; };
    clickDelete(1);
    EXPECT_TRUE(wasNoted);
    EXPECT_NE(access(noted.c_str(), F_OK), 0);
}

TEST_F(KORVENHistoryCellViewTest, aKeyThatIsGoneDeletesNothing)
{
    record("A", "/a", 1);
    KORVENHistoryCellView bare;
    bare.setScanKey("gone");
    bare.deleteClicked();
    bare.setScanKey(std::nullopt);
    bare.deleteClicked();
    EXPECT_EQ(m_mainWindow.log, Log{});
    EXPECT_EQ(store().allItems().size(), 1U);
}

TEST_F(KORVENHistoryCellViewTest, aHistoryThatCannotBeReadIsNoReasonToCrash)
{
    const std::string file = m_documents.path("documents/scanHistory.archive");
    std::ofstream(file) << "nonsense";
    KORVENHistoryCellView bare;
    bare.setScanKey("A");
    bare.deleteClicked();
    bare.imageClicked();
    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem A"});
}

TEST_F(KORVENHistoryCellViewTest, isLoadedFromItsInterfaceFileAlone)
{
    EXPECT_NE(KORVENHistoryCellView::tableCellViewWithNibNamed(u"KORVENHistoryCell"_s, nullptr),
              nullptr);
    EXPECT_EQ(KORVENHistoryCellView::tableCellViewWithNibNamed(u"NoSuchFile"_s, nullptr), nullptr);
    EXPECT_EQ(KORVENHistoryCellView::tableCellViewWithNibNamed(u"HistoryCell"_s, nullptr), nullptr)
        << "the sidebar's cell is another one";
}

TEST_F(KORVENHistoryCellViewTest, aBareCellHasNothingInIt)
{
    const KORVENHistoryCellView bare;
    EXPECT_EQ(bare.imageView(), nullptr);
    EXPECT_EQ(bare.scanPath(), nullptr);
    EXPECT_EQ(bare.scanTotal(), nullptr);
    EXPECT_EQ(bare.scanDate(), nullptr);
    EXPECT_EQ(bare.deleteButton(), nullptr);
    EXPECT_EQ(bare.scanKey(), std::nullopt);
}

} // namespace
} // namespace tessaly
