// What a start of the program finishes that an earlier run left undone.

#include "history/records/HistoryUpkeep.hpp"

#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/ScanFiles.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/history/records/HistoryStoreTest.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <future>
#include <memory>
#include <stop_token>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessaly {
namespace {

const std::string firstKey = "6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB";
const std::string secondKey = "00000000-1111-4222-8333-AAAABBBBCCCC";

class HistoryUpkeepTest : public HistoryStoreTest {
protected:
    [[nodiscard]] std::string filePath(const std::string &key) const
    {
        return m_folder.path(key + ".archive");
    }

    /// Writes the scan of `path` with these bytes in it, as of a time in seconds since 1970.
    void writeScan(const std::string &key, const std::string &path, std::uint64_t byteCount,
                   time_t written) const
    {
        const auto tree = makeTree(path, {file("a", byteCount - 1), folder("b", {file("c", 1)})});
        ASSERT_TRUE(archive::writeScanFile(tree->root(), filePath(key)));
        const std::array<timespec, 2> times{timespec{written, 0}, timespec{written, 500'000'000}};
        ASSERT_EQ(utimensat(AT_FDCWD, filePath(key).c_str(), times.data(), 0), 0);
    }

    [[nodiscard]] Record recovered(const std::string &key) const
    {
        return recoveredRecord(key, filePath(key));
    }

    [[nodiscard]] bool hasRemovalsFile() const { return hasFile("scanHistory.removals"); }
};

// Scans without a record.

TEST_F(HistoryUpkeepTest, aScanWithoutARecordGetsOneFromItsFile)
{
    constexpr time_t firstOf2001 = 978'307'200;
    writeScan(firstKey, "/home/ada/caf\xE9", 12'345'678'901, firstOf2001 + 60);
    const auto store = openStore();
    EXPECT_TRUE(store->allItems().empty());

    HistoryUpkeep::run(*store);

    ASSERT_EQ(store->allItems().size(), 1U);
    const KORVENHistoryItem &item = *store->allItems().front();
    EXPECT_EQ(item.scanPath(), "/home/ada/caf\xE9");
    EXPECT_EQ(item.scanTotal(), "12.35 GB");
    EXPECT_EQ(item.scanKey(), firstKey);
    EXPECT_EQ(item.scanDate(), archive::Timestamp{60.5});
    EXPECT_EQ(savedKeys(), Keys{firstKey});
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});

    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_EQ(keysOf(next->allItems()), Keys{firstKey}) << "it has a record now";
}

TEST_F(HistoryUpkeepTest, theTotalIsExact)
{
    // In single precision this is more than 123.475 GB, which rounds up.
    constexpr std::uint64_t byteCount = 123'474'999'999;
    ASSERT_GT(static_cast<double>(static_cast<float>(byteCount)), 123.475e9);
    writeScan(firstKey, "/a", byteCount, 0);
    const auto store = openStore();
    HistoryUpkeep::run(*store);
    EXPECT_EQ(store->allItems().at(0)->scanTotal(), "123.47 GB");
}

TEST_F(HistoryUpkeepTest, recoveredScansComeOldestFirstBehindTheOthersInOneSave)
{
    ASSERT_TRUE(writeHistoryFile({record("known", 1e9)}, m_historyFile));
    writeScan(firstKey, "/newer", 2, 2'000'000);
    writeScan(secondKey, "/older", 1, 1'000'000);
    const auto store = openStore();

    HistoryUpkeep::run(*store);

    EXPECT_EQ(keysOf(store->allItems()), (Keys{"known", secondKey, firstKey}));
    EXPECT_EQ(savedKeys(), keysOf(store->allItems()));
    EXPECT_EQ(countOf("rename"), 1);
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"});
    EXPECT_EQ(store->getMostRecentScan()->scanKey(), "known");
}

