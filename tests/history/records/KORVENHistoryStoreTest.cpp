#include "history/records/KORVENHistoryStore.hpp"

#include "app/delegate/NamedException.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/history/records/HistoryStoreTest.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {
namespace {

class KORVENHistoryStoreTest : public HistoryStoreTest {};

TEST_F(KORVENHistoryStoreTest, startsEmptyWithoutAFileAndMakesNone)
{
    const auto store = openStore();
    EXPECT_TRUE(store->allItems().empty());
    EXPECT_EQ(store->itemArchivePath(), m_historyFile);
    EXPECT_FALSE(hasFile("scanHistory.archive"));
}

TEST_F(KORVENHistoryStoreTest, anAddedRecordIsToldOfAndNotSavedYet)
{
    const auto store = openStore();
    store->addItem(record("A"));

    EXPECT_EQ(keysOf(store->allItems()), Keys{"A"});
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});
    EXPECT_FALSE(hasFile("scanHistory.archive"));

    EXPECT_TRUE(store->saveChanges());
    EXPECT_EQ(savedKeys(), Keys{"A"});
}

TEST_F(KORVENHistoryStoreTest, theNextStartFindsWhatWasSavedOldestFirst)
{
    const auto store = openStore();
    store->addItem(record("B", 30));
    store->addItem(record("A", 10));
    store->addItem(record("C", 20));
    ASSERT_TRUE(store->saveChanges());

    const auto next = openStore();

    EXPECT_EQ(keysOf(next->allItems()), (Keys{"B", "A", "C"}));
    EXPECT_EQ(next->allItems()[0]->description(), store->allItems()[0]->description());
}

TEST_F(KORVENHistoryStoreTest, aSnapshotDoesNotChange)
{
    const auto store = openStore();
    store->addItem(record("A"));
    const HistoryRecords before = store->allItems();
    store->addItem(record("B"));
    store->removeItemWithKey("A");
    EXPECT_EQ(keysOf(before), Keys{"A"});
    EXPECT_EQ(keysOf(store->allItems()), Keys{"B"});
}

TEST_F(KORVENHistoryStoreTest, aRecordIsRemovedInFourStepsInTheirOrder)
{
    const auto store = openStore();
    const Record removed = record("A");
    store->addItem(removed);
    store->addItem(record("B"));
    ASSERT_TRUE(store->saveChanges());
    const auto callCount = m_calls.log().size();
    m_calls.beforeEach = [&] {
        const bool isFirst = m_calls.log().size() == callCount;
        EXPECT_EQ(hasFile("A.archive"), isFirst) << "the scan's file goes first";
        EXPECT_EQ(keysOf(store->allItems()), isFirst ? (Keys{"A", "B"}) : Keys{"B"});
    };
    m_window.onHistoryMessage = [&] {
        EXPECT_FALSE(hasFile("A.archive"));
        EXPECT_EQ(keysOf(store->allItems()), Keys{"B"});
        EXPECT_EQ(savedKeys(), Keys{"B"}) << "the message comes last";
    };

    store->removeItem(removed);

    EXPECT_TRUE(hasFile("B.archive"));
    EXPECT_EQ(m_window.log().back(), "reloadHistoryDelete A");
}

TEST_F(KORVENHistoryStoreTest, aRecordLivesUntilItsRemovalIsTold)
{
    const auto store = openStore();
    Record callers = record("A");
    store->addItem(callers);
    m_calls.beforeEach = [&] { callers.reset(); };
    store->removeItem(callers);
    EXPECT_EQ(callers, nullptr);
    EXPECT_EQ(m_window.log().back(), "reloadHistoryDelete A");
}

TEST_F(KORVENHistoryStoreTest, removesTheVeryRecordEveryTimeAndNoEqualOne)
{
    const auto store = openStore();
    const Record twice = record("A");
    const Record equal = record("A");
    store->addItem(twice);
    store->addItem(equal);
    store->addItem(twice);

    store->removeItem(twice);

    ASSERT_EQ(store->allItems().size(), 1U);
    EXPECT_EQ(store->allItems().front(), equal);
}

