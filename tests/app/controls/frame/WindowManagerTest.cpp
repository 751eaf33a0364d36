// The main window with a window manager that people use: what only the two can do together.

#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "tests/TestFonts.hpp"
#include "tests/platform/linux/ManagedDisplay.hpp"

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// What the windows of this program have been told of the mouse.
class MouseLog final : public QObject {
public:
    MouseLog() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched->isWindowType() && event->type() == QEvent::MouseButtonRelease) {
            ++releaseCount;
        } else if (watched->isWindowType() && event->type() == QEvent::MouseMove) {
            place = static_cast<const QMouseEvent *>(event)->globalPosition().toPoint();
        }
        return false;
    }

    int releaseCount = 0;
    QPoint place;
};

class WindowManagerTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string missing = ManagedDisplay::missing(); !missing.empty()) {
            GTEST_SKIP() << "needs " << missing;
        }
        m_window.emplace(KORVENWindow::Surface::opaque);
        m_window->setGeometry(before);
        m_window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&*m_window, desktopTimeoutMs));
        // A manager that has only just begun may not give the keyboard to a new window by itself.
        for (int i = 0; i < 20 && !QTest::qWaitForWindowActive(&*m_window, 2'000); ++i) {
            m_window->activateWindow();
        }
        ASSERT_TRUE(m_window->isActiveWindow());
        ASSERT_TRUE(waitForFrame(before));
    }

    [[nodiscard]] bool waitForFrame(const QRect &frame) const
    {
        return QTest::qWaitFor([&] { return m_window->geometry() == frame; }, desktopTimeoutMs);
    }

    /// Moves the pointer to a place of the screen, and waits until it is there.
    static void point(QPoint place)
    {
        EXPECT_EQ(xdotool({u"mousemove"_s, u"--sync"_s, QString::number(place.x()),
                           QString::number(place.y())}),
                  0);
    }

    /// Presses the left button at a place of the screen and, once the window knows, moves the
    /// pointer on to `start`, where the manager is to take it over; from there drags to `end`.
    void drag(QPoint press, QPoint start, QPoint end)
    {
        for (int attempt = 0; attempt < 5 && !isTakenOver(press, start); ++attempt) {
            EXPECT_EQ(xdotool({u"mouseup"_s, u"1"_s}), 0);
        }
        point(end);
        EXPECT_EQ(xdotool({u"mouseup"_s, u"1"_s}), 0);
    }

    /// Presses the button, and moves on to `start`; whether the manager takes the drag over.
    bool isTakenOver(QPoint press, QPoint start)
    {
        point(press);
        EXPECT_EQ(xdotool({u"mousedown"_s, u"1"_s}), 0);
        EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::mouseButtons() == Qt::LeftButton; },
                                    desktopTimeoutMs));
        if (start != press) {
            point(start);
        }
        // The manager takes the keyboard along with the pointer.
        return QTest::qWaitFor([&] { return !m_window->isActiveWindow(); }, 3'000);
    }

    static constexpr QRect before{100, 80, 800, 560};
    std::optional<KORVENWindow> m_window;
};

TEST_F(WindowManagerTest, theWindowHasNoFrameAround)
{
    EXPECT_EQ(m_window->frameGeometry(), before);
}

TEST_F(WindowManagerTest, draggingTheTitleMovesTheWindow)
{
    drag({400, 97}, {420, 97}, {480, 157});
    EXPECT_TRUE(waitForFrame(before.translated(60, 60)));
}

TEST_F(WindowManagerTest, theTitleCanBeDraggedAgain)
{
    drag({400, 97}, {420, 97}, {480, 157});
    ASSERT_TRUE(waitForFrame(before.translated(60, 60)));
    // Without a press the pointer passes over the title and moves nothing.
    point({420, 160});
    point({520, 170});
    m_window->setGeometry(before);
    ASSERT_TRUE(waitForFrame(before));
    drag({400, 97}, {420, 97}, {460, 127});
    EXPECT_TRUE(waitForFrame(before.translated(40, 30)));
}

TEST_F(WindowManagerTest, draggingAnEdgeResizesTheWindow)
{
    drag({897, 400}, {897, 400}, {957, 440});
    EXPECT_TRUE(waitForFrame(before.adjusted(0, 0, 60, 0)));
}

TEST_F(WindowManagerTest, draggingACornerResizesTheWindowBothWays)
{
    drag({102, 637}, {102, 637}, {62, 677});
    EXPECT_TRUE(waitForFrame(before.adjusted(-40, 0, 0, 40)));
}

TEST_F(WindowManagerTest, theWindowDoesNotGetSmallerThanItsMinimum)
{
    drag({897, 400}, {897, 400}, {600, 400});
    EXPECT_TRUE(waitForFrame(QRect(before.topLeft(), QSize(760, before.height()))));
}

