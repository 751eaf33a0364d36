#include "tests/engine/ChildProcess.hpp"

#include "engine/scan/FileDescriptor.hpp"

#include <gtest/gtest.h>

#include <array>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {
namespace {

// The inner child holds an end of a pipe until it is dead, so that the pipe tells of its death.
TEST(KillableChild, doesNotOutliveTheProcessThatMadeIt)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const scan::FileDescriptor reading(ends[0]);
    scan::FileDescriptor writing(ends[1]);
    KillableChild outer([&] {
        const KillableChild inner([&] {
            (void)!write(writing.number(), "x", 1);
            alarm(0); // so that it is its maker's end that ends it
            pause();
        });
        pause();
    });
    writing.close();
    char letter = 0;
    ASSERT_EQ(read(reading.number(), &letter, 1), 1);
    outer.kill();
    EXPECT_TRUE(outer.wasKilled());
    EXPECT_EQ(read(reading.number(), &letter, 1), 0);
}

} // namespace
} // namespace tessaly