TEST_F(KORVENHistoryStoreTest, removesTheFirstRecordWithAKeyAlone)
{
    const auto store = openStore();
    const Record second = record("A");
    store->addItem(record("a"));
    store->addItem(record("A"));
    store->addItem(second);

    store->removeItemWithKey("A");

    EXPECT_EQ(keysOf(store->allItems()), (Keys{"a", "A"}));
    EXPECT_EQ(store->allItems().back(), second);
}

TEST_F(KORVENHistoryStoreTest, aKeyThatNoRecordHasChangesNothing)
{
    const auto store = openStore();
    store->addItem(record("A"));
    const auto callCount = m_calls.log().size();

    for (const char *key : {"B", "a", "", "(null)"}) {
        store->removeItemWithKey(key);
    }

    EXPECT_EQ(keysOf(store->allItems()), Keys{"A"});
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});
    EXPECT_EQ(m_calls.log().size(), callCount);
    EXPECT_FALSE(hasFile("scanHistory.archive"));
}

TEST_F(KORVENHistoryStoreTest, removesAllRecordsOneByOneInTheirOrder)
{
    const auto store = openStore();
    for (const char *key : {"A", "B", "C"}) {
        store->addItem(record(key));
    }

    store->removeAllScans();

    EXPECT_TRUE(store->allItems().empty());
    for (const char *name : {"A.archive", "B.archive", "C.archive"}) {
        EXPECT_FALSE(hasFile(name)) << name;
    }
    EXPECT_EQ(countOf("rename"), 3) << "the history is written once for each";
    EXPECT_EQ(savedKeys(), Keys{});
    EXPECT_EQ(m_window.log(),
              (Log{"historyStoreUpdated", "historyStoreUpdated", "historyStoreUpdated",
                   "reloadHistoryDelete A", "reloadHistoryDelete B", "reloadHistoryDelete C"}));
}

TEST_F(KORVENHistoryStoreTest, aScanWhoseFileIsGoneIsRemovedAndSavedAllTheSame)
{
    const auto store = openStore();
    store->addItem(record("A"));
    ASSERT_TRUE(store->saveChanges());
    ASSERT_EQ(unlink(m_folder.path("A.archive").c_str()), 0);

    store->removeItemWithKey("A");

    EXPECT_EQ(savedKeys(), Keys{});
    EXPECT_EQ(m_window.log().back(), "reloadHistoryDelete A");
}

TEST_F(KORVENHistoryStoreTest, aFileThatCannotBeDeletedStaysBehind)
{
    const auto store = openStore();
    store->addItem(record("A"));
    ASSERT_EQ(unlink(m_folder.path("A.archive").c_str()), 0);
    ASSERT_EQ(mkdir(m_folder.path("A.archive").c_str(), 0700), 0);

    store->removeItemWithKey("A");

    EXPECT_TRUE(hasFile("A.archive"));
    EXPECT_EQ(savedKeys(), Keys{});
}

TEST_F(KORVENHistoryStoreTest, removalsLeaveTheOtherFilesOfTheProgramAlone)
{
    const auto store = openStore();
    for (const char *name : {"scanhome.archive", "scan.archive", "(null).archive"}) {
        makeFile(name);
    }
    m_services.settings.setData("A", {});
    store->addItem(record("A"));

    store->removeAllScans();

    EXPECT_TRUE(hasFile("scanhome.archive"));
    EXPECT_TRUE(hasFile("scan.archive"));
    EXPECT_TRUE(hasFile("(null).archive"));
    EXPECT_TRUE(m_services.settings.hasKey("A")) << "the folder's bookmark outlives the record";
}

