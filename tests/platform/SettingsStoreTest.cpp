// What every store of settings does.

#include "platform/SettingsStore.hpp"

#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

using Data = SettingsStore::Data;

class FakeHarness {
public:
    SettingsStore &store() { return m_store; }
    void setFlushFails(bool fails) { m_store.setFlushFails(fails); }

private:
    FakeSettingsStore m_store;
};

/// A disk that can be write-protected.
class ProtectedFileCalls final : public archive::FileCalls {
public:
    bool isProtected = false;

    int open(const char *path, int flags, mode_t mode) override
    {
        if (isProtected) {
            errno = EROFS;
            return -1;
        }
        return archive::FileCalls::open(path, flags, mode);
    }
};

class LinuxHarness {
public:
    SettingsStore &store() { return m_store; }
    void setFlushFails(bool fails) { m_calls.isProtected = fails; }

private:
    TemporaryFolder m_folder;
    LoggedWarnings m_log; // a flush that fails says so
    ProtectedFileCalls m_calls;
    LinuxSettingsStore m_store{m_folder.path("settings.plist"), m_calls};
};

template <typename Harness>
class SettingsStoreTest : public testing::Test {
protected:
    SettingsStore &store() { return m_harness.store(); }

    /// The key has that value or none, as each of the types.
    void expect(std::string_view key, std::int64_t integer, const std::optional<std::string> &text,
                const std::optional<Data> &data)
    {
        EXPECT_EQ(store().integer(key), integer) << key;
        EXPECT_EQ(store().text(key), text) << key;
        EXPECT_EQ(store().data(key), data) << key;
    }

    Harness m_harness;
};

class HarnessNames {
public:
    template <typename Harness>
    static std::string GetName(int /*index*/) // NOLINT(readability-identifier-naming): GoogleTest's
    {
        return std::is_same_v<Harness, FakeHarness> ? "Fake" : "Linux";
    }
};

using Harnesses = testing::Types<FakeHarness, LinuxHarness>;
TYPED_TEST_SUITE(SettingsStoreTest, Harnesses, HarnessNames);

Data everyByte()
{
    Data bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes.push_back(static_cast<std::byte>(byte));
    }
    return bytes;
}

TYPED_TEST(SettingsStoreTest, aKeyThatWasNotSetHasNoValue)
{
    EXPECT_FALSE(this->store().hasKey("key"));
    this->expect("key", 0, std::nullopt, std::nullopt);
}

TYPED_TEST(SettingsStoreTest, integersComeBackAsTheyWereSet)
{
    for (const std::int64_t number :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{1} << 40U,
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        this->store().setInteger("key", number);
        EXPECT_EQ(this->store().integer("key"), number);
        EXPECT_TRUE(this->store().flush());
        this->expect("key", number, std::nullopt, std::nullopt);
        EXPECT_TRUE(this->store().hasKey("key"));
    }
}

TYPED_TEST(SettingsStoreTest, textsComeBackAsTheyWereSet)
{
    for (const char *text : {"", "4", "a b\nc",
                             "Gr\xC3\xB6\xC3\x9F"
                             "e \xF0\x9F\x93\x81"}) {
        this->store().setText("key", text);
        EXPECT_EQ(this->store().text("key"), text);
        EXPECT_TRUE(this->store().flush());
        this->expect("key", 0, text, std::nullopt);
        EXPECT_TRUE(this->store().hasKey("key"));
    }
}

TYPED_TEST(SettingsStoreTest, dataComesBackAsItWasSet)
{
    for (const Data &data : {Data(), everyByte()}) {
        this->store().setData("key", data);
        EXPECT_EQ(this->store().data("key"), data);
        EXPECT_TRUE(this->store().flush());
        this->expect("key", 0, std::nullopt, data);
        EXPECT_TRUE(this->store().hasKey("key"));
    }
}

TYPED_TEST(SettingsStoreTest, aNewValueTakesThePlaceOfTheOldOneAndOfItsType)
{
    this->store().setInteger("key", 7);
    this->store().setText("key", "seven");
    this->expect("key", 0, "seven", std::nullopt);

    ASSERT_TRUE(this->store().flush());
    this->store().setInteger("key", 8);
    this->expect("key", 8, std::nullopt, std::nullopt);
}

TYPED_TEST(SettingsStoreTest, keysAreToldApartByTheirBytes)
{
    this->store().setInteger("key", 1);
    this->store().setInteger("Key", 2);
    this->store().setInteger("key ", 3);
    this->store().setInteger("", 4);
    this->store().setInteger("cl\xC3\xA9", 5);
    ASSERT_TRUE(this->store().flush());

    EXPECT_EQ(this->store().integer("key"), 1);
    EXPECT_EQ(this->store().integer("Key"), 2);
    EXPECT_EQ(this->store().integer("key "), 3);
    EXPECT_EQ(this->store().integer(""), 4);
    EXPECT_EQ(this->store().integer("cl\xC3\xA9"), 5);
}

