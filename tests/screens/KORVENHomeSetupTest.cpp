// The setup page of the home folder's screen, and what comes of it.

#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "tests/screens/HomeScreenTest.hpp"

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Page = KORVENHomeViewController::Page;

class KORVENHomeSetupTest : public HomeScreenTest {
protected:
    /// The alert that is shown, or nullptr.
    [[nodiscard]] MessageAlert *alert() const { return m_window.findChild<MessageAlert *>(); }

    [[nodiscard]] bool hasGrant() const { return m_services.settings.hasKey("homeFolder"); }
};

TEST_F(KORVENHomeSetupTest, withoutABookmarkItStartsOnTheSetupPage)
{
    keepScan(*makeTree(homePath(), {file("a", 10)}));
    openScreen();
    EXPECT_EQ(page(), Page::setupPage);
    EXPECT_TRUE(button("continueButton").isVisible());
    EXPECT_FALSE(button("scanButton").isVisible());
    EXPECT_EQ(m_screen->homeFolder(), std::nullopt);
    EXPECT_TRUE(m_screen->checkSetupMode());
}

TEST_F(KORVENHomeSetupTest, whatDoesNotResolveIsNoBookmark)
{
    grantHome();
    m_services.bookmarks.setGone(homeUrl());
    openScreen();
    EXPECT_EQ(page(), Page::setupPage);

    m_services.bookmarks.setGone(homeUrl(), false);
    EXPECT_FALSE(m_screen->checkSetupMode());
    EXPECT_EQ(m_screen->homeFolder(), homeUrl());

    const std::string garbage = "no bookmark";
    m_services.settings.setData("homeFolder", std::as_bytes(std::span(garbage)));
    EXPECT_TRUE(m_screen->checkSetupMode());
    EXPECT_EQ(m_screen->homeFolder(), std::nullopt);

    m_services.settings.setText("homeFolder", "/home/ada");
    EXPECT_TRUE(m_screen->checkSetupMode());
}

TEST_F(KORVENHomeSetupTest, checkingTheBookmarkStartsNoAccess)
{
    grantHome();
    openScreen();
    EXPECT_FALSE(m_screen->checkSetupMode());
    EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), 0);
}

TEST_F(KORVENHomeSetupTest, continueAsksForAFolderOnTheWindow)
{
    openScreen();
    QTest::mouseClick(&button("continueButton"), Qt::LeftButton);
    ASSERT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_services.folderChooser.asked()[0].window, &m_window);
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.initialFolder, "/container/Data");
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.confirmTitle, "Save");
}

TEST_F(KORVENHomeSetupTest, cancellingThePanelChangesNothing)
{
    openScreen();
    choose(std::nullopt);
    EXPECT_EQ(page(), Page::setupPage);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_FALSE(hasGrant());
    EXPECT_EQ(m_screen->homeFolder(), std::nullopt);

    choose(homePath());
    EXPECT_EQ(page(), Page::resultsPage) << "the next time it works";
}

TEST_F(KORVENHomeSetupTest, theHomeFolderIsKeptAsABookmarkAtOnce)
{
    openScreen();
    m_services.settings.clearLog();
    choose(homePath());
    EXPECT_EQ(page(), Page::resultsPage);
    const auto bookmark = m_services.settings.data("homeFolder");
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(m_services.bookmarks.resolve(*bookmark), homeUrl());
    EXPECT_FALSE(m_services.settings.hasPendingChanges());
    EXPECT_EQ(m_services.settings.log().size(), 2U) << "setData, flush";
    EXPECT_EQ(m_screen->homeFolder(), homeUrl());
    EXPECT_EQ(shownPath(), homePath());
}

TEST_F(KORVENHomeSetupTest, bothPathsOfTheHomeFolderAreAcceptedInLettersOfAnyCase)
{
    m_services.account.users = "/Users";
    for (const std::string path : {"/Users/Ada", "/users/ADA", "/USERS/ada", "/Users/Ada/",
                                   "/container/Data", "/Container/DATA"}) {
        openScreen();
        ASSERT_EQ(page(), Page::setupPage);
        choose(path);
        EXPECT_EQ(page(), Page::resultsPage) << path;
        EXPECT_EQ(alert(), nullptr) << path;
        const std::string chosen = path.ends_with('/') ? "/Users/Ada" : path;
        EXPECT_EQ(shownPath(), chosen);
        EXPECT_EQ(m_screen->homeFolder(), fileUrl(chosen));
        m_services.settings.remove("homeFolder");
        m_screen.reset();
    }
}

TEST_F(KORVENHomeSetupTest, anyOtherFolderBringsTheAlertAndKeepsTheSetupPage)
{
    m_services.account.users = "/Users";
    openScreen();
    for (const char *path :
         {"/Users/Ada/Documents", "/Users/Bob", "/Users", "/Users/Ad", "/Users/Adam", "/Ada", "/",
          "/container", "/container/Data/Ada", "/home/Ada"}) {
        choose(path);
        ASSERT_NE(alert(), nullptr) << path;
        EXPECT_EQ(page(), Page::setupPage) << path;
        EXPECT_FALSE(hasGrant()) << path;
        EXPECT_EQ(m_screen->homeFolder(), std::nullopt) << path;
        delete alert();
    }
}

