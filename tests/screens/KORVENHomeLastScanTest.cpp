// The file that keeps the last scan of the home folder.

#include "engine/archive/ScanFileReader.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/screens/HomeScreenTest.hpp"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// Lets no file of this process grow beyond a few bytes.
class FileSizeLimit {
public:
    FileSizeLimit() : m_signalBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        const rlimit limit = {16, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signalBefore);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before = {};
    void (*m_signalBefore)(int);
};

using KORVENHomeLastScanTest = HomeScreenTest;

TEST_F(KORVENHomeLastScanTest, showsTheLastScanWhenItStarts)
{
    openWith(*makeTree("/somewhere", {file("a", 10), folder("d", {file("x", 20)})}));
    EXPECT_EQ(rowNames(), (Names{"d", "a"}));
    EXPECT_EQ(shownPath(), "/somewhere");
    EXPECT_EQ(label("totalLabel"), u"0.03 KB"_s);
    EXPECT_EQ(lastDate(), creationOf(archivePath()));
    EXPECT_TRUE(label("dateLabel").endsWith(u"[1,1]"_s));
}

TEST_F(KORVENHomeLastScanTest, theDateOfAScanIsTheCreationDateOfItsFile)
{
    // Any file that is not of this moment will do in its place.
    const std::string older = "/bin/sh";
    m_services.notifier.beforeEach = [&] {
        std::filesystem::remove(archivePath());
        std::filesystem::create_symlink(older, archivePath());
    };
    grantHome();
    openScreen();
    scan();
    ASSERT_LT(creationOf(older) + std::chrono::seconds(1), archive::Timestamp::now().systemTime());
    EXPECT_EQ(lastDate(), creationOf(older));
    EXPECT_TRUE(label("dateLabel").endsWith(u"[1,1]"_s));
}

