#include "platform/linux/volumes/LinuxVolumeService.hpp"

#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/LogLines.hpp"
#include "tests/platform/linux/MadeUpSystem.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/volumes/FakeUDisksService.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace tessaly {

namespace {

using Answers = std::vector<VolumeInformation>;
using Names = std::vector<std::string>;

constexpr auto category = "tessaly.platform.volumes";
constexpr std::chrono::milliseconds hardlyAny(20);
constexpr std::chrono::hours longEnough(1);

const std::string stickPath = "/media/my stick";

/// Never answers for "/mnt/nfs".
VolumeFiguresReader::Reading madeUpFigures(const VolumeFiguresReader::Place &place)
{
    if (place.path == "/mnt/nfs") {
        std::promise<void>().get_future().wait();
    }
    return VolumeFigures{place.path.size(), 1};
}

Names namesOf(LinuxVolumeService &service)
{
    Names names;
    const auto enumerator = service.enumerator();
    while (const auto name = enumerator->next()) {
        names.push_back(*name);
        enumerator->skipDescendants();
    }
    return names;
}

Answers answersOf(LinuxVolumeService &service, const std::vector<std::string> &paths)
{
    std::optional<Answers> answers;
    const auto here = std::this_thread::get_id();
    service.readInformation(paths,
                            [&](Answers information) {
                                EXPECT_EQ(std::this_thread::get_id(), here);
                                answers = std::move(information);
                            },
                            {});
    EXPECT_FALSE(answers); // it never answers at once
    waitUntil([&] { return answers.has_value(); });
    return *answers;
}

/// The lines of the log that are about volumes which were not unmounted.
Names complaints()
{
    Names lines = LogLines::waitFor(0);
    std::erase_if(lines,
                  [](const std::string &line) { return !line.starts_with("not unmounted"); });
    return lines;
}

Names waitForComplaints(std::size_t count)
{
    waitUntil([&] { return complaints().size() >= count; });
    return complaints();
}

/// A root, a stick, a server's folder and a FUSE program's, on a computer without UDisks2.
class LinuxVolumeServiceTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_system.addDisk("sdb", "8:16", true);
        m_system.addPartition("sdb", "sdb1", "8:17");
        m_system.addLabel("My\\x20Stick", "sdb1");
        mountRoot();
        m_system.mount("/media/my\\040stick", "vfat", "8:17", "/dev/sdb1");
        m_system.mount("/home/me/far\\040away", "fuse.sshfs", "0:41", "me@server:");
    }

    void mountRoot() { m_system.mount("/", "ext4", "8:1", "/dev/sda1"); }

    /// A bus, and UDisks2 with the stick. False without what it takes.
    bool bringUDisks()
    {
        if (!PrivateBus::isInstalled()) {
            return false;
        }
        m_bus = std::make_unique<PrivateBus>();
        m_system.sources().bus = PrivateBus::address();
        m_udisks = std::make_unique<FakeUDisksService>(stick("My Stick"));
        return true;
    }

    static UDisksObjects stick(const std::string &label)
    {
        UDisksObjects objects;
        objects.addDrive({.name = "Stick", .isRemovable = true, .isEjectable = true});
        objects.addDevice(
            {.name = "sdb1", .label = label, .mountPoints = {stickPath}, .drive = "Stick"});
        return objects;
    }

    [[nodiscard]] std::unique_ptr<LinuxVolumeService>
    service(std::chrono::milliseconds timeout = longEnough) const
    {
        return std::make_unique<LinuxVolumeService>(m_system.sources(), madeUpFigures, timeout);
    }

    MadeUpSystem m_system;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakeUDisksService> m_udisks;
};

TEST_F(LinuxVolumeServiceTest, listsTheVolumesByName)
{
    const auto volumes = service();
    EXPECT_EQ(namesOf(*volumes), (Names{"/", "My Stick", "far away"}));
    EXPECT_EQ(volumes->pathOf("/"), "/Volumes//");
    EXPECT_EQ(volumes->pathOf("My Stick"), stickPath);
    EXPECT_EQ(volumes->pathOf("missing"), "/Volumes/missing");
    EXPECT_EQ(volumes->pathOf("my stick"), "/Volumes/my stick");
}

