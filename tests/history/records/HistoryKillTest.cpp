// Records are added and removed again and again by a process that is killed on the way.

#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/archive/AtomicFile.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/HistoryUpkeep.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "history/records/ScanFiles.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/history/records/OwnHistoryStore.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <new>
#include <set>
#include <string>
#include <thread>

#include <sys/mman.h>
#include <unistd.h>

namespace tessaly {
namespace {

constexpr int keptCount = 4; ///< records that stay in the history

/// Numbers that outlive the process that counts them.
struct Progress {
    std::atomic<int> saved = 0;    ///< records that saveChanges() has said are saved
    std::atomic<int> removing = 0; ///< records whose removal has begun
    std::atomic<bool> hasFailed = false;
};

class HistoryKillTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_memory = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(m_memory, MAP_FAILED);
        m_progress = new (m_memory) Progress;
    }
    void TearDown() override { munmap(m_memory, sizeof(Progress)); }

    /// Saves records 0, 1, 2, … and removes each when it is not among the last few any more.
    void addAndRemoveForever(archive::FileCalls &calls)
    {
        FakeServices services(m_folder.path());
        KORVENAppDelegate delegate(services.all());
        const auto store = OwnHistoryStore::open(delegate, calls);
        for (int i = m_progress->saved;; ++i) {
            const auto record = std::make_shared<KORVENHistoryItem>("a", "b");
            record->setScanKey(std::to_string(i));
            std::ofstream(m_folder.path(std::to_string(i) + ".archive")) << "a scan";
            store->addItem(record);
            if (!store->saveChanges()) {
                m_progress->hasFailed = true;
                return;
            }
            m_progress->saved = i + 1;
            if (i >= keptCount) {
                m_progress->removing = i - keptCount + 1;
                store->removeItemWithKey(std::to_string(i - keptCount));
            }
        }
    }

    void expectNothingSavedIsLost() const
    {
        const std::string path = m_folder.path("scanHistory.archive");
        if (m_progress->saved == 0 && access(path.c_str(), F_OK) != 0) {
            return;
        }
        const auto records = readHistoryFile(path);
        ASSERT_TRUE(records) << records.error().text();
        std::set<std::string> keys;
        for (const auto &record : records.value()) {
            keys.insert(record->scanKey().value());
        }
        for (int i = m_progress->removing; i < m_progress->saved; ++i) {
            EXPECT_TRUE(keys.contains(std::to_string(i))) << i;
            EXPECT_EQ(access(m_folder.path(std::to_string(i) + ".archive").c_str(), F_OK), 0) << i;
        }
    }

    TemporaryFolder m_folder;
    void *m_memory = MAP_FAILED;
    Progress *m_progress = nullptr;
};

TEST_F(HistoryKillTest, killedBeforeAnyCallNothingSavedIsLost)
{
    for (std::size_t call = 0; call < 120; ++call) {
        KillableChild process([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            addAndRemoveForever(calls);
        });
        ASSERT_TRUE(process.wasKilled()) << call;
        SCOPED_TRACE(call);
        expectNothingSavedIsLost();
        archive::AtomicFile::removeLeftovers(m_folder.path());
    }
    EXPECT_GT(m_progress->saved.load(), 2 * keptCount);
}

TEST_F(HistoryKillTest, killedAtAnyMomentNothingSavedIsLost)
{
    for (int round = 1; round <= 60; ++round) {
        const int wanted = m_progress->saved + round % 7;
        KillableChild process([&] { addAndRemoveForever(archive::FileCalls::system()); });
        while (m_progress->saved < wanted && !m_progress->hasFailed) {
            std::this_thread::yield();
        }
        ASSERT_FALSE(m_progress->hasFailed);
        // Meanwhile it goes on, so this hits it anywhere.
        process.kill();
        ASSERT_TRUE(process.wasKilled());
        SCOPED_TRACE(round);
        expectNothingSavedIsLost();
        archive::AtomicFile::removeLeftovers(m_folder.path());
    }
}

/// Scans with a file each, which are removed all at once by a process that is killed on the way.
class HistoryRemovalKillTest : public testing::Test {
protected:
    static constexpr int removedCount = 20;
    static constexpr std::size_t fewCount = 3;

