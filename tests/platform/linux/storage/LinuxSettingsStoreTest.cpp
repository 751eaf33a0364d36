#include "platform/linux/storage/LinuxSettingsStore.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

constexpr std::chrono::milliseconds atOnce{0};

class NoRenaming final : public archive::FileCalls {
public:
    int rename(const char * /*from*/, const char * /*to*/) override
    {
        errno = EPERM;
        return -1;
    }
};

class LinuxSettingsStoreTest : public testing::Test {
protected:
    /// What is on disk, read on its own.
    [[nodiscard]] archive::PlistDictionary onDisk() const
    {
        auto content = SettingsFile(m_path, archive::FileCalls::system(), atOnce).read();
        EXPECT_TRUE(content) << (content ? "" : content.error().text());
        return content && content.value() ? std::move(*content.value())
                                          : archive::PlistDictionary();
    }

    void putOnDisk(const archive::PlistDictionary &content) const
    {
        ASSERT_TRUE(SettingsFile(m_path, archive::FileCalls::system(), atOnce).write(content));
    }

    /// The content of the one file that was set aside.
    [[nodiscard]] std::string setAside() const
    {
        Names names = namesIn(m_folder.path());
        std::erase_if(names, [](const std::string &name) {
            return name.find(".damaged-") == std::string::npos;
        });
        EXPECT_EQ(names.size(), 1U);
        return names.empty() ? "" : textOfFile(m_folder.path(names[0]));
    }

    [[nodiscard]] static bool isLink(const std::string &path)
    {
        return std::filesystem::is_symlink(path);
    }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("settings.plist");
};

TEST_F(LinuxSettingsStoreTest, flushedValuesAreThereInTheNextRun)
{
    const SettingsStore::Data data{std::byte{0}, std::byte{255}};
    {
        LinuxSettingsStore store(m_path);
        store.setInteger("integer", -5);
        store.setText("text", "\xC3\xA9");
        store.setData("data", data);
        EXPECT_TRUE(store.flush());
    }
    const LinuxSettingsStore store(m_path);

    EXPECT_EQ(store.integer("integer"), -5);
    EXPECT_EQ(store.text("text"), "\xC3\xA9");
    EXPECT_EQ(store.data("data"), data);
}

TEST_F(LinuxSettingsStoreTest, theDestructorFlushesChanges)
{
    LinuxSettingsStore(m_path).setInteger("key", 1);

    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
}

TEST_F(LinuxSettingsStoreTest, thePrivateFolderIsMadeWithTheFirstChange)
{
    m_path = m_folder.path("config/tessaly/settings.plist");
    LinuxSettingsStore store(m_path);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(namesIn(m_folder.path()), Names());

    store.setInteger("key", 1);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(modeOf(m_folder.path("config")), 0700U);
    EXPECT_EQ(modeOf(m_folder.path("config/tessaly")), 0700U);
    EXPECT_EQ(modeOf(m_path), 0600U);
    EXPECT_EQ(namesIn(m_folder.path("config/tessaly")),
              (Names{"settings.plist", "settings.plist.lock"}));
}

TEST_F(LinuxSettingsStoreTest, aPathWithoutFolderLiesInTheCurrentOne)
{
    runInChild([this] {
        ASSERT_EQ(chdir(m_folder.path().c_str()), 0);
        LinuxSettingsStore store("settings.plist");
        store.setInteger("key", 1);
        EXPECT_TRUE(store.flush());
    });

    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
}

TEST_F(LinuxSettingsStoreTest, valuesOfOtherTypesReadAsNothingAndStayAsTheyAre)
{
    const archive::PlistDictionary others{
        {"array", archive::PlistArray{1, "two"}},
        {"date", archive::PlistDate{1.5}},
        {"dictionary", archive::PlistDictionary{{"inner", archive::PlistArray()}}},
        {"null", archive::PlistValue()},
        {"uid", archive::PlistUid{4}}};
    putOnDisk(others);
    LinuxSettingsStore store(m_path);
    for (const auto &[key, value] : others) {
        EXPECT_TRUE(store.hasKey(key)) << key;
        EXPECT_EQ(store.integer(key), 0) << key;
        EXPECT_EQ(store.text(key), std::nullopt) << key;
        EXPECT_EQ(store.data(key), std::nullopt) << key;
    }
    store.setInteger("key", 1);
    EXPECT_TRUE(store.flush());

    archive::PlistDictionary expected = others;
    expected.emplace("key", 1);
    EXPECT_EQ(onDisk(), expected);
}

