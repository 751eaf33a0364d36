// Volumes that are really mounted.

#include "engine/scan/MountTable.hpp"
#include "platform/linux/volumes/LinuxVolumeService.hpp"
#include "platform/linux/volumes/MountWatch.hpp"
#include "platform/linux/volumes/UnmountPrograms.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/OwnMounts.hpp"
#include "tests/platform/linux/StartedProgram.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tessaly {

namespace {

using Names = std::vector<std::string>;

/// Runs a script of the shell; its last line of output, or its complaints after "failed: ".
std::string outputOf(const std::string &script)
{
    const StartedProgram shell({"sh", "-c", "(" + script + ") >&3 || echo failed: >&3"});
    return shell.reportedLine() + shell.complaints();
}

/// An image of a file system on a loop device of its own.
class LoopImage {
public:
    LoopImage(const TemporaryFolder &folder, const std::string &label)
        : m_device(outputOf("cd '" + folder.path() +
                            "' && truncate -s 16M image && mkfs.ext4 -q -L '" + label +
                            "' image && losetup -f --show image"))
    {
    }
    ~LoopImage()
    {
        if (isThere()) {
            (void)outputOf("losetup -d " + m_device + " && echo");
        }
    }
    LoopImage(const LoopImage &) = delete;
    LoopImage &operator=(const LoopImage &) = delete;

    [[nodiscard]] bool isThere() const { return m_device.starts_with("/dev/loop"); }
    [[nodiscard]] const std::string &device() const { return m_device; }

private:
    std::string m_device;
};

class LinuxVolumeServiceMountsTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!hasOwnMounts()) {
            GTEST_SKIP() << "needs root, to mount something";
        }
        m_folder.folder("a b");
        m_folder.folder("bind");
    }

    /// The paths of the volumes within the folder of this test, relative to it.
    [[nodiscard]] Names paths()
    {
        Names found;
        const auto enumerator = m_service.enumerator();
        while (const auto name = enumerator->next()) {
            enumerator->skipDescendants();
            const std::string path = m_service.pathOf(*name);
            if (path.starts_with(m_folder.path())) {
                found.push_back(path.substr(m_folder.path().size() + 1));
            }
        }
        return found;
    }

    [[nodiscard]] VolumeInformation informationAbout(const std::string &path)
    {
        std::optional<VolumeInformation> information;
        m_service.readInformation(
            {path},
            [&](const std::vector<VolumeInformation> &answers) { information = answers.at(0); },
            {});
        waitUntil([&] { return information.has_value(); });
        return *information;
    }

    TemporaryFolder m_folder;
    LinuxVolumeService m_service{{.probe = TESSALY_PROBE}};
};

TEST_F(LinuxVolumeServiceMountsTest, seesADiskOnceAndNeitherMemoryNorBindMounts)
{
    const LoopImage image(m_folder, "LABEL");
    if (!image.isThere()) {
        GTEST_SKIP() << "needs a loop device: " << image.device();
    }
    const ScopedMount disk(image.device(), m_folder.path("a b"), "ext4");
    m_folder.folder("a b/folder");
    m_folder.folder("memory");
    m_folder.folder("a longer path");
    const ScopedMount memory("memory", m_folder.path("memory"), "tmpfs");
    const ScopedMount bind(m_folder.path("a b/folder"), m_folder.path("bind"), nullptr, MS_BIND);
    const ScopedMount again(m_folder.path("a b"), m_folder.path("a longer path"), nullptr, MS_BIND);
    EXPECT_EQ(paths(), Names{"a b"});

    const VolumeInformation information = informationAbout(m_folder.path("a b"));
    struct statvfs status = {};
    ASSERT_EQ(statvfs(m_folder.path("a b").c_str(), &status), 0);
    ASSERT_TRUE(information.figures);
    EXPECT_EQ(information.figures->total, status.f_blocks * status.f_frsize);
    EXPECT_EQ(information.figures->free, status.f_bavail * status.f_frsize);
    EXPECT_LT(status.f_bavail, status.f_bfree); // root's reserve is not free
    EXPECT_EQ(information.typeName, "ext4");
    EXPECT_FALSE(information.isRemovable);
}

