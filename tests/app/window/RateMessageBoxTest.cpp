#include "app/window/RateMessageBox.hpp"

#include "app/controls/alerts/AlertPanel.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class RateMessageBoxTest : public testing::Test {
protected:
    RateMessageBoxTest() { m_window->show(); }

    /// Shows the box, does that with it, and returns the answer.
    int ask(const std::function<void(QDialog &)> &act)
    {
        QMetaObject::invokeMethod(
            &m_context,
            [&act] {
                auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                act(*box);
            },
            Qt::QueuedConnection);
        RateMessageBox alert(*m_window);
        return alert.runModal({u"Message"_s, u"Information"_s, {u"Yes"_s, u"Not now"_s}});
    }

    static const AlertPanel &panelOf(const QDialog &box) { return *box.findChild<AlertPanel *>(); }

    static KORVENButton *button(const QDialog &box, const QString &title)
    {
        for (KORVENButton *button : panelOf(box).buttons()) {
            if (button->text().remove(u'&') == title) {
                return button;
            }
        }
        return nullptr;
    }

    static void press(const QDialog &box, const QString &title)
    {
        ASSERT_NE(button(box, title), nullptr);
        QTest::mouseClick(button(box, title), Qt::LeftButton);
    }

    QObject m_context;
    std::unique_ptr<QWidget> m_window = std::make_unique<QWidget>();
};

TEST_F(RateMessageBoxTest, quittingTheProgramIsNoAnswer)
{
    const auto quit = [](QDialog & /*box*/) {
        QEvent event(QEvent::Quit);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &event);
    };
    EXPECT_EQ(ask(quit), RateMessageBox::noAnswer);
}

TEST_F(RateMessageBoxTest, isInformationForTheWholeProgram)
{
    ask([this](QDialog &box) {
        EXPECT_EQ(box.windowModality(), Qt::ApplicationModal);
        EXPECT_FALSE(box.windowFlags().testFlag(Qt::Sheet));
        EXPECT_EQ(box.parentWidget(), m_window.get());
        EXPECT_EQ(box.windowTitle(), u"Message"_s);
        EXPECT_EQ(panelOf(box).text(), u"Message"_s);
        EXPECT_EQ(panelOf(box).informativeText(), u"Information"_s);
        EXPECT_EQ(panelOf(box).buttons().size(), 2);
        press(box, u"Yes"_s);
    });
}

TEST_F(RateMessageBoxTest, looksLikeASheetOfTheWindow)
{
    ask([](QDialog &box) {
        EXPECT_TRUE(box.windowFlags().testFlag(Qt::FramelessWindowHint));
        const QImage image = box.grab().toImage();
        EXPECT_EQ(image.pixelColor(4, 4), theme::sheet);
        EXPECT_EQ(image.pixelColor(0, 4), theme::sheetEdge);
        press(box, u"Yes"_s);
    });
}

TEST_F(RateMessageBoxTest, hasItsButtonsInTheirOrder)
{
    ask([](QDialog &box) {
        const KORVENButton *yes = button(box, u"Yes"_s);
        const KORVENButton *notNow = button(box, u"Not now"_s);
        EXPECT_LT(yes->x(), notNow->x());
        EXPECT_EQ(panelOf(box).buttons(),
                  (QList<KORVENButton *>{button(box, u"Yes"_s), button(box, u"Not now"_s)}));
        press(box, u"Yes"_s);
    });
}

TEST_F(RateMessageBoxTest, answersWithTheNumberOfTheButton)
{
    EXPECT_EQ(ask([](QDialog &box) { press(box, u"Yes"_s); }), 1000);
    EXPECT_EQ(ask([](QDialog &box) { press(box, u"Not now"_s); }), 1001);
}

TEST_F(RateMessageBoxTest, returnPressesTheFirstAndEscapeTheLast)
{
    EXPECT_EQ(ask([](QDialog &box) { QTest::keyClick(&box, Qt::Key_Return); }), 1000);
    EXPECT_EQ(ask([](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); }), 1001);
    EXPECT_EQ(ask([](QDialog &box) { box.close(); }), 1001);
}

TEST_F(RateMessageBoxTest, isGoneAfterTheAnswer)
{
    ask([](QDialog &box) { press(box, u"Not now"_s); });
    EXPECT_EQ(m_window->findChild<QDialog *>(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(RateMessageBoxTest, hasNoAnswerWhenTheWindowIsDestroyed)
{
    EXPECT_EQ(ask([this](QDialog & /*box*/) { m_window.reset(); }), 0);
}

} // namespace
} // namespace tessaly
