#include "app/controls/MessageAlert.hpp"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

MessageAlert *beginAlert(QWidget &window, const MessageAlert::Ended &ended = {})
{
    return MessageAlert::begin(window, u"Message"_s, u"More\nof it"_s, ended);
}

TEST(MessageAlert, isASheetOnItsWindowWithOneButton)
{
    QWidget window;
    window.show();
    const auto *alert = beginAlert(window);
    EXPECT_TRUE(alert->isVisible());
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_FALSE(alert->iconPixmap().isNull());
    EXPECT_EQ(alert->text(), u"Message"_s);
    EXPECT_EQ(alert->informativeText(), u"More\nof it"_s);
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons()[0]->text(), u"ok"_s);
}

TEST(MessageAlert, tellsWhenItHasEndedAndGoes)
{
    QWidget window;
    window.show();
    for (const bool byKey : {false, true}) {
        int endCount = 0;
        beginAlert(window, [&](int code) {
            EXPECT_EQ(code, MessageAlert::firstButtonReturn);
            ++endCount;
        });
        EXPECT_EQ(endCount, 0);
        auto *alert = window.findChild<QMessageBox *>();
        ASSERT_NE(alert, nullptr);
        if (byKey) {
            QTest::keyClick(alert, Qt::Key_Escape);
        } else {
            QTest::mouseClick(alert->buttons()[0], Qt::LeftButton);
        }
        EXPECT_EQ(endCount, 1);
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QMessageBox *>() == nullptr; }));
    }
}

TEST(MessageAlert, mayEndWithoutAnybodyToTell)
{
    QWidget window;
    window.show();
    beginAlert(window);
    QTest::keyClick(window.findChild<QMessageBox *>(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QMessageBox *>() == nullptr; }));
}

} // namespace
} // namespace tessaly
