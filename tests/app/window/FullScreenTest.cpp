#include "app/window/FullScreen.hpp"

#include "app/controls/frame/KORVENTitleView.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/frame/WindowEdges.hpp"
#include "app/controls/frame/WindowPlacement.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QAction>
#include <QApplication>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QTest>
#include <QVariantAnimation>
#include <QWindow>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using State = FullScreen::State;
using Motion = FullScreen::Motion;

constexpr QRect screenFrame{0, 0, 800, 800};
constexpr QRect target{60, 60, 680, 680};
constexpr QRect before{300, 250, 401, 300};
const std::string frameKey = "frameForNonFullScreenMode";

/// A window on a screen in memory, and its way into full screen.
class FullScreenTest : public testing::Test {
protected:
    explicit FullScreenTest(Motion motion = Motion::byProgram)
    {
        m_window.setMinimumSize(50, 50);
        m_window.setGeometry(before);
        m_window.show();
        m_window.activateWindow();
        m_fullScreen.emplace(m_window, m_services.settings, motion);
        m_fullScreen->setFullscreenMenuItem(&m_item);
    }

    void SetUp() override
    {
        ASSERT_EQ(m_window.screen()->geometry(), screenFrame);
        ASSERT_EQ(m_window.geometry(), before);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    [[nodiscard]] QSequentialAnimationGroup *animation() const
    {
        for (auto *group : m_fullScreen->findChildren<QSequentialAnimationGroup *>()) {
            if (group->state() == QAbstractAnimation::Running) {
                return group;
            }
        }
        return nullptr;
    }

    [[nodiscard]] const QVariantAnimation &part(int index) const
    {
        return *qobject_cast<QVariantAnimation *>(animation()->animationAt(index));
    }

    /// What the desktop told of the window's frames so far must not come after later ones.
    static void takeInFrames() { QApplication::processEvents(); }

    /// Without waiting for the clock.
    void runTo(int milliseconds)
    {
        ASSERT_NE(animation(), nullptr);
        animation()->setCurrentTime(milliseconds);
    }
    void runToEnd()
    {
        ASSERT_NE(animation(), nullptr);
        runTo(animation()->totalDuration());
        ASSERT_EQ(animation(), nullptr);
    }
    void enter()
    {
        m_fullScreen->toggleFullScreen();
        takeInFrames();
        if (animation() != nullptr) {
            runToEnd();
        }
        ASSERT_EQ(m_fullScreen->state(), State::full);
        ASSERT_TRUE(QTest::qWaitFor([this] { return m_window.outerMargin() > 0; }));
    }

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    KORVENWindow m_window{KORVENWindow::Surface::opaque};
    QAction m_item;
    std::optional<FullScreen> m_fullScreen;
};

TEST_F(FullScreenTest, leavesAMarginOfTheProposedSize)
{
    EXPECT_EQ(FullScreen::willUseFullScreenContentSize({1920, 1080.5}), QSizeF(1800, 960.5));
}

TEST_F(FullScreenTest, asksTheDesktopToHideWhatItShows)
{
    EXPECT_EQ(FullScreen::willUseFullScreenPresentationOptions(), 3078U);
}

TEST_F(FullScreenTest, namesTheMenuItemAfterWhereItLeads)
{
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    m_fullScreen->willEnterFull();
    EXPECT_EQ(m_item.text(), u"Exit Full Screen"_s);
    m_fullScreen->willExitFull();
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
}

TEST_F(FullScreenTest, namesTheMenuItemBeforeTheWindowMoves)
{
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(m_fullScreen->state(), State::entering);
    EXPECT_EQ(m_window.geometry(), before);
    EXPECT_EQ(m_item.text(), u"Exit Full Screen"_s);
    QAction later;
    m_fullScreen->setFullscreenMenuItem(&later);
    EXPECT_EQ(later.text(), u"Exit Full Screen"_s);
    runToEnd();
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(m_fullScreen->state(), State::exiting);
    EXPECT_EQ(later.text(), u"Enter Full Screen"_s);
}

TEST_F(FullScreenTest, doesWithoutAMenuItem)
{
    {
        QAction gone;
        m_fullScreen->setFullscreenMenuItem(&gone);
    }
    enter();
    m_fullScreen->setFullscreenMenuItem(nullptr);
    m_fullScreen->toggleFullScreen();
    runToEnd();
    EXPECT_EQ(m_window.geometry(), before);
}

TEST_F(FullScreenTest, movesThatWindowAlone)
{
    const QList<KORVENWindow *> alone{&m_window};
    EXPECT_EQ(FullScreen::customWindowsToEnterFullScreenForWindow(&m_window), alone);
    EXPECT_EQ(FullScreen::customWindowsToExitFullScreenForWindow(&m_window), alone);
}

TEST_F(FullScreenTest, doesNothingWhenTheWindowCouldNotEnterOrLeave)
{
    m_fullScreen->windowDidFailToEnterFullScreen();
    m_fullScreen->windowDidFailToExitFullScreen();
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    EXPECT_EQ(m_window.geometry(), before);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
}

TEST_F(FullScreenTest, entersByTheCentreAndThenQuickly)
{
    m_fullScreen->startCustomAnimationToEnterFullScreenWithDuration(0.4);

    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(before));
    ASSERT_NE(animation(), nullptr);
    ASSERT_EQ(animation()->animationCount(), 2);
    const QRectF centre(680 * 0.5 - 401 * 0.5, 680 * 0.5 - 300 * 0.5, 401, 300);
    EXPECT_EQ(part(0).startValue().toRectF(), QRectF(before));
    EXPECT_EQ(part(0).endValue().toRectF(), centre);
    EXPECT_EQ(part(0).duration(), 400);
    EXPECT_EQ(part(1).startValue().toRectF(), centre);
    EXPECT_EQ(part(1).endValue().toRectF(), QRectF(target));
    EXPECT_EQ(part(1).duration(), 100);
    EXPECT_FALSE(m_window.constrainingToScreenSuspended());

