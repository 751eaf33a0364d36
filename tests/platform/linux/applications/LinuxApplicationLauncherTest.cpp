#include "platform/linux/applications/LinuxApplicationLauncher.hpp"

#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/applications/MadeDesktop.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Words = std::vector<std::string>;

class LinuxApplicationLauncherTest : public testing::Test {
protected:
    /// The words that are started; none when the log says that nothing is.
    Words started(const std::string &name)
    {
        m_started.clear();
        const LoggedWarnings log;
        m_launcher.launchApplication(name);
        waitUntil([&] { return !m_started.empty() || !log.lines().empty(); });
        m_log = log.lines();
        EXPECT_TRUE(m_started.empty() || m_log.empty());
        return m_started;
    }

    Words m_started;
    std::string m_folder;
    Words m_log;
    bool m_canStart = true;
    LinuxApplicationLauncher m_launcher{
        [this](const std::vector<std::string> &words, const std::string &folder) {
            if (m_canStart) {
                m_started = words;
                m_folder = folder;
            }
            return m_canStart;
        }};
};

TEST_F(LinuxApplicationLauncherTest, startsTheDefaultFileManager)
{
    const MadeDesktop desktop("XFCE");
    desktop.install("other", "MimeType=inode/directory;\nCategories=FileManager;\n");
    desktop.install("chosen", "Path=/somewhere\n");
    desktop.write("config/xfce-mimeapps.list",
                  "[Default Applications]\ninode/directory=chosen.desktop\n");
    EXPECT_EQ(started("Finder.app"), Words{"chosen"});
    EXPECT_EQ(m_folder, "/somewhere");
}

TEST_F(LinuxApplicationLauncherTest, startsAnyFileManagerWhereNoneIsChosen)
{
    const MadeDesktop desktop;
    desktop.install("files", "Categories=System;FileManager;\n");
    EXPECT_EQ(started("Finder.app"), Words{"files"});
}

TEST_F(LinuxApplicationLauncherTest, startsTheSettingsOfTheDesktop)
{
    const std::vector<std::pair<std::string, std::string>> programs{
        {"GNOME", "gnome-control-center"},
        {"ubuntu:GNOME", "org.gnome.Settings"},
        {"KDE", "systemsettings"},
        {"XFCE", "xfce-settings-manager"},
        {"MATE", "matecc"},
        {"X-Cinnamon", "cinnamon-settings"},
        {"LXQt", "lxqt-config"},
        {"Budgie:GNOME", "budgie-control-center"},
        {"Unity:Unity7", "unity-control-center"}};
    for (const auto &[name, program] : programs) {
        const MadeDesktop desktop(name);
        for (const auto &other : programs) {
            if (other.second != "org.gnome.Settings" || program == other.second) {
                desktop.install(other.second, "Categories=Settings;\n");
            }
        }
        EXPECT_EQ(started("System Preferences.app"), Words{program}) << name;
    }
}

TEST_F(LinuxApplicationLauncherTest, startsSettingsOfOtherDesktopsThatShowHere)
{
    const MadeDesktop desktop("openbox");
    desktop.install("gnome-control-center", "Categories=Settings;\nOnlyShowIn=GNOME;\n");
    EXPECT_EQ(started("System Preferences.app"), Words());

    desktop.install("a-panel", "Categories=Settings;HardwareSettings;\n");
    desktop.install("settings", "Categories=Qt;Settings;\n");
    EXPECT_EQ(started("System Preferences.app"), Words{"settings"});

    desktop.install("xfce-settings-manager", "Categories=Settings;DesktopSettings;\n");
    EXPECT_EQ(started("System Preferences.app"), Words{"xfce-settings-manager"});
}

TEST_F(LinuxApplicationLauncherTest, saysWhetherAProgramIsInstalled)
{
    const MadeDesktop desktop("GNOME");
    const auto isInstalled = [this](const std::string &name) {
        std::optional<bool> answer;
        m_launcher.askWhetherInstalled(name, [&](bool found) { answer = found; });
        EXPECT_FALSE(answer) << "it never answers at once";
        waitUntil([&] { return answer.has_value(); });
        return *answer;
    };
    EXPECT_FALSE(isInstalled("Disk Utility.app"));
    desktop.install("gparted");
    EXPECT_TRUE(isInstalled("Disk Utility.app"));
    EXPECT_FALSE(isInstalled("Finder.app"));
    EXPECT_FALSE(isInstalled("gparted"));
    EXPECT_EQ(m_started, Words());
}

