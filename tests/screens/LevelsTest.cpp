// The way down and up in a result, by keys and clicks.

#include "platform/FileUrl.hpp"
#include "screens/KORVENQuicklookController.hpp"
#include "tests/screens/ScanScreenTest.hpp"

#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class LevelsTest : public ScanScreenTest {
protected:
    LevelsTest()
    {
        openScreen();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    [[nodiscard]] std::string selectedName() const
    {
        const int row = table().selectedRow();
        return row < 0 ? "(none)" : rowNames().at(static_cast<std::size_t>(row));
    }
    /// Two presses on the size, which takes no clicks itself.
    void doubleClickBeside(int row)
    {
        QWidget *size = cell(row).folderSize();
        QTest::mouseClick(size, Qt::LeftButton);
        QTest::mouseDClick(size, Qt::LeftButton);
        QCoreApplication::processEvents();
    }
};

TEST_F(LevelsTest, goingUpSelectsTheFolderThatWasLeft)
{
    showTree(makeTree("/f", {folder("large", {file("x", 30)}),
                             folder("b", {folder("c", {file("x", 10)}), folder("e")}),
                             folder("a", {file("x", 5)})}));
    table().setFocus();
    EXPECT_EQ(selectedName(), "large");
    QTest::keyClick(&table(), Qt::Key_Down);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(shownPath(), "/f/b");
    m_screen->drillDownOneLevel("e");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(selectedName(), "e");
    QTest::keyClick(&table(), Qt::Key_Backspace);
    EXPECT_EQ(shownPath(), "/f");
    EXPECT_EQ(selectedName(), "b");
    QTest::keyClick(&table(), Qt::Key_Down);
    EXPECT_EQ(selectedName(), "a") << "and goes on from there";
    cell(2).clickedName();
    EXPECT_EQ(table().selectedRow(), 0) << "downwards the first row is selected";
}

TEST_F(LevelsTest, goingUpShowsTheLevelFromItsTopWhateverIsSelected)
{
    std::vector<PlannedNode> folders;
    for (std::uint64_t i = 0; i < 100; ++i) {
        folders.push_back(folder("d" + std::to_string(i), {file("x", 1'000 - i)}));
    }
    showTree(makeTree("/f", std::move(folders)));
    m_screen->drillDownOneLevel("d90");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(selectedName(), "d90");
    EXPECT_EQ(table().verticalScrollBar()->value(), 0);
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Down);
    EXPECT_EQ(selectedName(), "d91");
    EXPECT_NE(table().cellForRow(91), nullptr) << "a key brings it into sight";
}

TEST_F(LevelsTest, goingUpToAHiddenFolderSelectsTheFirstRow)
{
    m_delegate.setHiddenItemPreference(0);
    showTree(makeTree("/f", {folder("a", {file("x", 30)}), folder(".h", {file("x", 20)})}));
    m_screen->drillDownOneLevel(".h");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(selectedName(), "a");
}

TEST_F(LevelsTest, aDoubleClickAnywhereInARowGoesIntoIt)
{
    showTree(makeTree("/f", {folder("a", {folder("b", {file("x", 30)})})}));
    doubleClickBeside(0);
    EXPECT_EQ(shownPath(), "/f/a");
    doubleClickBeside(0);
    EXPECT_EQ(shownPath(), "/f/a/b");
}

TEST_F(LevelsTest, aDoubleClickAnywhereInAFilesRowPreviewsIt)
{
    m_disk.file("picture", 10);
    chooseAndScan(m_disk.path());
    waitForScan();
    doubleClickBeside(0);
    ASSERT_TRUE(m_services.previewPanels.sharedPreviewPanelExists());
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    EXPECT_EQ(KORVENQuicklookController::sharedStore().qlArray(),
              Names{fileUrl(m_disk.path("picture")).value()});
}

TEST_F(LevelsTest, aDoubleClickWhoseFirstClickWentDownGoesNoFurther)
{
    showTree(makeTree("/f", {folder("a long name of a folder", {folder("b", {file("x", 30)})})}));
    // Where the second press finds the room beside the shorter name of the next level.
    QWidget *name = cell(0).folderName();
    const QPoint place(name->fontMetrics().horizontalAdvance(u"a long name of"_s),
                       name->height() / 2);
    QTest::mouseClick(name, Qt::LeftButton, {}, place);
    ASSERT_TRUE(QTest::qWaitFor([this] { return shownPath() != "/f"; }));
    QTest::mouseDClick(name, Qt::LeftButton, {}, place);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownPath(), "/f/a long name of a folder");
}

} // namespace
} // namespace tessaly