    runTo(400);
    EXPECT_EQ(m_window.geometry(), centre.toRect());
    EXPECT_FALSE(m_window.isFullScreen());
    EXPECT_EQ(m_window.outerMargin(), 0);
}

TEST_F(FullScreenTest, coversTheScreenAroundTheTargetOnceItIsThere)
{
    auto *content = new QWidget;
    m_window.setContentWidget(content);
    enter();

    EXPECT_TRUE(m_window.isFullScreen());
    EXPECT_EQ(m_window.geometry(), screenFrame);
    EXPECT_EQ(m_window.outerMargin(), 60);
    EXPECT_EQ(m_window.titleView()->geometry(), target);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return content->geometry() == target.adjusted(0, titleBarHeight, 0, 0); }));
    const QImage image = m_window.grab().toImage();
    EXPECT_EQ(image.pixelColor(59, 400), theme::backdrop);
    EXPECT_EQ(image.pixelColor(400, 740), theme::backdrop);
    EXPECT_EQ(image.pixelColor(60, 400), QColor(94, 94, 94));
    EXPECT_EQ(image.pixelColor(60, 60).red(), 51); // the title bar
    EXPECT_FALSE(m_window.findChild<WindowEdges *>()->isVisible());
}

TEST_F(FullScreenTest, leavesByTheCentreQuicklyAndThenSlowly)
{
    enter();
    m_fullScreen->startCustomAnimationToExitFullScreenWithDuration(0.4);

    EXPECT_FALSE(m_window.isFullScreen());
    EXPECT_EQ(m_window.outerMargin(), 0);
    EXPECT_EQ(m_window.geometry(), target);
    ASSERT_NE(animation(), nullptr);
    ASSERT_EQ(animation()->animationCount(), 2);
    const QRectF centre(680 * 0.5 - 401 * 0.5, 680 * 0.5 - 300 * 0.5, 401, 300);
    EXPECT_EQ(part(0).startValue().toRectF(), QRectF(target));
    EXPECT_EQ(part(0).endValue().toRectF(), centre);
    EXPECT_EQ(part(0).duration(), 100);
    EXPECT_EQ(part(1).startValue().toRectF(), centre);
    EXPECT_EQ(part(1).endValue().toRectF(), QRectF(before));
    EXPECT_EQ(part(1).duration(), 400);

    EXPECT_TRUE(m_window.constrainingToScreenSuspended());
    runTo(499);
    EXPECT_TRUE(m_window.constrainingToScreenSuspended());
    EXPECT_EQ(m_fullScreen->state(), State::exiting);
    runToEnd();
    EXPECT_FALSE(m_window.constrainingToScreenSuspended());
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    EXPECT_EQ(m_window.geometry(), before);
}

TEST_F(FullScreenTest, returnsToAFrameThatIsLargerThanTheScreen)
{
    const QRect large(-120, 30, 1111, 999);
    m_window.setGeometry(large);
    enter();
    m_fullScreen->toggleFullScreen();
    runTo(60); // where the parts meet
    EXPECT_EQ(m_window.geometry(),
              QRectF(680 * 0.5 - 1111 * 0.5, 680 * 0.5 - 999 * 0.5, 1111, 999).toRect());
    runToEnd();
    EXPECT_EQ(m_window.geometry(), large);
}

