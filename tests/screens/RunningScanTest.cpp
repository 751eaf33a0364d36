// What the scan screens show and do while a scan runs, and where they are after it.

#include "tests/fakes/Gate.hpp"
#include "tests/screens/HomeScreenTest.hpp"
#include "tests/screens/ScanScreenTest.hpp"

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// What all results here are made of: a folder with files that are hidden, an empty one, and one
/// with a file.
std::vector<PlannedNode> content()
{
    return {folder("full", {file("x", 30)}), folder("hidden", {file(".h", 20)}), folder("none")};
}

/// What both screens have in common, on a screen that shows content() below `top`.
template <typename Fixture>
class RunningScanOn : public Fixture {
protected:
    using Fixture::label;
    using Fixture::m_screen;

    void expectRowsBeforeToBeBrowsed(const std::string &top)
    {
        ASSERT_TRUE(m_screen->isScanRunningNow());
        EXPECT_FALSE(m_screen->lockDrillDown());
        Fixture::cell(0).clickedName();
        EXPECT_EQ(Fixture::shownPath(), top + "/full");
        EXPECT_EQ(Fixture::rowNames(), Names{"x"});
        QTest::mouseClick(&Fixture::button("backButton"), Qt::LeftButton);
        EXPECT_EQ(Fixture::shownPath(), top);
        EXPECT_EQ(Fixture::rowNames(), (Names{"full", "hidden", "none"}));
        EXPECT_TRUE(m_screen->isScanRunningNow());
    }
    void expectEmptyLevelsToSaySo()
    {
        m_screen->drillDownOneLevel("none");
        EXPECT_EQ(label("emptyTitle"), u"This folder is empty"_s);
        EXPECT_FALSE(Fixture::template named<QLabel>("emptyText").isVisible());
        EXPECT_FALSE(Fixture::button("emptyButton").isVisible()) << "a scan is running";
        m_screen->drillUpOneLevel();
        m_screen->drillDownOneLevel("hidden");
        EXPECT_EQ(label("emptyTitle"), u"Nothing to list here"_s);
        EXPECT_TRUE(Fixture::template named<QLabel>("emptyText").isVisible());
        m_screen->drillUpOneLevel();
        m_screen->drillDownOneLevel("none");
        EXPECT_EQ(label("emptyTitle"), u"This folder is empty"_s);
        EXPECT_FALSE(Fixture::template named<QLabel>("emptyText").isVisible());
    }
    /// Whether the line with the folder and the progress beside it are to be seen.
    void expectLine(const std::string &text)
    {
        const auto &line = Fixture::template named<NameLabel>("scanLabel");
        EXPECT_EQ(line.isVisible(), !text.empty());
        EXPECT_EQ(Fixture::template named<QProgressBar>("scanProgress").isVisible(), !text.empty());
        if (!text.empty()) {
            EXPECT_EQ(line.text().toStdString(), text);
        }
    }

    Gate m_gate;
};

class RunningHomeScanTest : public RunningScanOn<HomeScreenTest> {
protected:
    RunningHomeScanTest() { m_delegate.setHiddenItemPreference(0); }

    /// A scan that does not begin before the gate is open.
    void startHeldScan()
    {
        m_services.bookmarks.whenStarted = m_gate.pass();
        m_screen->scanButtonPressed();
    }
    void openWithContent()
    {
        openWith(*makeTree(homePath(), content()));
        m_screen->refreshTable(); // whose preferences have changed since the load began
    }
};

class RunningFolderScanTest : public RunningScanOn<ScanScreenTest> {
protected:
    RunningFolderScanTest()
    {
        m_delegate.setHiddenItemPreference(0);
        openScreen();
    }

    /// A scan that does not end before the gate is open.
    void startHeldScan()
    {
        m_services.notifier.beforeEach = m_gate.pass();
        chooseAndScan(m_disk.path());
    }
};

