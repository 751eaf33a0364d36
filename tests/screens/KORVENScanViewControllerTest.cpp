#include "screens/KORVENScanViewController.hpp"

#include "tests/engine/tree/TreeLines.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/screens/ScanScreenTest.hpp"

#include <QProgressBar>
#include <QSignalSpy>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <future>
#include <limits>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class KORVENScanViewControllerTest : public ScanScreenTest {
protected:
    [[nodiscard]] std::vector<std::string> archives() const
    {
        std::vector<std::string> names;
        for (const auto &record : KORVENHistoryStore::sharedStore().allItems()) {
            names.push_back(record->scanFilePath().value());
        }
        return names;
    }
};

TEST_F(KORVENScanViewControllerTest, startsEmpty)
{
    openScreen();
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
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
    EXPECT_FALSE(label("emptyTitle").isEmpty());
    EXPECT_FALSE(m_screen->isScanRunningNow());
}

TEST_F(KORVENScanViewControllerTest, asksForAFolderOnItsWindow)
{
    openScreen();
    press("scanButton");
    ASSERT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_services.folderChooser.asked()[0].window, &m_window);
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.confirmTitle, "Scan");
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.initialFolder,
              QDir::homePath().toStdString());

    m_services.folderChooser.answer(std::nullopt);
    EXPECT_FALSE(m_screen->isScanRunningNow());
    EXPECT_TRUE(button("scanButton").isVisible());
}

TEST_F(KORVENScanViewControllerTest, scansShowsAndRecordsAFolder)
{
    m_disk.file("small", 2'000);
    m_disk.folder("large");
    m_disk.file("large/a", 3'000'000);
    m_disk.file("large/b", 500'000);
    openScreen();

    chooseAndScan(m_disk.path());
    EXPECT_TRUE(m_screen->isScanRunningNow());
    EXPECT_FALSE(button("scanButton").isVisible());
    EXPECT_FALSE(button("sortButton").isVisible());
    EXPECT_TRUE(button("cancelButton").isVisible());
    EXPECT_TRUE(button("cancelButton").isEnabled());
    EXPECT_TRUE(named<QProgressBar>("scanProgress").isVisible());
    waitForScan();

    EXPECT_EQ(rowNames(), (Names{"large", "small"}));
    EXPECT_EQ(shownPath(), m_disk.path());
    EXPECT_EQ(label("totalLabel"), u"3.50 MB"_s);
    EXPECT_TRUE(label("dateLabel").endsWith(u"[1,1]"_s));
    EXPECT_TRUE(button("scanButton").isVisible());
    EXPECT_TRUE(button("sortButton").isVisible());
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_FALSE(named<QProgressBar>("scanProgress").isVisible());
    EXPECT_TRUE(table().isVisible());

    const auto records = KORVENHistoryStore::sharedStore().allItems();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->scanPath(), m_disk.path());
    EXPECT_EQ(records[0]->scanTotal(), "3.50 MB");
    EXPECT_EQ(records[0]->scanKey(), m_screen->uuid());
    EXPECT_TRUE(m_services.settings.data(m_screen->uuid()));
    EXPECT_FALSE(m_services.settings.hasPendingChanges());
    EXPECT_EQ(access(records[0]->scanFilePath()->c_str(), R_OK), 0);
    const auto saved = readHistoryFile(KORVENHistoryStore::sharedStore().itemArchivePath());
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved.value().size(), 1U);
    ASSERT_EQ(m_services.notifier.notifications().size(), 1U);
    EXPECT_EQ(m_services.notifier.notifications()[0].text, "Scan completed");
}

TEST_F(KORVENScanViewControllerTest, theUserIsToldBeforeTheScanIsKept)
{
    std::vector<std::string> keptWhenTold{"nobody was told"};
    m_services.notifier.beforeEach = [&] {
        keptWhenTold = listedNames(m_documents.path("documents"));
        EXPECT_EQ(m_services.settings.log(), Names{});
    };
    m_services.settings.clearLog();
    openScreen();
    chooseAndScan(m_disk.path());
    waitForScan();
    EXPECT_EQ(keptWhenTold, Names{});
    EXPECT_EQ(archives().size(), 1U);
}