TEST_F(FullScreenTest, keepsWithinTheScreenOnItsWayIn)
{
    m_window.setGeometry(-120, 30, 1111, 999);
    m_fullScreen->toggleFullScreen();
    runTo(240);
    EXPECT_EQ(m_window.geometry(), screenFrame);
    runToEnd();
}

TEST_F(FullScreenTest, doesNotTurnBackOnItsWay)
{
    m_fullScreen->toggleFullScreen();
    const auto *entering = animation();
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(animation(), entering);
    EXPECT_EQ(m_fullScreen->state(), State::entering);
    runToEnd();

    m_fullScreen->toggleFullScreen();
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(m_fullScreen->state(), State::exiting);
    runToEnd();
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
}

TEST_F(FullScreenTest, aMaximisedWindowIsMaximisedAgainAndFindsItsOldFrame)
{
    m_window.showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_window.geometry() == screenFrame; }));
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(screenFrame));
    EXPECT_FALSE(m_window.isMaximized());
    EXPECT_EQ(m_window.geometry(), screenFrame);
    EXPECT_EQ(m_window.windowHandle()->geometry(), screenFrame);
    EXPECT_EQ(m_window.outerMargin(), 0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_window.outerMargin() == 60; }));

    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(part(1).endValue().toRectF(), QRectF(screenFrame));
    runToEnd();
    EXPECT_TRUE(m_window.isMaximized());
    EXPECT_FALSE(m_window.isFullScreen());
    EXPECT_EQ(m_window.outerMargin(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_window.geometry() == screenFrame; }));
    m_window.showNormal();
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_window.geometry() == before; }));
}

TEST_F(FullScreenTest, escapeLeavesItAndDoesNothingElsewhere)
{
    QTest::keyClick(&m_window, Qt::Key_Escape);
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    enter();
    QTest::keyClick(&m_window, Qt::Key_Escape);
    EXPECT_EQ(m_fullScreen->state(), State::exiting);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    runToEnd();
    EXPECT_EQ(m_window.geometry(), before);
    QTest::keyClick(&m_window, Qt::Key_Escape);
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
}

TEST_F(FullScreenTest, zoomingLeavesIt)
{
    enter();
    m_window.zoom();
    EXPECT_EQ(m_fullScreen->state(), State::exiting);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    runToEnd();
    EXPECT_FALSE(m_window.isMaximized());
    EXPECT_EQ(m_window.geometry(), before);
}

TEST_F(FullScreenTest, followsADesktopThatTakesTheWindowThereAndBack)
{
    m_window.setWindowState(Qt::WindowFullScreen);
    EXPECT_EQ(m_fullScreen->state(), State::full);
    EXPECT_EQ(m_item.text(), u"Exit Full Screen"_s);
    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(before));
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_window.outerMargin() == 60; }));

    m_window.setWindowState(Qt::WindowNoState);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    runToEnd();
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    EXPECT_EQ(m_window.geometry(), before);
    EXPECT_EQ(m_window.outerMargin(), 0);
}

TEST_F(FullScreenTest, aWindowThatIsClosedOnItsWayStaysClosed)
{
    m_fullScreen->toggleFullScreen();
    runTo(100);
    m_window.close();
    EXPECT_EQ(animation(), nullptr);
    EXPECT_FALSE(m_window.isVisible());
    EXPECT_TRUE(m_services.settings.hasKey(frameKey));

    m_window.show();
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    EXPECT_EQ(m_window.geometry(), before);
}

TEST_F(FullScreenTest, keepsTheFrameForTheNextStartOnlyWhileInFullScreen)
{
    EXPECT_FALSE(m_services.settings.hasKey(frameKey));
    m_fullScreen->toggleFullScreen();
    EXPECT_TRUE(m_services.settings.hasKey(frameKey));
    runToEnd();
    EXPECT_TRUE(m_services.settings.hasKey(frameKey));
    m_fullScreen->toggleFullScreen();
    runToEnd();
    EXPECT_FALSE(m_services.settings.hasKey(frameKey));
}

TEST_F(FullScreenTest, flushesTheFrameWhenItIsSavedAndWhenItIsDropped)
{
    using Log = std::vector<std::string>;
    m_services.settings.clearLog();
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(m_services.settings.log(), (Log{"setData " + frameKey + " 21 bytes", "flush"}));
    runToEnd();
    m_services.settings.clearLog();
    m_fullScreen->toggleFullScreen();
    runToEnd();
    EXPECT_EQ(m_services.settings.log(), (Log{"remove " + frameKey, "flush"}));
}

