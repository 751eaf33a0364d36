#include "app/window/ShutdownWatchdog.hpp"

#include "tests/platform/linux/EndingProgram.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(ShutdownWatchdog, endsAProgramThatDoesNotEndByItself)
{
    EndingProgram program("hang-at-end", "1");
    EXPECT_EQ(program.reportedLine(), "ending");
    EXPECT_EQ(program.result(), 3);
}

TEST(ShutdownWatchdog, leavesAProgramAloneThatEnds)
{
    EndingProgram program("end-while-watched", "3600000");
    EXPECT_EQ(program.result(), 5);
}

} // namespace
} // namespace tessaly
