// Volumes with the UDisks2 that people have.

#include "platform/linux/volumes/LinuxVolumeService.hpp"
#include "tests/platform/linux/LogLines.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/volumes/DiskService.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>

namespace tessaly {

namespace {

using Names = std::vector<std::string>;

/// UDisks2 and a stick that is mounted at "/run/my media".
class LinuxVolumeServiceUDisksTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const auto missing = DiskService::missingRequirement()) {
            GTEST_SKIP() << "needs " << *missing;
        }
        m_disks = std::make_unique<DiskService>();
        m_device = m_disks->makeStick("My Stick");
        if (m_device.empty()) {
            GTEST_SKIP() << "needs a loop device";
        }
        ASSERT_TRUE(
            DiskService::run("mkdir '/run/my media' && mount " + m_device + " '/run/my media'"));
        m_volumes = std::make_unique<LinuxVolumeService>(VolumeSources{.probe = TESSALY_PROBE});
        m_volumes->setChangeListener([this] { ++m_changeCount; });
        m_volumes->setRefusalListener(
            [this](const std::string &path) { m_refused.push_back(path); });
    }

    void TearDown() override
    {
        m_volumes.reset();
        if (!m_device.empty()) {
            umount2("/run/my media", MNT_DETACH);
        }
    }

    /// The name of what is mounted there; empty when nothing is.
    [[nodiscard]] std::string name(const std::string &path = "/run/my media")
    {
        const auto enumerator = m_volumes->enumerator();
        while (const auto name = enumerator->next()) {
            enumerator->skipDescendants();
            if (m_volumes->pathOf(*name) == path) {
                return *name;
            }
        }
        return {};
    }

    [[nodiscard]] VolumeInformation information()
    {
        std::optional<VolumeInformation> information;
        m_volumes->readInformation(
            {m_volumes->pathOf("My Stick")},
            [&](const std::vector<VolumeInformation> &answers) { information = answers.at(0); },
            {});
        waitUntil([&] { return information.has_value(); });
        return *information;
    }

    /// Waits until the device manager and UDisks2 have noticed the stick, too.
    void waitForStick()
    {
        while (name() != "My Stick" || !information().isRemovable) {
            std::this_thread::yield();
        }
    }

    std::unique_ptr<DiskService> m_disks;
    std::string m_device;
    std::unique_ptr<LinuxVolumeService> m_volumes;
    int m_changeCount = 0;
    Names m_refused;
};

TEST_F(LinuxVolumeServiceUDisksTest, reportsThePropertiesOfTheStick)
{
    waitForStick();
    EXPECT_EQ(m_volumes->pathOf("My Stick"), "/run/my media");
    const VolumeInformation stick = information();
    EXPECT_TRUE(stick.figures);
    EXPECT_TRUE(stick.isUnmountable);
    EXPECT_EQ(stick.typeName, "ext4");
}

TEST_F(LinuxVolumeServiceUDisksTest, unmountsAndEjectsTheStick)
{
    waitForStick();
    m_volumes->unmountAndEject("/run/my media");
    waitUntil([&] { return name().empty(); });
    waitUntil([&] { return !m_disks->hasStick(); });
}

TEST_F(LinuxVolumeServiceUDisksTest, unmountsTheStickAndReportsIt)
{
    waitForStick();
    const int before = m_changeCount;
    std::thread([&] { m_volumes->unmount("/run/my media"); }).join();
    EXPECT_EQ(name(), "");
    EXPECT_EQ(m_volumes->pathOf("My Stick"), "/Volumes/My Stick");
    EXPECT_TRUE(m_disks->hasStick());
    ASSERT_TRUE(DiskService::run("mount " + m_device + " '/run/my media'"));
    waitUntil([&] { return m_changeCount > before; });
}

TEST_F(LinuxVolumeServiceUDisksTest, leavesAStickInUseWhereItIs)
{
    waitForStick();
    const scan::FileDescriptor use(open("/run/my media", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const LogLines log("tessaly.platform.volumes");
    const auto isRefused = [] {
        const Names lines = LogLines::waitFor(0);
        return std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
            return line.starts_with("not unmounted: /run/my media - Unmount: ") &&
                   line.find("busy") != std::string::npos;
        });
    };
    m_volumes->unmountAndEject("/run/my media");
    waitUntil(isRefused);
    EXPECT_EQ(name(), "My Stick");
    waitUntil([this] { return !m_refused.empty(); });
    EXPECT_EQ(m_refused, Names{"/run/my media"});
}

