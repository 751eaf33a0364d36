#include "platform/linux/storage/SettingsFile.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

using namespace std::string_literals;

namespace tessaly {
namespace {

using Kind = archive::ArchiveError::Kind;
using Names = std::vector<std::string>;

constexpr std::chrono::milliseconds atOnce{0};

class SettingsFileTest : public testing::Test {
protected:
    [[nodiscard]] SettingsFile
    settingsFile(archive::FileCalls &calls = archive::FileCalls::system()) const
    {
        return {m_path, calls, atOnce};
    }

    /// The kind of error that reading ends in.
    [[nodiscard]] Kind kindOfReading(archive::FileCalls &calls = archive::FileCalls::system()) const
    {
        const auto content = settingsFile(calls).read();
        EXPECT_FALSE(content);
        return content ? Kind::outOfMemory : content.error().kind;
    }

    [[nodiscard]] bool canLock() const { return settingsFile().lock().hasValue(); }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("settings.plist");
};

TEST_F(SettingsFileTest, aMissingFileHoldsNothing)
{
    const auto content = settingsFile().read();
    ASSERT_TRUE(content);
    EXPECT_FALSE(content.value());

    m_path = m_folder.path("missing/settings.plist");
    const auto inMissingFolder = settingsFile().read();
    ASSERT_TRUE(inMissingFolder);
    EXPECT_FALSE(inMissingFolder.value());
}

TEST_F(SettingsFileTest, whatIsWrittenIsReadBack)
{
    const archive::PlistDictionary dictionary{
        {"a", 1}, {"b", "text"}, {"c", archive::PlistArray{true, 1.5}}};
    ASSERT_TRUE(settingsFile().write(dictionary));
    const auto content = settingsFile().read();

    ASSERT_TRUE(content && content.value());
    EXPECT_EQ(*content.value(), dictionary);
    EXPECT_EQ(modeOf(m_path), 0600U);
    EXPECT_EQ(namesIn(m_folder.path()), Names{"settings.plist"});
}

TEST_F(SettingsFileTest, aFileThatHoldsNoSettingsIsDamaged)
{
    ASSERT_TRUE(settingsFile().write(archive::PlistDictionary{{"key", "some text"}}));
    const std::string whole = textOfFile(m_path);
    const archive::PlistArray array{1, 2};
    ASSERT_TRUE(settingsFile().write(array));
    const std::string noDictionary = textOfFile(m_path);

    for (const std::string &text :
         {""s, "text"s, "<?xml version=\"1.0\"?><plist><dict/></plist>"s, std::string(1000, '\0'),
          noDictionary, whole.substr(0, whole.size() - 1), whole.substr(1), whole + '\0'}) {
        writeFile(m_path, text);
        const auto content = settingsFile().read();
        ASSERT_FALSE(content) << text;
        EXPECT_TRUE(SettingsFile::isDamage(content.error())) << content.error().text();
    }
}

TEST_F(SettingsFileTest, aFileOfAbsurdSizeIsDamagedAndNotReadToItsEnd)
{
    m_folder.file("settings.plist", std::uint64_t{1} << 40U);

    EXPECT_EQ(kindOfReading(), Kind::damaged);
}

TEST_F(SettingsFileTest, whatCannotBeReadIsNotDamaged)
{
    EXPECT_FALSE(SettingsFile::isDamage({Kind::unreadable, "", {}}));
    EXPECT_FALSE(SettingsFile::isDamage({Kind::unwritable, "", {}}));
    EXPECT_FALSE(SettingsFile::isDamage({Kind::outOfMemory, "", {}}));
}

TEST_F(SettingsFileTest, aReadErrorIsNoDamage)
{
    writeFile(m_path, "text");
    for (std::size_t call = 0; call < 3; ++call) { // open, fstat, read
        FailingFileCalls calls;
        calls.failingCall = call;
        EXPECT_EQ(kindOfReading(calls), Kind::unreadable) << calls.log().back();
    }
}

TEST_F(SettingsFileTest, readingContinuesAfterSignals)
{
    ASSERT_TRUE(settingsFile().write(archive::PlistDictionary{{"key", 1}}));
    for (const std::size_t call : {0U, 2U}) { // open, read
        FailingFileCalls calls;
        calls.failingCall = call;
        calls.errorNumber = EINTR;
        EXPECT_TRUE(settingsFile(calls).read()) << call;
    }
}

TEST_F(SettingsFileTest, aFifoOrAFolderCannotBeRead)
{
    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    EXPECT_EQ(kindOfReading(), Kind::unreadable);

    m_path = m_folder.path();
    EXPECT_EQ(kindOfReading(), Kind::unreadable);
}

TEST_F(SettingsFileTest, readingLeavesNoDescriptorOpen)
{
    const int before = openDescriptorCount();
    writeFile(m_path, "text");
    EXPECT_EQ(kindOfReading(), Kind::notAnArchive);

    EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(SettingsFileTest, lockingMakesTheFolderForTheUserAlone)
{
    m_path = m_folder.path("a/b/settings.plist");
    ASSERT_TRUE(canLock());

    EXPECT_EQ(modeOf(m_folder.path("a")), 0700U);
    EXPECT_EQ(modeOf(m_folder.path("a/b")), 0700U);
    EXPECT_EQ(modeOf(m_path + ".lock"), 0600U);
}

TEST_F(SettingsFileTest, aFolderThatCannotBeMadeCannotBeLocked)
{
    writeFile(m_folder.path("file"), "text");
    m_path = m_folder.path("file/settings.plist");
    const auto lock = settingsFile().lock();

    ASSERT_FALSE(lock);
    EXPECT_EQ(lock.error().message, "cannot make the folder of " + m_path + ": Not a directory");
}

TEST_F(SettingsFileTest, theLockIsHeldByOneAtATime)
{
    const int before = openDescriptorCount();
    {
        const auto lock = settingsFile().lock();
        ASSERT_TRUE(lock);
        const auto second = settingsFile().lock();
        ASSERT_FALSE(second);
        EXPECT_EQ(second.error().message,
                  "cannot lock " + m_path + ": Resource temporarily unavailable");
    }

    EXPECT_TRUE(canLock());
    EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(SettingsFileTest, theLockIsWaitedFor)
{
    auto lock = std::make_unique<archive::Result<SettingsFile::Lock, archive::ArchiveError>>(
        settingsFile().lock());
    ASSERT_TRUE(*lock);
    FailingFileCalls calls;
    calls.beforeEach = [&] {
        if (std::count(calls.log().begin(), calls.log().end(), "flock") == 3) {
            lock.reset();
        }
    };

    EXPECT_TRUE(SettingsFile(m_path, calls, std::chrono::hours(1)).lock());
    EXPECT_EQ(lock, nullptr);
}

TEST_F(SettingsFileTest, afterATimeoutTheLockIsTriedOnceEachTimeUntilItIsFree)
{
    constexpr std::chrono::hours timeout(3);
    SettingsFile::Clock::time_point now{};
    FailingFileCalls calls;
    SettingsFile file(m_path, calls, timeout, [&now] { return now += std::chrono::hours(1); });
    const auto triesOfOneLock = [&] {
        const auto before = std::count(calls.log().begin(), calls.log().end(), "flock");
        EXPECT_FALSE(file.lock());
        const auto after = std::count(calls.log().begin(), calls.log().end(), "flock");
        return after - before - 1; // the last one gives back what was not got
    };
    for (int round = 0; round < 2; ++round) {
        {
            const auto lock = settingsFile().lock();
            ASSERT_TRUE(lock);
            EXPECT_EQ(triesOfOneLock(), 3);
            EXPECT_EQ(triesOfOneLock(), 1);
            EXPECT_EQ(triesOfOneLock(), 1);
        }
        EXPECT_TRUE(file.lock()); // and the timeout is back
    }
}

TEST_F(SettingsFileTest, theLockOfAProcessThatWasKilledIsFree)
{
    KillableChild holder([this] {
        const auto lock = settingsFile().lock();
        std::raise(lock ? SIGKILL : SIGTERM);
    });
    ASSERT_TRUE(holder.wasKilled());

    EXPECT_TRUE(canLock());
}

TEST_F(SettingsFileTest, theLockIsReleasedThoughAForkedProcessIsStillRunning)
{
    auto lock = std::make_unique<archive::Result<SettingsFile::Lock, archive::ArchiveError>>(
        settingsFile().lock());
    ASSERT_TRUE(*lock);
    KillableChild child([] { pause(); });
    lock.reset();
    EXPECT_TRUE(canLock());

    child.kill();
    EXPECT_TRUE(child.wasKilled());
}

TEST_F(SettingsFileTest, aFileSystemWithoutLocksWillDo)
{
    for (const int errorNumber : {ENOLCK, ENOSYS, EOPNOTSUPP}) {
        FailingFileCalls calls;
        calls.failingCall = 1;
        calls.errorNumber = errorNumber;
        EXPECT_TRUE(settingsFile(calls).lock()) << errorNumber;
        EXPECT_EQ(calls.log()[1], "flock!");
    }
}

TEST_F(SettingsFileTest, aLockThatFailsIsAnError)
{
    for (std::size_t call = 0; call < 2; ++call) { // open, flock
        FailingFileCalls calls;
        calls.failingCall = call;
        EXPECT_FALSE(settingsFile(calls).lock()) << call;
    }
}

TEST_F(SettingsFileTest, filesAreSetAsideUnderNewNames)
{
    Names expected;
    for (const char *text : {"first", "second", "third"}) {
        writeFile(m_path, text);
        const auto name = settingsFile().setAside();
        ASSERT_TRUE(name);
        EXPECT_EQ(name.value().rfind(m_path + ".damaged-2", 0), 0U) << name.value();
        EXPECT_EQ(textOfFile(name.value()), text);
        EXPECT_EQ(access(m_path.c_str(), F_OK), -1);
        expected.push_back(name.value().substr(m_folder.path().size() + 1));
    }
    std::sort(expected.begin(), expected.end());

    EXPECT_EQ(namesIn(m_folder.path()), expected);
}

TEST_F(SettingsFileTest, aNameThatIsTakenIsNotUsedToSetAside)
{
    writeFile(m_path, "text");
    FailingFileCalls calls;
    calls.failingCall = 0;
    calls.errorNumber = EEXIST;
    const auto name = settingsFile(calls).setAside();

    ASSERT_TRUE(name);
    EXPECT_TRUE(name.value().ends_with("Z-2")) << name.value();
}

TEST_F(SettingsFileTest, aFileThatCannotBeSetAsideStays)
{
    writeFile(m_path, "text");
    for (const std::size_t call : {0U, 2U}) { // open, rename
        FailingFileCalls calls;
        calls.failingCall = call;
        EXPECT_FALSE(settingsFile(calls).setAside()) << call;
        EXPECT_EQ(namesIn(m_folder.path()), Names{"settings.plist"});
        EXPECT_EQ(textOfFile(m_path), "text");
    }
}

TEST_F(SettingsFileTest, knowsItsFolder)
{
    EXPECT_EQ(settingsFile().folder(), m_folder.path());
    m_path = "/settings.plist";
    EXPECT_EQ(settingsFile().folder(), "/");
    m_path = "settings.plist";
    EXPECT_EQ(settingsFile().folder(), ".");
}

} // namespace
} // namespace tessaly
