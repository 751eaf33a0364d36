#include "app/controls/frame/KORVENWindow.hpp"

#include "app/controls/frame/KORVENTitleView.hpp"
#include "app/controls/frame/WindowEdges.hpp"
#include "app/controls/frame/WindowMenu.hpp"
#include "app/controls/frame/WindowPlacement.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QPoint inTitle{300, 17};

/// Sees when a widget is painted.
class PaintWatcher : public QObject {
public:
    explicit PaintWatcher(QWidget *widget) { widget->installEventFilter(this); }
    /// Since the last time that this was asked.
    [[nodiscard]] bool waitForPainting()
    {
        const bool isPainted = QTest::qWaitFor([this] { return m_isPainted; });
        m_isPainted = false;
        return isPainted;
    }

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_isPainted = false;
};

class KORVENWindowTest : public testing::Test {
protected:
    KORVENWindowTest()
    {
        m_window.show();
        activate();
    }

    [[nodiscard]] QPushButton *button(const QString &name) const
    {
        for (auto *button : m_window.findChildren<QPushButton *>()) {
            if (button->accessibleName() == name) {
                return button;
            }
        }
        return nullptr;
    }

    void click(const QString &name) const
    {
        ASSERT_NE(button(name), nullptr);
        QTest::mouseClick(button(name), Qt::LeftButton);
    }

    [[nodiscard]] WindowMenu *windowMenu() const { return m_window.findChild<WindowMenu *>(); }

    [[nodiscard]] QAction *menuItem(const QString &text) const
    {
        for (QAction *action : windowMenu()->actions()) {
            if (action->text().remove(u'&') == text) {
                return action;
            }
        }
        return nullptr;
    }

    /// The items of the window's menu that can be chosen now.
    [[nodiscard]] QStringList itemsOnOffer() const
    {
        windowMenu()->showAt(m_window.mapToGlobal(inTitle), false);
        QStringList items;
        for (const QAction *action : windowMenu()->actions()) {
            if (action->isEnabled() && !action->isSeparator()) {
                items.append(action->text().remove(u'&'));
            }
        }
        windowMenu()->hide();
        return items;
    }

    /// Whether a press of the left button there begins something.
    bool takesPress(QPoint place)
    {
        QMouseEvent press(QEvent::MouseButtonPress, place, m_window.mapToGlobal(place),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_window, &press);
        return press.isAccepted();
    }

    void rightClick(QPoint place)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_window.mapToGlobal(place));
        QApplication::sendEvent(&m_window, &event);
    }

    [[nodiscard]] QRect screenArea() const { return m_window.screen()->availableGeometry(); }

    /// Keys as the desktop gives them to the window.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        activate();
        QTest::keyClick(m_window.windowHandle(), key, modifiers);
    }

    /// This display leaves no window active once a menu has been closed, unlike others.
    void activate()
    {
        m_window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    KORVENWindow m_window{KORVENWindow::Surface::composited};
};