TEST_F(LinuxSettingsStoreTest, numbersOfOtherTypesReadAsIntegersAndStayAsTheyAre)
{
    constexpr std::int64_t first = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<archive::PlistValue, std::int64_t>> cases{
        {false, 0},
        {true, 1},
        {4.0, 4},
        {1.9, 1},
        {-1.9, -1},
        {-0.0, 0},
        {std::numeric_limits<double>::quiet_NaN(), 0},
        {infinity, last},
        {-infinity, first},
        {0x1p63, last},
        {0x1.fffffffffffffp62, 0x7FFF'FFFF'FFFF'FC00},
        {-0x1p63, first},
        {-0x1.0000000000001p63, first},
        {std::uint64_t{1} << 63U, last},
        {std::numeric_limits<std::uint64_t>::max(), last}};
    archive::PlistDictionary numbers;
    for (const auto &[number, expected] : cases) {
        numbers.emplace("key " + std::to_string(numbers.size()), number);
    }
    putOnDisk(numbers);
    const ino_t before = inodeOf(m_path);
    {
        LinuxSettingsStore store(m_path);
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const std::string key = "key " + std::to_string(i);
            EXPECT_EQ(store.integer(key), cases[i].second) << key;
            EXPECT_EQ(store.text(key), std::nullopt) << key;
            EXPECT_EQ(store.data(key), std::nullopt) << key;
        }
        EXPECT_TRUE(store.flush());
    }
    EXPECT_EQ(inodeOf(m_path), before);
    EXPECT_EQ(onDisk(), numbers);
}

TEST_F(LinuxSettingsStoreTest, readingAsAnotherTypeRewritesNothing)
{
    putOnDisk({{"key", "4"}});
    const ino_t before = inodeOf(m_path);
    {
        LinuxSettingsStore store(m_path);
        EXPECT_EQ(store.integer("key"), 0);
        EXPECT_EQ(store.data("key"), std::nullopt);
        EXPECT_TRUE(store.flush());
    }

    EXPECT_EQ(inodeOf(m_path), before);
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", "4"}}));
}

TEST_F(LinuxSettingsStoreTest, aFlushWithoutChangesWritesNothing)
{
    LinuxSettingsStore store(m_path);
    store.setInteger("key", 1);
    EXPECT_TRUE(store.flush());
    const ino_t before = inodeOf(m_path);
    store.remove("missing");
    EXPECT_TRUE(store.flush());

    EXPECT_EQ(inodeOf(m_path), before);
}

TEST_F(LinuxSettingsStoreTest, twoInstancesKeepEachOthersKeys)
{
    LinuxSettingsStore first(m_path);
    LinuxSettingsStore second(m_path);
    first.setInteger("of the first", 1);
    second.setInteger("of the second", 2);
    EXPECT_TRUE(first.flush());
    EXPECT_TRUE(second.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"of the first", 1}, {"of the second", 2}}));
    EXPECT_EQ(second.integer("of the first"), 1);

    first.setText("another of the first", "text");
    EXPECT_TRUE(first.flush());
    EXPECT_EQ(onDisk().size(), 3U);
    EXPECT_EQ(first.integer("of the second"), 2);
}

TEST_F(LinuxSettingsStoreTest, aFlushWithoutChangesShowsThoseOfOthers)
{
    LinuxSettingsStore first(m_path);
    LinuxSettingsStore second(m_path);
    second.setInteger("key", 2);
    EXPECT_TRUE(second.flush());
    EXPECT_FALSE(first.hasKey("key"));

    EXPECT_TRUE(first.flush());
    EXPECT_EQ(first.integer("key"), 2);
}

TEST_F(LinuxSettingsStoreTest, theLastFlushOfAKeyStays)
{
    LinuxSettingsStore first(m_path);
    LinuxSettingsStore second(m_path);
    second.setInteger("key", 2);
    first.setInteger("key", 1);
    EXPECT_TRUE(first.flush());
    EXPECT_TRUE(second.flush());
    EXPECT_EQ(second.integer("key"), 2);

    EXPECT_TRUE(first.flush());
    EXPECT_EQ(first.integer("key"), 2);
}

