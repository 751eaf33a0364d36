#include "screens/results/KORVENFolderCellView.hpp"

#include "platform/FileUrl.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/screens/ScanScreenTest.hpp"

#include <QAction>
#include <QMenu>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class KORVENFolderCellViewTest : public ScanScreenTest {
protected:
    KORVENFolderCellViewTest() { openScreen(); }

    static QStringList visibleTitles(const QMenu &menu)
    {
        QStringList titles;
        for (const QAction *action : menu.actions()) {
            if (action->isVisible()) {
                titles.append(action->text());
            }
        }
        return titles;
    }
    static void trigger(const QMenu &menu, const QString &title)
    {
        for (QAction *action : menu.actions()) {
            if (action->text() == title) {
                action->trigger();
            }
        }
    }
};

TEST_F(KORVENFolderCellViewTest, aClickOnIconOrNameOfAFolderGoesIntoIt)
{
    for (const bool clicksName : {true, false}) {
        showTree(makeTree("/f", {folder("d", {file("x", 20)})}));
        auto *target = clicksName ? static_cast<QWidget *>(cell(0).folderName())
                                  : static_cast<QWidget *>(cell(0).iconImage());
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(4, target->height() / 2));
        EXPECT_TRUE(QTest::qWaitFor([&] { return shownPath() == "/f/d"; }));
        EXPECT_EQ(table().selectedRow(), table().currentIndex().row());
    }
}

TEST_F(KORVENFolderCellViewTest, aClickBesideTheNameOnlySelectsTheRow)
{
    showTree(makeTree("/f", {folder("d", {file("x", 20)}), folder("e")}));
    QWidget *name = cell(1).folderName();
    QTest::mouseClick(name, Qt::LeftButton, {}, QPoint(name->width() - 4, name->height() / 2));
    EXPECT_EQ(shownPath(), "/f");
    EXPECT_EQ(table().selectedRow(), 1);
}

TEST_F(KORVENFolderCellViewTest, aClickOnAFilePreviewsIt)
{
    m_disk.file("a", 10);
    chooseAndScan(m_disk.path());
    waitForScan();
    FakePreviewPanel &panel = m_services.previewPanels.sharedPreviewPanel();
    for (const bool clicksName : {true, false}) {
        SCOPED_TRACE(clicksName ? "name" : "icon");
        auto *target = clicksName ? static_cast<QWidget *>(cell(0).folderName())
                                  : static_cast<QWidget *>(cell(0).iconImage());
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(4, target->height() / 2));
        EXPECT_TRUE(QTest::qWaitFor([&] { return panel.isVisible(); }));
        EXPECT_EQ(panel.items(), std::vector<std::string>{fileUrl(m_disk.path("a")).value()});
        EXPECT_EQ(shownPath(), m_disk.path()) << "nothing to go into";
        panel.orderOut();
    }
}

TEST_F(KORVENFolderCellViewTest, aDoubleClickGoesDownOneLevelAlone)
{
    showTree(makeTree("/f", {folder("d", {folder("e", {file("x", 20)})})}));
    QWidget *icon = cell(0).iconImage();
    QTest::mouseClick(icon, Qt::LeftButton);
    QTest::mouseDClick(icon, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownPath() != "/f"; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(shownPath(), "/f/d");
}

TEST_F(KORVENFolderCellViewTest, aPressThatTheRowsWereReplacedUnderIsNoClick)
{
    showTree(makeTree("/f", {folder("d", {file("x", 20)})}));
    QTest::mousePress(cell(0).iconImage(), Qt::LeftButton);
    showTree(makeTree("/g", {folder("y", {file("z", 20)})}));
    QTest::mouseRelease(cell(0).iconImage(), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownPath(), "/g");
}

TEST_F(KORVENFolderCellViewTest, whatIsShownInTheFileManagerIsLogged)
{
    showTree(makeTree("/f", {folder("d\n", {file("x", 20)})}));
    const LoggedWarnings log;
    cell(0).showInFinder();
    EXPECT_EQ(log.lines(), std::vector<std::string>{"tessaly.screens: name: d?"});
    EXPECT_EQ(m_services.fileManager.revealed(), std::vector<std::string>{"//f/d\n"});
}

TEST_F(KORVENFolderCellViewTest, theMenuPreviewsFilesAlone)
{
    showTree(makeTree("/f", {folder("d", {file("x", 20)}), file("a", 10)}));
    EXPECT_FALSE(cell(0).quickLookMenu()->isVisible());
    EXPECT_TRUE(cell(1).quickLookMenu()->isVisible());
    EXPECT_EQ(visibleTitles(*cell(0).popUpMenu({})),
              (QStringList{u"Show in File Manager"_s, u"Show Info"_s}));
    EXPECT_EQ(visibleTitles(*cell(1).popUpMenu({})),
              (QStringList{u"Quick Look"_s, u"Show in File Manager"_s, u"Show Info"_s}));
}

TEST_F(KORVENFolderCellViewTest, theMenuActsOnTheRowThatItWasOpenedOn)
{
    showTree(makeTree("/f", {folder("d", {file("x", 20)}), file("a", 10)}));
    QMenu *menu = cell(1).popUpMenu({});
    showTree(makeTree("/g", {file("y", 20), file("z", 10)}));
    trigger(*menu, u"Show in File Manager"_s);
    trigger(*menu, u"Show Info"_s);
    EXPECT_EQ(m_services.fileManager.revealed(), std::vector<std::string>{"//f/a"});
    EXPECT_EQ(m_services.fileManager.informed(), std::vector<std::string>{"//f/a"});
}

TEST_F(KORVENFolderCellViewTest, theRootIsRevealedAsItself)
{
    showTree(makeTree("/f", {folder("/", {file("x", 20)})}));
    cell(0).showInFinder();
    cell(0).showInfo();
    EXPECT_EQ(m_services.fileManager.revealed(), std::vector<std::string>{"/"});
    EXPECT_EQ(m_services.fileManager.informed(), std::vector<std::string>{"/"});
}

TEST_F(KORVENFolderCellViewTest, isLoadedFromItsInterfaceFileAlone)
{
    EXPECT_NE(KORVENFolderCellView::tableCellViewWithNibNamed(u"KORVENFolderCell"_s, nullptr),
              nullptr);
    EXPECT_EQ(KORVENFolderCellView::tableCellViewWithNibNamed(u"NoSuchFile"_s, nullptr), nullptr);
    EXPECT_EQ(KORVENFolderCellView::tableCellViewWithNibNamed(u"DriveCell"_s, nullptr), nullptr);
}

TEST_F(KORVENFolderCellViewTest, aBareCellDoesNothing)
{
    KORVENFolderCellView bare;
    bare.clickedName();
    bare.showQuickLook();
    EXPECT_EQ(bare.folderName(), nullptr);
}

} // namespace
} // namespace tessaly
