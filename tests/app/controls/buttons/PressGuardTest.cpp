#include "app/controls/buttons/PressGuard.hpp"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace std::chrono_literals;

namespace tessaly {
namespace {

/// Two buttons side by side, and a clock that stands still.
class PressGuardTest : public testing::Test {
protected:
    PressGuardTest()
    {
        m_guard.setClock([this] { return m_now; });
        m_window.resize(300, 100);
        m_button.setGeometry(10, 10, 80, 30);
        m_other.setGeometry(110, 10, 80, 30);
        m_guard.watch(m_button);
        m_guard.watch(m_other);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    static void click(QWidget &widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
    /// The second click of a double click.
    static void clickAgain(QWidget &widget)
    {
        QTest::mouseDClick(&widget, Qt::LeftButton);
        QTest::mouseRelease(&widget, Qt::LeftButton);
    }
    void movePointer(QPoint place) { QTest::mouseMove(m_window.windowHandle(), place); }

    PressGuard::Time m_now{1h};
    QWidget m_window;
    QPushButton m_button{&m_window};
    QPushButton m_other{&m_window};
    PressGuard m_guard;
    QSignalSpy m_clicks{&m_button, &QPushButton::clicked};
    QSignalSpy m_otherClicks{&m_other, &QPushButton::clicked};
};

TEST_F(PressGuardTest, aDoubleClickActsOnce)
{
    click(m_button);
    clickAgain(m_button);
    EXPECT_EQ(m_clicks.count(), 1);
    EXPECT_FALSE(m_button.isDown());
}

TEST_F(PressGuardTest, theButtonActsAgainWhenTheTimeHasPassed)
{
    click(m_button);
    m_now += 499ms;
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 1);
    m_now += 1ms;
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, theButtonActsAgainWhenThePointerHasLeftAndComeBack)
{
    click(m_button);
    movePointer({15, 15});
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 1) << "it moved, but stayed on the button";
    movePointer({200, 80});
    movePointer({15, 15});
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, aButtonThatTakesThePlaceIsHeldBackAsWell)
{
    QObject::connect(&m_button, &QPushButton::clicked, &m_window, [this] {
        m_button.hide();
        m_other.setGeometry(m_button.geometry().translated(3, 3));
        m_button.move(200, 60);
    });
    click(m_button);
    clickAgain(m_other);
    EXPECT_EQ(m_otherClicks.count(), 0);
    m_now += 500ms;
    click(m_other);
    EXPECT_EQ(m_otherClicks.count(), 1);
}

TEST_F(PressGuardTest, aButtonElsewhereActsAtOnceAndEndsTheHold)
{
    click(m_button);
    click(m_other);
    EXPECT_EQ(m_otherClicks.count(), 1);
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, aButtonThatIsNotWatchedIsNeverHeldBack)
{
    QPushButton free(&m_window);
    free.setGeometry(m_button.geometry());
    free.show();
    const QSignalSpy clicks(&free, &QPushButton::clicked);
    click(m_button);
    click(free);
    click(free);
    EXPECT_EQ(clicks.count(), 2);
}

TEST_F(PressGuardTest, theReleaseOfASwallowedPressIsSwallowedToo)
{
    click(m_button);
    QTest::mousePress(&m_button, Qt::LeftButton);
    m_now += 1s;
    const QSignalSpy releases(&m_button, &QPushButton::released);
    QTest::mouseRelease(&m_button, Qt::LeftButton);
    EXPECT_EQ(releases.count(), 0);
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, keysAreHeldBackAndNeverRepeat)
{
    m_button.setAutoDefault(true); // Return presses it, as in a dialog
    m_button.setFocus();
    QTest::keyClick(&m_button, Qt::Key_Space);
    QTest::keyClick(&m_button, Qt::Key_Space);
    QTest::keyClick(&m_button, Qt::Key_Return);
    EXPECT_EQ(m_clicks.count(), 1);
    m_now += 500ms;
    QTest::keyClick(&m_button, Qt::Key_Return);
    EXPECT_EQ(m_clicks.count(), 2);
    for (int i = 0; i < 10; ++i) {
        m_now += 1s;
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&m_button, &repeat);
    }
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, aShortcutNeverRepeats)
{
    QWidget field(&m_window);
    field.setFocusPolicy(Qt::StrongFocus);
    field.show();
    field.setFocus();
    m_button.setShortcut(Qt::Key_Escape);
    for (int i = 0; i < 3; ++i) {
        QTest::simulateEvent(&field, true, Qt::Key_Escape, Qt::NoModifier, {}, true);
        EXPECT_FALSE(m_button.isDown());
    }
    EXPECT_EQ(m_clicks.count(), 0) << "the key had been pressed for something else";
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_clicks.count() == 1; }));
}

TEST_F(PressGuardTest, theShortcutOfAButtonThatIsNotWatchedRepeats)
{
    QPushButton free(&m_window);
    free.setShortcut(Qt::Key_Escape);
    free.show();
    const QSignalSpy clicks(&free, &QPushButton::clicked);
    QTest::simulateEvent(&m_window, true, Qt::Key_Escape, Qt::NoModifier, {}, true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return clicks.count() == 1; }));
}

TEST_F(PressGuardTest, otherKeysAreNotHeldBack)
{
    m_button.setFocus();
    QTest::keyClick(&m_button, Qt::Key_Space);
    QTest::keyClick(&m_button, Qt::Key_Tab);
    EXPECT_TRUE(m_other.hasFocus());
}

TEST_F(PressGuardTest, whatActsWithoutAPressIsNotHeldBack)
{
    click(m_button);
    m_button.click();
    EXPECT_EQ(m_clicks.count(), 2);
}

TEST_F(PressGuardTest, aWatchedButtonMayBeDestroyed)
{
    auto shortLived = std::make_unique<QPushButton>(&m_window);
    shortLived->setGeometry(m_button.geometry());
    shortLived->show();
    m_guard.watch(*shortLived);
    m_guard.watch(*shortLived);
    click(*shortLived);
    shortLived.reset();
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 0) << "the place is still held";
    m_now += 500ms;
    click(m_button);
    EXPECT_EQ(m_clicks.count(), 1);
}

} // namespace
} // namespace tessaly
