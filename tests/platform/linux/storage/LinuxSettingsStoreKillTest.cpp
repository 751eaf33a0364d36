// Several processes flush to one file and are killed on the way.

#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// A process that flushes one key after the other, named by its number, and tells of each.
class Writer {
public:
    Writer(const std::string &path, const std::string &prefix)
        : m_progress(newPipe()), m_process([&] {
              FailingFileCalls calls;
              calls.beforeEach = [&] { tell(callEvent); };
              LinuxSettingsStore store(path, calls);
              for (int i = 0;; ++i) {
                  store.setInteger(prefix + std::to_string(i), i);
                  tell(store.flush() ? flushEvent : failureEvent);
              }
          })
    {
        close(m_progress[1]);
    }
    ~Writer() { close(m_progress[0]); }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;

    /// Waits until it has made so many calls more.
    void waitForCalls(int count)
    {
        while (count > 0 && readEvent()) {
            count -= m_lastEvent == callEvent ? 1 : 0;
        }
    }

    /// Kills it in the middle of whatever it does, and answers how many keys it had flushed.
    int kill()
    {
        m_process.kill();
        EXPECT_TRUE(m_process.wasKilled());
        while (readEvent()) {}
        return m_flushCount;
    }

private:
    static constexpr char callEvent = 'c';
    static constexpr char flushEvent = 'f';
    static constexpr char failureEvent = '!';

    static std::array<int, 2> newPipe()
    {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        return ends;
    }

    void tell(char event) const { (void)!write(m_progress[1], &event, 1); }

    bool readEvent()
    {
        if (read(m_progress[0], &m_lastEvent, 1) != 1) {
            return false;
        }
        EXPECT_NE(m_lastEvent, failureEvent);
        m_flushCount += m_lastEvent == flushEvent ? 1 : 0;
        return true;
    }

    std::array<int, 2> m_progress;
    KillableChild m_process;
    char m_lastEvent = 0;
    int m_flushCount = 0;
};

class LinuxSettingsStoreKillTest : public testing::Test {
protected:
    /// The first `count` keys of a writer are there.
    void expectKeys(const std::string &prefix, int count) const
    {
        const LoggedWarnings log;
        const LinuxSettingsStore store(m_path);
        EXPECT_EQ(log.lines(), Names()); // such as that the file is damaged
        for (int i = 0; i < count; ++i) {
            const std::string key = prefix + std::to_string(i);
            EXPECT_TRUE(store.hasKey(key)) << key;
            EXPECT_EQ(store.integer(key), i) << key;
        }
    }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("settings.plist");
};

TEST_F(LinuxSettingsStoreKillTest, killedBeforeAnyCallNothingFlushedIsLost)
{
    LinuxSettingsStore(m_path).setInteger("old", 1);
    bool isWhole = false;
    bool hasLeftNew = false;
    for (std::size_t call = 0; !isWhole; ++call) {
        SCOPED_TRACE(call);
        KillableChild writer([&] {
            FailingFileCalls calls;
            LinuxSettingsStore store(m_path, calls);
            store.setInteger("new", static_cast<int>(call));
            calls.fatalCall = calls.log().size() + call;
            store.flush();
        });
        isWhole = !writer.wasKilled();

        const LoggedWarnings log;
        LinuxSettingsStore store(m_path);
        EXPECT_EQ(store.integer("old"), 1);
        hasLeftNew = hasLeftNew || (!isWhole && store.hasKey("new"));
        store.remove("new");
        EXPECT_TRUE(store.flush());
        EXPECT_EQ(log.lines(), Names());
        EXPECT_EQ(namesIn(m_folder.path()), (Names{"settings.plist", "settings.plist.lock"}));
    }
    EXPECT_TRUE(hasLeftNew);
}

TEST_F(LinuxSettingsStoreKillTest, killedAtAnyMomentNothingFlushedIsLost)
{
    for (int round = 0; round < 20; ++round) {
        const std::string first = "first " + std::to_string(round) + ' ';
        const std::string second = "second " + std::to_string(round) + ' ';
        Writer writer(m_path, first);
        Writer other(m_path, second);
        // A flush takes about twenty calls: each round ends at another one of them.
        writer.waitForCalls(40 + 3 * round);
        const int count = writer.kill();
        expectKeys(first, count);
        other.waitForCalls(40 + 7 * round);
        const int otherCount = other.kill();

        SCOPED_TRACE(round);
        EXPECT_GT(count + otherCount, 0);
        expectKeys(first, count);
        expectKeys(second, otherCount);
        EXPECT_EQ(namesIn(m_folder.path()), (Names{"settings.plist", "settings.plist.lock"}));
    }
}

} // namespace
} // namespace tessaly
