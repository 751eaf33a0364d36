#include "platform/linux/process/LinuxSystemRelease.hpp"

#include "tests/fakes/FakeSystemRelease.hpp"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(LinuxSystemRelease, isNoneThatAnythingAdaptsTo)
{
    const LinuxSystemRelease release;
    EXPECT_EQ(release.version().major, 0);
    EXPECT_EQ(release.version().minor, 0);
}

TEST(FakeSystemRelease, isTheOneThatATestWants)
{
    FakeSystemRelease release({10, 7});
    EXPECT_EQ(release.version().major, 10);
    EXPECT_EQ(release.version().minor, 7);

    release.setVersion({10, 8});
    EXPECT_EQ(release.version().major, 10);
    EXPECT_EQ(release.version().minor, 8);
}

} // namespace
} // namespace tessaly
