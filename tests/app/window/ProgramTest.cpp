// The program itself, as it starts and ends.

#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/app/window/ProgramFixture.hpp"
#include "tests/platform/linux/SilentBus.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <string>

namespace tessaly {
namespace {

using ProgramTest = ProgramFixture;

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

TEST_F(ProgramTest, saysOnceThatItsSettingsCannotBeStored)
{
    m_folder.file("config", 1); // where the folder should be
    const auto program = start();
    ASSERT_TRUE(waitForLog(*program, "content painted")) << program->complaints();
    program->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*program), 0) << program->complaints();
    const std::string log = program->complaints();
    const std::size_t line = log.find("settings: cannot make the folder");
    ASSERT_NE(line, std::string::npos) << log;
    EXPECT_EQ(log.find("settings: cannot make the folder", line + 1), std::string::npos) << log;
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