TEST_F(LinuxVolumeServiceMountsTest, looksIntoALocalVolumeThatIsNotSkipped)
{
    const LoopImage image(m_folder, "LABEL");
    if (!image.isThere()) {
        GTEST_SKIP() << "needs a loop device: " << image.device();
    }
    const ScopedMount disk(image.device(), m_folder.path("a b"), "ext4");
    m_folder.folder("a b/child");
    const auto enumerator = m_service.enumerator();
    bool isFound = false;
    while (const auto name = enumerator->next()) {
        isFound = isFound || m_service.pathOf(*name) == m_folder.path("a b/child");
        if (m_service.pathOf(*name) != m_folder.path("a b")) {
            enumerator->skipDescendants();
        }
    }
    EXPECT_TRUE(isFound);
}

TEST_F(LinuxVolumeServiceMountsTest, reportsThatADiskWasMountedAndUnmounted)
{
    const LoopImage image(m_folder, "LABEL");
    if (!image.isThere()) {
        GTEST_SKIP() << "needs a loop device: " << image.device();
    }
    int changeCount = 0;
    m_service.setChangeListener([&] { ++changeCount; });
    {
        const ScopedMount disk(image.device(), m_folder.path("a b"), "ext4");
        waitUntil([&] { return changeCount == 1; });
        EXPECT_EQ(paths(), Names{"a b"});
    }
    waitUntil([&] { return changeCount == 2; });
    EXPECT_EQ(paths(), Names{});
}

TEST_F(LinuxVolumeServiceMountsTest, seesAndUnmountsWhatAFuseProgramShows)
{
    for (const char *program : {"fuse2fs", "fusermount3"}) {
        if (!StartedProgram::isInstalled(program)) {
            GTEST_SKIP() << "needs " << program;
        }
    }
    const std::string outcome =
        outputOf("cd '" + m_folder.path() +
                 "' && truncate -s 16M image && mkfs.ext4 -q image && fuse2fs image 'a b' && echo");
    if (outcome.starts_with("failed:")) {
        GTEST_SKIP() << "needs FUSE: " << outcome;
    }
    EXPECT_EQ(paths(), Names{"a b"});
    const VolumeInformation information = informationAbout(m_folder.path("a b"));
    EXPECT_TRUE(information.typeName.starts_with("fuse"));
    EXPECT_TRUE(information.figures);
    EXPECT_TRUE(information.isUnmountable); // it is our own

    int changeCount = 0;
    m_service.setChangeListener([&] { ++changeCount; });
    m_service.unmountAndEject(m_folder.path("a b"));
    waitUntil([&] { return changeCount == 1; });
    EXPECT_EQ(paths(), Names{});
}

TEST_F(LinuxVolumeServiceMountsTest, umountRefusesAUserOneOfSeveralMounts)
{
    const LoopImage image(m_folder, "LABEL");
    if (!image.isThere()) {
        GTEST_SKIP() << "needs a loop device: " << image.device();
    }
    const ScopedMount first(image.device(), m_folder.path("a b"), "ext4");
    const ScopedMount second(image.device(), m_folder.path("bind"), "ext4");
    constexpr mode_t openToAll = 0755;
    ASSERT_EQ(chmod(m_folder.path().c_str(), openToAll), 0);
    const auto mountCount = [this] {
        const auto table =
            scan::MountTable::read("/proc/self/mountinfo").value_or(scan::MountTable());
        return std::count_if(table.mounts().begin(), table.mounts().end(),
                             [this](const scan::Mount &mount) {
                                 return mount.mountPoint.starts_with(m_folder.path());
                             });
    };
    ASSERT_EQ(mountCount(), 2);
    runUnprivileged([this] {
        const std::string problem = unmountThere(m_folder.path("a b")).value_or("");
        EXPECT_NE(problem.find("must be superuser"), std::string::npos) << problem;
    });
    EXPECT_EQ(mountCount(), 2);
    EXPECT_EQ(unmountThere(m_folder.path("a b")), std::nullopt);
    EXPECT_EQ(mountCount(), 1);
}

TEST_F(LinuxVolumeServiceMountsTest, theListOfMountsIsWatched)
{
    int changeCount = 0;
    const MountWatch watch("/proc/self/mountinfo", [&] { ++changeCount; });
    const MountWatch none("/nowhere", [] { FAIL(); });
    {
        const ScopedMount memory("memory", m_folder.path("a b"), "tmpfs");
        waitUntil([&] { return changeCount >= 1; });
    }
    const int before = changeCount;
    waitUntil([&] { return changeCount > before; });
}

} // namespace

} // namespace tessaly