TEST_F(LinuxVolumeServiceTest, answersInTheOrderOfTheQuestion)
{
    m_system.sources().user = 1000;
    const auto volumes = service();
    const Answers answers = answersOf(*volumes, {stickPath, "/Volumes//", "/Volumes/missing", "/"});
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers[0].figures, (VolumeFigures{stickPath.size(), 1}));
    EXPECT_TRUE(answers[0].isRemovable);
    EXPECT_FALSE(answers[0].isUnmountable);
    EXPECT_EQ(answers[0].typeName, "msdos");
    EXPECT_EQ(answers[1].figures, (VolumeFigures{1, 1}));
    EXPECT_FALSE(answers[1].isRemovable);
    EXPECT_EQ(answers[1].typeName, "ext4");
    EXPECT_EQ(answers[2].typeName, "");
    EXPECT_EQ(answers[3], answers[1]);
    EXPECT_EQ(answersOf(*volumes, {}), Answers{});
}

TEST_F(LinuxVolumeServiceTest, doesNotWaitForADeadVolume)
{
    m_system.mount("/mnt/nfs", "nfs4", "0:42", "server:/x");
    const auto volumes = service(hardlyAny);
    Answers answers;
    do { // where the machine is busy, the living may need some time, too
        answers = answersOf(*volumes, {"/", "/mnt/nfs", stickPath});
        ASSERT_EQ(answers.size(), 3U);
        EXPECT_EQ(answers[1].figures, std::nullopt);
        EXPECT_EQ(answers[1].typeName, "nfs4");
    } while (!answers[0].figures || !answers[2].figures);
    // The thread that asks is left behind: that the test ends shows that nothing waits for it.
}

TEST_F(LinuxVolumeServiceTest, dropsAnswersWhenItIsDestroyed)
{
    m_system.mount("/mnt/nfs", "nfs4", "0:42", "server:/x");
    auto volumes = service(hardlyAny);
    bool isAnswered = false;
    volumes->readInformation({"/mnt/nfs"}, [&](const Answers &) { isAnswered = true; }, {});
    volumes.reset();
    const auto others = service(hardlyAny);
    (void)answersOf(*others, {"/mnt/nfs"});
    EXPECT_FALSE(isAnswered);
}

TEST_F(LinuxVolumeServiceTest, usesWhatUDisksReports)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const Answers answers = answersOf(*service(), {stickPath, "/", "/home/me/far away"});
    EXPECT_TRUE(answers.at(0).isRemovable);
    EXPECT_TRUE(answers.at(0).isUnmountable);
    EXPECT_FALSE(answers.at(1).isRemovable || answers.at(1).isUnmountable);
    EXPECT_FALSE(answers.at(2).isRemovable || answers.at(2).isUnmountable);
}

TEST_F(LinuxVolumeServiceTest, doesNotWaitForUDisks)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    m_udisks->withholdAnswers();
    const auto volumes = service(hardlyAny);
    Answers answers;
    do {
        answers = answersOf(*volumes, {stickPath});
        EXPECT_TRUE(answers.at(0).isRemovable); // as the kernel says
        EXPECT_FALSE(answers.at(0).isUnmountable);
    } while (!answers.at(0).figures);
}

TEST_F(LinuxVolumeServiceTest, unmountsAndEjects)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    volumes->unmountAndEject(stickPath + '/');
    EXPECT_EQ(m_udisks->waitForCalls(2), (Names{"Unmount sdb1", "Eject Stick"}));
}

TEST_F(LinuxVolumeServiceTest, unmountsOnTheCallersThread)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    std::atomic<bool> isDone = false;
    m_udisks->onCall("Unmount", [&] { EXPECT_FALSE(isDone); });
    std::thread caller([&] {
        volumes->unmount(stickPath);
        isDone = true;
    });
    caller.join(); // no event loop is needed
    EXPECT_EQ(m_udisks->waitForCalls(1), Names{"Unmount sdb1"});
}