TEST_F(KORVENHistoryStoreTest, aDamagedKeyDeletesNothingElsewhere)
{
    m_folder.folder("documents");
    m_folder.file("victim.archive");
    FakeServices services(m_folder.path("documents"));
    KORVENAppDelegate delegate(services.all());
    const auto store = OwnHistoryStore::open(delegate, m_calls);
    for (const std::string &key : {std::string("../victim"), m_folder.path("victim"),
                                   std::string("scanhome"), std::string("scanHistory")}) {
        const auto damaged = std::make_shared<KORVENHistoryItem>("a", "b");
        damaged->setScanKey(key);
        store->addItem(damaged);
    }
    std::ofstream(m_folder.path("documents/scanhome.archive")) << "a scan";

    store->removeAllScans();

    EXPECT_EQ(countOf("unlink"), 0);
    EXPECT_TRUE(hasFile("victim.archive"));
    EXPECT_TRUE(hasFile("documents/scanhome.archive"));
    EXPECT_TRUE(hasFile("documents/scanHistory.archive"));
    EXPECT_TRUE(store->allItems().empty());
}

TEST_F(KORVENHistoryStoreTest, aRecordWithoutAKeyIsRemovedWithItsFile)
{
    const auto store = openStore();
    const auto keyless = std::make_shared<KORVENHistoryItem>("a", "b");
    keyless->setScanKey(std::nullopt);
    store->addItem(keyless);
    makeFile("(null).archive");

    store->removeItem(keyless);

    EXPECT_FALSE(hasFile("(null).archive"));
    EXPECT_EQ(m_window.log().back(), "reloadHistoryDelete (none)");
}

TEST_F(KORVENHistoryStoreTest, aFailedSaveIsSilentAndLeavesTheFile)
{
    const auto store = openStore();
    store->addItem(record("A"));
    ASSERT_TRUE(store->saveChanges());
    for (const char *call : {"open", "write", "fsync", "rename"}) {
        m_calls.failingCall = FailingFileCalls::never;
        const auto before = m_calls.log().size();
        ASSERT_TRUE(store->saveChanges());
        const auto &log = m_calls.log();
        const auto place = std::find(log.begin() + static_cast<long>(before), log.end(), call) -
                           log.begin() - static_cast<long>(before);
        m_calls.failingCall = log.size() + static_cast<std::size_t>(place);
        store->addItem(record(call));

        EXPECT_FALSE(store->saveChanges()) << call;

        const Keys saved = savedKeys();
        EXPECT_EQ(saved.front(), "A");
        EXPECT_EQ(std::count(saved.begin(), saved.end(), call), 0);
        EXPECT_EQ(keysOf(store->allItems()).back(), call);
    }
    m_calls.failingCall = FailingFileCalls::never;
    EXPECT_TRUE(store->saveChanges());
    EXPECT_EQ(savedKeys().size(), 5U);
}

TEST_F(KORVENHistoryStoreTest, theMostRecentScanIsFoundWhereverItStands)
{
    const auto store = openStore();
    EXPECT_EQ(store->getMostRecentScan(), nullptr);
    store->addItem(record("new", 300));
    store->addItem(record("old", 100));
    store->addItem(record("middle", 200));

    EXPECT_EQ(store->getMostRecentScan()->scanKey(), "new");
    EXPECT_EQ(keysOf(store->allItems()), (Keys{"new", "old", "middle"}));
}

TEST_F(KORVENHistoryStoreTest, ofTheSameDateTheLastScanIsTheMostRecent)
{
    const auto store = openStore();
    store->addItem(record("A", 100));
    store->addItem(record("B", 100));
    EXPECT_EQ(store->getMostRecentScan()->scanKey(), "B");
}

TEST_F(KORVENHistoryStoreTest, aScanWithoutADateIsTheLeastRecent)
{
    const auto store = openStore();
    const auto dateless = std::make_shared<KORVENHistoryItem>("a", "b");
    dateless->setScanDate(std::nullopt);
    store->addItem(record("long ago", -1e9));
    store->addItem(dateless);
    EXPECT_EQ(store->getMostRecentScan()->scanKey(), "long ago");
}

