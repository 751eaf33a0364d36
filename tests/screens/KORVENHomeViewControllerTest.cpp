#include "screens/KORVENHomeViewController.hpp"

#include "engine/archive/ScanFileReader.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "screens/KORVENQuicklookController.hpp"
#include "screens/KORVENScanViewController.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/screens/HomeScreenTest.hpp"

#include <QMenu>
#include <QProgressBar>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

using KORVENHomeViewControllerTest = HomeScreenTest;

TEST_F(KORVENHomeViewControllerTest, startsWithTheEmptyResultsOfTheHomeFolder)
{
    grantHome();
    openScreen();
    m_screen->awakeFromNib(); // the second time changes nothing
    EXPECT_EQ(page(), KORVENHomeViewController::resultsPage);
    EXPECT_EQ(shownPath(), homePath());
    EXPECT_EQ(m_screen->homeFolder(), homeUrl());
    EXPECT_EQ(label("totalLabel"), u""_s);
    EXPECT_EQ(label("dateLabel"), u""_s);
    EXPECT_EQ(m_screen->drillDownPath(), std::nullopt);
    EXPECT_FALSE(button("backButton").isVisible());
    EXPECT_TRUE(named<QLabel>("folderLabel").isVisible());
    EXPECT_TRUE(button("scanButton").isVisible());
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_FALSE(named<QProgressBar>("scanProgress").isVisible());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_NE(table().makeView(u"KORVENFolderCell"_s), nullptr);
    EXPECT_EQ(m_screen->itemArchivePath(), archivePath());
}

TEST_F(KORVENHomeViewControllerTest, scansTheHomeFolderWithoutAsking)
{
    m_disk.file("Ada/small", 2'000);
    m_disk.folder("Ada/large");
    m_disk.file("Ada/large/a", 3'000'000);
    grantHome();
    openScreen();

    press("scanButton");
    expectScanningLook();
    EXPECT_TRUE(m_screen->isScanRunningNow());
    m_screen->scanClicked(); // does nothing meanwhile
    waitForScan();

    EXPECT_TRUE(m_services.folderChooser.asked().empty());
    EXPECT_EQ(rowNames(), (Names{"large", "small"}));
    EXPECT_EQ(shownPath(), homePath());
    EXPECT_EQ(label("totalLabel"), u"3.00 MB"_s);
    EXPECT_TRUE(button("scanButton").isVisible());
    EXPECT_TRUE(button("sortButton").isVisible());
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_FALSE(m_screen->lockDrillDown());
    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan completed"});
    const auto kept = archive::readScanFile(archivePath());
    ASSERT_TRUE(kept);
    EXPECT_EQ(treeLines(kept.value()->root()), (Names{"large/", "large/a 3000000", "small 2000"}));
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
    EXPECT_TRUE(KORVENHistoryStore::sharedStore().allItems().empty());
    EXPECT_EQ(m_services.settings.log(), Names{}) << "a home scan has no bookmark and no key";
}

TEST_F(KORVENHomeViewControllerTest, notificationsOfHomeScansReplaceEachOtherOnly)
{
    grantHome();
    openScreen();
    scan();
    m_delegate.showCompletedNotification(u"x"_s, ScanScreen::home);
    m_delegate.showCompletedNotification(u"x"_s, ScanScreen::folder);
    const auto posted = m_services.notifier.notifications();
    ASSERT_EQ(posted.size(), 3U);
    EXPECT_EQ(posted[0].origin, posted[1].origin);
    EXPECT_NE(posted[0].origin, posted[2].origin);
}

TEST_F(KORVENHomeViewControllerTest, theHomeFolderIsOpenWhileItIsScannedAndNoLonger)
{
    // What is in there can be seen only with access to it.
    m_services.bookmarks.whenStarted = [this] { m_disk.file("Ada/a", 1'000); };
    m_services.bookmarks.whenStopped = [this] { unlink(m_disk.path("Ada/a").c_str()); };
    int accessesAtTheEnd = -1;
    m_services.notifier.beforeEach = [&] {
        accessesAtTheEnd = m_services.bookmarks.accessCount(homeUrl());
    };
    grantHome();
    openScreen();
    for (const int scanCount : {1, 2}) {
        scan();
        EXPECT_EQ(rowNames(), Names{"a"});
        EXPECT_EQ(accessesAtTheEnd, 0);
        EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), scanCount);
        EXPECT_EQ(m_services.bookmarks.stopCount(homeUrl()), scanCount);
    }
}

TEST_F(KORVENHomeViewControllerTest, accessThatWasNotGivenIsNotGivenBack)
{
    m_disk.file("Ada/a", 1'000);
    grantHome();
    openScreen();
    m_services.bookmarks.setGone(homeUrl());
    scan();
    EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), 0);
    EXPECT_EQ(m_services.bookmarks.stopCount(homeUrl()), 0);
}

TEST_F(KORVENHomeViewControllerTest, aHomeFolderThatCannotBeReadSaysSo)
{
    grantHome();
    openScreen();
    ASSERT_EQ(rmdir(homePath().c_str()), 0);
    scan();
    EXPECT_EQ(label("emptyTitle"), u"This folder cannot be read"_s);
}