TEST_F(LinuxVolumeServiceUDisksTest, refusesTheSystemsOwnByItsStatedPath)
{
    EXPECT_EQ(m_volumes->pathOf("/"), "/Volumes//");
    const LogLines log("tessaly.platform.volumes");
    m_volumes->unmountAndEject("/Volumes//");
    EXPECT_TRUE(m_refused.empty()) << "not before it returns";
    waitUntil([this] { return !m_refused.empty(); });
    std::thread([&] { m_volumes->unmount("/Volumes//"); }).join();
    waitUntil([this] { return m_refused.size() == 2; });
    EXPECT_EQ(m_refused, (Names{"/Volumes//", "/Volumes//"}));
}

/// The stick is mounted at two places, of which the shorter one is the row's.
class MountedTwiceTest : public LinuxVolumeServiceUDisksTest {
protected:
    void mountAgain(const std::string &script)
    {
        waitForStick();
        ASSERT_TRUE(DiskService::run(script));
        waitUntil([this] { return name("/run/m") == "My Stick"; });
    }
    [[nodiscard]] static bool isMounted(const std::string &path)
    {
        return DiskService::run("mountpoint -q '" + path + "'");
    }
    void TearDown() override
    {
        LinuxVolumeServiceUDisksTest::TearDown();
        if (!m_device.empty()) {
            umount2("/run/m", MNT_DETACH);
        }
    }
};

TEST_F(MountedTwiceTest, theOneOfTheRowIsUnmountedIfItWasMountedLast)
{
    mountAgain("mkdir /run/m && mount " + m_device + " /run/m");
    m_volumes->unmountAndEject("/run/m");
    waitUntil([this] { return name("/run/my media") == "My Stick"; });
    EXPECT_TRUE(isMounted("/run/my media"));
    EXPECT_TRUE(m_disks->hasStick());
}

TEST_F(MountedTwiceTest, theOneOfTheRowIsUnmountedIfItWasMountedFirst)
{
    mountAgain("mkdir /run/m && umount '/run/my media' && mount " + m_device + " /run/m && mount " +
               m_device + " '/run/my media'");
    m_volumes->unmountAndEject("/run/m");
    waitUntil([this] { return name("/run/my media") == "My Stick"; });
    EXPECT_FALSE(isMounted("/run/m"));
    EXPECT_TRUE(isMounted("/run/my media"));
    EXPECT_TRUE(m_disks->hasStick());
    EXPECT_EQ(m_refused, Names{});
}

/// A disk that UDisks2 takes for one of the system's, and that the user has it mount.
TEST(LinuxVolumeServiceUDisks, letsTheUserUnmountWhatHeHasMounted)
{
    if (const auto missing = DiskService::missingRequirement()) {
        GTEST_SKIP() << "needs " << *missing;
    }
    const DiskService disks(DiskService::Hint::system);
    const std::string device = disks.makeStick("Inner");
    if (device.empty()) {
        GTEST_SKIP() << "needs a loop device";
    }
    LinuxVolumeService volumes({.probe = TESSALY_PROBE});
    const auto isUnmountable = [&] {
        std::optional<bool> answer;
        volumes.readInformation({volumes.pathOf("Inner")},
                                [&](const auto &answers) { answer = answers.at(0).isUnmountable; },
                                {});
        waitUntil([&] { return answer.has_value(); });
        return *answer;
    };
    const auto isListed = [&] {
        const auto enumerator = volumes.enumerator();
        while (const auto name = enumerator->next()) {
            enumerator->skipDescendants();
            if (name == "Inner") {
                return true;
            }
        }
        return false;
    };
    ASSERT_TRUE(DiskService::run("mkdir /run/inner && mount " + device + " /run/inner"));
    while (!isListed()) {}
    EXPECT_FALSE(isUnmountable()) << "root has mounted it there";
    ASSERT_TRUE(DiskService::run("umount /run/inner && udisksctl mount -b " + device));
    while (!isListed() || !isUnmountable()) {}
    EXPECT_TRUE(volumes.pathOf("Inner").starts_with("/media/"));
    std::thread([&] { volumes.unmount(volumes.pathOf("Inner")); }).join();
    EXPECT_FALSE(isListed());
}

} // namespace

} // namespace tessaly