TEST_F(LinuxSettingsStoreTest, aDefaultGivesWayToWhatCouldNotBeReadBefore)
{
    putOnDisk({{"key", 7}, {"text", "seven"}});
    FailingFileCalls calls;
    calls.failingCall = 0;
    calls.errorNumber = EMFILE;
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path, calls);
    EXPECT_EQ(log.lines().size(), 1U);
    EXPECT_FALSE(store.hasKey("key"));
    store.setDefault("key", 1);
    store.setDefault("text", 1);
    store.setDefault("missing", 1);
    EXPECT_EQ(store.integer("key"), 1);

    EXPECT_TRUE(store.flush());
    EXPECT_EQ(store.integer("key"), 7);
    EXPECT_EQ(store.text("text"), "seven");
    EXPECT_EQ(store.integer("missing"), 1);
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 7}, {"missing", 1}, {"text", "seven"}}));
}

TEST_F(LinuxSettingsStoreTest, aDefaultGivesWayToWhatAnotherInstanceStored)
{
    LinuxSettingsStore second(m_path, archive::FileCalls::system(), atOnce);
    second.setDefault("key", 1);
    {
        const auto lock = SettingsFile(m_path, archive::FileCalls::system(), atOnce).lock();
        const LoggedWarnings log;
        EXPECT_FALSE(second.flush()); // so it is still pending when the other one has stored
        EXPECT_EQ(log.lines().size(), 1U);
    }
    LinuxSettingsStore first(m_path);
    first.setInteger("key", 7);
    EXPECT_TRUE(first.flush());

    EXPECT_TRUE(second.flush());
    EXPECT_EQ(second.integer("key"), 7);
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 7}}));
}

TEST_F(LinuxSettingsStoreTest, aValueThatWasSetAfterTheDefaultStays)
{
    LinuxSettingsStore first(m_path);
    LinuxSettingsStore second(m_path);
    first.setInteger("key", 7);
    EXPECT_TRUE(first.flush());
    second.setDefault("key", 1);
    second.setInteger("key", 2);
    second.setDefault("key", 1);

    EXPECT_TRUE(second.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 2}}));
}

TEST_F(LinuxSettingsStoreTest, aDefaultTakesThePlaceOfAValueThatWasRemoved)
{
    putOnDisk({{"key", 7}});
    LinuxSettingsStore store(m_path);
    store.remove("key");
    store.setDefault("key", 1);
    EXPECT_EQ(store.integer("key"), 1);

    EXPECT_TRUE(store.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
}

TEST_F(LinuxSettingsStoreTest, whatAnotherInstanceRemovedDoesNotComeBack)
{
    LinuxSettingsStore first(m_path);
    first.setInteger("key", 1);
    EXPECT_TRUE(first.flush());
    LinuxSettingsStore second(m_path);
    second.remove("key");
    EXPECT_TRUE(second.flush());
    EXPECT_TRUE(first.hasKey("key"));

    first.setInteger("other", 2);
    EXPECT_TRUE(first.flush());
    EXPECT_FALSE(first.hasKey("key"));
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"other", 2}}));
}

TEST_F(LinuxSettingsStoreTest, threadsOfSeveralInstancesLoseNothing)
{
    LinuxSettingsStore first(m_path);
    LinuxSettingsStore second(m_path);
    std::vector<std::jthread> threads;
    for (auto *store : {&first, &second}) {
        for (const char *name : {"a", "b"}) {
            const std::string prefix = (store == &first ? "first " : "second ") + std::string(name);
            threads.emplace_back([store, prefix] {
                for (int i = 0; i < 20; ++i) {
                    store->setInteger(prefix + std::to_string(i), i);
                    EXPECT_TRUE(store->flush());
                }
            });
        }
    }
    threads.clear();

    EXPECT_EQ(onDisk().size(), 80U);
}

TEST_F(LinuxSettingsStoreTest, valuesAreReadAndChangedWhileAnotherThreadWaitsForTheDisk)
{
    FailingFileCalls calls;
    LinuxSettingsStore store(m_path, calls);
    store.setInteger("key", 1);
    store.setInteger("other", 1);
    std::size_t seen = 0;
    calls.beforeEach = [&] {
        std::jthread([&] {
            seen += store.integer("other") == 1 ? 1U : 0U;
            if (seen == 1) {
                store.setInteger("key", 2);
            }
        });
    };
    const std::size_t callsBefore = calls.log().size();
    EXPECT_TRUE(store.flush());
    calls.beforeEach = [] {};
    EXPECT_EQ(seen, calls.log().size() - callsBefore);
    EXPECT_EQ(store.integer("key"), 2);
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}, {"other", 1}}));

    EXPECT_TRUE(store.flush()); // what was changed meanwhile was still pending
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 2}, {"other", 1}}));
}

