// Full screen with a window manager that people use. The display is that of the whole program.

#include "app/controls/frame/KORVENWindow.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/FullScreen.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/platform/linux/ManagedDisplay.hpp"

#include <QProcess>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QTest>
#include <QVariantAnimation>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using State = FullScreen::State;

constexpr QRect before{101, 83, 801, 563};
constexpr QRect screenFrame{0, 0, 1280, 900};

class FullScreenOnDesktopTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string missing = ManagedDisplay::missing(); !missing.empty()) {
            GTEST_SKIP() << "needs " << missing;
        }
        m_window.emplace(KORVENWindow::Surface::opaque);
        m_window->setGeometry(before);
        m_fullScreen.emplace(*m_window, m_services.settings, FullScreen::Motion::byProgram);
        m_window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&*m_window, desktopTimeoutMs));
        for (int i = 0; i < 20 && !QTest::qWaitForWindowActive(&*m_window, 2'000); ++i) {
            m_window->activateWindow();
        }
        ASSERT_TRUE(m_window->isActiveWindow());
        ASSERT_TRUE(waitForFrame(before));
    }
    void TearDown() override
    {
        m_fullScreen.reset();
        m_window.reset();
    }

    [[nodiscard]] bool waitForFrame(const QRect &frame) const
    {
        return QTest::qWaitFor([&] { return m_window->geometry() == frame; }, desktopTimeoutMs);
    }
    /// What the display has, after everything that was asked of it.
    [[nodiscard]] QString frameOnDisplay() const
    {
        QProcess process;
        process.start(u"xdotool"_s,
                      {u"getwindowgeometry"_s, u"--shell"_s, QString::number(m_window->winId())});
        process.waitForFinished(-1);
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    [[nodiscard]] bool waitForFrameOnDisplay(const QRect &frame) const
    {
        const QString expected = u"X=%1\nY=%2\nWIDTH=%3\nHEIGHT=%4\n"_s.arg(frame.x())
                                     .arg(frame.y())
                                     .arg(frame.width())
                                     .arg(frame.height());
        return QTest::qWaitFor([&] { return frameOnDisplay().contains(expected); },
                               desktopTimeoutMs);
    }

    void enter()
    {
        m_fullScreen->toggleFullScreen();
        ASSERT_TRUE(QTest::qWaitFor(
            [this] {
                return m_fullScreen->state() == State::full && m_window->outerMargin() == 60;
            },
            desktopTimeoutMs));
        ASSERT_TRUE(waitForFrameOnDisplay(screenFrame));
    }
    [[nodiscard]] bool waitUntilWindowed() const
    {
        return QTest::qWaitFor([this] { return m_fullScreen->state() == State::windowed; },
                               desktopTimeoutMs);
    }

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    std::optional<KORVENWindow> m_window;
    std::optional<FullScreen> m_fullScreen;
};

TEST_F(FullScreenOnDesktopTest, coversTheScreenAndBringsTheFrameBack)
{
    for (int round = 0; round < 3; ++round) {
        enter();
        EXPECT_EQ(m_window->geometry(), screenFrame);
        m_fullScreen->toggleFullScreen();
        ASSERT_TRUE(waitUntilWindowed());
        EXPECT_TRUE(waitForFrameOnDisplay(before));
        EXPECT_TRUE(waitForFrame(before));
        EXPECT_FALSE(m_window->isFullScreen());
        EXPECT_EQ(m_window->outerMargin(), 0);
    }
}

TEST_F(FullScreenOnDesktopTest, growsToTheWholeScreenAndNotToWhatAPanelLeavesOfIt)
{
    constexpr int panelHeight = 40;
    const auto waitForRoom = [this](int reserved) {
        return QTest::qWaitFor(
            [&] {
                return m_window->screen()->availableGeometry() ==
                       screenFrame.adjusted(0, reserved, 0, 0);
            },
            desktopTimeoutMs);
    };
    ManagedDisplay::current()->reserveTop(panelHeight);
    ASSERT_TRUE(waitForRoom(panelHeight));
    m_fullScreen->toggleFullScreen();
    const auto *animation = m_fullScreen->findChild<QSequentialAnimationGroup *>();
    ASSERT_NE(animation, nullptr);
    const auto *last = qobject_cast<QVariantAnimation *>(animation->animationAt(1));
    EXPECT_EQ(last->endValue().toRectF(), QRectF(60, 60, 1160, 780));
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return m_window->outerMargin() == 60; }, desktopTimeoutMs));
    EXPECT_TRUE(waitForFrameOnDisplay(screenFrame));
    ManagedDisplay::current()->reserveTop(0);
    EXPECT_TRUE(waitForRoom(0));
}

TEST_F(FullScreenOnDesktopTest, bringsAMaximisedWindowBackWithItsOldFrame)
{
    m_window->showMaximized();
    ASSERT_TRUE(waitForFrameOnDisplay(screenFrame));
    enter();
    m_fullScreen->toggleFullScreen();
    ASSERT_TRUE(waitUntilWindowed());
    EXPECT_TRUE(waitForFrameOnDisplay(screenFrame));
    EXPECT_TRUE(m_window->isMaximized());
    EXPECT_FALSE(m_window->isFullScreen());
    EXPECT_EQ(m_window->outerMargin(), 0);
    m_window->showNormal();
    EXPECT_TRUE(waitForFrameOnDisplay(before));
    EXPECT_TRUE(waitForFrame(before));
}

TEST_F(FullScreenOnDesktopTest, bringsBackAFrameThatIsPartlyOffTheScreen)
{
    const QRect partlyOff(900, 500, 801, 563);
    m_window->setGeometry(partlyOff);
    ASSERT_TRUE(waitForFrameOnDisplay(partlyOff));
    enter();
    m_fullScreen->toggleFullScreen();
    ASSERT_TRUE(waitUntilWindowed());
    EXPECT_TRUE(waitForFrameOnDisplay(partlyOff));
    EXPECT_TRUE(waitForFrame(partlyOff));
}

TEST_F(FullScreenOnDesktopTest, escapeLeavesIt)
{
    enter();
    EXPECT_EQ(xdotool({u"key"_s, u"Escape"_s}), 0);
    ASSERT_TRUE(waitUntilWindowed());
    EXPECT_TRUE(waitForFrameOnDisplay(before));
}

TEST_F(FullScreenOnDesktopTest, followsTheManager)
{
    EXPECT_EQ(xdotool({u"key"_s, u"F12"_s}), 0);
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return m_window->outerMargin() == 60; }, desktopTimeoutMs));
    EXPECT_EQ(m_fullScreen->state(), State::full);
    EXPECT_EQ(m_fullScreen->frameForNonFullScreenMode(), QRectF(before));
    EXPECT_TRUE(waitForFrameOnDisplay(screenFrame));
    EXPECT_EQ(xdotool({u"key"_s, u"F12"_s}), 0);
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return m_fullScreen->state() != State::full; }, desktopTimeoutMs));
    ASSERT_TRUE(waitUntilWindowed());
    EXPECT_TRUE(waitForFrameOnDisplay(before));
    EXPECT_TRUE(waitForFrame(before));
}

} // namespace
} // namespace tessaly
