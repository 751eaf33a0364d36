#include "app/window/ApplicationMenu.hpp"

#include "tests/app/window/WindowTest.hpp"
#include "tests/fakes/Gate.hpp"

#include <QPushButton>
#include <QSet>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;
using Item = ApplicationMenu::Item;
using Controller = KORVENWindowController;

class ApplicationMenuTest : public WindowTest {
protected:
    ApplicationMenuTest() { openWindow(); }

    /// Whether an item can be used, as the menu says it when it is shown.
    [[nodiscard]] bool isEnabled(Item item) const
    {
        menu().popup(window().mapToGlobal(QPoint(10, 40)));
        const bool enabled = action(item).isEnabled();
        menu().close();
        return enabled;
    }
    /// Types the item's key wherever the keyboard is.
    void typeKey(Item item) const { typeKeyOf(action(item)); }
    void typeKeyOf(const QAction &action) const
    {
        const QKeyCombination key = action.shortcut()[0];
        QTest::keyClick(&outlineTable(), key.key(), key.keyboardModifiers());
    }
    void showTree()
    {
        m_delegate->loadHistoryItem(
            recordTree(*makeTree("/f", {folder("d", {file("x", 5'000)}), file("a", 2'000)})));
    }
    [[nodiscard]] CellTableView &rows() const { return tableOf(m_controller->avc()); }
    [[nodiscard]] std::string shownPath() const
    {
        return m_controller->avc().folderNameField()->text().toStdString();
    }
};

TEST_F(ApplicationMenuTest, hasTitlesKeysAndMnemonicsThatDiffer)
{
    QStringList pageTitles;
    for (const Pages::Page &page : m_controller->pages().all()) {
        pageTitles << page.menuTitle;
    }
    // Nothing is left out.
    const ApplicationMenu full([] { return ApplicationMenu::State(); }, pageTitles);
    QList<const QAction *> actions;
    for (int i = 0; i < static_cast<int>(Item::count); ++i) {
        actions << &full.action(static_cast<Item>(i));
    }
    for (int page = 0; page < pageTitles.size(); ++page) {
        actions << &full.pageAction(page);
    }
    QSet<QString> keys;
    for (const QAction *action : actions) {
        const QAction &item = *action;
        EXPECT_FALSE(item.text().isEmpty());
        const QString key = item.shortcut().toString();
        EXPECT_FALSE(keys.contains(key)) << qPrintable(key);
        if (!key.isEmpty()) {
            keys << key;
        }
    }
    QList<const QMenu *> menus{&full};
    for (const QMenu *one : full.findChildren<QMenu *>()) {
        menus << one;
    }
    EXPECT_EQ(menus.size(), 4);
    for (const QMenu *one : menus) {
        QSet<QString> letters;
        for (const QAction *item : one->actions()) {
            const QString letter = QKeySequence::mnemonic(item->text()).toString();
            EXPECT_FALSE(letters.contains(letter)) << qPrintable(item->text());
            if (!letter.isEmpty()) {
                letters << letter;
            }
        }
    }
}

TEST_F(ApplicationMenuTest, isReachedFromTheTitleBar)
{
    int openings = 0;
    QObject::connect(&menu(), &QMenu::aboutToShow, &menu(), [this, &openings] {
        ++openings;
        QMetaObject::invokeMethod(&menu(), &QMenu::close, Qt::QueuedConnection);
    });
    QTest::keyClick(&window(), Qt::Key_F10);
    EXPECT_EQ(openings, 1);
}

TEST_F(ApplicationMenuTest, offersFullScreen)
{
    QAction &item = m_controller->fullscreenMenuItem();
    EXPECT_EQ(item.text(), u"Enter Full Screen"_s);
    EXPECT_EQ(item.objectName(), u"fullscreenMenuItem"_s);
    int count = 0;
    QObject::connect(&item, &QAction::triggered, &item, [&] { ++count; });
    QTest::keyClick(&outlineTable(), Qt::Key_F11);
    EXPECT_EQ(count, 1);
}

TEST_F(ApplicationMenuTest, backFollowsTheLevel)
{
    EXPECT_FALSE(isEnabled(Item::back));
    showTree();
    EXPECT_FALSE(isEnabled(Item::back));
    m_controller->avc().drillDownOneLevel("d");
    EXPECT_TRUE(isEnabled(Item::back));
    m_controller->selectPage(Controller::drivesPage);
    EXPECT_FALSE(isEnabled(Item::back)) << "that is another screen's level";
    typeKey(Item::back);
    EXPECT_EQ(shownPath(), "/f/d");
    m_controller->selectPage(Controller::scanPage);
    action(Item::back).trigger();
    EXPECT_EQ(shownPath(), "/f/d") << "not before the menu has been brought up to date";
    typeKey(Item::back);
    EXPECT_EQ(shownPath(), "/f");
    EXPECT_FALSE(isEnabled(Item::back));
}

TEST_F(ApplicationMenuTest, backEndsWithACancelledScan)
{
    KORVENHomeViewController &home = m_controller->hvc();
    const auto waitForScan = [&home] {
        return QTest::qWaitFor([&home] { return !home.isScanRunningNow(); }, 60'000);
    };
    m_home.folder("d");
    typeKey(Item::scanHome);
    ASSERT_TRUE(waitForScan());
    home.drillDownOneLevel("d");
    ASSERT_TRUE(isEnabled(Item::back));

    Gate gate;
    m_services.bookmarks.whenStarted = gate.pass();
    typeKey(Item::scanHome);
    EXPECT_TRUE(isEnabled(Item::back)) << "the rows before are still there";
    home.cancelClicked();
    gate.open();
    ASSERT_TRUE(waitForScan());
    EXPECT_FALSE(isEnabled(Item::back));
    typeKey(Item::back);
    EXPECT_EQ(home.folderNameField()->text().toStdString(), m_home.path());
    EXPECT_EQ(home.numberOfRowsInTableView(), 0);
}

TEST_F(ApplicationMenuTest, scansFoldersButOneAtATime)
{
    typeKey(Item::scanFolder);
    EXPECT_EQ(m_controller->selectedPage(), Controller::scanPage);
    ASSERT_TRUE(m_services.folderChooser.isOpen());
    m_services.folderChooser.answer(m_home.path());
    ASSERT_TRUE(m_controller->avc().isScanRunningNow());
    menu().update();
    EXPECT_FALSE(action(Item::scanFolder).isEnabled());
    EXPECT_FALSE(action(Item::sort).isEnabled());
    EXPECT_TRUE(action(Item::scanHome).isEnabled());
    m_controller->selectPage(Controller::drivesPage);
    typeKey(Item::scanFolder);
    EXPECT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_controller->selectedPage(), Controller::drivesPage);
    EXPECT_EQ(alert(), nullptr) << "what cannot be chosen needs no explanation";
}

TEST_F(ApplicationMenuTest, scansTheHomeFolderButOneAtATime)
{
    typeKey(Item::scanHome);
    EXPECT_EQ(m_controller->selectedPage(), Controller::homePage);
    ASSERT_TRUE(m_controller->hvc().isScanRunningNow());
    menu().update();
    EXPECT_FALSE(action(Item::scanHome).isEnabled());
    EXPECT_FALSE(action(Item::sort).isEnabled());
    EXPECT_TRUE(action(Item::scanFolder).isEnabled());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !m_controller->hvc().isScanRunningNow(); }));
    EXPECT_TRUE(isEnabled(Item::scanHome));
}