TEST_F(KORVENWindowTest, isAWindowWithoutAFrame)
{
    EXPECT_TRUE(m_window.isWindow());
    EXPECT_TRUE(m_window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(m_window.windowTitle(), u"Tessaly"_s);
    EXPECT_EQ(m_window.minimumSize(), QSize(760, 480));
    EXPECT_TRUE(screenArea().contains(QRect(screenArea().topLeft(), m_window.size())));
}

TEST_F(KORVENWindowTest, showsItsContentBelowTheTitleBar)
{
    auto *content = new QWidget;
    m_window.setContentWidget(content);
    EXPECT_EQ(m_window.contentWidget(), content);
    ASSERT_TRUE(QTest::qWaitFor([content] { return content->isVisible() && content->y() == 34; }));
    EXPECT_EQ(content->geometry(), m_window.rect().adjusted(0, titleBarHeight, 0, 0));

    m_window.resize(790, 500);
    EXPECT_EQ(content->geometry(), QRect(0, 34, 790, 466));
    EXPECT_EQ(m_window.titleView()->geometry(), m_window.rect());
}

TEST_F(KORVENWindowTest, buttonsChangeSidesWhereTextsRunFromRightToLeft)
{
    const QRect menu = button(u"Menu"_s)->geometry();
    const QRect close = button(u"Close"_s)->geometry();
    ASSERT_LT(menu.right(), close.left());

    m_window.setLayoutDirection(Qt::RightToLeft);
    const int mirror = m_window.rect().left() + m_window.rect().right();
    EXPECT_EQ(button(u"Menu"_s)->geometry().left(), mirror - menu.right());
    EXPECT_EQ(button(u"Close"_s)->geometry().left(), mirror - close.right());
    EXPECT_EQ(button(u"Close"_s)->size(), close.size());

    m_window.resize(m_window.width() + 40, m_window.height());
    EXPECT_EQ(button(u"Close"_s)->geometry().left(), mirror + 40 - close.right() - 40);
    EXPECT_EQ(button(u"Menu"_s)->geometry().left(), mirror + 40 - menu.right());
}

TEST_F(KORVENWindowTest, deletesTheContentThatIsReplaced)
{
    const QPointer<QWidget> first = new QWidget;
    m_window.setContentWidget(first);
    m_window.setContentWidget(first); // no other: stays
    ASSERT_FALSE(first.isNull());
    m_window.setContentWidget(new QWidget);
    EXPECT_TRUE(first.isNull());

    delete m_window.contentWidget();
    EXPECT_EQ(m_window.contentWidget(), nullptr);
    m_window.setContentWidget(nullptr);
    EXPECT_EQ(m_window.contentWidget(), nullptr);
}

TEST_F(KORVENWindowTest, isGreyBetweenRoundCorners)
{
    const QImage image = m_window.grab().toImage();
    const QPoint end = m_window.rect().bottomRight();
    EXPECT_EQ(image.pixelColor(m_window.rect().center()), QColor(94, 94, 94));
    for (const QPoint corner : {QPoint(0, 0), QPoint(end.x(), 0), QPoint(0, end.y()), end}) {
        EXPECT_EQ(image.pixelColor(corner).alpha(), 0);
    }
}

TEST_F(KORVENWindowTest, cutsTheCornersOffItsContentToo)
{
    auto *content = new QWidget;
    content->setAutoFillBackground(true);
    content->setPalette(Qt::red);
    m_window.setContentWidget(content);
    ASSERT_TRUE(QTest::qWaitFor([content] { return content->isVisible(); }));
    const QImage image = m_window.grab().toImage();
    EXPECT_EQ(image.pixelColor(0, m_window.height() - 1).alpha(), 0);
    EXPECT_EQ(image.pixelColor(m_window.rect().center()), QColor(Qt::red));
}

TEST_F(KORVENWindowTest, fillsTheWholeScreenWhenMaximised)
{
    m_window.showMaximized();
    const QImage image = m_window.grab().toImage();
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 255);
    EXPECT_EQ(image.pixelColor(0, 0).red(), 51);
    EXPECT_FALSE(m_window.findChild<WindowEdges *>()->isVisible());

    m_window.showNormal();
    EXPECT_EQ(m_window.grab().toImage().pixelColor(0, 0).alpha(), 0);
    EXPECT_TRUE(m_window.findChild<WindowEdges *>()->isVisible());
}

TEST_F(KORVENWindowTest, leavesAMarginAroundAllThatItShows)
{
    auto *content = new QWidget;
    m_window.setContentWidget(content);
    m_window.resize(790, 500);
    EXPECT_EQ(m_window.outerMargin(), 0);
    m_window.setOuterMargin(60);
    EXPECT_EQ(m_window.outerMargin(), 60);
    EXPECT_EQ(m_window.titleView()->geometry(), QRect(60, 60, 670, 380));
    ASSERT_TRUE(QTest::qWaitFor([&] { return content->geometry() == QRect(60, 94, 670, 346); }));
    EXPECT_EQ(button(u"Close"_s)->geometry(),
              titleBarPartRect(TitleBarPart::close, 670).translated(60, 60));
    const QImage image = m_window.grab().toImage();
    EXPECT_EQ(image.pixelColor(40, 250), theme::backdrop);
    EXPECT_EQ(image.pixelColor(70, 250), QColor(94, 94, 94));

    m_window.setOuterMargin(0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return content->geometry() == QRect(0, 34, 790, 466); }));
    EXPECT_EQ(m_window.grab().toImage().pixelColor(40, 250), QColor(94, 94, 94));
}

TEST_F(KORVENWindowTest, canBeDraggedByItsTitleOnly)
{
    EXPECT_TRUE(takesPress(inTitle));
    EXPECT_FALSE(takesPress(inTitle + QPoint(0, 100)));
    m_window.setOuterMargin(60);
    EXPECT_FALSE(takesPress(inTitle));
    EXPECT_TRUE(takesPress(inTitle + QPoint(60, 60)));
}

TEST_F(KORVENWindowTest, cannotBeDraggedInFullScreen)
{
    m_window.showFullScreen();
    EXPECT_FALSE(takesPress(inTitle));
    EXPECT_FALSE(m_window.findChild<WindowEdges *>()->isVisible());
    m_window.showNormal();
    EXPECT_TRUE(takesPress(inTitle));
}