    void recordScans()
    {
        HistoryRecords records;
        for (int i = 0; i < removedCount; ++i) {
            records.push_back(scan("/removed"));
        }
        records.push_back(scan("/kept"));
        ASSERT_TRUE(writeHistoryFile(records, m_historyFile));
    }

    [[nodiscard]] HistoryRecords::value_type scan(const std::string &path) const
    {
        auto record = std::make_shared<const KORVENHistoryItem>(path, "0.01 KB");
        const auto tree = makeTree(path, {file("a", 10)});
        EXPECT_TRUE(
            archive::writeScanFile(tree->root(), m_folder.path(*record->scanKey() + ".archive")));
        return record;
    }

    void removeAllButTheLast(archive::FileCalls &calls)
    {
        const auto store = OwnHistoryStore::open(m_delegate, calls);
        HistoryRecords records = store->allItems();
        records.pop_back();
        store->noteRemovals(records);
        store->takeOut(records);
        for (const auto &record : records) {
            store->finishRemoval(*record);
        }
        store->endRemoval();
    }

    /// Removes a few, as ScansRemoval does it: each with its save.
    void removeFew(archive::FileCalls &calls)
    {
        const auto store = OwnHistoryStore::open(m_delegate, calls);
        HistoryRecords records = store->allItems();
        records.resize(fewCount);
        store->noteRemovals(records);
        for (const auto &record : records) {
            store->removeItem(record);
        }
        store->endRemoval();
    }

    void removeFirst(archive::FileCalls &calls)
    {
        const auto store = OwnHistoryStore::open(m_delegate, calls);
        store->removeItemCrashSafe(store->allItems().front()->scanKey().value());
    }

    /// Expects that of a removal that is killed before any of its calls, the next start's list has
    /// none of the scans or all of them, and each with its file.
    void expectAllOrNone(std::size_t count,
                         const std::function<void(archive::FileCalls &calls)> &remove)
    {
        bool wasKilled = true;
        std::set<std::size_t> leftCounts;
        for (std::size_t call = 0; wasKilled; ++call) {
            SCOPED_TRACE(call);
            recordScans();
            KillableChild process([&] {
                FailingFileCalls calls;
                calls.fatalCall = call;
                remove(calls);
            });
            wasKilled = process.wasKilled();
            const std::set<std::string> files = scanKeys();
            for (const auto &record : OwnHistoryStore::open(m_delegate)->allItems()) {
                EXPECT_TRUE(files.contains(*record->scanKey())) << "a record without a file";
            }

            finishWhatIsLeft();

            EXPECT_EQ(savedKeys(), scanKeys());
            leftCounts.insert(savedKeys().size());
            EXPECT_NE(access(m_removalsFile.c_str(), F_OK), 0);
            ASSERT_LT(call, 100 * count) << "it does not come to its end";
            clear();
        }
        EXPECT_EQ(leftCounts, (std::set<std::size_t>{removedCount + 1 - count, removedCount + 1}));
    }

    [[nodiscard]] std::set<std::string> savedKeys() const
    {
        const auto records = readHistoryFile(m_historyFile);
        std::set<std::string> keys;
        if (!records) {
            EXPECT_NE(access(m_historyFile.c_str(), F_OK), 0) << records.error().text();
            return keys;
        }
        for (const auto &record : records.value()) {
            keys.insert(record->scanKey().value());
        }
        return keys;
    }
    [[nodiscard]] std::set<std::string> scanKeys() const
    {
        const auto keys = scanKeysIn(m_folder.path());
        return {keys.begin(), keys.end()};
    }

    void expectNoRecordWithoutAFile() const
    {
        const std::set<std::string> files = scanKeys();
        for (const std::string &key : savedKeys()) {
            EXPECT_TRUE(files.contains(key)) << key;
        }
    }

    /// Starts the program again, as it were.
    void finishWhatIsLeft(archive::FileCalls &calls = archive::FileCalls::system())
    {
        archive::AtomicFile::removeLeftovers(m_folder.path());
        const auto store = OwnHistoryStore::open(m_delegate, calls);
        HistoryUpkeep::run(*store);
    }

