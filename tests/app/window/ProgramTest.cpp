// The program itself, as it starts and ends.

#include "platform/linux/LinuxSettingsStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/StartedProgram.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>

namespace tessaly {
namespace {

/// The program on a screen in memory with a home folder of its own, without a bus until a test
/// makes one.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_folder.folder("run");
        chmod(m_folder.path("run").c_str(), S_IRWXU);
    }

    void makeBus()
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    [[nodiscard]] std::unique_ptr<StartedProgram> start() const
    {
        return std::make_unique<StartedProgram>(
            std::vector<std::string>{TESSALY_PROGRAM},
            std::vector<std::string>{"QT_QPA_PLATFORM=offscreen", "HOME=" + m_folder.path(),
                                     "XDG_CONFIG_HOME=" + m_folder.path("config"),
                                     "XDG_DATA_HOME=" + m_folder.path("data"),
                                     "XDG_RUNTIME_DIR=" + m_folder.path("run"),
                                     "XDG_CURRENT_DESKTOP=", "QT_QPA_PLATFORMTHEME=",
                                     "QT_LOGGING_RULES=tessaly.instance.info=true"});
    }

    /// Waits until its log has this; false when it ends instead.
    [[nodiscard]] static bool waitForLog(StartedProgram &program, const std::string &text)
    {
        while (program.complaints().find(text) == std::string::npos) {
            if (!program.isRunning()) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    static int statusOf(StartedProgram &program)
    {
        const int status = program.waitForEnd();
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<PrivateBus> m_bus;
};

TEST_F(ProgramTest, endsInOrderWhenItIsAskedTo)
{
    makeBus();
    const auto program = start();
    ASSERT_TRUE(PrivateBus::waitForOwner("io.tessaly.Tessaly", *program));
    // It takes its name before it makes its window; it heeds the signal when that is done.
    program->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*program), 0) << program->complaints();
    const LinuxSettingsStore settings(m_folder.path("config/tessaly/settings.plist"));
    EXPECT_TRUE(settings.hasKey("windowPlacement"));
}

TEST_F(ProgramTest, runsOnce)
{
    makeBus();
    const auto first = start();
    ASSERT_TRUE(PrivateBus::waitForOwner("io.tessaly.Tessaly", *first));
    const auto second = start();
    EXPECT_EQ(statusOf(*second), 0) << second->complaints();
    EXPECT_TRUE(first->isRunning());
    first->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*first), 0) << first->complaints();
}

TEST_F(ProgramTest, runsOnceWithoutABusToo)
{
    const auto first = start();
    ASSERT_TRUE(waitForLog(*first, "this is the first instance")) << first->complaints();
    const auto second = start();
    ASSERT_TRUE(waitForLog(*second, "already running")) << second->complaints();
    second->sendSignal(SIGTERM); // closes the window that says so
    EXPECT_EQ(statusOf(*second), 1) << second->complaints();
    EXPECT_TRUE(first->isRunning());
}

TEST_F(ProgramTest, startsWithABusThatSaysNothing)
{
    const SilentBus bus(100);
    const auto program = start();
    ASSERT_TRUE(waitForLog(*program, "this is the first instance")) << program->complaints();
    program->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*program), 0) << program->complaints();
}

} // namespace
} // namespace tessaly
