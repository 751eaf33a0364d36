#include "platform/linux/volumes/VolumeSpace.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdint>

#include <sys/statvfs.h>

namespace tessaly {

namespace {

struct statvfs status(fsblkcnt_t blocks, fsblkcnt_t available, unsigned long blockSize = 4096)
{
    struct statvfs status = {};
    status.f_frsize = blockSize;
    status.f_blocks = blocks;
    status.f_bfree = blocks;
    status.f_bavail = available;
    return status;
}

TEST(VolumeSpace, isCountedInBytesWithoutWhatIsReserved)
{
    EXPECT_EQ(spaceOf(status(100, 40)), (VolumeFigures{409600, 163840}));
    EXPECT_EQ(spaceOf(status(0, 0)), (VolumeFigures{0, 0}));
}

TEST(VolumeSpace, isNeverFreeBeyondTheTotal)
{
    EXPECT_EQ(spaceOf(status(100, 101)), (VolumeFigures{409600, 409600}));
    EXPECT_EQ(spaceOf(status(0, 5)), (VolumeFigures{0, 0}));
}

TEST(VolumeSpace, isNeverNegative)
{
    EXPECT_EQ(spaceOf(status(100, static_cast<fsblkcnt_t>(-3))), (VolumeFigures{409600, 0}));
}

TEST(VolumeSpace, endsAtTheGreatestNumber)
{
    EXPECT_EQ(spaceOf(status(UINT64_MAX / 2, 2)), (VolumeFigures{UINT64_MAX, 8192}));
}

TEST(VolumeSpace, isWhatTheSystemReports)
{
    const TemporaryFolder folder;
    struct statvfs answer = {};
    ASSERT_EQ(statvfs(folder.path().c_str(), &answer), 0);
    const auto space = spaceAt(folder.path());
    ASSERT_TRUE(space);
    EXPECT_EQ(space->total, answer.f_blocks * answer.f_frsize);
    EXPECT_LE(space->free, space->total);
    EXPECT_EQ(spaceAt(folder.path("missing")), std::nullopt);
    EXPECT_EQ(spaceAt("/proc"), (VolumeFigures{0, 0}));
}

} // namespace

} // namespace tessaly
