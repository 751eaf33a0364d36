#include "engine/archive/SetAsideFile.hpp"

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
#include <fstream>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {
namespace {

using Names = std::vector<std::string>;

/// A folder for the file "target", which is set aside as "target.previous".
class SetAsideFileTest : public testing::Test {
protected:
    static void write(const std::string &path, const std::string &text)
    {
        std::ofstream(path) << text;
    }
    [[nodiscard]] Names names() const
    {
        Names names = listedNames(m_folder.path());
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder m_folder;
    std::string m_target = m_folder.path("target");
    std::string m_aside = m_folder.path("target.previous");
};

TEST_F(SetAsideFileTest, isAsideWhileItLivesAndGoneAfterwards)
{
    write(m_target, "old");
    {
        const SetAsideFile old(m_target);
        EXPECT_EQ(names(), Names{"target.previous"});
        EXPECT_EQ(fileText(m_aside), "old");
    }
    EXPECT_EQ(names(), Names{});
}

TEST_F(SetAsideFileTest, leavesTheSuccessorInItsPlace)
{
    write(m_target, "old");
    {
        const SetAsideFile old(m_target);
        write(m_target, "new");
    }
    EXPECT_EQ(names(), Names{"target"});
    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(SetAsideFileTest, doesNothingWhereThereIsNoFile)
{
    {
        const SetAsideFile old(m_target);
        EXPECT_EQ(names(), Names{});
    }
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), Names{});
}

TEST_F(SetAsideFileTest, leavesAFolderAlone)
{
    m_folder.folder("target");
    m_folder.file("target/inside");
    {
        const SetAsideFile old(m_target);
        EXPECT_EQ(names(), Names{"target"});
    }
    EXPECT_EQ(listedNames(m_target), Names{"inside"});

    m_folder.folder("other.previous");
    SetAsideFile::putBack(m_folder.path("other"));
    EXPECT_EQ(names(), (Names{"other.previous", "target"}));
}

TEST_F(SetAsideFileTest, takesALinkAndNotWhatItLeadsTo)
{
    write(m_folder.path("elsewhere"), "kept");
    m_folder.link("target", "elsewhere");
    {
        const SetAsideFile old(m_target);
        EXPECT_EQ(names(), (Names{"elsewhere", "target.previous"}));
    }
    EXPECT_EQ(names(), Names{"elsewhere"});
    EXPECT_EQ(fileText(m_folder.path("elsewhere")), "kept");

    m_folder.link("target.previous", "elsewhere");
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), (Names{"elsewhere", "target"}));
}

TEST_F(SetAsideFileTest, isPutBackWhereItHasNoSuccessor)
{
    write(m_aside, "old");
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), Names{"target"});
    EXPECT_EQ(fileText(m_target), "old");
}

TEST_F(SetAsideFileTest, isDeletedWhereItHasOne)
{
    write(m_aside, "old");
    write(m_target, "new");
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), Names{"target"});
    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(SetAsideFileTest, isNeverPutBackOverASuccessorThatComesInTheSameMoment)
{
    for (std::size_t moment = 0; moment < 4; ++moment) {
        unlink(m_target.c_str());
        write(m_aside, "old");
        FailingFileCalls calls;
        std::size_t call = 0;
        calls.beforeEach = [&] {
            if (call++ == moment) {
                write(m_target, "new");
            }
        };
        SetAsideFile::putBack(m_target, calls);
        ASSERT_GT(call, moment) << "the moment has not come";
        EXPECT_EQ(fileText(m_target), "new") << moment;
    }
}

TEST_F(SetAsideFileTest, isNotPutBackWhileItsSuccessorIsBeingWritten)
{
    write(m_target, "old");
    {
        const SetAsideFile old(m_target);
        SetAsideFile::putBack(m_target);
        EXPECT_EQ(names(), Names{"target.previous"});
    }
    EXPECT_EQ(names(), Names{});
}

TEST_F(SetAsideFileTest, takesOneThatAKilledProcessHadSetAsideWithIt)
{
    write(m_aside, "older");
    {
        const SetAsideFile old(m_target);
        write(m_target, "new");
    }
    EXPECT_EQ(names(), Names{"target"});

    write(m_aside, "older");
    {
        const SetAsideFile old(m_target);
        EXPECT_EQ(fileText(m_aside), "new");
    }
    EXPECT_EQ(names(), Names{});
}

TEST_F(SetAsideFileTest, isGoneWhenItsSuccessorCouldNotBeWritten)
{
    const auto tree = makeTree("new", {file("a", 10)});
    for (const std::string failing : {"open", "write", "fsync", "rename"}) {
        write(m_target, "old");
        FailingFileCalls counting;
        ASSERT_TRUE(writeScanFile(tree->root(), m_folder.path("try"), counting));
        ASSERT_EQ(unlink(m_folder.path("try").c_str()), 0);
        const auto call = std::find(counting.log().begin(), counting.log().end(), failing);
        FailingFileCalls calls;
        calls.failingCall = static_cast<std::size_t>(call - counting.log().begin());
        {
            const SetAsideFile old(m_target);
            EXPECT_FALSE(writeScanFile(tree->root(), m_target, calls));
        }
        EXPECT_EQ(names(), Names{}) << failing;
    }
}