    void clear() const { removeContents(m_folder.descriptor()); }

    TemporaryFolder m_folder;
    const std::string m_historyFile = m_folder.path("scanHistory.archive");
    const std::string m_removalsFile = m_folder.path("scanHistory.removals");
    FakeServices m_services{m_folder.path()};
    KORVENAppDelegate m_delegate{m_services.all()};
};

TEST_F(HistoryRemovalKillTest, killedBeforeAnyCallAllAreRemovedOrNone)
{
    bool wasKilled = true;
    for (std::size_t call = 0; wasKilled; ++call) {
        SCOPED_TRACE(call);
        recordScans();
        KillableChild process([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            removeAllButTheLast(calls);
        });
        wasKilled = process.wasKilled();
        expectNoRecordWithoutAFile();
        const bool isNoted = access(m_removalsFile.c_str(), F_OK) == 0;
        const bool isDone = savedKeys().size() == 1;
        EXPECT_TRUE(!wasKilled || isNoted || isDone || scanKeys().size() == removedCount + 1);

        finishWhatIsLeft();

        EXPECT_EQ(savedKeys(), scanKeys());
        EXPECT_EQ(savedKeys().size(), isNoted || isDone ? 1U : removedCount + 1U);
        EXPECT_NE(access(m_removalsFile.c_str(), F_OK), 0);
        ASSERT_GT(removedCount * 4U, call) << "it does not come to its end";
        clear();
    }
}

TEST_F(HistoryRemovalKillTest, killedWhileItRemovesFewAllAreRemovedOrNone)
{
    expectAllOrNone(fewCount, [this](archive::FileCalls &calls) { removeFew(calls); });
}

TEST_F(HistoryRemovalKillTest, killedWhileItRemovesOneItIsRemovedOrNot)
{
    expectAllOrNone(1, [this](archive::FileCalls &calls) { removeFirst(calls); });
}

TEST_F(HistoryRemovalKillTest, theNextStartMayBeKilledAsWell)
{
    bool wasKilled = true;
    for (std::size_t call = 0; wasKilled; ++call) {
        SCOPED_TRACE(call);
        recordScans();
        const auto records = readHistoryFile(m_historyFile).value();
        ASSERT_TRUE(writeHistoryFile({records.begin(), records.end() - 1}, m_removalsFile));
        KillableChild process([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            finishWhatIsLeft(calls);
        });
        wasKilled = process.wasKilled();
        expectNoRecordWithoutAFile();

        finishWhatIsLeft();

        EXPECT_EQ(savedKeys(), std::set{*records.back()->scanKey()});
        EXPECT_EQ(scanKeys(), savedKeys());
        EXPECT_NE(access(m_removalsFile.c_str(), F_OK), 0);
        clear();
    }
}

TEST_F(HistoryRemovalKillTest, killedBetweenAScanAndItsRecordTheNextStartMakesTheRecord)
{
    bool wasKilled = true;
    for (std::size_t call = 0; wasKilled; ++call) {
        SCOPED_TRACE(call);
        const std::size_t countBefore = savedKeys().size();
        KillableChild process([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            const auto store = OwnHistoryStore::open(m_delegate, calls);
            const auto record = std::make_shared<const KORVENHistoryItem>("/scanned", "0.01 KB");
            const auto tree = makeTree("/scanned", {file("a", 10)});
            if (archive::writeScanFile(tree->root(), record->scanFilePath().value(), calls)) {
                store->addItem(record);
                store->saveChanges();
            }
        });
        wasKilled = process.wasKilled();
        expectNoRecordWithoutAFile();
        const std::size_t fileCount = scanKeys().size();

        finishWhatIsLeft();

        EXPECT_EQ(scanKeys().size(), fileCount) << "no scan is lost";
        EXPECT_EQ(savedKeys(), scanKeys());
        EXPECT_GE(savedKeys().size(), countBefore);
    }
    EXPECT_GT(savedKeys().size(), 3U);
}

} // namespace
} // namespace tessaly
