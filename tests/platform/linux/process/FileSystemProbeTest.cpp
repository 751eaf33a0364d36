#include "platform/linux/process/FileSystemProbe.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/HangingVolume.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include <sys/statvfs.h>

namespace tessaly {

namespace {

using Figures = std::optional<VolumeFigures>;
using Reading = FileSystemProbe::Reading;

constexpr std::chrono::milliseconds shortTimeout(20);
constexpr std::chrono::hours longTimeout(1);

TEST(FileSystemProbe, answersWithTheSystemsFigures)
{
    FileSystemProbe probe(TESSALY_PROBE);
    const TemporaryFolder folder;
    struct statvfs status = {};
    ASSERT_EQ(statvfs(folder.path().c_str(), &status), 0);
    const Reading reading = probe.spaceAt(folder.path());
    ASSERT_TRUE(reading && *reading);
    EXPECT_EQ((*reading)->total, status.f_blocks * status.f_frsize);
    EXPECT_EQ(probe.spaceAt("/proc"), Reading(VolumeFigures{0, 0}));
}

TEST(FileSystemProbe, takesPathsOfAnyBytes)
{
    FileSystemProbe probe(TESSALY_PROBE);
    TemporaryFolder folder;
    folder.folder("a \xFF\n'\"$(");
    EXPECT_TRUE(probe.spaceAt(folder.path("a \xFF\n'\"$(")).value());
}

TEST(FileSystemProbe, readsNothingWhereNothingIs)
{
    const TemporaryFolder folder;
    FileSystemProbe probe(TESSALY_PROBE);
    EXPECT_EQ(probe.spaceAt(folder.path("missing")), Reading(Figures()));
    EXPECT_TRUE(probe.answersWithin(longTimeout, folder.path("missing")));
    FileSystemProbe broken("/nowhere/probe");
    EXPECT_EQ(broken.spaceAt(folder.path()), Reading(Figures()));
}

TEST(FileSystemProbe, canBeStoppedWhereverTheFileSystemHangs)
{
    if (const auto missing = HangingVolume::missingRequirement()) {
        GTEST_SKIP() << "needs " << *missing;
    }
    const TemporaryFolder folder;
    FileSystemProbe probe(TESSALY_PROBE);
    const HangingVolume volume(folder.path(), {"statfs"});
    EXPECT_EQ(probe.spaceAt(folder.path()), Reading(VolumeFigures{409600, 163840}));
    EXPECT_TRUE(probe.answersWithin(longTimeout, folder.path()));

    volume.hang();
    auto reading = std::async(std::launch::async, [&] { return probe.spaceAt(folder.path()); });
    volume.waitUntilHeld("statfs");
    (void)probe.silence(folder.path("elsewhere"));
    EXPECT_EQ(reading.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    {
        const auto quiet = probe.silence(folder.path()); // though the kernel keeps the child
        EXPECT_EQ(reading.get(), std::nullopt);
        EXPECT_EQ(probe.spaceAt(folder.path()), std::nullopt);
    }
    EXPECT_FALSE(probe.answersWithin(shortTimeout, folder.path()));
    reading = std::async(std::launch::async, [&] { return probe.spaceAt(folder.path()); });
    do { // it may not have started its child yet
        probe.stopAll();
    } while (reading.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready);
    EXPECT_EQ(reading.get(), std::nullopt);
}

} // namespace

} // namespace tessaly