TEST_F(KORVENHistoryStoreTest, findsTheFirstRecordWithAKey)
{
    const auto store = openStore();
    const Record first = record("A", 1);
    store->addItem(record("a"));
    store->addItem(first);
    store->addItem(record("A", 2));
    EXPECT_EQ(store->itemForKey("A"), first);
    EXPECT_EQ(store->itemForKey("B"), nullptr);
    EXPECT_EQ(store->itemForKey(""), nullptr);
}

TEST_F(KORVENHistoryStoreTest, isReachedOnlyThroughSharedStore)
{
    try {
        const KORVENHistoryStore store;
        FAIL() << "the initialiser returned";
    } catch (const NamedException &exception) {
        EXPECT_EQ(exception.name(), "Singleton");
        EXPECT_EQ(exception.reason(), "Use +[KORVENHistoryStore sharedStore]");
    }
}

TEST_F(KORVENHistoryStoreTest, isMadeOnceByWhicheverThreadAsksFirst)
{
    runInChild([this] {
        std::vector<KORVENHistoryStore *> stores(8);
        std::vector<std::thread> threads;
        for (KORVENHistoryStore *&store : stores) {
            threads.emplace_back([&store] { store = &KORVENHistoryStore::sharedStore(); });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        EXPECT_EQ(std::count(stores.begin(), stores.end(), stores.front()), 8);
        stores.front()->addItem(record("A"));
        EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});
    });
}

TEST_F(KORVENHistoryStoreTest, aDamagedHistoryIsRaisedAndNeverWrittenOver)
{
    runInChild([this] {
        makeFile("scanHistory.archive", "bplist00 and then nonsense");
        for (int attempt = 0; attempt < 2; ++attempt) {
            try {
                (void)KORVENHistoryStore::sharedStore();
                ADD_FAILURE() << "a store was made";
            } catch (const NamedException &exception) {
                EXPECT_EQ(exception.name(), "Unreadable History");
                EXPECT_NE(exception.reason().find(m_historyFile), std::string::npos);
            }
        }
        EXPECT_EQ(fileText(m_historyFile), "bplist00 and then nonsense");
        // Once the file is gone, there is a history again.
        ASSERT_EQ(unlink(m_historyFile.c_str()), 0);
        EXPECT_TRUE(KORVENHistoryStore::sharedStore().allItems().empty());
    });
}

TEST_F(KORVENHistoryStoreTest, anEmptyFileIsADamagedHistory)
{
    makeFile("scanHistory.archive", "");
    EXPECT_THROW((void)openStore(), NamedException);
}

TEST_F(KORVENHistoryStoreTest, aHistoryThatCannotBeReadIsEmptyAndNotWrittenOver)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody who may not read the file";
    }
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));
    ASSERT_EQ(chmod(m_historyFile.c_str(), 0), 0);
    ASSERT_EQ(chmod(m_folder.path().c_str(), 0777), 0);
    runUnprivileged([this] {
        const auto store = openStore();
        EXPECT_TRUE(store->allItems().empty());
        EXPECT_FALSE(store->saveChanges());
    });
    EXPECT_EQ(savedKeys(), Keys{"A"});
}

TEST_F(KORVENHistoryStoreTest, aHistoryThatCanBeReadLaterKeepsItsRecordsBeforeTheNew)
{
    // A link that leads to itself cannot be read, not even by root.
    ASSERT_EQ(symlink(m_historyFile.c_str(), m_historyFile.c_str()), 0);
    const auto store = openStore();
    store->addItem(record("B"));
    EXPECT_FALSE(store->saveChanges());

    ASSERT_EQ(unlink(m_historyFile.c_str()), 0);
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));
    EXPECT_TRUE(store->saveChanges());

    EXPECT_EQ(savedKeys(), (Keys{"A", "B"}));
    EXPECT_EQ(keysOf(store->allItems()), (Keys{"A", "B"}));
}