TEST(KORVENWindow, hasSquareCornersWhereNothingShinesThrough)
{
    KORVENWindow window(KORVENWindow::Surface::opaque);
    window.show();
    EXPECT_FALSE(window.testAttribute(Qt::WA_TranslucentBackground));
    const QImage image = window.grab().toImage();
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 255);
    EXPECT_EQ(image.pixelColor(window.rect().bottomRight()).alpha(), 255);
}

TEST_F(KORVENWindowTest, minimisesZoomsAndClosesByItsButtons)
{
    click(u"Zoom"_s);
    EXPECT_TRUE(m_window.isMaximized());
    click(u"Zoom"_s);
    EXPECT_FALSE(m_window.isMaximized());
    click(u"Minimize"_s);
    EXPECT_TRUE(m_window.isMinimized());
    m_window.showNormal();
    click(u"Close"_s);
    EXPECT_FALSE(m_window.isVisible());
}

TEST_F(KORVENWindowTest, putsItsButtonsAtTheRight)
{
    EXPECT_EQ(button(u"Minimize"_s)->geometry().center(), QPoint(m_window.width() - 63, 17));
    EXPECT_EQ(button(u"Zoom"_s)->geometry().center(), QPoint(m_window.width() - 41, 17));
    EXPECT_EQ(button(u"Close"_s)->geometry().center(), QPoint(m_window.width() - 19, 17));
}

TEST_F(KORVENWindowTest, itsButtonsAreButtonsForAssistiveToolsToo)
{
    for (const QString &name : {u"Minimize"_s, u"Zoom"_s, u"Close"_s}) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button(name));
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->text(QAccessible::Name), name);
        EXPECT_EQ(accessible->role(), QAccessible::PushButton);
    }
}

TEST_F(KORVENWindowTest, itsButtonsWorkByTheKeyboardAndShowTheFocus)
{
    QPushButton *zoom = button(u"Zoom"_s);
    const QImage without = zoom->grab().toImage();
    zoom->setFocus(Qt::ActiveWindowFocusReason);
    EXPECT_EQ(zoom->grab().toImage(), without);
    zoom->clearFocus();
    zoom->setFocus(Qt::TabFocusReason);
    EXPECT_NE(zoom->grab().toImage(), without);
    press(Qt::Key_Space);
    EXPECT_TRUE(m_window.isMaximized());
}

TEST_F(KORVENWindowTest, aDoubleClickOnTheTitleZooms)
{
    QTest::mouseDClick(&m_window, Qt::LeftButton, {}, inTitle);
    EXPECT_TRUE(m_window.isMaximized());
    QTest::mouseDClick(&m_window, Qt::LeftButton, {}, inTitle);
    EXPECT_FALSE(m_window.isMaximized());
}

TEST_F(KORVENWindowTest, otherDoubleClicksDoNot)
{
    QTest::mouseDClick(&m_window, Qt::LeftButton, {}, {300, 200});
    QTest::mouseDClick(&m_window, Qt::RightButton, {}, inTitle);
    EXPECT_FALSE(m_window.isMaximized());
}

TEST_F(KORVENWindowTest, zoomRestoresAFullScreenWindow)
{
    m_window.showFullScreen();
    m_window.zoom();
    EXPECT_FALSE(m_window.isFullScreen());
    EXPECT_FALSE(m_window.isMaximized());
}

TEST_F(KORVENWindowTest, aRightClickOnTheTitleOpensTheWindowMenu)
{
    rightClick({300, 200});
    EXPECT_FALSE(windowMenu()->isVisible());
    rightClick(inTitle);
    EXPECT_TRUE(windowMenu()->isVisible());
    EXPECT_EQ(windowMenu()->activeAction(), nullptr);
}

TEST_F(KORVENWindowTest, theWindowMenuOffersWhatCanBeDone)
{
    EXPECT_EQ(itemsOnOffer(),
              (QStringList{u"Move"_s, u"Size"_s, u"Minimize"_s, u"Maximize"_s, u"Close"_s}));
    m_window.showMaximized();
    EXPECT_EQ(itemsOnOffer(), (QStringList{u"Restore"_s, u"Minimize"_s, u"Close"_s}));
}

