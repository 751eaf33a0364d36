#include "platform/linux/process/InstanceLock.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {
namespace {

using State = InstanceLock::State;

TEST(InstanceLock, isOnesAtATime)
{
    const TemporaryFolder folder;
    auto first = std::make_unique<InstanceLock>(folder.path("lock"));
    InstanceLock second(folder.path("lock"));
    EXPECT_EQ(first->take(), State::taken);
    EXPECT_EQ(first->take(), State::taken);
    EXPECT_EQ(second.take(), State::refused);
    EXPECT_EQ(second.take(), State::refused);
    first.reset();
    EXPECT_EQ(second.take(), State::taken);
    EXPECT_EQ(modeOf(folder.path("lock")), 0600U);
}

TEST(InstanceLock, endsWithItsProcess)
{
    const TemporaryFolder folder;
    std::array<int, 2> progress{};
    ASSERT_EQ(pipe2(progress.data(), O_CLOEXEC), 0);
    KillableChild process([&] {
        InstanceLock lock(folder.path("lock"));
        const bool isTaken = lock.take() == State::taken;
        (void)!write(progress[1], isTaken ? "y" : "n", 1);
        for (;;) {
            pause();
        }
    });
    char answer = 0;
    ASSERT_EQ(read(progress[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    InstanceLock lock(folder.path("lock"));
    EXPECT_EQ(lock.take(), State::refused);
    process.kill();
    EXPECT_TRUE(process.wasKilled());
    EXPECT_EQ(lock.take(), State::taken);
    close(progress[0]);
    close(progress[1]);
}

TEST(InstanceLock, isImpossibleWithoutItsFolder)
{
    const TemporaryFolder folder;
    EXPECT_EQ(InstanceLock(folder.path("missing/lock")).take(), State::impossible);
    folder.folder("lock");
    EXPECT_EQ(InstanceLock(folder.path("lock")).take(), State::impossible);
}

} // namespace
} // namespace tessaly