TEST_F(HistoryUpkeepTest, otherFilesAreNoScansWithoutARecord)
{
    writeScan(firstKey, "/a", 1, 0);
    std::string lowerCase = firstKey;
    lowerCase[1] = 'f';
    for (const std::string &name :
         {std::string("scanhome"), std::string("scan"), std::string("(null)"),
          std::string("my own"), lowerCase, firstKey + "0", '0' + firstKey}) {
        ASSERT_EQ(rename(filePath(firstKey).c_str(), filePath(name).c_str()), 0);
        const auto store = openStore();
        HistoryUpkeep::run(*store);
        EXPECT_TRUE(store->allItems().empty()) << name;
        ASSERT_EQ(rename(filePath(name).c_str(), filePath(firstKey).c_str()), 0);
    }
    for (const std::string &name : {firstKey, firstKey + ".archive.previous"}) {
        ASSERT_EQ(rename(filePath(firstKey).c_str(), m_folder.path(name).c_str()), 0);
        const auto store = openStore();
        HistoryUpkeep::run(*store);
        EXPECT_TRUE(store->allItems().empty()) << name;
        ASSERT_EQ(rename(m_folder.path(name).c_str(), filePath(firstKey).c_str()), 0);
    }
    EXPECT_FALSE(hasFile("scanHistory.archive"));
}

TEST_F(HistoryUpkeepTest, aDamagedScanIsLeftAloneAndLogged)
{
    makeFile(firstKey + ".archive", "bplist00 and then nonsense");
    writeScan(secondKey, "/sound", 1, 0);
    const auto store = openStore();
    const LoggedWarnings log;

    HistoryUpkeep::run(*store);

    EXPECT_EQ(keysOf(store->allItems()), Keys{secondKey});
    EXPECT_TRUE(hasFile(firstKey + ".archive"));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].starts_with("tessaly.history.files: " + filePath(firstKey) +
                                           " has no record and is left alone: "));
}

TEST_F(HistoryUpkeepTest, whatIsNoRegularFileIsLeftAlone)
{
    writeScan(secondKey, "/a", 1, 0);
    ASSERT_EQ(rename(filePath(secondKey).c_str(), m_folder.path("elsewhere").c_str()), 0);
    ASSERT_EQ(mkfifo(filePath(firstKey).c_str(), 0600), 0);
    ASSERT_EQ(symlink("elsewhere", filePath(secondKey).c_str()), 0);
    const auto store = openStore();
    HistoryUpkeep::run(*store);
    EXPECT_TRUE(store->allItems().empty());
}

