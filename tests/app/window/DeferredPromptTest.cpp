#include "app/window/DeferredPrompt.hpp"

#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/buttons/KORVENButton.hpp"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class DeferredPromptTest : public testing::Test {
protected:
    void wait()
    {
        m_moment.emplace(*m_window, [this] { ++m_count; });
    }
    /// Lets everything happen that is under way.
    static void settle()
    {
        for (int i = 0; i < 5; ++i) {
            QApplication::processEvents();
        }
    }
    [[nodiscard]] bool hasCome()
    {
        return QTest::qWaitFor([this] { return m_count == 1; });
    }

    std::unique_ptr<QWidget> m_window = std::make_unique<QWidget>();
    std::optional<DeferredPrompt> m_moment;
    int m_count = 0;
};

TEST_F(DeferredPromptTest, comesByItselfAndOnce)
{
    m_window->show();
    wait();
    EXPECT_EQ(m_count, 0);
    EXPECT_TRUE(hasCome());
    m_window->hide();
    m_window->show();
    settle();
    EXPECT_EQ(m_count, 1);
}

TEST_F(DeferredPromptTest, waitsForTheWindow)
{
    wait();
    settle();
    EXPECT_EQ(m_count, 0);
    m_window->show();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, waitsUntilAnAlertIsClosed)
{
    m_window->show();
    const auto *alert = MessageAlert::begin(*m_window, u"Wait"_s, u"a moment"_s);
    wait();
    settle();
    EXPECT_EQ(m_count, 0);
    alert->buttons().first()->click();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, waitsUntilTheLastOfSeveralIsClosed)
{
    m_window->show();
    auto first = std::make_unique<QDialog>(m_window.get());
    first->open();
    wait();
    settle();
    QDialog second(first.get());
    second.open();
    settle();
    second.hide();
    settle();
    EXPECT_EQ(m_count, 0);
    first->hide();
    second.open();
    settle();
    EXPECT_EQ(m_count, 0);
    second.hide();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, waitsUntilADialogIsDestroyed)
{
    m_window->show();
    auto dialog = std::make_unique<QDialog>(m_window.get());
    dialog->open();
    wait();
    settle();
    EXPECT_EQ(m_count, 0);
    dialog.reset();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, waitsUntilAMenuIsClosed)
{
    m_window->show();
    QMenu menu(m_window.get());
    menu.addAction(u"Item"_s);
    menu.popup({10, 10});
    wait();
    settle();
    EXPECT_EQ(m_count, 0);
    menu.close();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, waitsForAnAlertThatCameBeforeTheWindow)
{
    wait();
    settle();
    m_window->show();
    QDialog dialog(m_window.get());
    dialog.open();
    settle();
    EXPECT_EQ(m_count, 0);
    dialog.close();
    EXPECT_TRUE(hasCome());
}

TEST_F(DeferredPromptTest, neverComesWithoutAWindow)
{
    wait();
    m_window.reset();
    settle();
    EXPECT_EQ(m_count, 0);
}

} // namespace
} // namespace tessaly
