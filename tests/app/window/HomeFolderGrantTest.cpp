#include "app/window/HomeFolderGrant.hpp"

#include "tests/app/window/WindowTest.hpp"

#include <QAbstractButton>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

class HomeFolderGrantTest : public WindowTest {
protected:
    HomeFolderGrantTest() { openWindow(); }

    /// What the grant leads to.
    [[nodiscard]] std::optional<std::string> grantedUrl()
    {
        const auto grant = m_services.settings.data("homeFolder");
        return grant ? m_services.bookmarks.resolve(*grant) : std::nullopt;
    }
    void expectRestart() const
    {
        ASSERT_NE(alert(), nullptr);
        EXPECT_EQ(alert()->informativeText(),
                  u"Saving changes and exiting.\nPlease restart the app."_s);
        EXPECT_EQ(m_terminationCount, 0);
        QTest::mouseClick(alert()->buttons()[0], Qt::LeftButton);
        EXPECT_EQ(m_terminationCount, 1);
    }
};

TEST_F(HomeFolderGrantTest, keepsABookmarkOfTheChosenFolderAndEndsTheProgram)
{
    m_services.settings.clearLog();
    m_controller->customHomeFolder();
    ASSERT_EQ(m_services.folderChooser.asked().size(), 1U);
    EXPECT_EQ(m_services.folderChooser.asked()[0].window, &window());
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.initialFolder, m_home.path());
    EXPECT_EQ(m_services.folderChooser.asked()[0].request.confirmTitle, "Save");
    EXPECT_EQ(m_services.settings.log(), Names{});
    EXPECT_EQ(alert(), nullptr);

    m_services.folderChooser.answer("/home/other \xFF");

    EXPECT_EQ(grantedUrl(), "file:///home/other%20%FF");
    const Names log = m_services.settings.log();
    ASSERT_EQ(log.size(), 2U);
    EXPECT_TRUE(log[0].starts_with("setData homeFolder ")) << log[0];
    EXPECT_EQ(log[1], "flush");
    expectRestart();
}

TEST_F(HomeFolderGrantTest, cancellingChangesNothing)
{
    const auto before = grantedUrl();
    m_services.settings.clearLog();
    m_controller->customHomeFolder();
    m_services.folderChooser.answer(std::nullopt);
    EXPECT_EQ(grantedUrl(), before);
    EXPECT_EQ(m_services.settings.log(), Names{});
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(HomeFolderGrantTest, aBookmarkThatCannotBeMadeLeavesNone)
{
    m_services.bookmarks.setGone("file:///gone");
    m_controller->customHomeFolder();
    m_services.settings.clearLog();
    m_services.folderChooser.answer("/gone");
    EXPECT_FALSE(m_services.settings.hasKey("homeFolder"));
    EXPECT_EQ(m_services.settings.log(), (Names{"remove homeFolder", "flush"}));
    expectRestart();
}

TEST_F(HomeFolderGrantTest, removingTakesTheGrantAwayAndEndsTheProgram)
{
    ASSERT_TRUE(grantedUrl());
    m_services.settings.clearLog();
    m_controller->removeHomeFolder();
    EXPECT_FALSE(m_services.settings.hasKey("homeFolder"));
    EXPECT_EQ(m_services.settings.log(), (Names{"remove homeFolder", "flush"}));
    expectRestart();
}

TEST_F(HomeFolderGrantTest, isStoredBeforeAnybodyIsTold)
{
    Names log;
    HomeFolderGrant grant(window(), m_services.all(), [&] { log = m_services.settings.log(); });
    m_services.settings.clearLog();
    grant.removeHomeFolder();
    EXPECT_EQ(log, (Names{"remove homeFolder", "flush"}));
    m_services.settings.clearLog();
    grant.customHomeFolder();
    m_services.folderChooser.answer("/home/other");
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[1], "flush");
}

TEST_F(HomeFolderGrantTest, theSheetsButtonsDoTheSame)
{
    m_controller->showPreferenceSheet();
    const auto press = [this](const QString &name) {
        auto *button = m_controller->preferenceSheet()->findChild<QAbstractButton *>(name);
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    };
    press(u"customHomeFolderButton"_s);
    EXPECT_TRUE(m_services.folderChooser.isOpen());
    m_services.folderChooser.answer(std::nullopt);
    EXPECT_TRUE(m_controller->preferenceSheet()->isVisible());
    press(u"removeHomeFolderButton"_s);
    EXPECT_FALSE(m_services.settings.hasKey("homeFolder"));
    expectRestart();
}

} // namespace
} // namespace tessaly
