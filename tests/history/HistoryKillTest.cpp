// Records are added and removed again and again by a process that is killed on the way.

#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/AtomicFile.hpp"
#include "history/KORVENHistoryStore.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/history/OwnHistoryStore.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
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
    void addAndRemoveForever(FileCalls &calls)
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
        AtomicFile::removeLeftovers(m_folder.path());
    }
    EXPECT_GT(m_progress->saved.load(), 2 * keptCount);
}

TEST_F(HistoryKillTest, killedAtAnyMomentNothingSavedIsLost)
{
    for (int round = 1; round <= 60; ++round) {
        const int wanted = m_progress->saved + round % 7;
        KillableChild process([&] { addAndRemoveForever(FileCalls::system()); });
        while (m_progress->saved < wanted && !m_progress->hasFailed) {
            std::this_thread::yield();
        }
        ASSERT_FALSE(m_progress->hasFailed);
        // Meanwhile it goes on, so this hits it anywhere.
        process.kill();
        ASSERT_TRUE(process.wasKilled());
        SCOPED_TRACE(round);
        expectNothingSavedIsLost();
        AtomicFile::removeLeftovers(m_folder.path());
    }
}

} // namespace
} // namespace tessaly
