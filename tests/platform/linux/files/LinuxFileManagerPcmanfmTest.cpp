// The file manager with one that people use.

#include "platform/linux/files/LinuxFileManager.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeDateTexts.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/StartedProgram.hpp"
#include "tests/platform/linux/VirtualDisplay.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tessaly {

namespace {

/// A bus, a display that nobody sees, and pcmanfm-qt.
class PcmanfmTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char *program : {"dbus-daemon", "Xvfb", "pcmanfm-qt", "xdotool"}) {
            if (!StartedProgram::isInstalled(program)) {
                GTEST_SKIP() << "needs " << program;
            }
        }
        m_home.folder("run");
        m_display = std::make_unique<VirtualDisplay>();
        m_bus = std::make_unique<PrivateBus>();
        m_program = std::make_unique<StartedProgram>(
            std::vector<std::string>{"env", "--unset=WAYLAND_DISPLAY", "pcmanfm-qt",
                                     "--daemon-mode"},
            std::vector<std::string>{"DISPLAY=" + m_display->name(), "QT_QPA_PLATFORM=xcb",
                                     "HOME=" + m_home.path(),
                                     "XDG_RUNTIME_DIR=" + m_home.path("run"),
                                     "XDG_CONFIG_HOME=" + m_home.path("config")});
        ASSERT_TRUE(PrivateBus::waitForOwner("org.freedesktop.FileManager1", *m_program))
            << m_program->complaints();
    }

    /// Waits for a window of that title; false when something else is opened instead, or the
    /// program has ended.
    [[nodiscard]] bool waitForWindow(const std::string &title)
    {
        while (!m_hasOpened && m_program->isRunning()) {
            QCoreApplication::processEvents();
            const StartedProgram search(
                {"sh", "-c",
                 "xdotool search --onlyvisible --name '^" + title + "$' >&3; echo none >&3"},
                {"DISPLAY=" + m_display->name()});
            if (search.reportedLine() != "none") {
                return true;
            }
        }
        return false;
    }

    TemporaryFolder m_home;
    TemporaryFolder m_folder;
    FakeDateTexts m_dates;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<StartedProgram> m_program;
    bool m_hasOpened = false;
    LinuxFileManager m_fileManager{m_dates, [this](const std::string &) {
                                       m_hasOpened = true;
                                       return true;
                                   }};
};

TEST_F(PcmanfmTest, showsTheFolderOfAnItem)
{
    m_folder.folder("demo folder");
    m_folder.file("demo folder/\xFF% \n");
    m_fileManager.reveal(m_folder.path("demo folder/\xFF% \n"));
    EXPECT_TRUE(waitForWindow("demo folder")) << m_program->complaints();
}

TEST_F(PcmanfmTest, showsTheRootFolder)
{
    m_fileManager.reveal("/");
    EXPECT_TRUE(waitForWindow("/")) << m_program->complaints();
}

TEST_F(PcmanfmTest, showsTheInformationAboutAnItem)
{
    m_folder.file("demo");
    m_fileManager.showInformation(m_folder.path("demo"));
    EXPECT_TRUE(waitForWindow("File Properties")) << m_program->complaints();
}

} // namespace

} // namespace tessaly