TEST_F(KORVENHomeLastScanTest, theDateIsTheSameAfterARestart)
{
    m_disk.file("Ada/a", 1'000);
    grantHome();
    openScreen();
    scan();
    const QString text = label("dateLabel");
    const auto date = lastDate();
    EXPECT_EQ(date, creationOf(archivePath()));
    reopen();
    loadLast();
    EXPECT_EQ(lastDate(), date);
    EXPECT_EQ(label("dateLabel"), text);
    EXPECT_EQ(rowNames(), Names{"a"});
    EXPECT_EQ(m_services.dates.calls().size(), 2U);
}

TEST_F(KORVENHomeLastScanTest, aCompletedScanReplacesTheLastOne)
{
    m_disk.file("Ada/new", 1'000);
    openWith(*makeTree(homePath(), {file("old", 10)}));
    scan();
    EXPECT_EQ(rowNames(), Names{"new"});
    reopen();
    loadLast();
    EXPECT_EQ(rowNames(), Names{"new"});
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
}

TEST_F(KORVENHomeLastScanTest, aScanThatCouldNotOpenTheFolderKeepsTheFormerFileBesideIt)
{
    openWith(*makeTree(homePath(), {file("old", 10)}));
    ASSERT_EQ(rmdir(homePath().c_str()), 0);
    scan();
    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan completed"});
    EXPECT_EQ(label("emptyTitle"), u"This folder cannot be read"_s);
    EXPECT_EQ(label("emptyText"), u"No such file or directory"_s);
    const auto kept = archive::readScanFile(archivePath() + ".kept");
    ASSERT_TRUE(kept);
    EXPECT_EQ(childNames(kept.value()->root()), Names{"old"});
    EXPECT_EQ(childNames(archive::readScanFile(archivePath()).value()->root()), Names{});

    m_disk.folder("Ada");
    m_disk.file("Ada/new", 1'000);
    scan();
    EXPECT_EQ(rowNames(), Names{"new"});
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
}

TEST_F(KORVENHomeLastScanTest, aScanThatWasKeptBesideOneThatWasNeverWrittenComesBack)
{
    grantHome();
    keepScan(*makeTree(homePath(), {file("old", 10)}));
    std::filesystem::rename(archivePath(), archivePath() + ".kept");
    openScreen();
    loadLast();
    EXPECT_EQ(rowNames(), Names{"old"});
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
}

TEST_F(KORVENHomeLastScanTest, aScanThatAKilledProcessHadSetAsideIsThereAtTheNextStart)
{
    grantHome();
    keepScan(*makeTree(homePath(), {file("old", 10)}));
    std::filesystem::rename(archivePath(), archivePath() + ".previous");
    openScreen();
    loadLast();
    EXPECT_EQ(rowNames(), Names{"old"});
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
}

TEST_F(KORVENHomeLastScanTest, cancellingKeepsTheLastScanForTheNextStart)
{
    openWith(*makeTree("/before", {file("old", 10)}));
    const std::string bytes = fileText(archivePath());
    const auto date = lastDate();

    scanAndCancel();

    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan canceled"});
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(shownPath(), homePath());
    EXPECT_EQ(label("totalLabel"), u""_s);
    EXPECT_EQ(label("dateLabel"), u""_s);
    EXPECT_EQ(m_screen->drillDownPath(), std::nullopt);
    EXPECT_FALSE(m_screen->lockDrillDown());
    EXPECT_TRUE(button("scanButton").isVisible());
    EXPECT_FALSE(button("cancelButton").isVisible());
    EXPECT_EQ(m_services.bookmarks.startCount(homeUrl()), 1);
    EXPECT_EQ(m_services.bookmarks.accessCount(homeUrl()), 0);
    EXPECT_EQ(fileText(archivePath()), bytes);

    reopen();
    loadLast();
    EXPECT_EQ(rowNames(), Names{"old"});
    EXPECT_EQ(lastDate(), date);
}

TEST_F(KORVENHomeLastScanTest, aDoubleClickOnScanDoesNotCancelNorOneOnCancelScanAgain)
{
    m_disk.file("Ada/a", 1'000);
    grantHome();
    openScreen();
    std::latch canGoOn(1);
    m_services.bookmarks.whenStarted = [&] { canGoOn.wait(); };
    press("scanButton");
    QTest::mouseClick(&button("cancelButton"), Qt::LeftButton);
    canGoOn.count_down();
    waitForScan();
    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan completed"});
    EXPECT_EQ(rowNames(), Names{"a"});

    scanAndCancel();
    QTest::mouseClick(&button("scanButton"), Qt::LeftButton);
    EXPECT_FALSE(m_screen->isScanRunningNow());
}

TEST_F(KORVENHomeLastScanTest, aScanThatCannotBeKeptLeavesTheScreenScanning)
{
    m_disk.file("Ada/new", 1'000);
    m_disk.folder("Ada/d");
    openWith(*makeTree("/before", {file("old", 10), folder("x", {file("y", 1)})}));
    const QString date = label("dateLabel");
    const LoggedWarnings warnings;
    {
        const FileSizeLimit limit;
        press("scanButton");
        ASSERT_TRUE(QTest::qWaitFor([this] { return m_screen->lockDrillDown(); }, 60'000));
    }
    expectScanningLook();
    EXPECT_EQ(notifiedTexts(), Names{"Home folders scan completed"});
    EXPECT_EQ(rowNames(), (Names{"new", "d"}));
    EXPECT_EQ(cell(0).folderName()->text(), u"old"_s) << "the table was not told";
    EXPECT_EQ(shownPath(), "/before");
    EXPECT_EQ(label("dateLabel"), date);
    EXPECT_EQ(label("totalLabel"), u"0.01 KB"_s);
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{}) << "the old scan is gone";
    EXPECT_TRUE(named<QLabel>("noticeLabel").isVisible());
    EXPECT_TRUE(label("noticeLabel").startsWith(u"This scan could not be kept: "_s));
    EXPECT_TRUE(label("noticeLabel").endsWith(u"File too large"_s));
    const auto lines = warnings.lines();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
        return line.starts_with("tessaly.screens.home: The scan was not kept: ") &&
               line.find("File too large") != std::string::npos;
    }));

    // Nothing that the user may try leads out of it.
    press("cancelButton");
    m_screen->drillDownOneLevel("d");
    m_screen->scanClicked();
    QCoreApplication::processEvents();
    expectScanningLook();
    EXPECT_TRUE(m_screen->lockDrillDown());
    EXPECT_EQ(m_screen->drillDownPath(), "/before");

    m_screen->refreshTable(); // a preference that changes shows the new rows
    EXPECT_EQ(cell(0).folderName()->text(), u"new"_s);
    expectScanningLook();

    reopen();
    EXPECT_EQ(page(), KORVENHomeViewController::resultsPage);
    scan();
    EXPECT_EQ(rowNames(), (Names{"new", "d"})) << "after a restart all is well";
}

TEST_F(KORVENHomeLastScanTest, rowsThatTheTableWasNotToldOfHaveNoCells)
{
    std::vector<PlannedNode> files;
    for (std::uint64_t i = 0; i < 100; ++i) {
        files.push_back(file("file " + std::to_string(i), 1'000 + i));
    }
    openWith(*makeTree("/before", std::move(files)));
    ASSERT_EQ(unlink(archivePath().c_str()), 0);
    ASSERT_EQ(rmdir(m_documents.path("documents").c_str()), 0); // so that no scan can be kept
    ASSERT_TRUE(m_screen->rowActions()->canShowQuickLook());
    press("scanButton");
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_screen->lockDrillDown(); }, 60'000));
    EXPECT_EQ(m_screen->numberOfRowsInTableView(), 0);
    EXPECT_FALSE(m_screen->rowActions()->canShowQuickLook());
    table().setFocus();
    table().scrollToBottom();
    EXPECT_EQ(table().cellForRow(99), nullptr);
    QTest::keyClick(&table(), Qt::Key_End);
    QTest::keyClick(&table(), Qt::Key_Return);
    QTest::keyClicks(&table(), u"fi"_s);
    expectScanningLook();
}

TEST_F(KORVENHomeLastScanTest, aDamagedFileShowsTheEmptyStateAndWhyAndStays)
{
    grantHome();
    std::ofstream(archivePath()) << "bplist00 damaged";
    openScreen();
    m_screen->startLoading();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return label("emptyTitle") == u"This scan cannot be opened"_s; }));
    EXPECT_TRUE(named<QWidget>("emptyPage").isVisible());
    EXPECT_TRUE(label("emptyText").startsWith(QString::fromStdString(archivePath()) + u'\n'));
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(label("dateLabel"), u""_s);
    EXPECT_EQ(label("totalLabel"), u""_s);
    EXPECT_EQ(shownPath(), homePath());
    EXPECT_EQ(fileText(archivePath()), "bplist00 damaged");
    EXPECT_TRUE(button("scanButton").isVisible());

    m_disk.file("Ada/a", 1'000);
    scan();
    EXPECT_EQ(rowNames(), Names{"a"}) << "the next scan replaces it";
}

TEST_F(KORVENHomeLastScanTest, closingDuringAScanLeavesAWholeFileAlone)
{
    fillWithFolders("Ada", 200);
    openWith(*makeTree("/before", {file("old", 10)}));
    m_screen->scanClicked();
    m_screen.reset();
    EXPECT_EQ(m_services.bookmarks.accessCount(homeUrl()), 0);
    EXPECT_EQ(listedNames(m_documents.path("documents")), Names{"scanhome.archive"});
    const auto kept = archive::readScanFile(archivePath());
    ASSERT_TRUE(kept);
    if (notifiedTexts().empty()) { // nobody is told of a scan that ends with the screen
        EXPECT_EQ(childNames(kept.value()->root()), Names{"old"});
    } else {
        EXPECT_EQ(notifiedTexts(), Names{"Home folders scan completed"}); // it was done already
        EXPECT_EQ(childNames(kept.value()->root()).size(), 200U);
    }
}

TEST_F(KORVENHomeLastScanTest, theScanIsKeptBeforeTheUserIsTold)
{
    grantHome();
    openScreen();
    bool wasKept = false;
    m_services.notifier.beforeEach = [&] {
        wasKept = archive::readScanFile(archivePath()).hasValue();
    };
    scan();
    EXPECT_TRUE(wasKept);
}

} // namespace
} // namespace tessaly