TEST_F(WindowManagerTest, aDoubleClickOnTheTitleMaximisesAndAnotherRestores)
{
    point({400, 97});
    const QStringList doubleClick{u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"50"_s, u"1"_s};
    EXPECT_EQ(xdotool(doubleClick), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_window->isMaximized() && m_window->y() == 0; },
                                desktopTimeoutMs));
    EXPECT_TRUE(waitForFrame(QRect(0, 0, 1280, 900)));

    point({400, 17});
    EXPECT_EQ(xdotool(doubleClick), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_window->isMaximized(); }, desktopTimeoutMs));
    EXPECT_TRUE(waitForFrame(before));
}

TEST_F(WindowManagerTest, theSecondClickOfADoubleClickDoesNotPressWhatTookTheButtonsPlace)
{
    QPushButton scan(&*m_window);
    QPushButton cancel(&*m_window);
    scan.setGeometry(300, 300, 120, 40);
    cancel.setGeometry(scan.geometry());
    cancel.hide();
    scan.show();
    PressGuard guard;
    guard.setClock([] { return PressGuard::Time(); }); // as if the machine had nothing else to do
    guard.watch(scan);
    guard.watch(cancel);
    const QSignalSpy cancelled(&cancel, &QPushButton::clicked);
    QObject::connect(&scan, &QPushButton::clicked, &scan, [&] {
        scan.hide();
        cancel.show();
    });
    const MouseLog mouse;
    point(scan.mapToGlobal(QPoint(60, 20)));
    EXPECT_EQ(xdotool({u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"50"_s, u"1"_s}), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return mouse.releaseCount == 2; }, desktopTimeoutMs));
    EXPECT_TRUE(cancel.isVisible());
    EXPECT_EQ(cancelled.count(), 0);

    const QPoint elsewhere = scan.mapToGlobal(QPoint(60, 120));
    point(elsewhere);
    EXPECT_TRUE(QTest::qWaitFor([&] { return mouse.place == elsewhere; }, desktopTimeoutMs));
    point(scan.mapToGlobal(QPoint(60, 20)));
    EXPECT_EQ(xdotool({u"click"_s, u"1"_s}), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return cancelled.count() == 1; }, desktopTimeoutMs));
}

TEST_F(WindowManagerTest, aRightClickOnTheTitleOpensTheMenuAtThePointer)
{
    point({400, 97});
    EXPECT_EQ(xdotool({u"click"_s, u"3"_s}), 0);
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
    EXPECT_EQ(QApplication::activePopupWidget()->pos(), QPoint(400, 97));
    EXPECT_EQ(xdotool({u"key"_s, u"x"_s}), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_window->isMaximized(); }, desktopTimeoutMs));
}

TEST_F(WindowManagerTest, theProgramsMenuOpensByItsButtonAndThenByItsKey)
{
    QMenu menu;
    menu.addAction(u"Item"_s);
    m_window->setApplicationMenu(&menu);
    point(before.topLeft() + QPoint(19, 17));
    EXPECT_EQ(xdotool({u"click"_s, u"1"_s}), 0);
    // The button runs a loop of its own while its menu is open.
    int openings = 0;
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, &openings] {
        ++openings;
        QMetaObject::invokeMethod(&menu, &QMenu::close, Qt::QueuedConnection);
    });
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return openings == 1 && !menu.isVisible(); }, desktopTimeoutMs));
    EXPECT_EQ(xdotool({u"key"_s, u"F10"_s}), 0);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return openings == 2 && !menu.isVisible(); }, desktopTimeoutMs));
}

TEST_F(WindowManagerTest, comesBackWhereItWas)
{
    const QRect frame(300, 200, 780, 500);
    m_window->setGeometry(frame);
    ASSERT_TRUE(waitForFrame(frame));
    m_window->showMaximized();
    ASSERT_TRUE(waitForFrame(QRect(0, 0, 1280, 900)));
    const QByteArray placement = m_window->placement();

    m_window.emplace(KORVENWindow::Surface::opaque);
    ASSERT_TRUE(m_window->restorePlacement(placement));
    m_window->show();
    ASSERT_TRUE(waitForFrame(QRect(0, 0, 1280, 900)));
    m_window->showNormal();
    EXPECT_TRUE(waitForFrame(frame));
}

} // namespace
} // namespace tessaly

int main(int argumentCount, char **arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    tessaly::useTestFonts();
    using tessaly::ManagedDisplay;
    std::optional<ManagedDisplay> display;
    // Neither a list of the tests nor tests that are skipped need one.
    if (testing::GTEST_FLAG(list_tests) || !ManagedDisplay::missing().empty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else {
        display.emplace();
    }
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
