#include "history/KORVENHistoryViewController.hpp"

#include "app/controls/tables/RowRemovalAnimation.hpp"
#include "tests/history/HistoryScreenTest.hpp"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QStackedWidget>

#include <algorithm>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class KORVENHistoryViewControllerTest : public HistoryScreenTest {
protected:
    /// Three scans, the newest of them neither first nor last, and the screen.
    void openThree()
    {
        record("B", "/b", 200);
        record("C", "/c", 300);
        record("A", "/a", 100);
        openScreen();
    }
    [[nodiscard]] RowRemovalAnimation *departure() const
    {
        return m_screen->view()->findChild<RowRemovalAnimation *>();
    }
    [[nodiscard]] long countOfRows() const { return table().model()->rowCount(); }
};

// Lists.

TEST_F(KORVENHistoryViewControllerTest, listsTheScansNewestFirst)
{
    openThree();

    EXPECT_EQ(shownPaths(), (Paths{"/c", "/b", "/a"}));
    EXPECT_EQ(arrayPaths(), shownPaths());
    EXPECT_TRUE(m_screen->sortByDateFlag());
    EXPECT_FALSE(m_screen->firstRunFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_EQ(label("countLabel"), u"3 scans kept"_s);
}

TEST_F(KORVENHistoryViewControllerTest, itsRowsAreAModelThatChangesByTheRules)
{
    openThree();
    const QAbstractItemModelTester tester(table().model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    m_screen->sortClicked();
    clickDelete(1);
    showRows(2);
    record("new", "/new", 99);
    showRows(3);
    press("deleteButton");
    showRows(0);
}

TEST_F(KORVENHistoryViewControllerTest, aRowShowsPathTotalDateAndHowToOpenIt)
{
    record("A", "/home/user/Projects", 3'600, "41.60 GB");
    openScreen();

    EXPECT_EQ(cell(0).scanPath()->text(), u"/home/user/Projects"_s);
    EXPECT_EQ(cell(0).scanPath()->toolTip(), u"/home/user/Projects"_s);
    EXPECT_EQ(cell(0).scanTotal()->text(), u"41.60 GB"_s);
    EXPECT_EQ(cell(0).scanDate()->text(), u"2001-01-01 01:00 [2,1]"_s)
        << "the date in the medium style, the time in the short one";
    EXPECT_EQ(cell(0).imageView()->toolTip(), u"Load scan"_s);
    EXPECT_EQ(cell(0).scanKey(), "A");
    EXPECT_EQ(label("countLabel"), u"1 scan kept"_s);
}

TEST_F(KORVENHistoryViewControllerTest, anEmptyHistoryHasNoRowsAndDeletingDoesNothing)
{
    openScreen();

    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
    EXPECT_EQ(countOfRows(), 0);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("emptyTitle"), u"No scans kept yet"_s);
    EXPECT_FALSE(label("emptyText").isEmpty());
    const QImage before = m_window.grab().toImage();

    press("deleteButton");
    m_screen->deleteAllClicked();
    QTest::keyClick(&table(), Qt::Key_Delete);
    m_screen->reloadHistoryDelete("no such key");
    QCoreApplication::processEvents();

    EXPECT_EQ(m_mainWindow.log, Log{});
    EXPECT_EQ(m_window.grab().toImage(), before);
    EXPECT_NE(access(store().itemArchivePath().c_str(), F_OK), 0) << "a history was written";
}

TEST_F(KORVENHistoryViewControllerTest, isSetUpOnce)
{
    openThree();
    press("sortButton");
    m_screen->awakeFromNib();
    EXPECT_FALSE(m_screen->sortByDateFlag()) << "the second call has loaded the history";
}

TEST_F(KORVENHistoryViewControllerTest, twoScansOfAFolderAreBothListed)
{
    record("first", "/f", 0, "1.00 GB");
    record("second", "/f", 86'400, "2.00 GB");
    openScreen();

    EXPECT_EQ(shownPaths(), (Paths{"/f", "/f"}));
    EXPECT_EQ(cell(0).scanTotal()->text(), u"2.00 GB"_s);
    EXPECT_EQ(cell(0).scanDate()->text(), u"2001-01-02 00:00 [2,1]"_s);
    EXPECT_EQ(cell(1).scanTotal()->text(), u"1.00 GB"_s);
    EXPECT_EQ(cell(1).scanDate()->text(), u"2001-01-01 00:00 [2,1]"_s);

    press("sortButton");
    EXPECT_EQ(cell(0).scanKey(), "second");
    EXPECT_EQ(cell(1).scanKey(), "first");
}

TEST_F(KORVENHistoryViewControllerTest, ofTwoScansOfOneMomentTheLaterRecordedComesFirst)
{
    record("first", "/1", 50);
    record("second", "/2", 50);
    openScreen();
    EXPECT_EQ(shownPaths(), (Paths{"/2", "/1"}));
}

TEST_F(KORVENHistoryViewControllerTest, recordsWithEmptyFieldsShowEmptyTextsAndComeLast)
{
    const auto empty = std::make_shared<KORVENHistoryItem>("", "");
    empty->setScanPath(std::nullopt);
    empty->setScanTotal(std::nullopt);
    empty->setScanKey(std::nullopt);
    empty->setScanDate(std::nullopt);
    store().addItem(empty);
    record("old", "/old", -1e12);
    openScreen();

    EXPECT_EQ(shownPaths(), (Paths{"/old", ""}));
    EXPECT_EQ(cell(1).scanTotal()->text(), QString());
    EXPECT_EQ(cell(1).scanDate()->text(), QString());
    EXPECT_EQ(cell(1).scanKey(), std::nullopt);
    cell(1).imageClicked();
    clickDelete(1);
    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem "}) << "no record has no key";

    press("sortButton");
    EXPECT_EQ(shownPaths(), (Paths{"", "/old"}));
}

TEST_F(KORVENHistoryViewControllerTest, pathsThatAreNoTextAreShownAndLongOnesWholeInTheToolTip)
{
    const std::string bytes = "/caf\xE9/<b>" + std::string(300, 'x');
    record("A", bytes, 0);
    openScreen();

    EXPECT_EQ(arrayPaths(), Paths{bytes});
    const NameLabel &path = *cell(0).scanPath();
    EXPECT_LT(path.width(), path.sizeHint().width()) << "it is shown shortened";
    EXPECT_TRUE(path.toolTip().startsWith(u"/caf"_s));
    EXPECT_TRUE(path.toolTip().contains(u"&lt;b&gt;"_s)) << "a tooltip would take it for markup";
    EXPECT_TRUE(path.toolTip().endsWith(QString(300, u'x')));
}

// Orders.

TEST_F(KORVENHistoryViewControllerTest, theSortButtonNamesTheOrderThatItTurnsTo)
{
    openThree();

    press("sortButton");
    EXPECT_FALSE(m_screen->sortByDateFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by date"_s);
    EXPECT_EQ(shownPaths(), (Paths{"/a", "/b", "/c"}));

    press("sortButton");
    EXPECT_TRUE(m_screen->sortByDateFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_EQ(shownPaths(), (Paths{"/c", "/b", "/a"}));
    EXPECT_EQ(store().allItems().front()->scanKey(), "B") << "the store's order is its own";
}

TEST_F(KORVENHistoryViewControllerTest, nameOrderIsThatOfTheWholePathsCodeUnits)
{
    record("1", "/Volumes/alpha", 1);
    record("2", "/Users/b", 2);
    record("3", "/Volumes/Zeta", 3);
    record("4", "/Users/a/x", 4);
    record("5", "/Volumes/\xEE\x80\x80", 5);     // U+E000
    record("6", "/Volumes/\xF0\x9F\x98\x80", 6); // U+1F600, whose code units come before it
    openScreen();

    press("sortButton");

    EXPECT_EQ(arrayPaths(), (Paths{"/Users/a/x", "/Users/b", "/Volumes/Zeta", "/Volumes/alpha",
                                   "/Volumes/\xF0\x9F\x98\x80", "/Volumes/\xEE\x80\x80"}));
}

TEST_F(KORVENHistoryViewControllerTest, sortingShowsTheFirstRow)
{
    openMany(60);
    QScrollBar &bar = *table().verticalScrollBar();
    bar.setValue(bar.maximum());
    ASSERT_GT(bar.value(), 0);

    press("sortButton");

    EXPECT_EQ(bar.value(), 0);
    EXPECT_EQ(cell(0).scanPath()->text(), u"/scan 0"_s);
    EXPECT_EQ(cell(1).scanPath()->text(), u"/scan 1"_s);
    EXPECT_EQ(cell(2).scanPath()->text(), u"/scan 10"_s);
}

TEST_F(KORVENHistoryViewControllerTest, aNewScanPutsTheRowsBackInDateOrder)
{
    openThree();
    press("sortButton");

    record("D", "/aa", 400);
    EXPECT_EQ(shownPaths(), (Paths{"/a", "/b", "/c"})) << "it was reloaded without waiting";
    showRows(4);

    EXPECT_EQ(shownPaths(), (Paths{"/aa", "/c", "/b", "/a"}));
    EXPECT_TRUE(m_screen->sortByDateFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by name"_s);
    EXPECT_EQ(label("countLabel"), u"4 scans kept"_s);
}

TEST_F(KORVENHistoryViewControllerTest, theFirstScanTakesThePlaceOfTheEmptyState)
{
    openScreen();
    EXPECT_FALSE(button("deleteButton").isEnabled());
    record("A", "/a", 1);
    showRows(1);
    EXPECT_FALSE(named<QWidget>("emptyPage").isVisible());
    EXPECT_TRUE(table().isVisible());
    EXPECT_TRUE(button("deleteButton").isEnabled());
}

// Deletions.

TEST_F(KORVENHistoryViewControllerTest, aDeletedRowLeavesTheOthersInNameOrder)
{
    openThree();
    press("sortButton");

    clickDelete(1);

    EXPECT_EQ(arrayPaths(), (Paths{"/a", "/c"})) << "pruned at once";
    EXPECT_EQ(countOfRows(), 3) << "the table is reloaded without waiting";
    showRows(2);
    EXPECT_EQ(shownPaths(), (Paths{"/a", "/c"}));
    EXPECT_FALSE(m_screen->sortByDateFlag());
    EXPECT_EQ(button("sortButton").text(), u"Sort by date"_s);
    EXPECT_EQ(m_mainWindow.log, Log{"reloadHistoryDelete B"});
    EXPECT_EQ(store().itemForKey("B"), nullptr);
    EXPECT_NE(access(m_documents.path("documents/B.archive").c_str(), F_OK), 0);
    EXPECT_EQ(readHistoryFile(store().itemArchivePath()).value().size(), 2U);
}

TEST_F(KORVENHistoryViewControllerTest, aDoubleClickDeletesOneScan)
{
    openThree();
    clickDelete(0);
    showRows(2); // the next row has moved under the pointer
    QTest::mouseClick(cell(0).deleteButton(), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(arrayPaths(), (Paths{"/b", "/a"}));
    clickDelete(0);
    EXPECT_EQ(arrayPaths(), Paths{"/a"});
}

TEST_F(KORVENHistoryViewControllerTest, aDeleteKeyThatIsHeldDownDeletesOneScan)
{
    openMany(10);
    table().setFocus();
    table().selectRow(0);
    for (const bool isRepeat : {false, true, true, true}) {
        QTest::simulateEvent(&table(), true, Qt::Key_Delete, Qt::NoModifier, {}, isRepeat);
        QCoreApplication::processEvents();
    }
    QTest::simulateEvent(&table(), false, Qt::Key_Delete, Qt::NoModifier, {}, false);
    showRows(9);
    EXPECT_EQ(store().allItems().size(), 9U);
    QTest::keyClick(&table(), Qt::Key_Delete);
    showRows(8);
}

TEST_F(KORVENHistoryViewControllerTest, aScanWhoseFileIsGoneIsDeletedAllTheSame)
{
    openThree();
    ASSERT_EQ(unlink(m_documents.path("documents/C.archive").c_str()), 0);
    clickDelete(0);
    showRows(2);
    EXPECT_EQ(shownPaths(), (Paths{"/b", "/a"}));
}

TEST_F(KORVENHistoryViewControllerTest, onlyTheFirstRowWithTheKeyIsPruned)
{
    record("A", "/older", 1);
    record("A", "/newer", 2);
    record("a", "/other", 3);
    openScreen();
    m_screen->reloadHistoryDelete("A");
    EXPECT_EQ(arrayPaths(), (Paths{"/other", "/older"}));
    m_screen->reloadHistoryDelete(std::nullopt);
    EXPECT_EQ(arrayPaths(), (Paths{"/other", "/older"}));
    showRows(2);
}

TEST_F(KORVENHistoryViewControllerTest, aRowWithoutAKeyIsPrunedByTheMissingKey)
{
    openThree();
    const auto keyless = std::make_shared<KORVENHistoryItem>("/keyless", "");
    keyless->setScanKey(std::nullopt);
    store().addItem(keyless);
    showRows(4);
    store().removeItem(keyless);
    showRows(3);
    EXPECT_EQ(shownPaths(), (Paths{"/c", "/b", "/a"}));
}

TEST_F(KORVENHistoryViewControllerTest, deletesAllOneByOneInTheStoresOrder)
{
    openThree();
    std::vector<std::size_t> saved;
    m_mainWindow.onDelete = [&] {
        saved.push_back(readHistoryFile(store().itemArchivePath()).value().size());
    };

    press("deleteButton");
    showRows(0);

    EXPECT_EQ(m_mainWindow.log,
              (Log{"reloadHistoryDelete B", "reloadHistoryDelete C", "reloadHistoryDelete A"}));
    EXPECT_EQ(saved, (std::vector<std::size_t>{2, 1, 0})) << "the file is written each time";
    EXPECT_TRUE(store().allItems().empty());
    for (const char *name : {"A", "B", "C"}) {
        const std::string path = m_documents.path("documents/") + name + ".archive";
        EXPECT_NE(access(path.c_str(), F_OK), 0) << name;
    }
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_EQ(label("countLabel"), u"No scans kept"_s);
    EXPECT_FALSE(button("deleteButton").isEnabled());
    EXPECT_TRUE(button("sortButton").isEnabled());
    EXPECT_TRUE(button("refreshButton").isEnabled());
}

TEST_F(KORVENHistoryViewControllerTest, tenThousandScansTakeFewCells)
{
    constexpr int count = 10'000;
    openMany(count);
    EXPECT_EQ(countOfRows(), count);
    EXPECT_EQ(label("countLabel"), QLocale().toString(count) + u" scans kept"_s);
    press("sortButton");
    table().scrollToBottom();
    EXPECT_EQ(cell(count - 1).scanPath()->text(), u"/scan 9999"_s);
    EXPECT_LT(table().cellCount(), 40);
}

// Messages from elsewhere.

TEST_F(KORVENHistoryViewControllerTest, isReloadedFromAnotherThread)
{
    openThree();
    std::thread([] { record("D", "/d", 400); }).join();
    EXPECT_EQ(arrayPaths().size(), 3U) << "only scheduled, for the main thread";
    showRows(4);
    EXPECT_EQ(shownPaths(), (Paths{"/d", "/c", "/b", "/a"}));
}

TEST_F(KORVENHistoryViewControllerTest, isPrunedOnWhateverThreadTheMessageComesFrom)
{
    openThree();
    std::thread([this] { m_screen->reloadHistoryDelete("C"); }).join();
    EXPECT_EQ(arrayPaths(), (Paths{"/b", "/a"}));
    EXPECT_EQ(countOfRows(), 3);
    showRows(2);
    EXPECT_EQ(shownPaths(), (Paths{"/b", "/a"}));
}

TEST_F(KORVENHistoryViewControllerTest, aReloadThatWasAskedForIsForgottenWithTheScreen)
{
    openThree();
    m_screen->reloadHistory();
    m_screen->reloadHistoryDelete("A");
    m_mainWindow.screen = nullptr;
    m_screen.reset();
    QCoreApplication::processEvents();
}

TEST_F(KORVENHistoryViewControllerTest, rowsBetweenPruningAndReloadAreSafeToLookAt)
{
    openThree();
    table().selectRow(2);
    m_screen->reloadHistoryDelete("C");
    m_screen->reloadHistoryDelete("B");

    EXPECT_EQ(m_screen->viewForTableColumn(2), nullptr);
    const QAbstractItemModel &model = *table().model();
    EXPECT_EQ(model.data(model.index(2, 0), Qt::AccessibleTextRole), QVariant());
    QTest::keyClick(&table(), Qt::Key_Return);

    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem A"}) << "the row that is seen";
    showRows(1);
}

TEST_F(KORVENHistoryViewControllerTest, aPressOnARowThatIsReplacedMeanwhileDoesNothing)
{
    openThree();
    QTest::mousePress(cell(0).deleteButton(), Qt::LeftButton);
    QWidget *pressed = cell(0).deleteButton();
    record("D", "/d", 400);
    showRows(4);
    QTest::mouseRelease(pressed, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownPaths(), (Paths{"/d", "/c", "/b", "/a"}));
}

TEST_F(KORVENHistoryViewControllerTest, aPressOutlivesAReloadThatLeavesItsRow)
{
    openThree();
    QWidget *pressed = cell(0).deleteButton();
    QTest::mousePress(pressed, Qt::LeftButton);
    m_screen->loadHistory();
    QTest::mouseRelease(pressed, Qt::LeftButton);
    showRows(2);
    EXPECT_EQ(shownPaths(), (Paths{"/b", "/a"}));
}

// Buttons and keys.

TEST_F(KORVENHistoryViewControllerTest, theRefreshButtonAsksForANewScan)
{
    openThree();
    press("refreshButton");
    EXPECT_EQ(m_mainWindow.log, Log{"scanClicked"});
    QTest::keyClick(&m_window, Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_mainWindow.log.size() == 2; }));
}

TEST_F(KORVENHistoryViewControllerTest, returnOpensTheSelectedScanAgain)
{
    openThree();
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Down);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(m_mainWindow.log, Log{"loadHistoryItem B"});
    EXPECT_EQ(shownPaths().size(), 3U);
}

TEST_F(KORVENHistoryViewControllerTest, deleteDeletesTheSelectedScanAndSelectsTheNext)
{
    openThree();
    table().setFocus();
    table().selectRow(1);

    QTest::keyClick(&table(), Qt::Key_Delete);
    showRows(2);
    EXPECT_EQ(shownPaths(), (Paths{"/c", "/a"}));
    EXPECT_EQ(table().selectedRow(), 1);

    QTest::keyClick(&table(), Qt::Key_Delete);
    showRows(1);
    EXPECT_EQ(shownPaths(), Paths{"/c"});
    EXPECT_EQ(table().selectedRow(), 0);

    QTest::keyClick(&table(), Qt::Key_Delete);
    showRows(0);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_TRUE(button("refreshButton").hasFocus()) << "the keyboard is at what to do next";
}

TEST_F(KORVENHistoryViewControllerTest, withoutASelectionDeleteDoesNothing)
{
    openThree();
    table().clearSelection();
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(m_mainWindow.log, Log{});
}

TEST_F(KORVENHistoryViewControllerTest, deleteReachesARowThatIsOutOfSight)
{
    openMany(60);
    table().setFocus();
    table().selectRow(59);
    table().verticalScrollBar()->setValue(0);
    ASSERT_EQ(table().cellForRow(59), nullptr);
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(m_mainWindow.log, Log{"reloadHistoryDelete K59"});
}

TEST_F(KORVENHistoryViewControllerTest, theSelectionStaysOnItsScan)
{
    openThree();
    table().selectRow(1);
    record("D", "/d", 400);
    showRows(4);
    EXPECT_EQ(table().selectedRow(), 2);
    press("sortButton");
    EXPECT_EQ(table().selectedRow(), 1);
    clickDelete(0);
    showRows(3);
    EXPECT_EQ(cell(table().selectedRow()).scanKey(), "B");
}

TEST_F(KORVENHistoryViewControllerTest, aDeletionLeavesTheRowsInSightWhereTheyAre)
{
    openMany(60);
    table().selectRow(0);
    QScrollBar &bar = *table().verticalScrollBar();
    bar.setValue(20 * table().rowHeight());
    clickDelete(22);
    showRows(59);
    EXPECT_EQ(bar.value(), 20 * table().rowHeight());
    EXPECT_EQ(cell(22).scanKey(), "K23");
}

TEST_F(KORVENHistoryViewControllerTest, tabLeadsThroughTheRowsAndTheButtonsInTheirOrder)
{
    openThree();
    table().setFocus();
    const std::vector<QWidget *> order{&button("sortButton"), &button("deleteButton"),
                                       &button("refreshButton"), &table()};
    for (const QWidget *next : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), next) << next->objectName().toStdString();
    }
}

TEST_F(KORVENHistoryViewControllerTest, everythingHasATextForThoseWhoCannotSeeIt)
{
    record("A", "/a", 0, "2.00 GB");
    openScreen();
    const QAbstractItemModel &model = *table().model();
    EXPECT_EQ(model.data(model.index(0, 0), Qt::AccessibleTextRole).toString(),
              u"/a, 2.00 GB, 2001-01-01 00:00 [2,1]"_s);
    EXPECT_FALSE(table().accessibleName().isEmpty());
    EXPECT_FALSE(cell(0).deleteButton()->accessibleName().isEmpty());
    EXPECT_FALSE(cell(0).deleteButton()->toolTip().isEmpty());
    EXPECT_FALSE(cell(0).imageView()->accessibleName().isEmpty());
    for (const char *name : {"deleteButton", "sortButton", "refreshButton"}) {
        EXPECT_FALSE(button(name).toolTip().isEmpty()) << name;
    }
    EXPECT_EQ(button("refreshButton").text(), u"New scan"_s);
    EXPECT_EQ(button("deleteButton").accessibleName(), u"Delete all scans"_s);
}

// How rows are made.

TEST_F(KORVENHistoryViewControllerTest, thereIsNoRowBeyondTheEnd)
{
    openThree();
    EXPECT_EQ(m_screen->viewForTableColumn(3), nullptr);
    EXPECT_EQ(m_screen->viewForTableColumn(-1), nullptr);
    EXPECT_NE(m_screen->viewForTableColumn(2), nullptr);
}

TEST_F(KORVENHistoryViewControllerTest, rowsAreBareBeforeCellsAreRegistered)
{
    record("A", "/a", 0);
    KORVENHistoryViewController screen(m_services.dates, m_services.documents);
    EXPECT_TRUE(screen.firstRunFlag());
    EXPECT_EQ(screen.viewForTableColumn(0), nullptr);
    screen.loadHistory();
    const auto *bare = qobject_cast<KORVENHistoryCellView *>(screen.viewForTableColumn(0));
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->imageView(), nullptr);
    EXPECT_EQ(bare->scanKey(), "A");
}

TEST_F(KORVENHistoryViewControllerTest, onTheOldestReleaseCellsAndButtonsAreThoseOfOld)
{
    m_services.release.setVersion({10, 7});
    KORVENAppDelegate delegate(m_services.all());
    delegate.setWindowController(&m_mainWindow);
    record("A", "/a", 0);
    openScreen();
    for (const char *name : {"deleteButton", "sortButton", "refreshButton"}) {
        EXPECT_TRUE(button(name).run10p7Mode()) << name;
    }
    EXPECT_EQ(cell(0).scanPath()->text(), u"/a"_s);
    EXPECT_EQ(table().makeView(u"KORVENHistoryCell"_s), nullptr) << "a cell is registered";
}

TEST_F(KORVENHistoryViewControllerTest, onOtherReleasesCellsAreRegisteredAndButtonsOurs)
{
    openThree();
    EXPECT_FALSE(button("sortButton").run10p7Mode());
    EXPECT_NE(table().makeView(u"KORVENHistoryCell"_s), nullptr);
}

// How rows leave.

TEST_F(KORVENHistoryViewControllerTest, aRowIsSeenToLeaveAndNothingWaitsForIt)
{
    animate(150);
    openThree();

    clickDelete(1);
    showRows(2);

    ASSERT_NE(departure(), nullptr);
    EXPECT_TRUE(departure()->isVisible());
    EXPECT_EQ(shownPaths(), (Paths{"/c", "/a"})) << "the table shows what is left already";
    EXPECT_EQ(store().allItems().size(), 2U);
    EXPECT_TRUE(departure()->testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_TRUE(QTest::qWaitFor([this] { return departure() == nullptr; }));
}

TEST_F(KORVENHistoryViewControllerTest, aRowThatLeavesIsStillSeenWhenItBegins)
{
    animate(1'000'000);
    openThree();
    const QImage before = table().viewport()->grab().toImage();

    clickDelete(2);
    showRows(2);

    const QPoint corner = table().viewport()->mapTo(&m_window, QPoint());
    const QRect place(corner, table().viewport()->size());
    EXPECT_EQ(m_window.grab(place).toImage(), before);
    departure()->hide();
    EXPECT_NE(m_window.grab(place).toImage(), before) << "the row is gone below";
}

TEST_F(KORVENHistoryViewControllerTest, theRowsBelowArriveWhereTheTableHasThem)
{
    animate(1'000'000);
    openThree();
    record("D", "/wider", 50, "a total of another width");
    showRows(4);
    clickDelete(1);
    showRows(3);
    ASSERT_NE(departure(), nullptr);

    auto &animation = *departure()->findChild<QVariantAnimation *>();
    animation.pause();
    animation.setCurrentTime(animation.duration() - 1);

    const QImage atTheEnd = m_window.grab().toImage();
    departure()->hide();
    EXPECT_EQ(m_window.grab().toImage(), atTheEnd);
}

TEST_F(KORVENHistoryViewControllerTest, reloadedRowsEndTheRemovalAnimation)
{
    animate(1'000'000);
    openThree();
    clickDelete(1);
    showRows(2);
    ASSERT_NE(departure(), nullptr);
    record("D", "/d", 400);
    showRows(3);
    EXPECT_EQ(departure(), nullptr);
}

TEST_F(KORVENHistoryViewControllerTest, theLastRowFadesOverTheEmptyState)
{
    animate(1'000'000);
    record("A", "/a", 0);
    openScreen();
    clickDelete(0);
    showRows(0);
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    ASSERT_NE(departure(), nullptr);
    EXPECT_TRUE(departure()->isVisible());
}

TEST_F(KORVENHistoryViewControllerTest, whatMovesTheRowsOtherwiseEndsTheirLeaving)
{
    animate(1'000'000);
    openMany(60);
    clickDelete(1);
    showRows(59);
    ASSERT_NE(departure(), nullptr);
    table().verticalScrollBar()->setValue(100);
    EXPECT_TRUE(QTest::qWaitFor([this] { return departure() == nullptr; }));

    clickDelete(4);
    showRows(58);
    ASSERT_NE(departure(), nullptr);
    m_window.resize(700, 500);
    EXPECT_TRUE(QTest::qWaitFor([this] { return departure() == nullptr; }));

    clickDelete(4);
    showRows(57);
    ASSERT_NE(departure(), nullptr);
    press("sortButton");
    EXPECT_TRUE(QTest::qWaitFor([this] { return departure() == nullptr; }));
}

TEST_F(KORVENHistoryViewControllerTest, theNextRowToLeaveTakesTheStage)
{
    animate(1'000'000);
    openThree();
    for (int left = 2; left > 0; --left) {
        clickDelete(0);
        showRows(left);
    }
    EXPECT_EQ(m_screen->view()->findChildren<RowRemovalAnimation *>().size(), 1);
}

TEST_F(KORVENHistoryViewControllerTest, nothingMovesWhereTheStyleOrTheUserSaysSo)
{
    openThree(); // with a style of no duration
    clickDelete(1);
    showRows(2);
    EXPECT_EQ(departure(), nullptr);

    animate(150);
    m_window.hide();
    store().removeItemWithKey("A");
    showRows(1);
    EXPECT_EQ(departure(), nullptr) << "nobody looks";
}

} // namespace
} // namespace tessaly
