#include "app/controls/alerts/WindowSheet.hpp"

#include "app/controls/frame/KORVENWindow.hpp"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// A sheet with one button in it.
class ButtonSheet {
public:
    explicit ButtonSheet(QWidget &window) : ButtonSheet(window, std::make_unique<QPushButton>()) {}
    void begin() { m_sheet->begin(*m_button); }
    void end() { m_sheet->end(); }
    WindowSheet &sheet() { return *m_sheet; }
    QPushButton &button() { return *m_button; }

private:
    ButtonSheet(QWidget &window, std::unique_ptr<QPushButton> button)
        : m_button(button.get()), m_sheet(std::make_unique<WindowSheet>(window, std::move(button)))
    {
    }
    QPushButton *m_button;
    std::unique_ptr<WindowSheet> m_sheet;
};

/// On a window with two buttons in its content.
class WindowSheetTest : public testing::Test {
protected:
    WindowSheetTest()
    {
        auto *content = new QWidget;
        auto *layout = new QVBoxLayout(content);
        m_below = new QPushButton;
        m_never = new QPushButton;
        m_never->setEnabled(false);
        layout->addWidget(m_below);
        layout->addWidget(m_never);
        m_window->setContentWidget(content);
        m_window->show();
        m_window->activateWindow();
        m_below->setFocus();
    }
    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&*m_window)); }

    std::optional<KORVENWindow> m_window{KORVENWindow::Surface::opaque};
    QPushButton *m_below;
    QPushButton *m_never; ///< is disabled all the time
};

TEST_F(WindowSheetTest, disablesWhatLiesBelowForAsLongAsItIsOpen)
{
    ButtonSheet sheet(*m_window);
    EXPECT_TRUE(m_below->isEnabled());
    EXPECT_EQ(WindowSheet::openOn(*m_window), nullptr);
    for (int round = 0; round < 2; ++round) {
        sheet.begin();
        EXPECT_EQ(WindowSheet::openOn(*m_window), &sheet.sheet());
        EXPECT_FALSE(m_below->isEnabled());
        EXPECT_TRUE(sheet.button().isEnabled());
        EXPECT_EQ(QApplication::focusWidget(), &sheet.button());
        sheet.end();
        EXPECT_EQ(WindowSheet::openOn(*m_window), nullptr);
        EXPECT_TRUE(m_below->isEnabled());
        EXPECT_FALSE(m_never->isEnabled());
        EXPECT_EQ(QApplication::focusWidget(), m_below);
    }
}

/// Counts the mouse's events that come to a widget, or to a child that ignores them.
class MouseEvents final : public QObject {
public:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu:
        case QEvent::Wheel:
            ++count;
            break;
        default:
            break;
        }
        return false;
    }
    int count = 0;
};

TEST_F(WindowSheetTest, keepsTheMouseFromTheContentBelow)
{
    MouseEvents events;
    m_window->contentWidget()->installEventFilter(&events);
    ButtonSheet sheet(*m_window);
    sheet.begin();
    const QPoint corner(1, sheet.sheet().height() - 2);
    QTest::mouseClick(&sheet.sheet(), Qt::LeftButton, {}, corner);
    QTest::mouseDClick(&sheet.sheet(), Qt::LeftButton, {}, corner);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, corner, sheet.sheet().mapToGlobal(corner));
    QApplication::sendEvent(&sheet.sheet(), &menu);
    QWheelEvent wheel(corner, sheet.sheet().mapToGlobal(corner), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&sheet.sheet(), &wheel);
    EXPECT_EQ(events.count, 0);
}

TEST_F(WindowSheetTest, leavesTheTitleBarAlone)
{
    ButtonSheet sheet(*m_window);
    sheet.begin();
    for (const auto *button :
         m_window->findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        EXPECT_TRUE(button->isEnabled());
    }
}

TEST_F(WindowSheetTest, onlyTheTopmostOneTakesInput)
{
    ButtonSheet first(*m_window);
    ButtonSheet second(*m_window);
    first.begin();
    second.begin();
    EXPECT_FALSE(first.button().isEnabled());
    EXPECT_TRUE(second.button().isEnabled());
    second.end();
    EXPECT_TRUE(first.button().isEnabled());
    EXPECT_FALSE(m_below->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &first.button());
    first.end();
    EXPECT_TRUE(m_below->isEnabled());
}

TEST_F(WindowSheetTest, theLowerOneMayEndFirst)
{
    ButtonSheet first(*m_window);
    ButtonSheet second(*m_window);
    first.begin();
    second.begin();
    first.end();
    EXPECT_TRUE(second.button().isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &second.button());
    EXPECT_FALSE(m_below->isEnabled());
    second.end();
    EXPECT_TRUE(m_below->isEnabled());
    first.begin(); // usable again, though it lay below another one when it ended
    EXPECT_TRUE(first.button().isEnabled());
}

TEST_F(WindowSheetTest, enablesWhatLiesBelowWhenItIsDestroyed)
{
    {
        ButtonSheet sheet(*m_window);
        sheet.begin();
    }
    EXPECT_TRUE(m_below->isEnabled());
}

TEST_F(WindowSheetTest, mayOpenWhileAModalDialogBlocksTheWindow)
{
    ButtonSheet sheet(*m_window);
    QDialog dialog(&*m_window);
    dialog.open();
    sheet.begin();
    EXPECT_FALSE(sheet.button().isEnabled());
    dialog.close();
    EXPECT_TRUE(sheet.button().isEnabled());
    EXPECT_FALSE(m_below->isEnabled());
    EXPECT_EQ(m_window->focusWidget(), &sheet.button());
    sheet.end();
    EXPECT_TRUE(m_below->isEnabled());
    EXPECT_FALSE(m_never->isEnabled());
}

TEST_F(WindowSheetTest, isDestroyedWithItsWindow)
{
    auto panel = std::make_unique<QPushButton>();
    QPushButton &button = *panel;
    const QPointer<WindowSheet> sheet = new WindowSheet(*m_window, std::move(panel));
    sheet->begin(button);
    m_window.reset();
    EXPECT_TRUE(sheet.isNull());
}

} // namespace
} // namespace tessaly