TEST_F(KORVENHistoryStoreTest, anUnreadableHistoryThatIsDeletedLaterIsStartedAgain)
{
    ASSERT_EQ(symlink(m_historyFile.c_str(), m_historyFile.c_str()), 0);
    const auto store = openStore();
    store->addItem(record("B"));
    ASSERT_EQ(unlink(m_historyFile.c_str()), 0);
    EXPECT_TRUE(store->saveChanges());
    EXPECT_EQ(savedKeys(), Keys{"B"});
}

TEST_F(KORVENHistoryStoreTest, aHistoryThatCannotBeReadIsAProblemUntilItCanBe)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    ASSERT_TRUE(store->problem());
    EXPECT_NE(store->problem()->find(m_historyFile), std::string::npos) << *store->problem();
    store->addItem(record("B"));
    {
        const LoggedWarnings log;
        EXPECT_FALSE(store->saveChanges());
        ASSERT_EQ(log.lines().size(), 1U);
        EXPECT_EQ(log.lines().front(),
                  "tessaly.history: The history was not saved, since it cannot be read: " +
                      *store->problem());
    }
    EXPECT_FALSE(store->readAgain());
    EXPECT_TRUE(store->problem());
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});

    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));
    EXPECT_TRUE(store->readAgain());

    EXPECT_EQ(store->problem(), std::nullopt);
    EXPECT_EQ(keysOf(store->allItems()), (Keys{"A", "B"}));
    EXPECT_EQ(savedKeys(), (Keys{"A", "B"})) << "what could not be saved is saved now";
    EXPECT_EQ(m_window.log(), (Log{"historyStoreUpdated", "historyStoreUpdated"}));

    EXPECT_TRUE(store->readAgain());
    EXPECT_EQ(keysOf(store->allItems()), (Keys{"A", "B"})) << "it is read once";
    EXPECT_EQ(m_window.log().size(), 2U);
}

TEST_F(KORVENHistoryStoreTest, aSaveThatFindsTheHistoryReadableTellsOfItsRecords)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));

    EXPECT_TRUE(store->saveChanges());

    EXPECT_EQ(store->problem(), std::nullopt);
    EXPECT_EQ(keysOf(store->allItems()), Keys{"A"});
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});
}

TEST_F(KORVENHistoryStoreTest, aHistoryThatIsReadAgainAndHasNothingNewIsNotWritten)
{
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();
    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    EXPECT_TRUE(store->readAgain());
    EXPECT_FALSE(hasFile("scanHistory.archive"));
    EXPECT_EQ(m_calls.log().size(), 0U);
}

TEST_F(KORVENHistoryStoreTest, isWrittenAndReadByManyThreadsAtOnce)
{
    m_delegate.setWindowController(nullptr); // a window with a lock would order the threads
    const auto store = OwnHistoryStore::open(m_delegate); // with the system's own calls, likewise
    constexpr int perThread = 50;
    std::vector<std::thread> threads;
    for (const char *name : {"x", "y"}) {
        threads.emplace_back([&, name] {
            for (int i = 0; i < perThread; ++i) {
                const auto added = std::make_shared<KORVENHistoryItem>("a", "b");
                added->setScanKey(name + std::to_string(i));
                store->addItem(added);
                store->saveChanges();
                if (i % 5 == 0) {
                    store->removeItem(added);
                }
            }
        });
    }
    threads.emplace_back([&] {
        for (int i = 0; i < perThread; ++i) {
            for (const Record &record : store->allItems()) {
                EXPECT_TRUE(record->scanKey());
            }
            (void)store->getMostRecentScan();
            (void)store->itemForKey("x3");
        }
    });
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(store->allItems().size(), 2U * perThread * 4 / 5);
    EXPECT_EQ(savedKeys(), keysOf(store->allItems())) << "the last save has the last list";
}

} // namespace
} // namespace tessaly