TEST_F(KORVENWindowTest, theWindowMenuDoesWhatItSays)
{
    menuItem(u"Maximize"_s)->trigger();
    EXPECT_TRUE(m_window.isMaximized());
    EXPECT_EQ(itemsOnOffer().first(), u"Restore"_s);
    menuItem(u"Restore"_s)->trigger();
    EXPECT_FALSE(m_window.isMaximized());
    menuItem(u"Minimize"_s)->trigger();
    EXPECT_TRUE(m_window.isMinimized());
    m_window.showNormal();
    menuItem(u"Close"_s)->trigger();
    EXPECT_FALSE(m_window.isVisible());
}

TEST_F(KORVENWindowTest, altSpaceOpensTheWindowMenuForTheKeyboard)
{
    press(Qt::Key_Space, Qt::AltModifier);
    ASSERT_TRUE(windowMenu()->isVisible());
    EXPECT_EQ(windowMenu()->activeAction(), menuItem(u"Move"_s));
    QTest::keyClick(windowMenu(), Qt::Key_X);
    EXPECT_TRUE(m_window.isMaximized());

    press(Qt::Key_Space, Qt::AltModifier);
    EXPECT_EQ(windowMenu()->activeAction(), menuItem(u"Restore"_s));
}

TEST_F(KORVENWindowTest, theArrowKeysMoveTheWindowAfterMove)
{
    m_window.setGeometry(0, 0, 760, 480);
    menuItem(u"Move"_s)->trigger();
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(m_window.geometry(), QRect(10, 11, 760, 480));
    press(Qt::Key_Left);
    press(Qt::Key_Left); // not over the edge of the screen
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(m_window.geometry(), QRect(0, 10, 760, 480));
    press(Qt::Key_Return);
    press(Qt::Key_Right);
    EXPECT_EQ(m_window.geometry(), QRect(0, 10, 760, 480));
}

TEST_F(KORVENWindowTest, theArrowKeysResizeTheWindowAfterSizeWithinItsLimits)
{
    m_window.setGeometry(0, 0, 760, 480);
    menuItem(u"Size"_s)->trigger();
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(m_window.geometry(), QRect(0, 0, 770, 490));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(m_window.geometry(), QRect(0, 0, 760, 489));
    press(Qt::Key_Escape);
    EXPECT_EQ(m_window.geometry(), QRect(0, 0, 760, 480));
    press(Qt::Key_Right);
    EXPECT_EQ(m_window.geometry(), QRect(0, 0, 760, 480));
}

TEST_F(KORVENWindowTest, otherKeysDoNothingWhileTheWindowIsMoved)
{
    auto *content = new QPushButton;
    const QSignalSpy clicked(content, &QPushButton::clicked);
    m_window.setContentWidget(content);
    content->setFocus();
    menuItem(u"Move"_s)->trigger();
    press(Qt::Key_Space);
    press(Qt::Key_Space, Qt::AltModifier);
    EXPECT_EQ(clicked.count(), 0);
    EXPECT_FALSE(windowMenu()->isVisible());

    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, {}, inTitle); // ends it
    press(Qt::Key_Space);
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(KORVENWindowTest, showsAMenuButtonWhileThereIsAMenu)
{
    EXPECT_FALSE(button(u"Menu"_s)->isVisible());
    auto first = std::make_unique<QMenu>();
    auto second = std::make_unique<QMenu>();
    m_window.setApplicationMenu(first.get());
    EXPECT_TRUE(button(u"Menu"_s)->isVisible());
    m_window.setApplicationMenu(second.get());
    first.reset();
    EXPECT_TRUE(button(u"Menu"_s)->isVisible());
    second.reset();
    EXPECT_FALSE(button(u"Menu"_s)->isVisible());
    press(Qt::Key_F10); // opens nothing
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(KORVENWindowTest, theMenuButtonAndItsKeyOpenTheMenu)
{
    QMenu menu;
    menu.addAction(u"Item"_s);
    int openings = 0;
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, &openings] {
        ++openings;
        QMetaObject::invokeMethod(&menu, &QMenu::close, Qt::QueuedConnection);
    });
    m_window.setApplicationMenu(&menu);
    press(Qt::Key_F10);
    EXPECT_EQ(openings, 1);
    click(u"Menu"_s);
    EXPECT_EQ(openings, 2);
}