TEST_F(LinuxSettingsStoreTest, aDamagedFileIsSetAsideWithAWarning)
{
    writeFile(m_path, "damaged\n");
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path);
    EXPECT_FALSE(store.hasKey("key"));
    EXPECT_EQ(setAside(), "damaged\n");
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].rfind("tessaly.settings: " + m_path + " holds no settings (", 0), 0U)
        << log.lines()[0];

    store.setInteger("key", 1);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
    EXPECT_EQ(setAside(), "damaged\n");
}

TEST_F(LinuxSettingsStoreTest, aFileThatIsDamagedMeanwhileTakesNothingThatIsKnown)
{
    LinuxSettingsStore store(m_path);
    store.setInteger("known", 1);
    EXPECT_TRUE(store.flush());
    writeFile(m_path, "damaged");
    store.setInteger("new", 2);
    const LoggedWarnings log;
    EXPECT_TRUE(store.flush());

    EXPECT_EQ(setAside(), "damaged");
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"known", 1}, {"new", 2}}));
}

TEST_F(LinuxSettingsStoreTest, aFileThatIsRemovedMeanwhileTakesNothingThatIsKnown)
{
    LinuxSettingsStore store(m_path);
    store.setInteger("known", 1);
    EXPECT_TRUE(store.flush());
    ASSERT_EQ(unlink(m_path.c_str()), 0);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(store.integer("known"), 1);

    store.setInteger("new", 2);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"known", 1}, {"new", 2}}));
}

TEST_F(LinuxSettingsStoreTest, aFileThatAnotherInstanceMendedMeanwhileIsNotSetAside)
{
    writeFile(m_path, "damaged");
    const LoggedWarnings log;
    FailingFileCalls calls;
    calls.beforeEach = [&] {
        if (calls.hasCalled("flock")) { // after the file was read first
            putOnDisk({{"key", 1}});
        }
    };
    const LinuxSettingsStore store(m_path, calls);

    EXPECT_EQ(store.integer("key"), 1);
    EXPECT_EQ(log.lines(), Names());
    EXPECT_EQ(namesIn(m_folder.path()), (Names{"settings.plist", "settings.plist.lock"}));
}

TEST_F(LinuxSettingsStoreTest, aDamagedFileThatCannotBeSetAsideIsLeftAlone)
{
    writeFile(m_path, "damaged");
    const LoggedWarnings log;
    {
        NoRenaming calls;
        LinuxSettingsStore store(m_path, calls);
        store.setInteger("key", 1);
        EXPECT_FALSE(store.flush());
    }

    EXPECT_EQ(textOfFile(m_path), "damaged");
    EXPECT_EQ(log.lines(),
              Names{"tessaly.settings: cannot set aside " + m_path + ": Operation not permitted"});
}

TEST_F(LinuxSettingsStoreTest, aFileThatMayNotBeReadIsLeftAlone)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    writeFile(m_path, "somebody else's");
    ASSERT_EQ(chmod(m_path.c_str(), 0600), 0);
    ASSERT_EQ(chmod(m_folder.path().c_str(), 0777), 0);
    runUnprivileged([this] {
        const LoggedWarnings log;
        LinuxSettingsStore store(m_path);
        store.setInteger("key", 1);
        EXPECT_FALSE(store.flush());
        EXPECT_EQ(store.integer("key"), 1);
        EXPECT_EQ(log.lines(),
                  Names{"tessaly.settings: cannot read " + m_path + ": Permission denied"});
    });

    EXPECT_EQ(textOfFile(m_path), "somebody else's");
    EXPECT_EQ(namesIn(m_folder.path()), (Names{"settings.plist", "settings.plist.lock"}));
}

TEST_F(LinuxSettingsStoreTest, whatIsNoFileIsLeftAlone)
{
    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path);
    EXPECT_TRUE(store.flush());
    store.setInteger("key", 1);
    EXPECT_FALSE(store.flush());
    struct stat status = {};
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));

    ASSERT_EQ(unlink(m_path.c_str()), 0);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
}

