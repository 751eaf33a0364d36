// A large scan file is replaced again and again by a process that is killed on the way.

#include "engine/archive/AtomicFile.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/fakes/FailingFileCalls.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly::archive {

namespace {

using Names = std::vector<std::string>;

/// Large enough for a dozen writes, and small enough to be written a few hundred times.
std::shared_ptr<tree::ScanTree> largeTree(const std::string &prefix)
{
    std::vector<PlannedNode> folders;
    for (int i = 0; i < 100; ++i) {
        folders.push_back(folder(prefix + std::to_string(i)));
        for (int j = 0; j < 300; ++j) {
            folders.back().children.push_back(
                file(prefix + std::to_string(i * j), 1000U * static_cast<unsigned>(i)));
        }
    }
    return makeTree(prefix, std::move(folders));
}

/// The scan files of two large trees, known to read back whole, and a target that holds one.
class ScanFileKillTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (Version *version : {&m_old, &m_new}) {
            ASSERT_TRUE(writeScanFile(version->tree->root(), m_target));
            const auto read = readScanFile(m_target);
            ASSERT_TRUE(read);
            ASSERT_TRUE(dumpOf(*read.value()) == dumpOf(*version->tree));
            version->bytes = fileText(m_target);
        }
        ASSERT_TRUE(m_old.bytes != m_new.bytes);
    }

    struct Version {
        std::shared_ptr<tree::ScanTree> tree;
        std::string bytes;
    };

    /// Replaces the target by the old version and the new one in turns, until something ends it.
    void replaceForever(FailingFileCalls &calls) const
    {
        while (writeScanFile(m_old.tree->root(), m_target, calls) &&
               writeScanFile(m_new.tree->root(), m_target, calls)) {}
    }

    /// How many calls it takes to write a version.
    [[nodiscard]] std::size_t callsOfOneReplacement() const
    {
        FailingFileCalls calls;
        EXPECT_TRUE(writeScanFile(m_new.tree->root(), m_target, calls));
        const auto writes = std::count(calls.log().begin(), calls.log().end(), "write");
        EXPECT_GT(writes, 10) << "the file is too small to be killed in the middle of";
        return calls.log().size();
    }

    /// After a kill: the target is one version, whole, and nothing else stays behind.
    void expectOldOrNewAlone() const
    {
        const std::string bytes = fileText(m_target);
        EXPECT_TRUE(bytes == m_old.bytes || bytes == m_new.bytes) << bytes.size() << " bytes";
        AtomicFile::removeLeftovers(m_folder.path());
        EXPECT_EQ(listedNames(m_folder.path()), Names{"target"});
    }

    TemporaryFolder m_folder;
    std::string m_target = m_folder.path("target");
    Version m_old{largeTree("old "), {}};
    Version m_new{largeTree("a newer one "), {}};
};

} // namespace

TEST_F(ScanFileKillTest, killedBeforeAnyCallTheTargetIsOldOrNew)
{
    const std::size_t count = callsOfOneReplacement();
    bool hasLeftOld = false;
    bool hasLeftNew = false;
    for (std::size_t call = 0; call <= count; ++call) {
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            replaceForever(calls);
        });
        ASSERT_TRUE(writer.wasKilled()) << call;

        SCOPED_TRACE(call);
        const std::string bytes = fileText(m_target);
        hasLeftOld = hasLeftOld || bytes == m_old.bytes;
        hasLeftNew = hasLeftNew || bytes == m_new.bytes;
        expectOldOrNewAlone();
    }
    EXPECT_TRUE(hasLeftOld);
    EXPECT_TRUE(hasLeftNew);
}

TEST_F(ScanFileKillTest, killedAtAnyMomentTheTargetIsOldOrNew)
{
    const std::size_t count = callsOfOneReplacement();
    for (std::size_t seen = 1; seen <= 4 * count; seen += 5) {
        std::array<int, 2> progress{};
        ASSERT_EQ(pipe2(progress.data(), O_CLOEXEC), 0);
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.beforeEach = [&] { (void)!write(progress[1], ".", 1); };
            replaceForever(calls);
        });
        close(progress[1]);
        char event = 0;
        for (std::size_t left = seen; left > 0; --left) {
            ASSERT_EQ(read(progress[0], &event, 1), 1);
        }
        // Meanwhile the writer goes on, and so this hits it anywhere, inside calls as well.
        writer.kill();
        EXPECT_TRUE(writer.wasKilled());
        close(progress[0]);

        SCOPED_TRACE(seen);
        expectOldOrNewAlone();
    }
}

} // namespace tessaly::archive