TEST_F(LinuxApplicationLauncherTest, startsTheDiskUtility)
{
    for (const char *name : {"GNOME", "KDE"}) {
        const MadeDesktop desktop(name);
        EXPECT_EQ(started("Disk Utility.app"), Words());
        for (const char *program :
             {"gparted", "gnome-disks", "org.gnome.DiskUtility", "org.kde.partitionmanager"}) {
            desktop.install(program);
            if (std::string(name) != "KDE" && std::string(program).starts_with("org.kde")) {
                EXPECT_EQ(started("Disk Utility.app"), Words{"org.gnome.DiskUtility"});
            } else {
                EXPECT_EQ(started("Disk Utility.app"), Words{program});
            }
        }
    }
}

TEST_F(LinuxApplicationLauncherTest, findsWhatIsInstalledLater)
{
    const MadeDesktop desktop;
    EXPECT_EQ(started("Disk Utility.app"), Words());
    EXPECT_EQ(m_log, Words{"tessaly.launcher: Disk Utility.app not started: "
                           "no such program is installed"});
    desktop.install("gparted");
    EXPECT_EQ(started("Disk Utility.app"), Words{"gparted"});
}

TEST_F(LinuxApplicationLauncherTest, startsNothingForUnknownNames)
{
    const MadeDesktop desktop;
    desktop.install("Other");
    for (const char *name : {"", "Finder", "finder.app", "Other.app", "/usr/bin/Other"}) {
        EXPECT_EQ(started(name), Words()) << name;
        EXPECT_EQ(m_log.size(), 1U) << name;
    }
}

TEST_F(LinuxApplicationLauncherTest, logsWhatDoesNotStart)
{
    const MadeDesktop desktop;
    desktop.install("gparted");
    m_canStart = false;
    EXPECT_EQ(started("Disk Utility.app"), Words());
    EXPECT_EQ(m_log, Words{"tessaly.launcher: Disk Utility.app not started: gparted.desktop"});
}

TEST_F(LinuxApplicationLauncherTest, startsTheProgramWithItsWordsInItsFolder)
{
    const MadeDesktop desktop;
    desktop.addProgram("run", "for word; do echo \"$word\"; done > ../words.tmp\n"
                              "pwd -P >> ../words.tmp\n"
                              "/bin/mv ../words.tmp ../words");
    desktop.write("work/here", "");
    desktop.write("usr/applications/gparted.desktop",
                  "[Desktop Entry]\nType=Application\nName=A \xC3\xA9\nPath=" +
                      desktop.path("work") + "\nExec=run \"a  $b\" %c %U ''\n");
    LinuxApplicationLauncher launcher;
    EXPECT_EQ(started("Disk Utility.app"), Words()); // what a shell would take apart
    desktop.write("usr/applications/gparted.desktop",
                  "[Desktop Entry]\nType=Application\nName=A \xC3\xA9\nPath=" +
                      desktop.path("work") + "\nExec=run \"a  \\\\$b\" %c %U \"\"\n");
    launcher.launchApplication("Disk Utility.app");
    waitUntil([&] { return std::filesystem::exists(desktop.path("words")); });
    EXPECT_EQ(textOfFile(desktop.path("words")),
              "a  $b\nA \xC3\xA9\n\n" + std::filesystem::canonical(desktop.path("work")).native() +
                  '\n');
}

TEST_F(LinuxApplicationLauncherTest, mayBeDestroyedAtAnyMoment)
{
    const MadeDesktop desktop;
    desktop.install("gparted");
    for (int round = 0; round < 20; ++round) {
        LinuxApplicationLauncher launcher(
            [](const auto & /*words*/, const auto & /*folder*/) { return true; });
        launcher.launchApplication("Disk Utility.app");
        for (int events = 0; events < round; ++events) {
            QCoreApplication::processEvents();
        }
    }
}

} // namespace
} // namespace tessaly