TEST_F(ApplicationMenuTest, refreshesTheDrives)
{
    m_controller->selectPage(Controller::historyPage);
    const auto questions = m_services.volumes.questions.size();
    typeKey(Item::refreshDrives);
    EXPECT_EQ(m_controller->selectedPage(), Controller::drivesPage);
    EXPECT_EQ(m_services.volumes.questions.size(), questions + 1);
}

TEST_F(ApplicationMenuTest, sortsTheScreenThatIsShown)
{
    // The key may be that of a button of the screen, which takes its time to be pressed.
    const auto waitForOrder = [](const ResultViewController &screen, bool isBySize) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return screen.sortBySizeFlag() == isBySize; }));
    };
    showTree();
    typeKey(Item::sort);
    waitForOrder(m_controller->avc(), false);
    EXPECT_TRUE(m_controller->hvc().sortBySizeFlag());
    action(Item::sort).trigger();
    waitForOrder(m_controller->avc(), true);

    m_controller->selectPage(Controller::homePage);
    action(Item::sort).trigger();
    EXPECT_FALSE(m_controller->hvc().sortBySizeFlag());
    for (const int page : {Controller::drivesPage, Controller::historyPage}) {
        m_controller->selectPage(page);
        EXPECT_TRUE(isEnabled(Item::sort));
        QWidget *screen = m_controller->tabView().currentWidget();
        const QSignalSpy resets(screen->findChild<CellTableView *>()->model(),
                                &QAbstractItemModel::modelReset);
        action(Item::sort).trigger();
        EXPECT_GT(resets.count(), 0) << page;
    }
    EXPECT_TRUE(m_controller->avc().sortBySizeFlag());
}