TEST_F(KORVENHomeViewControllerTest, goesDownIntoAChildAndUpAgain)
{
    openWith(*makeTree("/home/ada", {folder("Movies", {folder("Old", {file("x", 10)})})}));
    cell(0).clickedName();
    EXPECT_EQ(shownPath(), "/home/ada/Movies");
    EXPECT_TRUE(button("backButton").isVisible());
    EXPECT_FALSE(named<QLabel>("folderLabel").isVisible());
    cell(0).clickedName();
    EXPECT_EQ(shownPath(), "/home/ada/Movies/Old");
    m_screen->drillUpOneLevel();
    EXPECT_TRUE(button("backButton").isVisible());
    QTest::mouseClick(&button("backButton"), Qt::LeftButton);
    EXPECT_EQ(shownPath(), "/home/ada");
    EXPECT_FALSE(button("backButton").isVisible());
    EXPECT_TRUE(named<QLabel>("folderLabel").isVisible());
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "/home/ada");
}

TEST_F(KORVENHomeViewControllerTest, pathsBelowTheRootFolderHaveTwoSlashes)
{
    openWith(*makeTree("/", {folder("d", {file("x", 10)})}));
    m_screen->drillDownOneLevel("d");
    EXPECT_EQ(shownPath(), "//d");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "/");
}

TEST_F(KORVENHomeViewControllerTest, aLevelWithoutAPathHasNoneAboveIt)
{
    openWith(*makeTree("/before", {folder("d", {file("x", 10)})}));
    scanAndCancel();
    m_screen->refreshTable();
    EXPECT_EQ(rowNames(), Names{"d"}) << "the level from before the scan";
    m_screen->drillDownOneLevel("d");
    EXPECT_EQ(m_screen->drillDownPath(), "d");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(m_screen->drillDownPath(), "") << "and not the root folder";
    m_screen->drillDownOneLevel("d");
    EXPECT_EQ(m_screen->drillDownPath(), "/d");
}

TEST_F(KORVENHomeViewControllerTest, rowsWithoutAPathCannotBeActedOn)
{
    openWith(*makeTree("/before", {folder("d", {file("x", 20)}), file("a", 10)}));
    ASSERT_TRUE(m_screen->rowActions()->hasSelectedRow());
    scanAndCancel();
    m_screen->refreshTable();
    ASSERT_EQ(rowNames(), (Names{"d", "a"})) << "the rows from before the scan";
    for (const int row : {0, 1}) {
        table().selectRow(row);
        EXPECT_FALSE(m_screen->rowActions()->hasSelectedRow());
        EXPECT_FALSE(m_screen->rowActions()->canShowQuickLook());
        cell(row).clickedName();
        cell(row).clickedFolder();
        cell(row).showQuickLook();
        cell(row).showInFinder();
        cell(row).showInfo();
        const QMenu *menu = cell(row).popUpMenu({});
        EXPECT_EQ(menu->actions().size(), 3);
        for (QAction *action : menu->actions()) {
            EXPECT_FALSE(action->isEnabled()) << qPrintable(action->text());
            action->trigger();
        }
        QTest::keyClick(&table(), Qt::Key_Return);
    }
    EXPECT_EQ(m_screen->drillDownPath(), std::nullopt);
    EXPECT_EQ(rowNames(), (Names{"d", "a"}));
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    EXPECT_TRUE(m_services.fileManager.revealed().empty());
    EXPECT_TRUE(m_services.fileManager.informed().empty());
}

TEST_F(KORVENHomeViewControllerTest, theTrashLooksFullWhenThereIsAByteInIt)
{
    constexpr std::uint64_t readsAsNegative = std::uint64_t{1} << 63U;
    const struct {
        std::vector<PlannedNode> content;
        QString image;
    } cases[]{{{}, u"trash.png"_s},
              {{file("x", 0)}, u"trash.png"_s},
              {{file("x", 1)}, u"trash_full.png"_s},
              {{file("x", readsAsNegative - 1)}, u"trash_full.png"_s},
              {{file("x", readsAsNegative)}, u"trash.png"_s}};
    grantHome();
    for (const auto &trash : cases) {
        keepScan(*makeTree("/home/ada", {folder(".Trash", trash.content)}));
        m_delegate.setHiddenItemPreference(0);
        openScreen();
        loadLast();
        ASSERT_EQ(rowNames(), Names{".Trash"});
        EXPECT_EQ(cell(0).iconImage()->imageName(), trash.image);
        m_screen.reset();
    }
}

TEST_F(KORVENHomeViewControllerTest, otherIconsAreThoseOfFoldersAndFiles)
{
    openWith(*makeTree("/home/ada", {folder("d", {file("x", 20)}), file("a", 10)}));
    EXPECT_EQ(cell(0).iconImage()->imageName(), u"folder.png"_s);
    EXPECT_EQ(cell(1).iconImage()->imageName(), u"file.png"_s);
}