TEST_F(FullScreenTest, namesWhatIsKept)
{
    EXPECT_EQ(FullScreen::restorableStateKeyPaths(), std::vector{frameKey});
    EXPECT_EQ(FullScreen::restorableStateKeyPaths({"windowPlacement"}),
              (std::vector<std::string>{"windowPlacement", frameKey}));
}

/// The next start of the program.
class NextStart {
public:
    explicit NextStart(SettingsStore &settings) : fullScreen(window, settings, Motion::byProgram)
    {
        window.setMinimumSize(50, 50);
        window.setGeometry(10, 20, 500, 400);
        fullScreen.restoreState();
        window.show();
    }

    KORVENWindow window{KORVENWindow::Surface::opaque};
    FullScreen fullScreen;
};

TEST_F(FullScreenTest, aProgramThatEndedInFullScreenComesBackInItsWindow)
{
    enter();
    m_window.close();
    NextStart next(m_services.settings);
    EXPECT_FALSE(next.window.isFullScreen());
    EXPECT_EQ(next.window.geometry(), before);
    EXPECT_EQ(next.fullScreen.frameForNonFullScreenMode(), QRectF(before));
    EXPECT_EQ(next.fullScreen.state(), State::windowed);

    // Once is enough: from here on the window has a place of its own again.
    EXPECT_FALSE(m_services.settings.hasKey(frameKey));
}

TEST_F(FullScreenTest, aProgramThatEndedInFullScreenComesBackMaximised)
{
    m_window.showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_window.geometry() == screenFrame; }));
    enter();
    m_window.close();
    NextStart next(m_services.settings);
    EXPECT_TRUE(next.window.isMaximized());
    next.window.showNormal();
    EXPECT_TRUE(QTest::qWaitFor([&] { return next.window.geometry() == before; }));
}

TEST_F(FullScreenTest, aProgramThatEndedInItsWindowStaysWhereItIsPut)
{
    const NextStart next(m_services.settings);
    EXPECT_EQ(next.window.geometry(), QRect(10, 20, 500, 400));
}

TEST_F(FullScreenTest, aKeptFrameThatIsNoneIsDropped)
{
    m_services.settings.setData(frameKey, std::vector(20, std::byte{0x41}));
    const NextStart next(m_services.settings);
    EXPECT_EQ(next.window.geometry(), QRect(10, 20, 500, 400));
    EXPECT_FALSE(m_services.settings.hasKey(frameKey));
}

TEST_F(FullScreenTest, readsAndWritesTheFrameAsAWhole)
{
    constexpr int rounds = 20'000;
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int i = 0; i < rounds; ++i) {
            const double place = i;
            m_fullScreen->setFrameForNonFullScreenMode({place, place, place, place});
        }
        isDone = true;
    });
    int torn = 0;
    while (!isDone) {
        const QRectF frame = m_fullScreen->frameForNonFullScreenMode();
        torn += frame.x() == frame.y() && frame.x() == frame.width() && frame.x() == frame.height()
                    ? 0
                    : 1;
    }
    writer.join();
    EXPECT_EQ(torn, 0);
    constexpr double last = rounds - 1;
    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(last, last, last, last));
}

/// Where programs cannot place their windows.
class UnplacedFullScreenTest : public FullScreenTest {
protected:
    UnplacedFullScreenTest() : FullScreenTest(Motion::byDesktop) {}
};

TEST_F(UnplacedFullScreenTest, theDesktopDoesItWithTheSameMargin)
{
    m_fullScreen->toggleFullScreen();
    EXPECT_EQ(animation(), nullptr);
    EXPECT_EQ(m_fullScreen->state(), State::full);
    EXPECT_TRUE(m_window.isFullScreen());
    EXPECT_EQ(m_item.text(), u"Exit Full Screen"_s);
    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(before));
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_window.outerMargin() == 60; }));

    QTest::keyClick(&m_window, Qt::Key_Escape);
    EXPECT_EQ(animation(), nullptr);
    EXPECT_EQ(m_fullScreen->state(), State::windowed);
    EXPECT_EQ(m_item.text(), u"Enter Full Screen"_s);
    EXPECT_FALSE(m_window.constrainingToScreenSuspended());
    EXPECT_EQ(m_window.outerMargin(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_window.geometry() == before; }));
}

TEST_F(UnplacedFullScreenTest, aMaximisedWindowStaysMaximisedBelow)
{
    m_window.showMaximized();
    m_fullScreen->toggleFullScreen();
    EXPECT_TRUE(m_window.isFullScreen());
    m_fullScreen->toggleFullScreen();
    EXPECT_FALSE(m_window.isFullScreen());
    EXPECT_TRUE(m_window.isMaximized());
}

} // namespace
} // namespace tessaly