TEST_F(RunningHomeScanTest, theRowsBeforeAreBrowsedMeanwhile)
{
    openWithContent();
    startHeldScan();
    expectRowsBeforeToBeBrowsed(homePath());
}

TEST_F(RunningFolderScanTest, theRowsBeforeAreBrowsedMeanwhile)
{
    showTree(makeTree("/f", content()));
    startHeldScan();
    expectRowsBeforeToBeBrowsed("/f");
}

TEST_F(RunningHomeScanTest, emptyLevelsSaySoMeanwhile)
{
    openWithContent();
    startHeldScan();
    expectEmptyLevelsToSaySo();
}

TEST_F(RunningFolderScanTest, emptyLevelsSaySoMeanwhile)
{
    showTree(makeTree("/f", content()));
    startHeldScan();
    expectEmptyLevelsToSaySo();
}

TEST_F(RunningHomeScanTest, aLineSaysWhatIsBeingScanned)
{
    openWithContent();
    expectLine({});
    startHeldScan();
    expectLine("Scanning " + homePath());
    m_screen->drillDownOneLevel("full");
    expectLine("Scanning " + homePath());
    m_gate.open();
    waitForScan();
    expectLine({});
    scanAndCancel();
    expectLine({});
}

TEST_F(RunningFolderScanTest, aLineSaysWhatIsBeingScanned)
{
    expectLine({});
    startHeldScan();
    expectLine("Scanning " + m_disk.path());
    m_gate.open();
    waitForScan();
    expectLine({});
}

TEST_F(RunningHomeScanTest, afterACancelledOneNothingLeadsBackToTheRowsBefore)
{
    openWithContent();
    m_screen->drillDownOneLevel("full");
    EXPECT_TRUE(m_screen->canGoBack());
    scanAndCancel();
    EXPECT_FALSE(m_screen->canGoBack());
    m_screen->drillUpOneLevel();
    EXPECT_EQ(rowNames(), Names{});
    EXPECT_EQ(shownPath(), homePath());
    EXPECT_EQ(m_screen->drillDownPath(), std::nullopt);
    EXPECT_EQ(label("emptyTitle"), u"The scan was canceled"_s);
}

TEST_F(RunningFolderScanTest, theDateIsTheOneOnWhichItEnded)
{
    showTree(makeTree("/f", content()));
    startHeldScan();
    const auto before = archive::Timestamp::now().systemTime();
    m_gate.open();
    waitForScan();
    const FakeDateTexts::Call shown = m_services.dates.calls().back();
    EXPECT_GE(shown.time, before);
    EXPECT_LE(shown.time, archive::Timestamp::now().systemTime());
    EXPECT_EQ(label("dateLabel").toStdString(),
              FakeDateTexts().text(shown.time, shown.date, shown.hours));
}

// Where the keyboard is.

TEST_F(RunningHomeScanTest, theKeyboardComesFromElsewhereToTheRows)
{
    openWithContent();
    QWidget elsewhere(&m_window);
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    elsewhere.show();
    elsewhere.setFocus();
    ASSERT_TRUE(elsewhere.hasFocus());
    startHeldScan();
    EXPECT_TRUE(table().hasFocus());
    m_disk.file("Ada/a", 10);
    m_gate.open();
    waitForScan();
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(RunningHomeScanTest, theKeyboardComesFromElsewhereToCancelWhereThereAreNoRows)
{
    grantHome();
    openScreen();
    QWidget elsewhere(&m_window);
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    elsewhere.show();
    elsewhere.setFocus();
    m_disk.file("Ada/a", 10);
    startHeldScan();
    EXPECT_TRUE(button("cancelButton").hasFocus());
    m_gate.open();
    waitForScan();
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(RunningHomeScanTest, theKeyboardStaysOnTheRows)
{
    openWithContent();
    table().setFocus();
    startHeldScan();
    EXPECT_TRUE(table().hasFocus());
}

} // namespace
} // namespace tessaly
