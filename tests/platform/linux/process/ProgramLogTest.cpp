#include "platform/linux/process/ProgramLog.hpp"

#include "tests/platform/linux/EndingProgram.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(ProgramLog, showsWarningsAndWhatTheRowsWereAskedFor)
{
    EndingProgram program("log", "it went wrong");
    EXPECT_EQ(program.result(), 0);
    EXPECT_EQ(program.complaints(), "tessaly: sample: it went wrong\n"
                                    "tessaly: screens: name: a row\n"
                                    "tessaly: drives: name: a drive\n"
                                    "tessaly: of no category\n");
}

TEST(ProgramLog, showsMoreWhenAskedTo)
{
    EndingProgram program("log", "it went wrong", {"QT_LOGGING_RULES=tessaly.*=true"});
    EXPECT_EQ(program.result(), 0);
    EXPECT_EQ(program.complaints(), "tessaly: sample: it went wrong\n"
                                    "tessaly: sample: some information\n"
                                    "tessaly: sample: a detail\n"
                                    "tessaly: screens: name: a row\n"
                                    "tessaly: drives: name: a drive\n"
                                    "tessaly: of no category\n");
}

TEST(ProgramLog, makesALineOfAnyMessage)
{
    EXPECT_EQ(ProgramLog::lineOf("tessaly.settings", "a\nb\033[1m\u202e"),
              "tessaly: settings: a?b?[1m?");
    EXPECT_EQ(ProgramLog::lineOf("qt.qpa", "\u00e9"), "tessaly: qt.qpa: \xC3\xA9");
    EXPECT_EQ(ProgramLog::lineOf("default", "a"), "tessaly: a");
    EXPECT_EQ(ProgramLog::lineOf(nullptr, ""), "tessaly: ");
}

TEST(ProgramLog, doesNotEndTheProgramWhenItHasNoReader)
{
    EXPECT_EQ(EndingProgram("log-to-nobody").result(), 0);
}

} // namespace
} // namespace tessaly