TEST_F(ApplicationMenuTest, rowItemsNeedASelectedRow)
{
    for (const int page : {Controller::scanPage, Controller::homePage, Controller::historyPage}) {
        m_controller->selectPage(page);
        for (const Item item : {Item::quickLook, Item::showInFileManager, Item::showInfo}) {
            EXPECT_FALSE(isEnabled(item)) << page;
        }
    }
    m_controller->selectPage(Controller::scanPage);
    typeKey(Item::showInfo);
    typeKey(Item::showInFileManager);
    EXPECT_TRUE(m_services.fileManager.informed().empty());
    EXPECT_TRUE(m_services.fileManager.revealed().empty());

    showTree();
    ASSERT_EQ(rows().selectedRow(), 0);
    typeKey(Item::showInfo);
    EXPECT_EQ(m_services.fileManager.informed(), Names{"//f/d"}) << "keys know what there is now";
    EXPECT_TRUE(isEnabled(Item::showInFileManager));
    EXPECT_TRUE(isEnabled(Item::showInfo));
    rows().selectionModel()->clear();
    EXPECT_FALSE(isEnabled(Item::showInFileManager));
    EXPECT_FALSE(isEnabled(Item::quickLook));
}

TEST_F(ApplicationMenuTest, rowItemsActOnTheSelectedRow)
{
    showTree();
    EXPECT_FALSE(isEnabled(Item::quickLook)) << "it is a folder's";
    rows().selectRow(1);
    EXPECT_TRUE(isEnabled(Item::quickLook));
    typeKey(Item::showInFileManager);
    typeKey(Item::showInfo);
    EXPECT_EQ(m_services.fileManager.revealed(), Names{"//f/a"});
    EXPECT_EQ(m_services.fileManager.informed(), Names{"//f/a"});

    // The preview leads to the folder by way of the scan's bookmark.
    const auto bookmark = m_services.bookmarks.makeBookmark("file:///f");
    m_services.settings.setData(m_controller->avc().uuid(), bookmark.value());
    typeKey(Item::quickLook);
    ASSERT_TRUE(m_services.previewPanels.sharedPreviewPanelExists());
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
}