TEST_F(SetAsideFileTest, whateverCallFailsNothingIsHalfDone)
{
    const int descriptors = openDescriptorCount();
    for (std::size_t call = 0; call < 6; ++call) {
        for (const bool hasSuccessor : {false, true}) {
            write(m_target, "old");
            FailingFileCalls calls;
            calls.failingCall = call;
            {
                const SetAsideFile old(m_target, calls);
                if (hasSuccessor) {
                    write(m_target, "new");
                }
            }
            SetAsideFile::putBack(m_target); // at the next start
            const std::string text = names().empty() ? "" : fileText(m_target);
            EXPECT_TRUE(text == "new" || (!hasSuccessor && (text.empty() || text == "old")))
                << call << ": " << text;
            EXPECT_TRUE(names().empty() || names() == Names{"target"}) << call;
            EXPECT_EQ(openDescriptorCount(), descriptors) << call;
            unlink(m_target.c_str());
        }
    }
}

TEST_F(SetAsideFileTest, aFileThatCannotBePutBackIsNotLost)
{
    const int descriptors = openDescriptorCount();
    for (std::size_t call = 0; call < 4; ++call) {
        write(m_aside, "old");
        FailingFileCalls calls;
        calls.failingCall = call;
        SetAsideFile::putBack(m_target, calls);
        EXPECT_EQ(names().size(), 1U) << call;
        SetAsideFile::putBack(m_target);
        EXPECT_EQ(fileText(m_target), "old") << call;
        EXPECT_EQ(openDescriptorCount(), descriptors) << call;
        unlink(m_target.c_str());
    }
}

/// A scan file is replaced again and again, with the old one set aside meanwhile, by a process that
/// is killed on the way.
class SetAsideFileKillTest : public SetAsideFileTest {
protected:
    SetAsideFileKillTest()
    {
        EXPECT_TRUE(writeScanFile(m_new->root(), m_target));
        m_newBytes = fileText(m_target);
        EXPECT_TRUE(writeScanFile(m_old->root(), m_target));
        m_oldBytes = fileText(m_target);
    }

    void replace(const tree::ScanTree &tree, FileCalls &calls) const
    {
        const SetAsideFile last(m_target, calls);
        (void)writeScanFile(tree.root(), m_target, calls);
    }
    void replaceForever(FailingFileCalls &calls) const
    {
        calls.maxWriteBytes = 200;
        for (;;) {
            replace(*m_new, calls);
            replace(*m_old, calls);
        }
    }
    [[nodiscard]] std::size_t callsOfTwoReplacements() const
    {
        FailingFileCalls calls;
        calls.maxWriteBytes = 200;
        replace(*m_new, calls);
        replace(*m_old, calls);
        return calls.log().size();
    }

    /// What the next start finds: one version, whole and alone.
    void expectOldOrNewAloneAtTheNextStart()
    {
        m_wasAsideAlone = m_wasAsideAlone || access(m_target.c_str(), F_OK) != 0;
        m_wasThereTwice = m_wasThereTwice || (access(m_target.c_str(), F_OK) == 0 &&
                                              access(m_aside.c_str(), F_OK) == 0);
        AtomicFile::removeLeftovers(m_folder.path());
        SetAsideFile::putBack(m_target);
        EXPECT_EQ(names(), Names{"target"});
        const std::string bytes = fileText(m_target);
        EXPECT_TRUE(bytes == m_oldBytes || bytes == m_newBytes) << bytes.size() << " bytes";
    }

    std::shared_ptr<tree::ScanTree> m_old =
        makeTree("old", {file("a", 10), folder("s", {file("b", 5)})});
    std::shared_ptr<tree::ScanTree> m_new = makeTree("newer", {file("c", 20), file("d", 30)});
    std::string m_oldBytes;
    std::string m_newBytes;
    bool m_wasAsideAlone = false;
    bool m_wasThereTwice = false;
};

TEST_F(SetAsideFileKillTest, killedBeforeAnyCallTheOldFileOrTheNewIsThereAtTheNextStart)
{
    const std::size_t count = callsOfTwoReplacements();
    for (std::size_t call = 0; call <= count; ++call) {
        SCOPED_TRACE(call);
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            replaceForever(calls);
        });
        ASSERT_TRUE(writer.wasKilled());
        expectOldOrNewAloneAtTheNextStart();
    }
    EXPECT_TRUE(m_wasAsideAlone);
    EXPECT_TRUE(m_wasThereTwice);
}

TEST_F(SetAsideFileKillTest, killedAtAnyMomentTheOldFileOrTheNewIsThereAtTheNextStart)
{
    const std::size_t count = callsOfTwoReplacements();
    for (std::size_t seen = 1; seen <= 4 * count; ++seen) {
        SCOPED_TRACE(seen);
        std::array<int, 2> progress{};
        ASSERT_EQ(pipe2(progress.data(), O_CLOEXEC), 0);
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.beforeEach = [&] { (void)!::write(progress[1], ".", 1); };
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
        expectOldOrNewAloneAtTheNextStart();
    }
}

TEST_F(SetAsideFileKillTest, killedWhileNobodyElseMayPutItBackItIsPutBackAfterwards)
{
    std::array<int, 2> ready{};
    ASSERT_EQ(pipe2(ready.data(), O_CLOEXEC), 0);
    KillableChild writer([&] {
        const SetAsideFile last(m_target);
        (void)!::write(ready[1], ".", 1);
        pause();
    });
    close(ready[1]);
    char event = 0;
    ASSERT_EQ(read(ready[0], &event, 1), 1);
    close(ready[0]);
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), Names{"target.previous"}) << "its writer is at work";
    writer.kill();
    EXPECT_TRUE(writer.wasKilled());
    SetAsideFile::putBack(m_target);
    EXPECT_EQ(names(), Names{"target"});
    EXPECT_EQ(fileText(m_target), m_oldBytes);
}

} // namespace
} // namespace tessaly::archive
