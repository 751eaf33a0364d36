// Keys and clicks of a user, by way of a window manager, on the whole window.

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/tables/IconView.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "tests/app/window/WindowTest.hpp"
#include "tests/fakes/Gate.hpp"
#include "tests/platform/linux/ManagedDisplay.hpp"

#include <QLabel>
#include <QSignalSpy>

#include <fstream>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Controller = KORVENWindowController;

class KeysOnDesktopTest : public WindowTest {
protected:
    void SetUp() override
    {
        if (const std::string missing = ManagedDisplay::missing(); !missing.empty()) {
            GTEST_SKIP() << "needs " << missing;
        }
        makeWindow();
        window().setGeometry(before);
        window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window(), desktopTimeoutMs));
        for (int i = 0; i < 20 && !QTest::qWaitForWindowActive(&window(), 2'000); ++i) {
            window().activateWindow();
        }
        ASSERT_TRUE(window().isActiveWindow());
    }

    static void type(const QString &key) { EXPECT_EQ(xdotool({u"key"_s, key}), 0); }
    template <typename Condition>
    static bool waitFor(Condition condition)
    {
        return QTest::qWaitFor(condition, desktopTimeoutMs);
    }
    [[nodiscard]] bool waitForFullScreen(bool isFull) const
    {
        return waitFor(
            [&] { return isFull ? window().outerMargin() == 60 : window().geometry() == before; });
    }
    /// Clicks on the middle of a widget as often as that, as fast as a double click.
    static void click(const QWidget &target, int count)
    {
        const QPoint place = target.mapToGlobal(target.rect().center());
        EXPECT_EQ(xdotool({u"mousemove"_s, u"--sync"_s, QString::number(place.x()),
                           QString::number(place.y()), u"click"_s, u"--repeat"_s,
                           QString::number(count), u"--delay"_s, u"50"_s, u"1"_s}),
                  0);
    }
    [[nodiscard]] static KORVENFolderCellView &cell(const ResultViewController &screen, int row)
    {
        return static_cast<KORVENFolderCellView &>(*tableOf(screen).cellForRow(row));
    }

    /// Escape while this screen scans in full screen, and once more when it does not scan any more.
    /// The scan is held up by the gate.
    void expectEscapeToCancelFirst(ResultViewController &screen)
    {
        ASSERT_TRUE(screen.isScanRunningNow());
        QSignalSpy cancelled(screen.view()->findChild<KORVENButton *>(u"cancelButton"_s),
                             &KORVENButton::clicked);
        type(u"F11"_s);
        ASSERT_TRUE(waitForFullScreen(true));
        type(u"Escape"_s);
        EXPECT_TRUE(waitFor([&] { return cancelled.count() == 1; }));
        EXPECT_EQ(window().outerMargin(), 60) << "full screen stays";
        m_gate.open();
        ASSERT_TRUE(waitFor([&] { return !screen.isScanRunningNow(); }));
        type(u"Escape"_s);
        EXPECT_TRUE(waitForFullScreen(false));
        EXPECT_EQ(cancelled.count(), 1);
    }

    static constexpr QRect before{100, 80, 900, 600};
    Gate m_gate;
};

TEST_F(KeysOnDesktopTest, escapeCancelsTheHomeScanBeforeItLeavesFullScreen)
{
    m_services.bookmarks.whenStarted = m_gate.pass();
    m_controller->scanHomeClicked();
    expectEscapeToCancelFirst(m_controller->hvc());
    const auto posted = m_services.notifier.notifications();
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(posted[0].text, "Home folders scan canceled");
}

TEST_F(KeysOnDesktopTest, escapeCancelsTheFolderScanBeforeItLeavesFullScreen)
{
    m_controller->selectPage(Controller::scanPage);
    m_services.notifier.beforeEach = m_gate.pass();
    startFolderScan();
    expectEscapeToCancelFirst(m_controller->avc());
}

TEST_F(KeysOnDesktopTest, escapeLeavesFullScreenFromTheSidebarTheRowsAndAButton)
{
    m_delegate->loadHistoryItem(recordTree(*makeTree("/f", {file("a", 2'000)})));
    QWidget *const places[]{&outlineTable(), &tableOf(m_controller->avc()),
                            m_controller->avc().view()->findChild<QWidget *>(u"sortButton"_s)};
    for (QWidget *place : places) {
        place->setFocus();
        ASSERT_TRUE(place->hasFocus());
        type(u"F11"_s);
        ASSERT_TRUE(waitForFullScreen(true));
        type(u"Escape"_s);
        EXPECT_TRUE(waitForFullScreen(false)) << place->objectName().toStdString();
    }
}

TEST_F(KeysOnDesktopTest, aScanStartedByItsKeysLeadsToTheRows)
{
    std::ofstream(m_home.path("a")) << "some bytes";
    m_controller->selectPage(Controller::scanPage);
    ASSERT_TRUE(outlineTable().hasFocus());
    type(u"ctrl+o"_s);
    ASSERT_TRUE(waitFor([this] { return m_services.folderChooser.isOpen(); }));
    m_services.folderChooser.answer(m_home.path());
    ASSERT_TRUE(waitFor([this] { return !m_controller->avc().isScanRunningNow(); }));
    EXPECT_TRUE(tableOf(m_controller->avc()).hasFocus());
}

TEST_F(KeysOnDesktopTest, tabLeadsToARowThatReturnGoesInto)
{
    const std::string key = recordTree(*makeTree("/f", {folder("d", {file("x", 5'000)})}));
    m_controller->selectPage(Controller::historyPage);
    ASSERT_TRUE(waitFor([this] { return historyRowCount() == 1; }));
    ASSERT_TRUE(outlineTable().hasFocus());
    type(u"Tab"_s);
    ASSERT_TRUE(waitFor([this] { return tableOf(m_controller->lvc()).hasFocus(); }));
    type(u"Return"_s);
    ASSERT_TRUE(waitFor([this] { return m_controller->selectedPage() == Controller::scanPage; }));
    EXPECT_EQ(m_controller->avc().uuid(), key);
}

TEST_F(KeysOnDesktopTest, aDoubleClickOpensARowOfTheHistoryAndThenOneOfItsRows)
{
    recordTree(*makeTree("/f", {folder("d", {folder("e", {file("x", 5'000)})})}));
    m_controller->selectPage(Controller::historyPage);
    ASSERT_TRUE(waitFor([this] { return historyRowCount() == 1; }));
    click(*tableOf(m_controller->lvc()).cellForRow(0)->findChild<QLabel *>(u"scanDate"_s), 2);
    ASSERT_TRUE(waitFor([this] { return m_controller->selectedPage() == Controller::scanPage; }));
    const ResultViewController &results = m_controller->avc();
    EXPECT_EQ(results.drillDownPath(), "/f");
    click(*cell(results, 0).folderSize(), 2);
    EXPECT_TRUE(waitFor([&] { return results.drillDownPath() == "/f/d"; }));
}

TEST_F(KeysOnDesktopTest, aDoubleClickOnAnIconGoesDownOneLevel)
{
    m_delegate->loadHistoryItem(recordTree(
        *makeTree("/f", {folder("d", {folder("e", {folder("g", {file("x", 5'000)})})})})));
    const ResultViewController &results = m_controller->avc();
    click(*cell(results, 0).iconImage(), 2);
    ASSERT_TRUE(waitFor([&] { return results.drillDownPath() != "/f"; }));
    // A key that comes after both presses.
    type(u"F11"_s);
    ASSERT_TRUE(waitForFullScreen(true));
    EXPECT_EQ(results.drillDownPath(), "/f/d");
}

} // namespace
} // namespace tessaly