TEST_F(KORVENScanViewControllerTest, theRecordedTotalIsExactWhereTheShownOneIsRounded)
{
    // The next number in single precision is 8192 * 15069276 = 123,447,508,992.
    m_disk.file("large", 123'444'999'999);
    openScreen();
    chooseAndScan(m_disk.path());
    waitForScan();
    const auto records = KORVENHistoryStore::sharedStore().allItems();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->scanTotal(), "123.44 GB");
    EXPECT_EQ(label("totalLabel"), u"123.45 GB"_s);
}

TEST_F(KORVENScanViewControllerTest, keepsABookmarkOfTheScannedFolderUnderTheKeyOfTheScan)
{
    openScreen();
    chooseAndScan(m_disk.path());
    waitForScan();
    const auto bookmark = m_services.settings.data(m_screen->uuid());
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(m_services.bookmarks.resolve(*bookmark), fileUrl(m_disk.path()));
}

TEST_F(KORVENScanViewControllerTest, showsTheMostRecentScanWhenItStarts)
{
    recordTree(*makeTree("/old", {file("a", 1'000)}), 100);
    recordTree(*makeTree("/new", {file("b", 2'000)}), 300);
    recordTree(*makeTree("/middle", {file("c", 3'000)}), 200);
    openScreen();
    m_screen->startLoading();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !m_screen->scanArray().empty(); }));
    EXPECT_EQ(rowNames(), Names{"b"});
    EXPECT_EQ(shownPath(), "/new");
    EXPECT_EQ(m_screen->scanFolder(), "/new");
    EXPECT_EQ(label("dateLabel"), u"2001-01-01 00:05 [1,1]"_s);
    EXPECT_EQ(m_screen->uuid(), KORVENHistoryStore::sharedStore().getMostRecentScan()->scanKey());
}

TEST_F(KORVENScanViewControllerTest, aScanStartedWhileTheLastOneIsLoadedIsWhatIsShown)
{
    recordTree(*makeTree("/old", {file("old", 1'000)}));
    m_disk.file("new", 1'000);
    openScreen();
    std::promise<pid_t> loader;
    std::promise<void> canGoOn;
    m_services.dates.beforeEach = [&, isLoader = true]() mutable {
        if (std::exchange(isLoader, false)) {
            loader.set_value(gettid());
            canGoOn.get_future().wait();
        }
    };
    m_screen->startLoading();
    const std::string task = "/proc/self/task/" + std::to_string(loader.get_future().get());

    chooseAndScan(m_disk.path());
    waitForScan();
    canGoOn.set_value();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !std::filesystem::exists(task); }, 60'000));
    QCoreApplication::processEvents(); // what the loader has handed over

    EXPECT_EQ(rowNames(), Names{"new"});
    EXPECT_EQ(shownPath(), m_disk.path());
}

TEST_F(KORVENScanViewControllerTest, aLevelOfHiddenItemsHasATotalButNoRows)
{
    m_delegate.setHiddenItemPreference(0);
    m_delegate.setLargeFilePreference(1);
    openScreen();
    showTree(makeTree("/f", {file(".hidden", 2'000'000), file("small", 1'000'000)}));
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(label("totalLabel"), u"3.00 MB"_s);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
}

TEST_F(KORVENScanViewControllerTest, anEmptyFolderHasATotalOfZero)
{
    openScreen();
    showTree(makeTree("/f"));
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(label("totalLabel"), u"0.00 KB"_s);
}

TEST_F(KORVENScanViewControllerTest, theTrashIsListedWhateverThePreferences)
{
    openScreen();
    for (const std::int32_t preference : {0, 7, -1}) {
        m_delegate.setHiddenItemPreference(preference);
        showTree(makeTree("/f", {folder(".Trash"), folder(".trash", {file("a", 5'000)}),
                                 file(".hidden", 5'000), folder("b")}));
        EXPECT_EQ(rowNames(), (Names{".Trash", "b"})) << preference;
    }
}

TEST_F(KORVENScanViewControllerTest, aFileOfTheThresholdsSizeIsNotListedOneByteMoreIs)
{
    m_delegate.setLargeFilePreference(3);
    m_delegate.setHiddenItemPreference(3);
    openScreen();
    showTree(makeTree("/f", {file("a", 1'000'000), file("b", 1'000'001), file(".c", 1'000),
                             file(".d", 1'001), folder(".e", {file("x", 1'000)}),
                             folder(".g", {file("x", 1'001)})}));
    EXPECT_EQ(rowNames(), (Names{"b", ".d", ".g"}));
}

TEST_F(KORVENScanViewControllerTest, withoutAThresholdNoPlainFileIsListed)
{
    m_delegate.setLargeFilePreference(0);
    openScreen();
    showTree(makeTree("/f", {file("a", 5'000'000'000), folder("b"), file(".c", 10)}));
    EXPECT_EQ(rowNames(), (Names{".c", "b"}));
}

TEST_F(KORVENScanViewControllerTest, pathsBelowTheRootHaveOneSlash)
{
    openScreen();
    showTree(makeTree("/", {folder("Applications", {folder("Tools", {file("x", 10)})})}));
    m_screen->drillDownOneLevel("Applications");
    EXPECT_EQ(shownPath(), "/Applications");
    m_screen->drillDownOneLevel("Tools");
    EXPECT_EQ(shownPath(), "/Applications/Tools");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "/Applications");
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "/");
    EXPECT_FALSE(button("backButton").isVisible());
}

TEST_F(KORVENScanViewControllerTest, goingUpAtTheTopChangesNothing)
{
    openScreen();
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "");
    showTree(makeTree("/f", {file("a", 10)}));
    m_screen->drillUpOneLevel();
    EXPECT_EQ(shownPath(), "/f");
    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_FALSE(button("backButton").isVisible());
}

TEST_F(KORVENScanViewControllerTest, aNameThatNoChildHasLeavesAnEmptyLevel)
{
    openScreen();
    showTree(makeTree("/f", {folder("a", {file("x", 10)})}));
    m_screen->drillDownOneLevel("b");
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(shownPath(), "/f/b");
    EXPECT_TRUE(button("backButton").isVisible());
    QTest::mouseClick(&button("backButton"), Qt::LeftButton);
    EXPECT_EQ(shownPath(), "/f/b");
    showTree(makeTree("/g", {file("y", 10)}));
    EXPECT_EQ(rowNames(), Names{"y"});
    EXPECT_FALSE(button("backButton").isVisible());
}

TEST_F(KORVENScanViewControllerTest, anEmptyTrashAloneHasABlueBarOfNoNumber)
{
    m_delegate.setFolderGraphColorPreference(1);
    openScreen();
    showTree(makeTree("/f", {folder(".Trash")}));
    ASSERT_EQ(rowNames(), Names{".Trash"});
    KORVENProgressBar blue;
    blue.setColorsBlue();
    EXPECT_EQ(cell(0).folderGraph()->fColor(), blue.fColor());
    EXPECT_TRUE(std::isnan(cell(0).folderGraph()->barPercent()));
    EXPECT_EQ(cell(0).folderGraph()->toolTip(), u"nan%"_s);
    EXPECT_EQ(cell(0).iconImage()->imageName(), u"trash_full.png"_s);
}

TEST_F(KORVENScanViewControllerTest, onlyNamesOf21CharactersHaveTooltips)
{
    openScreen();
    showTree(makeTree("/f", {file("12345678901234567890", 30), file("123456789012345678901", 20),
                             file("1234567890123456789\xF0\x9F\x98\x80", 10)}));
    EXPECT_EQ(cell(0).folderName()->toolTip(), u""_s);
    EXPECT_EQ(cell(1).folderName()->toolTip(), u"123456789012345678901"_s);
    EXPECT_FALSE(cell(2).folderName()->toolTip().isEmpty()) << "the last character counts twice";
}

TEST_F(KORVENScanViewControllerTest, barsWarnByTheirShareInSinglePrecision)
{
    const auto colorOf = [](void (KORVENProgressBar::*set)()) {
        KORVENProgressBar bar;
        (bar.*set)();
        return bar.fColor();
    };
    const QColor blue = colorOf(&KORVENProgressBar::setColorsBlue);
    const QColor yellow = colorOf(&KORVENProgressBar::setColorsYellow);
    const QColor red = colorOf(&KORVENProgressBar::setColorsRed);
    struct Case {
        std::uint64_t size, total;
        QColor color;
    };
    // 0.9 of 2^30 is 966367641.6; the rows give the single-precision values on both sides of 0.9.
    // 9 of 10 is the lower one of them, and in double precision not below 0.9.
    constexpr std::uint64_t total = 1U << 30U;
    const Case cases[] = {{79, 100, blue},           {80, 100, yellow},
                          {85, 100, yellow},         {966'367'616, total, yellow},
                          {966'367'680, total, red}, {1, 1, red},
                          {9, 10, yellow},           {91, 100, red}};
    openScreen();
    for (const Case &share : cases) {
        const auto tree = makeTree(
            "/f", {folder("x", {file("a", share.size)}), file(".rest", share.total - share.size)});
        for (const int preference : {0, 1}) {
            m_delegate.setFolderGraphColorPreference(preference);
            showTree(tree);
            const auto names = rowNames();
            const auto row = std::find(names.begin(), names.end(), "x") - names.begin();
            EXPECT_EQ(cell(static_cast<int>(row)).folderGraph()->fColor(),
                      preference == 1 ? share.color : blue)
                << share.size << " of " << share.total;
        }
    }
}

TEST_F(KORVENScanViewControllerTest, barsShowTheShareOfTheWholeLevel)
{
    openScreen();
    showTree(makeTree("/f", {file("a", 250), file("b", 750)}));
    EXPECT_EQ(cell(0).folderGraph()->barPercent(), 0.75F);
    EXPECT_EQ(cell(0).folderGraph()->toolTip(), u"75%"_s);
    EXPECT_EQ(cell(1).folderGraph()->toolTip(), u"25%"_s);
    EXPECT_EQ(cell(0).folderName()->text(), u"b"_s);
    EXPECT_EQ(cell(0).folderSize()->text(), u"0.75 KB"_s);
}

TEST_F(KORVENScanViewControllerTest, cellsSayWhatAClickDoes)
{
    openScreen();
    showTree(makeTree("/f", {folder("d", {file("x", 20)}), file("a", 10)}));
    EXPECT_TRUE(cell(0).allowsClickDrill());
    EXPECT_EQ(cell(0).iconImage()->imageName(), u"folder.png"_s);
    EXPECT_EQ(cell(0).iconImage()->toolTip(), u"Drill down"_s);
    EXPECT_FALSE(cell(1).allowsClickDrill());
    EXPECT_EQ(cell(1).iconImage()->imageName(), u"file.png"_s);
    EXPECT_EQ(cell(1).iconImage()->toolTip(), u"Quick look"_s);
}

TEST_F(KORVENScanViewControllerTest, thereIsNoCellPastTheLastRow)
{
    openScreen();
    showTree(makeTree("/f", {file("a", 10)}));
    EXPECT_EQ(m_screen->viewForTableColumn(1), nullptr);
    EXPECT_EQ(m_screen->viewForTableColumn(-1), nullptr);
}

TEST_F(KORVENScanViewControllerTest, sortsByNameUpperCaseFirstAndBySizeAgainOnEveryLevel)
{
    openScreen();
    showTree(makeTree("/f", {file("alpha", 30), file("Zeta", 10), folder("d", {file("x", 20)})}));
    EXPECT_EQ(rowNames(), (Names{"alpha", "d", "Zeta"}));

    QTest::mouseClick(&button("sortButton"), Qt::LeftButton);
    EXPECT_EQ(rowNames(), (Names{"Zeta", "alpha", "d"}));
    EXPECT_EQ(button("sortButton").text(), u"Sort by size"_s);
    EXPECT_EQ(cell(0).folderName()->text(), u"Zeta"_s);

    m_screen->drillDownOneLevel("d");
    EXPECT_TRUE(m_screen->sortBySizeFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);

    m_screen->sortClicked();
    m_screen->drillUpOneLevel();
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_EQ(rowNames(), (Names{"alpha", "d", "Zeta"}));

    m_screen->sortClicked();
    m_screen->sortClicked();
    EXPECT_EQ(rowNames(), (Names{"alpha", "d", "Zeta"}));
}

TEST_F(KORVENScanViewControllerTest, cancellingLeavesNothingAndRecordsNothing)
{
    for (int i = 0; i < 200; ++i) {
        m_disk.nestedFolders("d" + std::to_string(i), 20, 1);
    }
    openScreen();
    showTree(makeTree("/before", {file("a", 10)}));
    const std::string key = m_screen->uuid();
    const auto recordCount = KORVENHistoryStore::sharedStore().allItems().size();
    m_services.settings.clearLog();

    chooseAndScan(m_disk.path());
    press("cancelButton");
    waitForScan();

    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(shownPath(), m_disk.path());
    EXPECT_EQ(label("totalLabel"), u""_s);
    EXPECT_EQ(label("dateLabel"), u""_s);
    EXPECT_EQ(m_screen->drillDownPath(), std::nullopt);
    EXPECT_EQ(m_screen->uuid(), key);
    EXPECT_EQ(m_services.settings.log(), Names{}) << "a setting was stored";
    EXPECT_EQ(KORVENHistoryStore::sharedStore().allItems().size(), recordCount);
    ASSERT_EQ(m_services.notifier.notifications().size(), 1U);
    EXPECT_EQ(m_services.notifier.notifications()[0].text, "Scan canceled");
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_TRUE(button("scanButton").isVisible());

    QTest::keyClick(&table(), Qt::Key_Backspace); // there is no way back
    EXPECT_EQ(shownPath(), m_disk.path());
    m_screen->refreshTable(); // the level from before comes back, without its path
    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_EQ(shownPath(), "");
    cell(0).showInFinder();
    EXPECT_EQ(m_services.fileManager.revealed(), Names{}) << "not \"a\" of the root folder";
}

TEST_F(KORVENScanViewControllerTest, aScanThatCannotBeKeptIsShownAndNotRecorded)
{
    m_disk.file("a", 1'000);
    openScreen();
    (void)KORVENHistoryStore::sharedStore();
    ASSERT_EQ(rmdir(m_documents.path("documents").c_str()), 0);
    const LoggedWarnings log;

    chooseAndScan(m_disk.path());
    waitForScan();

    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_TRUE(KORVENHistoryStore::sharedStore().allItems().empty());
    EXPECT_EQ(m_services.notifier.notifications()[0].text, "Scan completed");
    EXPECT_TRUE(m_services.settings.hasKey(m_screen->uuid())) << "the bookmark stays";
    const auto &notice = named<QLabel>("noticeLabel");
    EXPECT_TRUE(notice.isVisible());
    EXPECT_TRUE(notice.text().startsWith(u"This scan could not be kept: "_s));
    EXPECT_TRUE(notice.text().endsWith(u"No such file or directory"_s));
    const auto lines = log.lines();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
        return line.starts_with("tessaly.screens.scan: The scan was not kept: ");
    }));

    m_documents.folder("documents");
    chooseAndScan(m_disk.path());
    EXPECT_FALSE(notice.isVisible()) << "it is about the scan before";
    waitForScan();
    EXPECT_FALSE(notice.isVisible());
}

TEST_F(KORVENScanViewControllerTest, aScanOfWhichTheHistoryCannotBeWrittenSaysSo)
{
    m_disk.file("a", 1'000);
    openScreen();
    (void)KORVENHistoryStore::sharedStore();
    m_documents.folder("documents/scanHistory.archive"); // no file takes its place
    chooseAndScan(m_disk.path());
    waitForScan();
    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_TRUE(label("noticeLabel").startsWith(u"This scan could not be kept: "_s));
}

TEST_F(KORVENScanViewControllerTest, anotherScanThatIsShownHasNoNotice)
{
    const std::string key = recordTree(*makeTree("/f", {file("b", 10)}));
    openScreen();
    ASSERT_EQ(unlink(KORVENHistoryStore::sharedStore().itemForKey(key)->scanFilePath()->c_str()),
              0);
    ASSERT_EQ(rmdir(m_documents.path("documents").c_str()), 0);
    chooseAndScan(m_disk.path());
    waitForScan();
    ASSERT_TRUE(named<QLabel>("noticeLabel").isVisible());
    m_screen->loadHistoryItem(key);
    EXPECT_FALSE(named<QLabel>("noticeLabel").isVisible());
}

TEST_F(KORVENScanViewControllerTest, aRecordWithoutItsFileShowsTheEmptyStateAndWhy)
{
    openScreen();
    const std::string key = recordTree(*makeTree("/f", {file("a", 10)}));
    const auto record = KORVENHistoryStore::sharedStore().itemForKey(key);
    ASSERT_EQ(unlink(record->scanFilePath()->c_str()), 0);

    showTree(makeTree("/before", {file("b", 10)}));
    m_screen->loadHistoryItem(key);

    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(shownPath(), "/f");
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyText").count(QString::fromStdString(*record->scanFilePath())), 1);
    EXPECT_TRUE(label("emptyText").contains(u"No such file"_s));

    const QString told = label("emptyText");
    m_screen->refreshTable();
    EXPECT_EQ(label("emptyText"), told) << "a preference that changes does not take it away";
    EXPECT_EQ(KORVENHistoryStore::sharedStore().allItems().size(), 2U);
}

TEST_F(KORVENScanViewControllerTest, aDamagedFileShowsTheEmptyStateAndStays)
{
    openScreen();
    const std::string key = recordTree(*makeTree("/f", {file("a", 10)}));
    const std::string path =
        KORVENHistoryStore::sharedStore().itemForKey(key)->scanFilePath().value();
    std::ofstream(path) << "bplist00 damaged";

    m_screen->loadHistoryItem(key);

    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"This scan cannot be opened"_s);
    EXPECT_TRUE(label("emptyText").startsWith(QString::fromStdString(path) + u'\n'));
    EXPECT_EQ(access(path.c_str(), F_OK), 0);
}

TEST_F(KORVENScanViewControllerTest, aHistoryThatCannotBeReadIsToldAndStays)
{
    const std::string path = m_documents.path("documents/scanHistory.archive");
    std::ofstream(path) << "bplist00 damaged";
    m_disk.file("a", 1'000);
    openScreen();
    m_screen->startLoading();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return label("emptyTitle") == u"The history cannot be read"_s; }));

    chooseAndScan(m_disk.path());
    waitForScan();

    EXPECT_EQ(rowNames(), Names{"a"});
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "bplist00 damaged");
}

TEST_F(KORVENScanViewControllerTest, reopeningShowsAnyRecordFromItsTop)
{
    openScreen();
    const std::string first = recordTree(*makeTree("/one//two/", {file("a", 10)}), 60);
    showTree(makeTree("/g", {folder("d", {file("x", 20)})}));
    m_screen->drillDownOneLevel("d");
    m_screen->sortClicked();

    m_screen->loadHistoryItem(first);

    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_EQ(m_screen->uuid(), first);
    EXPECT_EQ(shownPath(), "/one/two");
    EXPECT_EQ(m_screen->drillDownPath(), "/one//two/");
    EXPECT_EQ(label("dateLabel"), u"2001-01-01 00:01 [1,1]"_s);
    EXPECT_FALSE(button("backButton").isVisible());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
}

TEST_F(KORVENScanViewControllerTest, thePreferencesApplyWhenTheTableIsRefreshed)
{
    openScreen();
    showTree(makeTree("/f", {file("a", 10), file("b", 2'000'000)}));
    m_delegate.setLargeFilePreference(3);
    EXPECT_EQ(rowNames(), (Names{"b", "a"}));
    m_screen->refreshTable();
    EXPECT_EQ(rowNames(), Names{"b"});
}

TEST_F(KORVENScanViewControllerTest, keysGoDownUpAndPreview)
{
    openScreen();
    showTree(makeTree("/f", {folder("d", {file("x", 20)}), file("a", 10)}));
    table().setFocus();
    table().selectRow(0);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(shownPath(), "/f/d");
    QTest::keyClick(&table(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(shownPath(), "/f");
    QTest::keyClick(&table(), Qt::Key_Space);
    ASSERT_TRUE(m_services.previewPanels.sharedPreviewPanelExists());
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
    QTest::keyClick(&table(), Qt::Key_Space);
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanel().isVisible());
}

TEST_F(KORVENScanViewControllerTest, keysActOnTheSelectedRowAlsoWhenItIsOutOfSight)
{
    std::vector<PlannedNode> nodes{folder("first", {file("x", 1'000'000)})};
    for (int i = 0; i < 100; ++i) {
        nodes.push_back(file("file " + std::to_string(i), 1'000));
    }
    openScreen();
    showTree(makeTree("/f", std::move(nodes)));
    table().setFocus();
    table().selectRow(0);
    table().scrollToBottom();
    ASSERT_EQ(table().cellForRow(0), nullptr);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(shownPath(), "/f/first");
}

TEST_F(KORVENScanViewControllerTest, theSortButtonKeepsItsKeys)
{
    openScreen();
    showTree(makeTree("/f", {file("b", 30), file("a", 10)}));
    for (const bool sortsBySize : {false, true, false}) {
        QTest::keyClick(&m_window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_screen->sortBySizeFlag() == sortsBySize; }));
    }
}

TEST_F(KORVENScanViewControllerTest, anEscapeThatIsHeldDownDoesNotCancel)
{
    openScreen();
    chooseAndScan(m_disk.path());
    const QSignalSpy clicks(&button("cancelButton"), &QAbstractButton::clicked);
    // Its first press was for the sheet that it has closed.
    QTest::simulateEvent(&m_window, true, Qt::Key_Escape, Qt::NoModifier, {}, true);
    EXPECT_FALSE(button("cancelButton").isDown());
    waitForScan();
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(shownPath(), m_disk.path());
}

TEST_F(KORVENScanViewControllerTest, theKeyboardStaysWhereItIsWhenAResultComes)
{
    openScreen();
    button("sortButton").setFocus();
    showTree(makeTree("/f", {file("a", 10)}));
    EXPECT_TRUE(button("sortButton").hasFocus());
}

TEST_F(KORVENScanViewControllerTest, tooltipsShowNamesAsTheyAre)
{
    openScreen();
    showTree(makeTree("/f", {file("Tom & \"Jerry\" and all of them", 20),
                             file("<b>not bold but a name</b>", 10)}));
    EXPECT_EQ(cell(0).folderName()->toolTip(), u"Tom & \"Jerry\" and all of them"_s);
    EXPECT_EQ(cell(1).folderName()->toolTip(), u"&lt;b&gt;not bold but a name&lt;/b&gt;"_s);
}

TEST_F(KORVENScanViewControllerTest, typingSelectsARow)
{
    openScreen();
    showTree(makeTree("/f", {file("apple", 30), file("banana", 20), file("cherry", 10)}));
    table().setFocus();
    QTest::keyClicks(&table(), u"ch"_s);
    EXPECT_EQ(table().selectedRow(), 2);
}

TEST_F(KORVENScanViewControllerTest, rowsReadAsNameKindSizeAndPercentage)
{
    openScreen();
    showTree(makeTree("/f", {file("a\n", 250), folder("b", {file("c", 750)})}));
    const QAbstractItemModel *model = table().model();
    EXPECT_EQ(model->index(0, 0).data(Qt::AccessibleTextRole).toString(),
              u"b, folder, 0.75 KB, 75%"_s);
    EXPECT_EQ(model->index(1, 0).data(Qt::AccessibleTextRole).toString(),
              u"a?, file, 0.25 KB, 25%"_s);
}

TEST_F(KORVENScanViewControllerTest, namesOfAnyBytesAreShownDrilledAndPreviewed)
{
    openScreen();
    const std::string odd = "\xFF\xC3(\n";
    showTree(makeTree("/f", {folder(odd, {file("x", 20)})}));
    cell(0).clickedName();
    EXPECT_EQ(m_screen->drillDownPath(), "/f/" + odd);
    EXPECT_EQ(rowNames(), Names{"x"});
    cell(0).showInFinder();
    ASSERT_EQ(m_services.fileManager.revealed().size(), 1U);
    EXPECT_EQ(m_services.fileManager.revealed()[0], "//f/" + odd + "/x");
}

TEST_F(KORVENScanViewControllerTest, closingDuringAScanEndsItAndLeavesNoFile)
{
    for (int i = 0; i < 100; ++i) {
        m_disk.nestedFolders("d" + std::to_string(i), 20, 1);
    }
    openScreen();
    chooseAndScan(m_disk.path());
    m_screen.reset();
    EXPECT_TRUE(KORVENHistoryStore::sharedStore().allItems().empty());
    EXPECT_EQ(rmdir(m_documents.path("documents").c_str()), 0) << "something was left in there";
}

TEST_F(KORVENScanViewControllerTest, aFolderThatCannotBeReadSaysSo)
{
    openScreen();
    chooseAndScan(m_disk.path("missing"));
    waitForScan();
    EXPECT_EQ(label("emptyTitle"), u"This folder cannot be read"_s);
    EXPECT_EQ(label("totalLabel"), u"0.00 KB"_s);
}

TEST_F(KORVENScanViewControllerTest, hasAFileNameThatNothingIsWrittenTo)
{
    openScreen();
    EXPECT_EQ(m_screen->itemArchivePath(), m_documents.path("documents/scan.archive"));
}

TEST_F(KORVENScanViewControllerTest, onTheOldestReleaseCellsAndButtonsAreThoseOfOld)
{
    m_services.release.setVersion({10, 7});
    const KORVENAppDelegate delegate(m_services.all());
    openScreen();
    showTree(makeTree("/f", {file("a", 10)}));
    EXPECT_TRUE(button("scanButton").run10p7Mode());
    EXPECT_EQ(cell(0).folderName()->text(), u"a"_s);
}

TEST_F(KORVENScanViewControllerTest, aMillionRowsTakeFewCells)
{
    std::vector<PlannedNode> files;
    for (std::uint64_t i = 0; i < 100'000; ++i) {
        files.push_back(file("file " + std::to_string(i), 1'000 + i));
    }
    openScreen();
    showTree(makeTree("/f", std::move(files)));
    ASSERT_EQ(m_screen->numberOfRowsInTableView(), 100'000);
    for (int i = 0; i < 50; ++i) {
        QTest::keyClick(&table(), Qt::Key_PageDown);
    }
    table().scrollToBottom();
    EXPECT_EQ(cell(99'999).folderName()->text(), u"file 0"_s);
    EXPECT_LE(table().cellCount(), 100);
}

} // namespace
} // namespace tessaly