TEST_F(KORVENHomeViewControllerTest, previewsByThePathAlone)
{
    m_disk.file("Ada/picture", 10);
    openWith(*makeTree(homePath(), {file("picture", 10)}));
    cell(0).clickedName();
    const auto &preview = KORVENQuicklookController::sharedStore();
    EXPECT_EQ(preview.qlArray(), Names{homeUrl() + "/picture"});
    EXPECT_EQ(preview.scanURL(), std::nullopt);
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
}

TEST_F(KORVENHomeViewControllerTest, previewsPageInTheOrderOfTheRows)
{
    for (const char *name : {"Ada/b", "Ada/d", "Ada/a", "Ada/c"}) {
        m_disk.file(name, 10);
    }
    openWith(*makeTree(homePath(), {file("b", 40), file("d", 30), file("a", 20), file("c", 10)}));
    const auto &preview = KORVENQuicklookController::sharedStore();
    cell(0).clickedName();
    EXPECT_EQ(preview.qlArray(),
              (Names{homeUrl() + "/b", homeUrl() + "/d", homeUrl() + "/a", homeUrl() + "/c"}));
    m_screen->sortClicked();
    cell(0).clickedName();
    EXPECT_EQ(preview.qlArray(),
              (Names{homeUrl() + "/a", homeUrl() + "/b", homeUrl() + "/c", homeUrl() + "/d"}));
}

TEST_F(KORVENHomeViewControllerTest, thePreferencesApplyWhenTheTableIsRefreshed)
{
    openWith(*makeTree("/home/ada", {file("a", 10), file("b", 2'000'000)}));
    m_delegate.setLargeFilePreference(3);
    m_screen->refreshTable();
    EXPECT_EQ(rowNames(), Names{"b"});
}

TEST_F(KORVENHomeViewControllerTest, aHomeScanAndAFolderScanRunAtOnceAndAreCancelledEachAlone)
{
    constexpr int folderCount = 600;
    m_disk.file("Ada/a", 1'000);
    m_disk.folder("Other");
    fillWithFolders("Other", folderCount);
    grantHome();
    openScreen();
    KORVENScanViewController folderScreen(m_services.all());
    folderScreen.awakeFromNib();
    for (const bool cancelsHome : {true, false}) {
        std::latch isCancelled(1);
        m_services.bookmarks.whenStarted = [&] { isCancelled.wait(); };
        m_screen->scanClicked();
        folderScreen.scanButtonPressed();
        m_services.folderChooser.answer(m_disk.path("Other"));
        if (cancelsHome) {
            m_screen->cancelClicked();
        } else {
            folderScreen.cancelClicked();
        }
        EXPECT_TRUE(folderScreen.isScanRunningNow());
        EXPECT_TRUE(m_screen->isScanRunningNow());
        isCancelled.count_down();
        waitForScan();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !folderScreen.isScanRunningNow(); }, 60'000));
        EXPECT_EQ(m_screen->numberOfRowsInTableView(), cancelsHome ? 0 : 1);
        EXPECT_EQ(folderScreen.numberOfRowsInTableView(), cancelsHome ? folderCount : 0);
    }
    EXPECT_EQ(KORVENHistoryStore::sharedStore().allItems().size(), 1U);
    EXPECT_TRUE(archive::readScanFile(archivePath()));
}

TEST_F(KORVENHomeViewControllerTest, theKeyboardGoesToCancelAndThenToTheRows)
{
    grantHome();
    m_disk.file("Ada/a", 10);
    for (const char *name : {"emptyButton", "sortButton", "scanButton"}) {
        SCOPED_TRACE(name);
        reopen();
        button(name).setFocus();
        m_screen->scanButtonPressed();
        EXPECT_TRUE(button("cancelButton").hasFocus());
        waitForScan();
        EXPECT_TRUE(table().hasFocus());
    }
}

TEST_F(KORVENHomeViewControllerTest, afterCancelTheKeyboardIsOnTheScanButton)
{
    grantHome();
    openScreen();
    button("emptyButton").setFocus();
    scanAndCancel();
    EXPECT_TRUE(button("scanButton").hasFocus());
}

TEST_F(KORVENHomeViewControllerTest, theKeyboardIsOnCancelAlsoBehindAnotherWindow)
{
    grantHome();
    openScreen();
    button("scanButton").setFocus();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    m_screen->scanButtonPressed();
    EXPECT_EQ(m_window.focusWidget(), &button("cancelButton"));
    waitForScan();
    EXPECT_NE(m_window.focusWidget(), &button("cancelButton"));
}

TEST_F(KORVENHomeViewControllerTest, whenTheBackButtonIsHiddenTheKeyboardIsOnTheRows)
{
    openWith(*makeTree(homePath(), {folder("d", {file("x", 20)}), file("a", 10)}));
    m_screen->drillDownOneLevel("d");
    button("backButton").setFocus();
    QTest::keyClick(&button("backButton"), Qt::Key_Space);
    ASSERT_FALSE(button("backButton").isVisible());
    EXPECT_TRUE(table().hasFocus());
}

} // namespace
} // namespace tessaly