TEST_F(LinuxVolumeServiceTest, logsThatAVolumeIsBusy)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const LogLines log(category);
    m_udisks->refuse("Unmount", "target is busy");
    const auto volumes = service();
    std::thread([&] { volumes->unmount(stickPath); }).join();
    const Names line = {"not unmounted: /media/my stick - Unmount: target is busy"};
    EXPECT_EQ(complaints(), line);

    volumes->unmountAndEject(stickPath);
    EXPECT_EQ(waitForComplaints(2).at(1), line[0]);
    EXPECT_EQ(m_udisks->waitForCalls(2), (Names{"Unmount sdb1", "Unmount sdb1"}));
}

TEST_F(LinuxVolumeServiceTest, letsAnUnmountReturnWhenItIsDestroyed)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    m_udisks->withholdAnswers();
    auto volumes = service();
    std::thread caller([&volumes = *volumes] { volumes.unmount(stickPath); });
    m_udisks->waitForUnanswered(1);
    volumes.reset();
    caller.join();
}

TEST_F(LinuxVolumeServiceTest, leavesFuseToItsOwnProgram)
{
    const TemporaryFolder programs;
    writeFile(programs.path("fusermount3"), "#!/bin/sh\nprintf '%s|' \"$@\" >> '" +
                                                programs.path("calls") +
                                                "'; echo 'still busy' >&2; exit 1\n");
    chmod(programs.path("fusermount3").c_str(), S_IRWXU);
    const ScopedVariable path("PATH", programs.path());
    const LogLines log(category);
    const auto volumes = service();
    std::thread([&] { volumes->unmount("/home/me/far away"); }).join();
    EXPECT_EQ(textOfFile(programs.path("calls")), "-u|--|/home/me/far away|");
    const std::string line = "not unmounted: /home/me/far away - still busy";
    EXPECT_EQ(complaints(), Names{line});

    volumes->unmountAndEject("/home/me/far away");
    EXPECT_EQ(waitForComplaints(2).at(1), line);
}

TEST_F(LinuxVolumeServiceTest, leavesToUmountWhatUsersMayMount)
{
    m_system.mount("/mnt/server", "nfs4", "0:50", "server:/data");
    m_system.writeFstab("server:/data /mnt/server nfs4 user,noauto 0 0\n");
    const TemporaryFolder programs;
    writeFile(programs.path("umount"),
              "#!/bin/sh\nprintf '%s|' \"$@\" >> '" + programs.path("calls") + "'\n");
    chmod(programs.path("umount").c_str(), S_IRWXU);
    const ScopedVariable path("PATH", programs.path());
    const LogLines log(category);
    const auto volumes = service();
    std::thread([&] { volumes->unmount("/mnt/server"); }).join();
    EXPECT_EQ(textOfFile(programs.path("calls")), "--|/mnt/server|");
    EXPECT_EQ(complaints(), Names{});
}

TEST_F(LinuxVolumeServiceTest, leavesAllMountsOfADeviceWhenUmountRefuses)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    m_system.mount("/mnt/the\\040stick\\040again", "vfat", "8:17", "/dev/sdb1");
    const TemporaryFolder programs;
    for (const char *program : {"umount", "fusermount3"}) {
        writeFile(programs.path(program), std::string("#!/bin/sh\nprintf '%s|' ") + program +
                                              " \"$@\" >> '" + programs.path("calls") +
                                              "'; echo 'must be superuser' >&2; exit 32\n");
        chmod(programs.path(program).c_str(), S_IRWXU);
    }
    const ScopedVariable path("PATH", programs.path());
    const LogLines log(category);
    const auto volumes = service();
    Names refused;
    volumes->setRefusalListener([&](const std::string &its) { refused.push_back(its); });
    volumes->unmountAndEject(stickPath);
    waitUntil([&] { return !refused.empty(); });
    EXPECT_EQ(refused, Names{stickPath});
    EXPECT_EQ(complaints(), Names{"not unmounted: /media/my stick - must be superuser"});
    EXPECT_EQ(textOfFile(programs.path("calls")), "umount|-i|--|/media/my stick|");
    EXPECT_EQ(m_udisks->waitForCalls(0), Names{});
}