TEST_F(KORVENWindowTest, shortcutsOfTheMenuWorkWhileItIsClosed)
{
    QMenu menu;
    const QAction *action = menu.addAction(u"Item"_s, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    const QSignalSpy triggered(action, &QAction::triggered);
    m_window.setApplicationMenu(&menu);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(triggered.count(), 1);
}

TEST_F(KORVENWindowTest, thePointerShowsThatEdgesCanBeDragged)
{
    auto *edges = m_window.findChild<WindowEdges *>();
    EXPECT_EQ(m_window.childAt(2, 200), edges);
    EXPECT_NE(m_window.childAt(300, 200), edges);
    QTest::mouseMove(edges, {2, 200});
    EXPECT_EQ(edges->cursor().shape(), Qt::SizeHorCursor);
    QTest::mouseMove(edges, {2, 2});
    EXPECT_EQ(edges->cursor().shape(), Qt::SizeFDiagCursor);
}

TEST_F(KORVENWindowTest, keepsAFrameWithinTheScreenUnlessThatIsSuspended)
{
    const QRect screen = screenArea();
    const QRect large = screen.adjusted(-50, -60, 70, 80);
    const QRect outside = {screen.right() - 10, screen.bottom() - 10, 770, 490};
    EXPECT_FALSE(m_window.constrainingToScreenSuspended());
    EXPECT_EQ(m_window.constrainFrameRect(large, m_window.screen()), screen);
    EXPECT_TRUE(screen.contains(m_window.constrainFrameRect(outside, m_window.screen())));
    EXPECT_EQ(m_window.constrainFrameRect(large, nullptr), large);

    m_window.setConstrainingToScreenSuspended(true);
    EXPECT_TRUE(m_window.constrainingToScreenSuspended());
    EXPECT_EQ(m_window.constrainFrameRect(large, m_window.screen()), large);
    m_window.setConstrainingToScreenSuspended(false);
    EXPECT_EQ(m_window.constrainFrameRect(large, m_window.screen()), screen);
}

TEST_F(KORVENWindowTest, comesBackWhereItWas)
{
    const QRect frame(12, 34, 780, 520);
    m_window.setGeometry(frame);
    KORVENWindow next(KORVENWindow::Surface::composited);
    EXPECT_TRUE(next.restorePlacement(m_window.placement()));
    next.show();
    EXPECT_EQ(next.geometry(), frame);
    EXPECT_FALSE(next.isMaximized());
}

TEST_F(KORVENWindowTest, comesBackMaximisedWithTheFrameFromBefore)
{
    const QRect frame(12, 34, 780, 520);
    m_window.setGeometry(frame);
    m_window.showMaximized();
    KORVENWindow next(KORVENWindow::Surface::composited);
    EXPECT_TRUE(next.restorePlacement(m_window.placement()));
    next.show();
    EXPECT_TRUE(next.isMaximized());
    EXPECT_EQ(next.placement(), m_window.placement());
    next.showNormal();
    EXPECT_EQ(next.geometry(), frame);
}

TEST_F(KORVENWindowTest, comesBackOnAScreenFromWhereThereIsNone)
{
    for (const QRect &gone : {QRect(90'000, 100, 770, 490), QRect(100, -90'000, 770, 490),
                              QRect(-760, -480, 770, 490), QRect(0, 0, 100'000, 100'000)}) {
        EXPECT_TRUE(m_window.restorePlacement(WindowPlacement{gone, false}.bytes()));
        EXPECT_TRUE(screenArea().contains(m_window.geometry()));
    }
}

TEST_F(KORVENWindowTest, staysWhereItIsForBytesThatAreNoPlacement)
{
    const QRect frame(12, 34, 780, 520);
    m_window.setGeometry(frame);
    for (const QByteArray &bytes : {QByteArray(), QByteArray("nonsense"), QByteArray(21, '\xff'),
                                    WindowPlacement{{0, 0, 0, 0}, true}.bytes()}) {
        EXPECT_FALSE(m_window.restorePlacement(bytes));
        EXPECT_EQ(m_window.geometry(), frame);
        EXPECT_FALSE(m_window.isMaximized());
    }
}

TEST_F(KORVENWindowTest, isDimmerWhileAnotherWindowIsActive)
{
    const QImage active = m_window.grab().toImage();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_NE(m_window.grab().toImage(), active);
}

TEST_F(KORVENWindowTest, repaintsItsTitleBarWhenAnotherWindowBecomesActive)
{
    m_window.grab(); // nothing is left to be painted
    QCoreApplication::processEvents();
    QWidget other;
    other.setGeometry(0, 600, 10, 10);
    for (QWidget *part : {static_cast<QWidget *>(m_window.titleView()),
                          static_cast<QWidget *>(button(u"Close"_s))}) {
        PaintWatcher watcher(part);
        other.show();
        other.activateWindow();
        EXPECT_TRUE(watcher.waitForPainting());
        activate();
        EXPECT_TRUE(watcher.waitForPainting());
        other.hide();
    }
}

} // namespace
} // namespace tessaly
