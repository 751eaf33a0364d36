#include "platform/linux/process/TerminationSignals.hpp"

#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/EndingProgram.hpp"

#include <gtest/gtest.h>

#include <csignal>

namespace tessaly {
namespace {

TEST(TerminationSignals, endTheProgramInOrder)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const TemporaryFolder folder;
        EndingProgram program("run", folder.path());
        EXPECT_EQ(program.reportedLine(), "ready");
        program.sendSignal(number);
        EXPECT_EQ(program.result(), 0) << number;
        EXPECT_EQ(LinuxSettingsStore(folder.path("settings.plist")).integer("kept"), 1) << number;
    }
}

TEST(TerminationSignals, endItAtOnceTheSecondTime)
{
    EndingProgram program("slow");
    EXPECT_EQ(program.reportedLine(), "ready");
    program.sendSignal(SIGTERM);
    EXPECT_EQ(program.reportedLine(), "ending");
    program.sendSignal(SIGTERM);
    EXPECT_EQ(program.result(), -SIGTERM);
}

TEST(TerminationSignals, stayIgnoredWhereTheyWere)
{
    EXPECT_EQ(EndingProgram("hangup").result(), 0);
}

} // namespace
} // namespace tessaly
