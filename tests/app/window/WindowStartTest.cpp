#include "app/controls/frame/KORVENTitleView.hpp"
#include "tests/app/window/WindowTest.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

/// The window as the program starts it: empty at first.
class WindowStartTest : public WindowTest {
protected:
    void makeController()
    {
        m_delegate = std::make_unique<KORVENAppDelegate>(m_services.all());
        m_controller = std::make_unique<KORVENWindowController>(m_services.all(),
                                                                [this] { ++m_terminationCount; });
        m_delegate->setWindowController(m_controller.get());
    }
    void start()
    {
        m_controller->showWindow([this] {
            ++m_paintedCount;
            m_wasEmpty = window().contentWidget() == nullptr;
            m_controller->awakeFromNib();
        });
    }

    int m_paintedCount = 0;
    bool m_wasEmpty = false;
};

TEST_F(WindowStartTest, theEmptyWindowComesFirstAndThenItsContentOnce)
{
    makeController();
    start();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(m_paintedCount, 0);
    EXPECT_FALSE(window().titleView()->showsName());
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 1; }));
    EXPECT_TRUE(m_wasEmpty);
    EXPECT_NE(window().contentWidget(), nullptr);
    EXPECT_TRUE(window().titleView()->showsName());
    EXPECT_TRUE(outlineTable().isVisible());
    EXPECT_TRUE(QTest::qWaitFor([this] { return outlineTable().hasFocus(); }));
    window().repaint();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_paintedCount, 1);
}

TEST_F(WindowStartTest, aScanIsReadOnceTheContentHasBeenPainted)
{
    makeController();
    m_delegate->setWindowController(nullptr); // what is recorded here was so by an earlier run
    recordTree(*makeTree("/f", {file("a", 10)}));
    m_delegate->setWindowController(m_controller.get());
    start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 1; }));
    EXPECT_EQ(scanRows(), std::vector<std::string>{});
    EXPECT_TRUE(QTest::qWaitFor([this] { return scanRows() == std::vector<std::string>{"a"}; }));
}

TEST_F(WindowStartTest, theContentDoesNotWaitForAWindowThatIsNotPainted)
{
    makeController();
    window().setUpdatesEnabled(false);
    start();
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 1; }));
    EXPECT_NE(window().contentWidget(), nullptr);
}

TEST_F(WindowStartTest, keysAndSizesBeforeTheContentDoNoHarm)
{
    m_services.release.setVersion({10, 7}); // which has the sidebar follow each resize
    makeController();
    start();
    QTest::keyClick(&window(), Qt::Key_F11);
    QTest::keyClick(&window(), Qt::Key_Return);
    window().resize(window().size() + QSize(10, 10));
    EXPECT_EQ(m_paintedCount, 0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 1; }));
    EXPECT_FALSE(window().isFullScreen());
}

TEST_F(WindowStartTest, theEmptyWindowIsWhereItWasTheLastTime)
{
    makeController();
    start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 1; }));
    const QRect frame(10, 20, 780, 600);
    window().setGeometry(frame);
    window().close();
    closeWindow();

    makeController();
    start();
    EXPECT_EQ(window().geometry(), frame);
    window().setGeometry(frame.translated(5, 5)); // by the user, meanwhile
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_paintedCount == 2; }));
    EXPECT_EQ(window().geometry(), frame.translated(5, 5));
}

TEST_F(WindowStartTest, theProgramMayEndBeforeTheContentIsThere)
{
    makeController();
    start();
    window().close();
    closeWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_paintedCount, 0);
}

} // namespace
} // namespace tessaly