TEST_F(HistoryUpkeepTest, aFileThatIsBeingWrittenIsLeftAlone)
{
    writeScan(firstKey, "/a", 1, 0);
    // As AtomicFile holds it until the file is whole and in its place.
    const scan::FileDescriptor writer(open(filePath(firstKey).c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_EQ(flock(writer.number(), LOCK_EX), 0);
    const auto store = openStore();
    HistoryUpkeep::run(*store);
    EXPECT_TRUE(store->allItems().empty());
}

TEST_F(HistoryUpkeepTest, aScanOfThisRunThatHasNoRecordYetIsNotTaken)
{
    const auto store = openStore();
    writeScan(firstKey, "/a", 1, 0);
    HistoryUpkeep::run(*store);
    EXPECT_TRUE(store->allItems().empty());
}

TEST_F(HistoryUpkeepTest, aScanThatIsRemovedFirstStaysAway)
{
    writeScan(firstKey, "/a", 1, 0);
    const auto store = openStore();
    const auto item = std::make_shared<KORVENHistoryItem>("/a", "");
    item->setScanKey(firstKey);
    store->addItem(item);
    store->removeItem(item);
    HistoryUpkeep::run(*store);
    EXPECT_TRUE(store->allItems().empty());
}

TEST_F(HistoryUpkeepTest, nothingIsRecoveredUntilTheHistoryWasRead)
{
    writeScan(firstKey, "/known", 1, 0);
    writeScan(secondKey, "/lost", 1, 0);
    const Record known = recovered(firstKey);
    m_folder.folder("scanHistory.archive");
    const auto store = openStore();

    HistoryUpkeep::run(*store);
    EXPECT_TRUE(store->allItems().empty());

    ASSERT_EQ(rmdir(m_historyFile.c_str()), 0);
    ASSERT_TRUE(writeHistoryFile({known}, m_historyFile));
    ASSERT_TRUE(store->readAgain());
    HistoryUpkeep::run(*store);
    EXPECT_EQ(keysOf(store->allItems()), (Keys{firstKey, secondKey}));
}

TEST_F(HistoryUpkeepTest, whatWasFoundUntilTheEndIsKept)
{
    writeScan(firstKey, "/a", 1, 0);
    std::stop_source stopped;
    stopped.request_stop();
    const auto store = openStore();
    HistoryUpkeep::run(*store, stopped.get_token());
    EXPECT_TRUE(store->allItems().empty()) << "it has stopped at once";

    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_EQ(keysOf(next->allItems()), Keys{firstKey}) << "the next start goes on";
}

TEST_F(HistoryUpkeepTest, runsOnAThreadThatEndsWithIt)
{
    writeScan(firstKey, "/a", 1, 0);
    const auto store = openStore();
    std::thread::id toldOn;
    m_window.onHistoryMessage = [&] { toldOn = std::this_thread::get_id(); };
    {
        HistoryUpkeep upkeep;
        upkeep.start(*store);
        upkeep.start(*store);
        while (store->allItems().empty()) {
            std::this_thread::yield();
        }
    }
    EXPECT_NE(toldOn, std::this_thread::get_id());
    EXPECT_EQ(savedKeys(), Keys{firstKey});
}

TEST_F(HistoryUpkeepTest, itsEndDoesNotWaitForAScanThatIsBeingRead)
{
    writeScan(firstKey, "/a", 1, 0);
    const auto store = openStore();
    const auto started = std::make_shared<std::promise<std::string>>();
    const auto hangs = std::make_shared<std::promise<void>>();
    const auto ended = std::make_shared<std::promise<void>>();
    {
        HistoryUpkeep upkeep(
            [started, hangs, ended](const std::string &key, const std::string &path) {
                started->set_value(path);
                hangs->get_future().wait();
                const Record read = recoveredRecord(key, path);
                ended->set_value();
                return read;
            });
        upkeep.start(*store);
        EXPECT_EQ(started->get_future().get(), filePath(firstKey));
    }
    hangs->set_value(); // only now, after the upkeep's end
    ended->get_future().wait();
    EXPECT_TRUE(store->allItems().empty());

    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_EQ(keysOf(next->allItems()), Keys{firstKey}) << "the next start reads it";
}

// Removals.

TEST_F(HistoryUpkeepTest, aRemovalThatWasOnlyNotedIsDoneByTheNextStart)
{
    const auto store = openStore();
    store->addItems({record(firstKey), record(secondKey), record("kept")});
    ASSERT_TRUE(store->saveChanges());
    ASSERT_TRUE(store->noteRemovals({store->itemForKey(firstKey), store->itemForKey(secondKey)}));
    EXPECT_TRUE(hasRemovalsFile());

    const auto next = openStore();
    EXPECT_EQ(keysOf(next->allItems()), Keys{"kept"}) << "they are in no list any more";
    std::vector<Keys> savedAtUnlink;
    m_calls.beforeEach = [&] {
        if (hasFile(firstKey + ".archive") && hasFile(secondKey + ".archive")) {
            savedAtUnlink.push_back(savedKeys());
        }
    };
    HistoryUpkeep::run(*next);
    m_calls.beforeEach = [] {};

    EXPECT_EQ(savedAtUnlink.back(), Keys{"kept"}) << "the history lists no scan without a file";
    EXPECT_EQ(savedKeys(), Keys{"kept"});
    EXPECT_FALSE(hasFile(firstKey + ".archive"));
    EXPECT_FALSE(hasFile(secondKey + ".archive"));
    EXPECT_TRUE(hasFile("kept.archive"));
    EXPECT_FALSE(hasRemovalsFile());
    EXPECT_EQ(m_window.log(), Log{"historyStoreUpdated"}) << "nobody has seen these records";
}

TEST_F(HistoryUpkeepTest, whatIsBeingRemovedIsNeverRecovered)
{
    writeScan(firstKey, "/a", 1, 0);
    writeScan(secondKey, "/b", 1, 0);
    const HistoryRecords both{recovered(firstKey), recovered(secondKey)};
    ASSERT_TRUE(writeHistoryFile(both, m_historyFile));
    {
        const auto store = openStore();
        const HistoryRecords records = store->allItems();
        ASSERT_TRUE(store->noteRemovals(records));
        store->takeOut(records);
        EXPECT_EQ(savedKeys(), Keys{});
        store->finishRemoval(*records[0]);
    }
    std::stop_source stopped;
    stopped.request_stop();
    const auto interrupted = openStore();
    HistoryUpkeep::run(*interrupted, stopped.get_token());
    EXPECT_TRUE(hasRemovalsFile());
    EXPECT_TRUE(hasFile(secondKey + ".archive"));
    EXPECT_TRUE(openStore()->takeKeysWithoutRecord().empty());

    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_TRUE(next->allItems().empty());
    EXPECT_FALSE(hasFile(secondKey + ".archive"));
    EXPECT_FALSE(hasRemovalsFile());
}

TEST_F(HistoryUpkeepTest, whatIsNotedIsForgottenOnceTheHistoryIsSavedWithoutIt)
{
    const auto store = openStore();
    store->addItem(record(firstKey));
    ASSERT_TRUE(store->saveChanges());
    const HistoryRecords records = store->allItems();
    ASSERT_TRUE(store->noteRemovals(records));
    m_calls.failingCall = m_calls.log().size(); // the opening of the new file
    store->takeOut(records);
    EXPECT_EQ(savedKeys(), Keys{firstKey});
    store->finishRemoval(*records[0]);
    m_calls.failingCall = m_calls.log().size();
    store->endRemoval();
    EXPECT_TRUE(hasRemovalsFile()) << "else the next start lists a record without a scan";

    store->endRemoval();
    EXPECT_EQ(savedKeys(), Keys{});
    EXPECT_FALSE(hasRemovalsFile());
}

TEST_F(HistoryUpkeepTest, aScanThatCannotBeDeletedIsTriedAgainAndNotRecovered)
{
    writeScan(firstKey, "/a", 1, 0);
    ASSERT_TRUE(writeHistoryFile({recovered(firstKey)}, m_historyFile));
    {
        const auto store = openStore();
        m_calls.failingCall = m_calls.log().size();
        m_calls.errorNumber = EPERM;
        store->removeItemWithKey(firstKey);
        EXPECT_TRUE(hasFile(firstKey + ".archive"));
        EXPECT_EQ(savedKeys(), Keys{});
    }
    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_TRUE(next->allItems().empty());
    EXPECT_FALSE(hasFile(firstKey + ".archive"));
    EXPECT_FALSE(hasRemovalsFile());
}

TEST_F(HistoryUpkeepTest, aRemovalGoesOnWhileTheLastOneIsFinished)
{
    const auto store = openStore();
    store->addItems({record("A"), record("B")});
    const HistoryRecords records = store->allItems();
    ASSERT_TRUE(store->noteRemovals({records[0]}));
    ASSERT_TRUE(store->noteRemovals({records[1]}));
    store->takeOut(records);
    store->finishRemoval(*records[0]);
    EXPECT_EQ(keysOf(store->removalsLeft()), Keys{"B"});
    store->endRemoval();
    EXPECT_TRUE(hasRemovalsFile()) << "B is there still";
    EXPECT_EQ(keysOf(store->removalsLeft()), Keys{"B"});

    const auto next = openStore();
    HistoryUpkeep::run(*next);
    EXPECT_FALSE(hasFile("B.archive"));
}

TEST_F(HistoryUpkeepTest, removalsThatCannotBeReadKeepScansFromBeingRecovered)
{
    makeFile("scanHistory.removals", "bplist00 and then nonsense");
    writeScan(firstKey, "/a", 1, 0);
    {
        const LoggedWarnings log;
        const auto store = openStore();
        HistoryUpkeep::run(*store);
        EXPECT_TRUE(store->allItems().empty()) << "it may have been removed";
        EXPECT_EQ(log.lines().size(), 1U);
    }
    EXPECT_TRUE(hasFile(firstKey + ".archive"));
    EXPECT_TRUE(hasRemovalsFile());

    const LoggedWarnings log;
    const auto store = openStore();
    ASSERT_TRUE(store->noteRemovals({record("A")})) << "it takes the place of the old one";
    HistoryUpkeep::run(*store);
    EXPECT_EQ(keysOf(store->allItems()), Keys{firstKey});
}

TEST_F(HistoryUpkeepTest, withoutAnythingToDoNothingIsWritten)
{
    ASSERT_TRUE(writeHistoryFile({record("A")}, m_historyFile));
    const auto store = openStore();
    HistoryUpkeep::run(*store);
    EXPECT_EQ(m_calls.log().size(), 0U);
    EXPECT_EQ(m_window.log(), Log{});
}

} // namespace
} // namespace tessaly
