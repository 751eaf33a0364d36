#include "platform/linux/files/LoadedPreviewPanels.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/preview/PanelItems.hpp"

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tessaly {
namespace {

/// The panel of a module.
class LoadedPreviewPanelsTest : public testing::Test {
protected:
    LoadedPreviewPanelsTest()
    {
        writeFile(m_folder.path("a.txt"), "text");
        m_items.paths.push_back(m_folder.path("a.txt"));
    }

    [[nodiscard]] static int visibleWindowCount()
    {
        int count = 0;
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            count += window->isVisible() ? 1 : 0;
        }
        return count;
    }

    /// Whether a widget of this class can be seen. The module has classes of its own.
    [[nodiscard]] static bool isVisible(const char *className)
    {
        const QWidgetList widgets = QApplication::allWidgets();
        return std::any_of(widgets.begin(), widgets.end(), [&](const QWidget *widget) {
            return widget->inherits(className) && widget->isVisible();
        });
    }

    TemporaryFolder m_folder;
    PanelItems m_items;
    FakeSettingsStore m_settings;
};

TEST_F(LoadedPreviewPanelsTest, showsWhatTheModuleDraws)
{
    LoadedPreviewPanels panels(TESSALY_PREVIEW_MODULE_PATH, m_settings);
    EXPECT_FALSE(panels.sharedPreviewPanelExists());
    panels.setController(&m_items);
    EXPECT_EQ(panels.controller(), &m_items);
    EXPECT_FALSE(panels.sharedPreviewPanelExists());

    PreviewPanel &panel = panels.sharedPreviewPanel();
    EXPECT_TRUE(panels.sharedPreviewPanelExists());
    EXPECT_EQ(&panels.sharedPreviewPanel(), &panel);
    panel.makeKeyAndOrderFront();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(visibleWindowCount(), 1);
    EXPECT_EQ(panel.dataSource(), &m_items) << "the controller has taken control";

    panels.setController(nullptr);
    EXPECT_EQ(panels.controller(), nullptr);
    EXPECT_EQ(panel.dataSource(), nullptr) << "its control has ended";
    panel.orderOut();
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(LoadedPreviewPanelsTest, theModuleFindsTheProgramThatDecodesImagesBesideIt)
{
    const std::string path = m_folder.path("a.png");
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(QString::fromStdString(path)));
    m_items.paths = {path};
    LoadedPreviewPanels panels(TESSALY_PREVIEW_MODULE_PATH, m_settings);
    panels.setController(&m_items);
    panels.sharedPreviewPanel().makeKeyAndOrderFront();
    while (!isVisible("tessaly::ImageView") && !isVisible("tessaly::CardView")) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_TRUE(isVisible("tessaly::ImageView"));
    panels.setController(nullptr);
}

TEST_F(LoadedPreviewPanelsTest, destroysThePanel)
{
    {
        LoadedPreviewPanels panels(TESSALY_PREVIEW_MODULE_PATH, m_settings);
        panels.setController(&m_items);
        panels.sharedPreviewPanel().makeKeyAndOrderFront();
        EXPECT_EQ(visibleWindowCount(), 1);
        panels.setController(nullptr);
    }
    EXPECT_EQ(visibleWindowCount(), 0);
}

TEST_F(LoadedPreviewPanelsTest, withoutItsModuleThereIsAPanelThatNeverComesUp)
{
    const std::string noModule = m_folder.path("a.txt");
    const std::string otherLibrary = "libm.so.6";
    for (const std::string &path : {m_folder.path("missing.so"), noModule, otherLibrary}) {
        const LoggedWarnings log;
        LoadedPreviewPanels panels(path, m_settings);
        panels.setController(&m_items);
        EXPECT_EQ(log.lines().size(), 0U);
        PreviewPanel &panel = panels.sharedPreviewPanel();
        ASSERT_EQ(log.lines().size(), 1U) << path;
        EXPECT_TRUE(log.lines()[0].starts_with("tessaly.preview: There are no previews: "));

        panel.setDataSource(&m_items);
        panel.setDelegate(&m_items);
        panel.makeKeyAndOrderFront();
        panel.setCurrentPreviewItemIndex(1);
        panel.reloadData();
        EXPECT_FALSE(panel.isVisible());
        EXPECT_EQ(panel.dataSource(), &m_items);
        EXPECT_EQ(panel.delegate(), &m_items);
        EXPECT_EQ(panel.currentPreviewItemIndex(), 1U);
        EXPECT_EQ(panels.controller(), &m_items);
        EXPECT_EQ(log.lines().size(), 1U) << "it is told once";
    }
}

TEST_F(LoadedPreviewPanelsTest, theModuleLiesWhereTheProgramExpectsIt)
{
    const std::string path = LoadedPreviewPanels::modulePathOfProgram();
    EXPECT_TRUE(path.starts_with(QApplication::applicationDirPath().toStdString() + "/"));
    EXPECT_TRUE(path.ends_with("/tessaly/modules/preview.so"));
}

} // namespace
} // namespace tessaly