TEST_F(KORVENHomeSetupTest, aUserWithoutANameHasNoFolderAmongTheUsers)
{
    m_services.account.users = "/Users";
    m_services.account.login.clear();
    openScreen();
    choose("/Users/");
    EXPECT_NE(alert(), nullptr);
    EXPECT_FALSE(hasGrant());
}

TEST_F(KORVENHomeSetupTest, theAlertIsASheetThatSaysWhatIsWrong)
{
    openScreen();
    choose("/tmp");
    ASSERT_NE(alert(), nullptr);
    EXPECT_TRUE(alert()->isVisible());
    EXPECT_EQ(alert()->window(), &m_window);
    EXPECT_FALSE(m_screen->view()->isEnabled());
    EXPECT_EQ(alert()->text(), u"Tessaly Message"_s);
    EXPECT_EQ(alert()->informativeText(),
              u"The folder was not your home folder.\nPlease select your home folder again."_s);
    ASSERT_EQ(alert()->buttons().size(), 1);
    EXPECT_EQ(alert()->buttons()[0]->text(), u"ok"_s);

    QTest::mouseClick(alert()->buttons()[0], Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([this] { return alert() == nullptr; }));
    EXPECT_EQ(page(), Page::setupPage);
    choose(homePath());
    EXPECT_EQ(page(), Page::resultsPage) << "the user may try again";
}

TEST_F(KORVENHomeSetupTest, theScreenMayGoWhileTheAlertIsShown)
{
    openScreen();
    choose("/tmp");
    m_screen.reset();
    QTest::keyClick(alert(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return alert() == nullptr; }));
}

TEST_F(KORVENHomeSetupTest, afterItTheResultsPageIsEmptyAndNoScanHasStarted)
{
    keepScan(*makeTree(homePath(), {file("from before", 10)}));
    openScreen();
    choose(homePath());
    m_screen->startLoading(); // as the window does, once it has been painted
    EXPECT_FALSE(m_screen->isScanRunningNow());
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
    EXPECT_EQ(m_screen->drillResults(), nullptr);
    EXPECT_EQ(label("totalLabel"), u""_s);
    EXPECT_EQ(label("dateLabel"), u""_s);
    EXPECT_TRUE(button("scanButton").isVisible());
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    m_screen.reset(); // waits for the loader, had one been started
    EXPECT_TRUE(m_services.dates.calls().empty()) << "the earlier scan was loaded";
    EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), 0);
    EXPECT_TRUE(m_services.notifier.notifications().empty());
}

TEST_F(KORVENHomeSetupTest, afterItTheNextStartShowsTheResultsPage)
{
    openScreen();
    choose(homePath());
    reopen();
    EXPECT_EQ(page(), Page::resultsPage);
    EXPECT_EQ(shownPath(), homePath());
}

TEST_F(KORVENHomeSetupTest, afterItAScanIsOneClickAway)
{
    m_disk.file("Ada/a", 1'000);
    openScreen();
    choose(homePath());
    scan();
    ASSERT_EQ(m_screen->numberOfRowsInTableView(), 1);
    EXPECT_EQ(shownPath(), homePath());
}

TEST_F(KORVENHomeSetupTest, withoutABookmarkAfterAllNothingIsScannedAndTheLastScanStays)
{
    keepScan(*makeTree(homePath(), {file("a", 10)}));
    openScreen();
    m_services.bookmarks.setGone(homeUrl());
    choose(homePath());
    EXPECT_EQ(page(), Page::resultsPage);
    EXPECT_EQ(m_screen->homeFolder(), std::nullopt);
    press("scanButton");
    EXPECT_FALSE(m_screen->isScanRunningNow());
    EXPECT_EQ(label("emptyTitle"), u"The home folder cannot be reached"_s);
    m_services.bookmarks.setGone(homeUrl(), false);
    grantHome();
    reopen();
    loadLast();
    EXPECT_EQ(rowNames(), std::vector<std::string>{"a"});
}

TEST_F(KORVENHomeSetupTest, onTheOldestReleaseAllButtonsAreThoseOfOld)
{
    m_services.release.setVersion({10, 7});
    const KORVENAppDelegate delegate(m_services.all());
    openScreen();
    for (const char *name :
         {"continueButton", "backButton", "sortButton", "scanButton", "cancelButton"}) {
        EXPECT_TRUE(button(name).run10p7Mode()) << name;
    }
    EXPECT_EQ(table().makeView(u"KORVENFolderCell"_s), nullptr);
}

TEST_F(KORVENHomeSetupTest, afterTheChoiceTheKeyboardIsOnTheScanButton)
{
    openScreen();
    button("continueButton").setFocus();
    choose(homePath());
    ASSERT_EQ(page(), Page::resultsPage);
    EXPECT_TRUE(button("emptyButton").hasFocus());
}

} // namespace
} // namespace tessaly