TEST_F(LinuxVolumeServiceTest, logsWhatItCannotUnmount)
{
    const LogLines log(category);
    const auto volumes = service();
    for (const char *path : {"/", "/Volumes//", "/Volumes/missing", "/media"}) {
        volumes->unmountAndEject(path);
        volumes->unmount(path);
    }
    EXPECT_EQ(complaints().size(), 8U);
    EXPECT_EQ(complaints().at(0), "not unmounted: / - the system is on it");
    EXPECT_EQ(complaints().at(2), "not unmounted: /Volumes - no volume is mounted there");

    volumes->unmountAndEject(stickPath);
    EXPECT_EQ(waitForComplaints(9).at(8),
              "not unmounted: /media/my stick - UDisks2 is not there, or does not know it");
}

TEST_F(LinuxVolumeServiceTest, reportsAVolumeThatUDisksSignals)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    int changeCount = 0;
    volumes->setChangeListener([&] { ++changeCount; });
    (void)answersOf(*volumes, {"/"}); // by now it listens
    m_system.mount("/mnt/new", "xfs", "8:3", "/dev/sda3");
    m_udisks->change(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return changeCount == 1; });
    EXPECT_EQ(namesOf(*volumes), (Names{"/", "My Stick", "far away", "new"}));

    m_system.unmountAll();
    mountRoot();
    m_udisks->add(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return changeCount == 2; });
}

TEST_F(LinuxVolumeServiceTest, reportsThatTheUsersRightsHaveChanged)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    int changeCount = 0;
    volumes->setChangeListener([&] { ++changeCount; });
    EXPECT_TRUE(answersOf(*volumes, {stickPath}).at(0).isUnmountable);
    UDisksObjects objects;
    objects.addDevice({.name = "sdb1", .mountPoints = {stickPath}, .isSystem = true});
    m_udisks->change(objects, UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return changeCount == 1; });
    EXPECT_FALSE(answersOf(*volumes, {stickPath}).at(0).isUnmountable);
}

TEST_F(LinuxVolumeServiceTest, mergesChangesAndReportsOnlyVisibleOnes)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    Names seen;
    volumes->setChangeListener([&] {
        for (const std::string &name : namesOf(*volumes)) {
            seen.push_back(name);
        }
    });
    (void)answersOf(*volumes, {"/"});
    // These change nothing that is shown.
    m_system.mount("/run/user/1000", "tmpfs", "0:50");
    m_udisks->change(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    const std::size_t questionsBefore = m_udisks->questionCount();
    waitUntil([&] { return m_udisks->questionCount() > questionsBefore; });
    (void)answersOf(*volumes, {"/"});
    EXPECT_EQ(seen, Names{});

    for (int count = 0; count < 5; ++count) {
        m_udisks->change(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    }
    m_system.mount("/mnt/new", "xfs", "8:3", "/dev/sda3");
    m_udisks->change(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return !seen.empty(); });
    (void)answersOf(*volumes, {"/"});
    EXPECT_EQ(seen, (Names{"/", "My Stick", "far away", "new"})); // told once
}

TEST_F(LinuxVolumeServiceTest, callsTheListenerThatWasSetLast)
{
    if (!bringUDisks()) {
        GTEST_SKIP() << "needs dbus-daemon";
    }
    const auto volumes = service();
    int firstCount = 0;
    int secondCount = 0;
    volumes->setChangeListener([&] { ++firstCount; });
    volumes->setChangeListener([&] { ++secondCount; });
    (void)answersOf(*volumes, {"/"});
    m_system.mount("/mnt/new", "xfs", "8:3", "/dev/sda3");
    m_udisks->change(stick("My Stick"), UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return secondCount == 1; });
    EXPECT_EQ(firstCount, 0);
}

TEST(LinuxVolumeService, readsThisSystem)
{
    LinuxVolumeService volumes({.probe = TESSALY_PROBE});
    const auto enumerator = volumes.enumerator();
    EXPECT_EQ(enumerator->next(), "/");
    const Answers answers = answersOf(volumes, {"/"});
    ASSERT_TRUE(answers.at(0).figures);
    EXPECT_GT(answers[0].figures->total, 0U);
    EXPECT_FALSE(answers[0].typeName.empty());
}

TEST(LinuxVolumeService, mayBeDestroyedBeforeItHasDoneAnything)
{
    for (int count = 0; count < 20; ++count) {
        LinuxVolumeService volumes;
        volumes.setChangeListener([] {});
        volumes.readInformation({"/"}, [](const Answers &) {}, {});
    }
}

} // namespace

} // namespace tessaly