TEST_F(LinuxSettingsStoreTest, whatCannotBeReadForNowIsReadLater)
{
    putOnDisk({{"old", 1}});
    FailingFileCalls calls;
    calls.failingCall = 0;
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path, calls);
    EXPECT_FALSE(store.hasKey("old"));
    EXPECT_EQ(log.lines(),
              Names{"tessaly.settings: cannot read " + m_path + ": Input/output error"});
    store.setInteger("new", 2);
    EXPECT_TRUE(store.flush());

    EXPECT_EQ(store.integer("old"), 1);
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"new", 2}, {"old", 1}}));
}

TEST_F(LinuxSettingsStoreTest, aReadOnlyFolderKeepsTheChangesPending)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    putOnDisk({{"old", 1}});
    ASSERT_EQ(chmod(m_path.c_str(), 0644), 0);
    runUnprivileged([this] {
        const LoggedWarnings log;
        LinuxSettingsStore store(m_path);
        EXPECT_EQ(store.integer("old"), 1);
        store.setInteger("new", 2);
        EXPECT_FALSE(store.flush());
        EXPECT_EQ(store.integer("new"), 2);
        EXPECT_EQ(log.lines(), Names{"tessaly.settings: cannot open the lock of " + m_path +
                                     ": Permission denied"});
    });

    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"old", 1}}));
}

TEST_F(LinuxSettingsStoreTest, theSameFailureIsLoggedOnceUntilItIsOver)
{
    const std::string folder = m_folder.path("config");
    m_path = folder + "/settings.plist";
    const std::string complaint =
        "tessaly.settings: cannot make the folder of " + m_path + ": Not a directory";
    LinuxSettingsStore store(m_path);
    const LoggedWarnings log;
    for (std::size_t failureCount = 1; failureCount <= 2; ++failureCount) {
        writeFile(folder, "");
        for (const char *key : {"a", "b", "c"}) {
            store.setInteger(key, static_cast<std::int64_t>(failureCount));
            EXPECT_FALSE(store.flush());
            EXPECT_FALSE(store.flush());
        }
        EXPECT_EQ(log.lines(), Names(failureCount, complaint));

        ASSERT_EQ(unlink(folder.c_str()), 0);
        EXPECT_TRUE(store.flush());
        std::filesystem::remove_all(folder);
    }
}

TEST_F(LinuxSettingsStoreTest, aLinkStaysAndTheFileBehindItIsReplaced)
{
    m_folder.folder("dotfiles");
    const std::string target = m_folder.path("dotfiles/mine");
    ASSERT_EQ(symlink("dotfiles/middle", m_path.c_str()), 0);
    ASSERT_EQ(symlink(target.c_str(), m_folder.path("dotfiles/middle").c_str()), 0);
    {
        LinuxSettingsStore store(m_path); // the links lead nowhere so far
        store.setInteger("key", 1);
        EXPECT_TRUE(store.flush());
        store.setInteger("key", 2);
        EXPECT_TRUE(store.flush());
    }
    EXPECT_TRUE(isLink(m_path));
    EXPECT_TRUE(isLink(m_folder.path("dotfiles/middle")));
    EXPECT_FALSE(isLink(target));
    EXPECT_EQ(LinuxSettingsStore(m_path).integer("key"), 2);
    EXPECT_EQ(LinuxSettingsStore(target).integer("key"), 2);
    EXPECT_EQ(namesIn(m_folder.path()),
              (Names{"dotfiles", "settings.plist", "settings.plist.lock"}));
    EXPECT_EQ(namesIn(m_folder.path("dotfiles")), (Names{"middle", "mine"}));
}

TEST_F(LinuxSettingsStoreTest, aDamagedFileBehindALinkIsSetAsideThere)
{
    m_folder.folder("dotfiles");
    writeFile(m_folder.path("dotfiles/mine"), "damaged\n");
    writeFile(m_folder.path("dotfiles/.tessaly-0123456789abcdef.tmp"), "of a killed process");
    ASSERT_EQ(symlink("dotfiles/mine", m_path.c_str()), 0);
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path);
    store.setInteger("key", 1);
    EXPECT_TRUE(store.flush());
    EXPECT_TRUE(isLink(m_path));
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
    const Names names = namesIn(m_folder.path("dotfiles"));
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[0], "mine");
    EXPECT_TRUE(names[1].starts_with("mine.damaged-")) << names[1];
    EXPECT_EQ(textOfFile(m_folder.path("dotfiles/" + names[1])), "damaged\n");
}

