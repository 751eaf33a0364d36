#include "platform/linux/process/CrashLog.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/history/records/OwnHistoryStore.hpp"
#include "tests/platform/linux/EndingProgram.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace tessaly {
namespace {

TEST(CrashLog, saysInALineWhichSignalEndedTheProgram)
{
    const struct {
        const char *way;
        int argument;
        int number;
        const char *line;
    } cases[] = {
        {"segv", 0, SIGSEGV, "sample 1.2 died: SIGSEGV (invalid memory reference)\n"},
        {"bus", 0, SIGBUS, "sample 1.2 died: SIGBUS (memory that cannot be reached)\n"},
        {"abort", 0, SIGABRT, "sample 1.2 died: SIGABRT (abort)\n"},
        {"raise", SIGSEGV, SIGSEGV, "sample 1.2 died: SIGSEGV (invalid memory reference)\n"},
        {"raise", SIGILL, SIGILL, "sample 1.2 died: SIGILL (invalid instruction)\n"},
        {"raise", SIGFPE, SIGFPE, "sample 1.2 died: SIGFPE (arithmetic error)\n"},
    };
    for (const auto &test : cases) {
        EndingProgram program(test.way, std::to_string(test.argument));
        EXPECT_EQ(program.result(), -test.number) << test.line;
        EXPECT_EQ(program.complaints(), test.line);
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they have stacks of their own
TEST(CrashLog, hasAStackWhenThatOfTheProgramIsFull)
{
    EndingProgram program("overflow", "a");
    EXPECT_EQ(program.result(), -SIGSEGV);
    EXPECT_EQ(program.complaints(), "sample 1.2 died: SIGSEGV (invalid memory reference)\n");
}
#endif

TEST(CrashLog, saysInALineWhichExceptionWasNotCaught)
{
    EndingProgram program("throw", "no way\n\033[1m out");
    EXPECT_EQ(program.result(), -SIGABRT);
    EXPECT_EQ(program.complaints(),
              "sample 1.2 died: uncaught exception: std::runtime_error: no way??[1m out\n");

    EndingProgram other("throw-number");
    EXPECT_EQ(other.result(), -SIGABRT);
    EXPECT_EQ(other.complaints(), "sample 1.2 died: uncaught exception: int\n");
}

TEST(CrashLog, saysWhichExceptionEscapedFromAnEvent)
{
    EndingProgram program("throw-in-event");
    EXPECT_EQ(program.result(), -SIGABRT);
    EXPECT_EQ(program.complaints(),
              "sample 1.2 died: uncaught exception: std::runtime_error: in an event\n");
}

TEST(CrashLog, leavesWhatWasWrittenBeforeAsItWas)
{
    const TemporaryFolder folder;
    EndingProgram program("files", folder.path());
    EXPECT_EQ(program.result(), -SIGSEGV);

    const LinuxSettingsStore settings(folder.path("settings.plist"));
    EXPECT_EQ(settings.integer("flushed"), 1);
    EXPECT_FALSE(settings.hasKey("not flushed"));
    FakeServices services(folder.path());
    KORVENAppDelegate delegate(services.all());
    const HistoryRecords records = OwnHistoryStore::open(delegate)->allItems();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records.front()->scanKey(), "saved");
}

} // namespace
} // namespace tessaly