TYPED_TEST(SettingsStoreTest, aDefaultIsSetOnlyWhereThereIsNoValue)
{
    this->store().setInteger("integer", 0);
    this->store().setText("text", "");
    this->store().setInteger("removed", 2);
    this->store().remove("removed");
    for (const char *key : {"integer", "text", "removed", "missing"}) {
        this->store().setDefault(key, 4);
    }
    for (int round = 0; round < 2; ++round) {
        this->expect("integer", 0, std::nullopt, std::nullopt);
        this->expect("text", 0, "", std::nullopt);
        this->expect("removed", 4, std::nullopt, std::nullopt);
        this->expect("missing", 4, std::nullopt, std::nullopt);
        EXPECT_TRUE(this->store().flush());
    }
}

TYPED_TEST(SettingsStoreTest, aRemovedKeyHasNoValue)
{
    this->store().setInteger("flushed", 1);
    ASSERT_TRUE(this->store().flush());
    this->store().setInteger("pending", 2);
    this->store().remove("flushed");
    this->store().remove("pending");

    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(this->store().hasKey("flushed"));
        EXPECT_FALSE(this->store().hasKey("pending"));
        EXPECT_TRUE(this->store().flush());
    }
}

TYPED_TEST(SettingsStoreTest, aRemovedKeyCanBeSetAgain)
{
    this->store().setInteger("key", 1);
    this->store().remove("key");
    this->store().setText("key", "again");
    ASSERT_TRUE(this->store().flush());

    EXPECT_EQ(this->store().text("key"), "again");
}

TYPED_TEST(SettingsStoreTest, removingWhatIsNotThereDoesNothing)
{
    this->store().setInteger("key", 1);
    this->store().remove("other");
    ASSERT_TRUE(this->store().flush());

    EXPECT_EQ(this->store().integer("key"), 1);
    EXPECT_FALSE(this->store().hasKey("other"));
}

TYPED_TEST(SettingsStoreTest, aFlushWithoutChangesSucceeds)
{
    EXPECT_TRUE(this->store().flush());
    EXPECT_TRUE(this->store().flush());
}

TYPED_TEST(SettingsStoreTest, aFlushThatFailsLosesNoChange)
{
    this->store().setInteger("removed", 1);
    ASSERT_TRUE(this->store().flush());
    this->store().setInteger("key", 2);
    this->store().remove("removed");
    this->m_harness.setFlushFails(true);
    EXPECT_FALSE(this->store().flush());
    EXPECT_FALSE(this->store().flush());
    EXPECT_EQ(this->store().integer("key"), 2);
    EXPECT_FALSE(this->store().hasKey("removed"));

    this->m_harness.setFlushFails(false);
    EXPECT_TRUE(this->store().flush());
    EXPECT_EQ(this->store().integer("key"), 2);
    EXPECT_FALSE(this->store().hasKey("removed"));
}

TYPED_TEST(SettingsStoreTest, anyThreadMayUseIt)
{
    std::vector<std::jthread> threads;
    for (const char *key : {"a", "b", "c"}) {
        threads.emplace_back([this, key] {
            for (int i = 1; i <= 20; ++i) {
                this->store().setInteger(key, i);
                this->store().setText("shared", key);
                EXPECT_TRUE(this->store().flush());
                EXPECT_EQ(this->store().integer(key), i);
                EXPECT_TRUE(this->store().hasKey("shared"));
            }
        });
    }
    threads.clear();

    for (const char *key : {"a", "b", "c"}) {
        EXPECT_EQ(this->store().integer(key), 20);
    }
}

TEST(FakeSettingsStore, showsWhatAnotherProcessStoredAfterTheNextFlush)
{
    FakeSettingsStore store;
    store.setDefault("default", 1);
    store.setInteger("set", 2);
    for (const char *key : {"default", "set", "new"}) {
        store.storeElsewhere(key, 7);
    }
    store.setFlushFails(true);
    EXPECT_FALSE(store.flush());
    EXPECT_EQ(store.integer("default"), 1);
    EXPECT_FALSE(store.hasKey("new"));
    store.setFlushFails(false);
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(store.integer("default"), 7);
    EXPECT_EQ(store.integer("set"), 2);
    EXPECT_EQ(store.integer("new"), 7);
}

TEST(FakeSettingsStore, recordsChangesAndFlushesInOrder)
{
    FakeSettingsStore store;
    store.setInteger("hiddenItemPreference", 0);
    store.setText("name", "a b");
    store.setData("bookmark", everyByte());
    store.remove("name");
    EXPECT_TRUE(store.hasPendingChanges());
    EXPECT_TRUE(store.flush());
    EXPECT_FALSE(store.hasPendingChanges());
    store.setFlushFails(true);
    EXPECT_FALSE(store.flush());
    store.remove("bookmark");

    EXPECT_FALSE(store.flush());
    EXPECT_TRUE(store.hasPendingChanges());
    EXPECT_EQ(store.log(),
              (std::vector<std::string>{"setInteger hiddenItemPreference 0", "setText name a b",
                                        "setData bookmark 256 bytes", "remove name", "flush",
                                        "flush!", "remove bookmark", "flush!"}));
    store.clearLog();
    EXPECT_TRUE(store.log().empty());
}

} // namespace
} // namespace tessaly