TEST_F(LinuxSettingsStoreTest, linksInACircleAreLeftAlone)
{
    ASSERT_EQ(symlink("settings.plist", m_path.c_str()), 0);
    const LoggedWarnings log;
    LinuxSettingsStore store(m_path);
    store.setInteger("key", 1);
    EXPECT_FALSE(store.flush());
    EXPECT_TRUE(isLink(m_path));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(LinuxSettingsStoreTest, whileAnotherHoldsTheLockTheChangesStayPending)
{
    LinuxSettingsStore store(m_path, archive::FileCalls::system(), atOnce);
    store.setInteger("key", 1);
    {
        const auto lock = SettingsFile(m_path, archive::FileCalls::system(), atOnce).lock();
        ASSERT_TRUE(lock);
        const LoggedWarnings log;
        EXPECT_FALSE(store.flush());
        EXPECT_EQ(log.lines(), Names{"tessaly.settings: cannot lock " + m_path +
                                     ": Resource temporarily unavailable"});
        EXPECT_EQ(store.integer("key"), 1);
    }

    EXPECT_TRUE(store.flush());
    EXPECT_EQ(onDisk(), (archive::PlistDictionary{{"key", 1}}));
}

TEST_F(LinuxSettingsStoreTest, aFlushWithoutChangesWaitsForNoLock)
{
    putOnDisk({{"key", 1}});
    const auto lock = SettingsFile(m_path, archive::FileCalls::system(), atOnce).lock();
    ASSERT_TRUE(lock);
    LinuxSettingsStore store(m_path, archive::FileCalls::system(), std::chrono::hours(1));

    EXPECT_TRUE(store.flush());
    EXPECT_EQ(store.integer("key"), 1);
}

TEST_F(LinuxSettingsStoreTest, whateverCallFailsNothingIsLost)
{
    const archive::PlistDictionary old{{"kept", "text"}, {"removed", 1}};
    archive::PlistDictionary merged{{"kept", "text"}, {"new", 2}};
    const int descriptors = openDescriptorCount();
    const LoggedWarnings log;
    for (const int errorNumber : {ENOSPC, EIO, EDQUOT, EROFS, ENOMEM}) {
        bool allCallsHaveFailed = false;
        for (std::size_t call = 0; !allCallsHaveFailed; ++call) {
            SCOPED_TRACE(std::to_string(errorNumber) + " at " + std::to_string(call));
            putOnDisk(old);
            FailingFileCalls calls;
            LinuxSettingsStore store(m_path, calls);
            store.setInteger("new", 2);
            store.remove("removed");
            calls.failingCall = calls.log().size() + call;
            calls.errorNumber = errorNumber;
            const std::size_t linesBefore = log.lines().size();
            const bool isFlushed = store.flush();
            allCallsHaveFailed = calls.log().size() <= calls.failingCall;
            calls.failingCall = FailingFileCalls::never;

            EXPECT_EQ(log.lines().size() - linesBefore, isFlushed ? 0U : 1U);
            EXPECT_EQ(onDisk(), calls.hasCalled("rename") ? merged : old);
            EXPECT_TRUE(!isFlushed || calls.hasCalled("rename"));
            EXPECT_EQ(store.integer("new"), 2);
            EXPECT_FALSE(store.hasKey("removed"));

            // Another process changes something before the next try, which finds both.
            putOnDisk({{"kept", "text"}, {"removed", 1}, {"others", 3}});
            EXPECT_TRUE(store.flush());
            EXPECT_EQ(onDisk().contains("removed"), isFlushed);
            EXPECT_EQ(onDisk().contains("new"), !isFlushed);
            EXPECT_EQ(store.integer("others"), 3);
            EXPECT_EQ(namesIn(m_folder.path()), (Names{"settings.plist", "settings.plist.lock"}));
            EXPECT_EQ(openDescriptorCount(), descriptors);
        }
    }
}

TEST_F(LinuxSettingsStoreTest, leftoversOfTheDeadAreRemoved)
{
    writeFile(m_folder.path(".tessaly-0123456789abcdef.tmp"), "half");
    const LinuxSettingsStore store(m_path);

    EXPECT_EQ(namesIn(m_folder.path()), Names());
}

} // namespace
} // namespace tessaly
