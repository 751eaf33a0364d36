#include "app/window/QuitKey.hpp"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace tessaly {
namespace {

/// A widget that has a use for every key.
class KeyTaker final : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void keyPressEvent(QKeyEvent *event) override { event->accept(); }
};

class QuitKeyTest : public testing::Test {
protected:
    static void press(QWidget &widget, Qt::KeyboardModifiers modifiers = Qt::ControlModifier,
                      Qt::Key key = Qt::Key_Q)
    {
        QTest::keyClick(&widget, key, modifiers);
    }

    int m_quitCount = 0;
    QWidget m_mainWindow;
    QWidget m_other;
    const QuitKey m_key{m_mainWindow, Qt::CTRL | Qt::Key_Q, [this] { ++m_quitCount; }};
};

TEST_F(QuitKeyTest, quitsFromAnotherWindow)
{
    press(m_other);
    EXPECT_EQ(m_quitCount, 1);
    press(m_other, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(m_quitCount, 2);
}

TEST_F(QuitKeyTest, quitsWhicheverWidgetOfTheWindowHasTheFocus)
{
    QLineEdit line(&m_other);
    QPlainTextEdit text(&m_other);
    text.setReadOnly(true);
    m_other.show();
    press(line);
    press(text);
    EXPECT_EQ(m_quitCount, 2);
    EXPECT_EQ(line.text(), QString());
}

TEST_F(QuitKeyTest, leavesTheMainWindowToItsMenu)
{
    QLineEdit line(&m_mainWindow);
    m_mainWindow.show();
    press(m_mainWindow);
    press(line);
    EXPECT_EQ(m_quitCount, 0);
}

TEST_F(QuitKeyTest, leavesOtherKeysAndThoseThatAreOfUse)
{
    KeyTaker taker(&m_other);
    m_other.show();
    press(taker);
    press(m_other, Qt::NoModifier);
    press(m_other, Qt::ControlModifier | Qt::ShiftModifier);
    press(m_other, Qt::ControlModifier, Qt::Key_W);
    EXPECT_EQ(m_quitCount, 0);
}

} // namespace
} // namespace tessaly