TEST_F(ApplicationMenuTest, rowItemsReachARowThatIsOutOfSight)
{
    std::vector<PlannedNode> nodes{file("first", 1'000'000)};
    for (int i = 0; i < 100; ++i) {
        nodes.push_back(file("file " + std::to_string(i), 1'000));
    }
    m_delegate->loadHistoryItem(recordTree(*makeTree("/f", std::move(nodes))));
    rows().selectRow(0);
    rows().scrollToBottom();
    ASSERT_EQ(rows().cellForRow(0), nullptr);
    EXPECT_TRUE(isEnabled(Item::quickLook));
    EXPECT_EQ(rows().cellForRow(0), nullptr) << "to ask moves nothing";
    typeKey(Item::showInfo);
    EXPECT_EQ(m_services.fileManager.informed(), Names{"//f/first"});
}

TEST_F(ApplicationMenuTest, goesToTheScreens)
{
    for (const int page : {3, 2, 1, 0}) {
        typeKeyOf(menu().pageAction(page));
        EXPECT_EQ(m_controller->selectedPage(), page);
    }
}

TEST_F(ApplicationMenuTest, namesThePagesAsTheSidebarDoesAndNumbersThem)
{
    const QStringList titles{u"&Drives"_s, u"&Home Folder"_s, u"&Folder Scan"_s, u"H&istory"_s};
    ASSERT_EQ(outlineTable().model()->rowCount(), titles.size());
    for (int page = 0; page < titles.size(); ++page) {
        const QAction &action = menu().pageAction(page);
        EXPECT_EQ(action.text(), titles[page]);
        EXPECT_EQ(action.shortcut(), QKeySequence(u"Ctrl+"_s + QString::number(page + 1)));
        EXPECT_EQ(outlineTable().model()->index(page, 0).data(Qt::AccessibleTextRole).toString(),
                  QString(titles[page]).remove(u'&'));
    }
}

TEST_F(ApplicationMenuTest, opensAndIsBlockedByThePreferences)
{
    typeKey(Item::preferences);
    ASSERT_NE(m_controller->preferenceSheet(), nullptr);
    ASSERT_TRUE(m_controller->preferenceSheet()->isVisible());
    for (const Item item :
         {Item::scanFolder, Item::scanHome, Item::refreshDrives, Item::sort, Item::preferences}) {
        EXPECT_FALSE(isEnabled(item)) << static_cast<int>(item);
    }
    EXPECT_FALSE(menu().pageAction(Controller::historyPage).isEnabled());
    EXPECT_TRUE(isEnabled(Item::quit));
    EXPECT_TRUE(isEnabled(Item::about));
    m_controller->closePreferenceSheet();
    EXPECT_TRUE(isEnabled(Item::preferences));
}

TEST_F(ApplicationMenuTest, leadsToOtherPrograms)
{
    ASSERT_TRUE(QTest::qWaitFor([this] { return action(Item::diskUtility).isVisible(); }));
    for (const Item item : {Item::diskUtility, Item::fileManager, Item::systemSettings}) {
        ASSERT_TRUE(action(item).isEnabled());
        action(item).trigger();
    }
    EXPECT_EQ(m_services.applications.launched,
              (Names{"Disk Utility.app", "Finder.app", "System Preferences.app"}));
}

TEST_F(ApplicationMenuTest, offersTheDiskUtilityOnlyWhereThereIsOne)
{
    closeWindow();
    m_services.applications.isInstalled = false;
    makeWindow();
    EXPECT_FALSE(action(Item::diskUtility).isVisible()) << "nothing has been found yet";
    const auto refresh = [this] {
        QSignalSpy answer(&m_controller->dvc(), &KORVENDriveViewController::diskUtilityLookedFor);
        typeKey(Item::refreshDrives);
        return answer.wait();
    };
    showWindow();
    ASSERT_TRUE(refresh());
    EXPECT_FALSE(action(Item::diskUtility).isVisible());
    EXPECT_TRUE(action(Item::fileManager).isVisible());

    m_services.applications.isInstalled = true;
    ASSERT_TRUE(refresh());
    EXPECT_TRUE(action(Item::diskUtility).isVisible());
    m_services.applications.isInstalled = false;
    ASSERT_TRUE(refresh());
    EXPECT_FALSE(action(Item::diskUtility).isVisible());
}

TEST_F(ApplicationMenuTest, leavesOutLinksThatNoMakerHasSet)
{
    for (const Item item : {Item::webHelp, Item::website, Item::support, Item::storePage,
                            Item::facebook, Item::twitter, Item::google}) {
        EXPECT_FALSE(isEnabled(item)) << qPrintable(action(item).text());
        action(item).trigger();
    }
    QTest::keyClick(&outlineTable(), Qt::Key_F1);
    EXPECT_EQ(m_services.urls.opened, Names{});
    QStringList titles;
    for (const QAction *item : menu().actions()) {
        titles << item->text();
    }
    EXPECT_FALSE(titles.contains(u"H&elp"_s)) << "nothing would be in it";
    EXPECT_TRUE(titles.contains(u"&Tools"_s));
}

TEST_F(ApplicationMenuTest, grantsAndRemovesTheHomeFolder)
{
    action(Item::chooseHomeFolder).trigger();
    ASSERT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.confirmTitle, "Save");
    m_services.folderChooser.answer(std::nullopt);
    action(Item::removeHomeFolder).trigger();
    EXPECT_FALSE(m_services.settings.hasKey("homeFolder"));
}

TEST_F(ApplicationMenuTest, saysWhatTheProgramIsAndQuits)
{
    action(Item::about).trigger();
    ASSERT_NE(alert(), nullptr);
    alert()->buttons().first()->click();
    typeKey(Item::quit);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(ApplicationMenuTest, theKeysOfScreensWorkWhileTheMenusButtonHasTheFocus)
{
    m_controller->selectPage(Controller::scanPage);
    QWidget *button = nullptr;
    for (auto *candidate : window().findChildren<QPushButton *>()) {
        button = candidate->menu() == &menu() ? candidate : button;
    }
    ASSERT_NE(button, nullptr);
    button->setFocus();
    ASSERT_TRUE(button->hasFocus());
    QTest::keyClick(button, Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_services.folderChooser.asked().size() == 1; }));
}

} // namespace
} // namespace tessaly
