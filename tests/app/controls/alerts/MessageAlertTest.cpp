#include "app/controls/alerts/MessageAlert.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/IconView.hpp"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// On a window with a button in its content, which has the keyboard.
class MessageAlertTest : public testing::Test {
protected:
    MessageAlertTest()
    {
        auto *content = new QWidget;
        m_below = new QPushButton(content);
        m_window.setContentWidget(content);
        m_window.show();
        m_window.activateWindow();
        m_below->setFocus();
    }
    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window)); }

    MessageAlert *begin(const MessageAlert::Ended &ended = {})
    {
        return MessageAlert::begin(m_window, u"Message"_s, u"More\nof it"_s, ended);
    }
    [[nodiscard]] MessageAlert *alert() const { return m_window.findChild<MessageAlert *>(); }
    [[nodiscard]] bool isGone() const
    {
        return QTest::qWaitFor([this] { return alert() == nullptr; });
    }

    KORVENWindow m_window{KORVENWindow::Surface::opaque};
    QPushButton *m_below;
};

TEST_F(MessageAlertTest, isASheetOnItsWindowWithOneButton)
{
    const auto *alert = begin();
    EXPECT_TRUE(alert->isVisible());
    EXPECT_EQ(alert->parentWidget(), m_window.contentWidget());
    EXPECT_EQ(alert->text(), u"Message"_s);
    EXPECT_EQ(alert->informativeText(), u"More\nof it"_s);
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons()[0]->text(), u"ok"_s);
    EXPECT_EQ(QApplication::focusWidget(), alert->buttons()[0]);
    EXPECT_FALSE(m_below->isEnabled());
    const auto *icon = alert->findChild<IconView *>();
    ASSERT_NE(icon, nullptr);
    EXPECT_FALSE(icon->image().isNull());
}

TEST_F(MessageAlertTest, showsItsTextsAsTheyAreAndWhole)
{
    const QString text =
        u"A <b>line</b> as long as a line of an alert may be before it wraps\nand"_s;
    const auto *alert = MessageAlert::begin(m_window, u"Message"_s, text);
    const QList<QLabel *> labels = alert->findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_TRUE(labels[0]->font().bold());
    EXPECT_EQ(labels[1]->text(), text);
    for (const QLabel *label : labels) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    }
    EXPECT_EQ(labels[1]->heightForWidth(labels[1]->width()),
              2 * labels[1]->fontMetrics().lineSpacing())
        << "lines end where the text says so";
}

TEST_F(MessageAlertTest, reportsItsEndAndDeletesItself)
{
    const std::function<void()> waysToEnd[]{
        [this] { QTest::mouseClick(alert()->buttons()[0], Qt::LeftButton); },
        [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); },
        [this] { QTest::keyClick(alert(), Qt::Key_Enter); },
        [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); },
    };
    for (const auto &endIt : waysToEnd) {
        int endCount = 0;
        begin([&](int code) {
            EXPECT_EQ(code, MessageAlert::firstButtonReturn);
            ++endCount;
        });
        EXPECT_EQ(endCount, 0);
        endIt();
        EXPECT_EQ(endCount, 1);
        EXPECT_TRUE(m_below->isEnabled());
        EXPECT_EQ(QApplication::focusWidget(), m_below);
        EXPECT_TRUE(isGone());
    }
}

TEST_F(MessageAlertTest, reportsItsEndOnce)
{
    int endCount = 0;
    begin([&endCount](int /*code*/) { ++endCount; });
    KORVENButton *ok = alert()->buttons()[0];
    ok->click();
    ok->click();
    EXPECT_EQ(endCount, 1);
}

TEST_F(MessageAlertTest, mayEndWithoutACallback)
{
    begin();
    QTest::keyClick(alert(), Qt::Key_Escape);
    EXPECT_TRUE(isGone());
}

TEST_F(MessageAlertTest, isShownOnAnyWidgetThatIsAWindow)
{
    QWidget window;
    QPushButton below(&window);
    window.show();
    const auto *alert = MessageAlert::begin(window, u"Message"_s, u"More"_s);
    EXPECT_EQ(alert->parentWidget(), &window);
    EXPECT_FALSE(below.isEnabled());
}

} // namespace
} // namespace tessaly
