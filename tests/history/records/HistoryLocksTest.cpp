// What the history store does under its locks, and what not.

#include "tests/history/CallOnThread.hpp"
#include "tests/history/records/HistoryStoreTest.hpp"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

namespace tessaly {
namespace {

class HistoryLocksTest : public HistoryStoreTest {};

TEST_F(HistoryLocksTest, theListIsTouchedUnderItsLockAlone)
{
    const auto store = openStore();
    const Record first = record("A");
    const Record second = record("B");
    store->addItem(first);
    store->addItem(second);
    const std::vector<std::pair<const char *, std::function<void()>>> calls{
        {"allItems", [&] { (void)store->allItems(); }},
        {"addItem", [&] { store->addItem(record("C")); }},
        {"addItems", [&] { store->addItems({record("D")}); }},
        {"itemForKey", [&] { (void)store->itemForKey("A"); }},
        {"getMostRecentScan", [&] { (void)store->getMostRecentScan(); }},
        {"problem", [&] { (void)store->problem(); }},
        {"removeItem", [&] { store->removeItem(first); }},
        {"takeOut", [&] { store->takeOut({second}); }},
        {"saveChanges", [&] { store->saveChanges(); }},
        {"takeKeysWithoutRecord", [&] { (void)store->takeKeysWithoutRecord(); }},
    };
    for (const auto &[name, call] : calls) {
        std::unique_lock lock(OwnHistoryStore::listLock(*store));
        const CallOnThread called(call);
        EXPECT_TRUE(called.sleeps()) << name;
        lock.unlock();
    }
    EXPECT_EQ(keysOf(store->allItems()), (Keys{"C", "D"}));
}

TEST_F(HistoryLocksTest, theRecordsThatCannotBeReadAtFirstComeUnderTheListsLock)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));

    std::unique_lock lock(OwnHistoryStore::listLock(*store));
    {
        const CallOnThread called([&] { store->readAgain(); });
        EXPECT_TRUE(called.sleeps());
        lock.unlock();
    }
    EXPECT_EQ(keysOf(store->allItems()), Keys{"A"});
}

TEST_F(HistoryLocksTest, aSaveThatHasToWaitWritesTheListAsItIsThen)
{
    const auto store = openStore();
    store->addItem(record("A"));

    std::unique_lock lock(OwnHistoryStore::filesLock(*store));
    {
        const CallOnThread saved([&] { store->saveChanges(); });
        ASSERT_TRUE(saved.sleeps());
        store->addItem(record("B"));
        lock.unlock();
    }
    EXPECT_EQ(savedKeys(), (Keys{"A", "B"}));
}

TEST_F(HistoryLocksTest, whoIsToldMayUseTheStoreFromAnyThread)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    int messageCount = 0;
    m_window.onHistoryMessage = [&] {
        ++messageCount;
        // On another thread, since one may not try to take a lock that it holds.
        std::thread([&] {
            for (std::mutex *lock :
                 {&OwnHistoryStore::filesLock(*store), &OwnHistoryStore::listLock(*store)}) {
                const std::unique_lock taken(*lock, std::try_to_lock);
                EXPECT_TRUE(taken.owns_lock()) << messageCount;
            }
        }).join();
    };
    const Record first = record("A");
    const Record second = record("B");
    const auto makeReadable = [&] {
        ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
        ASSERT_TRUE(writeHistoryFile({record("old")}, m_historyFile));
    };

    store->addItem(first);
    store->addItems({second, record("C")});
    makeReadable();
    store->saveChanges();
    EXPECT_EQ(messageCount, 3);
    store->removeItem(first);
    store->takeOut({second});
    store->finishRemoval(*second);
    store->removeItemWithKey("C");
    store->removeAllScans();
    EXPECT_EQ(messageCount, 7);
}

TEST_F(HistoryLocksTest, whoIsToldOfAHistoryThatIsReadAgainMayUseTheStore)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    bool isTold = false;
    m_window.onHistoryMessage = [&] {
        isTold = true;
        std::thread([&] {
            const std::unique_lock files(OwnHistoryStore::filesLock(*store), std::try_to_lock);
            const std::unique_lock list(OwnHistoryStore::listLock(*store), std::try_to_lock);
            EXPECT_TRUE(files.owns_lock());
            EXPECT_TRUE(list.owns_lock());
        }).join();
    };
    store->readAgain();
    EXPECT_TRUE(isTold);
}

} // namespace
} // namespace tessaly
