#include "engine/archive/AtomicFile.hpp"

#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/fakes/FailingFileCalls.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <random>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {

namespace {

using Names = std::vector<std::string>;

Names sortedNames(const TemporaryFolder &folder)
{
    Names names = listedNames(folder.path());
    std::sort(names.begin(), names.end());
    return names;
}

/// Writes a text as the whole file, by the calls given.
Result<Done, ArchiveError> writeText(const std::string &path, const std::string &text,
                                     FileCalls &calls = FileCalls::system())
{
    AtomicFile file(path, calls);
    if (auto opened = file.open(); !opened) {
        return opened;
    }
    if (auto written = file.write(bytesOf(text)); !written) {
        return written;
    }
    return file.commit();
}

/// A folder with the file "target", which holds "old".
class AtomicFileTest : public testing::Test {
protected:
    AtomicFileTest() { EXPECT_TRUE(writeText(m_target, "old")); }

    TemporaryFolder m_folder;
    std::string m_target = m_folder.path("target");
};

/// A folder with a scan file of an old tree, and a new tree to be written over it.
class ScanFileReplacementTest : public testing::Test {
protected:
    ScanFileReplacementTest() { EXPECT_TRUE(writeScanFile(m_old->root(), m_target)); }

    [[nodiscard]] std::string contentOfTarget() const
    {
        const auto tree = readScanFile(m_target);
        return tree ? dumpOf(*tree.value()) : tree.error().text();
    }

    /// After whatever happened: the target is one of the two, whole.
    void expectOldOrNew() const
    {
        const std::string content = contentOfTarget();
        EXPECT_TRUE(content == dumpOf(*m_old) || content == dumpOf(*m_new)) << content;
    }

    TemporaryFolder m_folder;
    std::string m_target = m_folder.path("target");
    std::shared_ptr<tree::ScanTree> m_old = makeTree("old", {file("a", 1)});
    std::shared_ptr<tree::ScanTree> m_new =
        makeTree("new", {file("b", 2), folder("s", {file("c", 3)})});
};

/// How many calls one replacement makes.
std::size_t callCount(const tree::LUMFileContainer &root, const std::string &path,
                      std::size_t maxWriteBytes)
{
    FailingFileCalls calls;
    calls.maxWriteBytes = maxWriteBytes;
    EXPECT_TRUE(writeScanFile(root, path, calls));
    return calls.log().size();
}

} // namespace

TEST_F(AtomicFileTest, theTargetIsReplacedByTheWholeFile)
{
    ASSERT_TRUE(writeText(m_target, "new and longer"));

    EXPECT_EQ(fileText(m_target), "new and longer");
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

TEST_F(AtomicFileTest, aNewTargetIsMade)
{
    ASSERT_TRUE(writeText(m_folder.path("other"), ""));

    EXPECT_EQ(fileText(m_folder.path("other")), "");
}

TEST_F(AtomicFileTest, theTargetIsTheOldFileUntilCommit)
{
    AtomicFile file(m_target);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.write(bytesOf("new")));
    EXPECT_EQ(fileText(m_target), "old");

    ASSERT_TRUE(file.commit());
    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(AtomicFileTest, withoutCommitNothingHappens)
{
    {
        AtomicFile file(m_target);
        ASSERT_TRUE(file.open());
        ASSERT_TRUE(file.write(bytesOf("new")));
        EXPECT_EQ(sortedNames(m_folder).size(), 2U);
    }

    EXPECT_EQ(fileText(m_target), "old");
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

TEST_F(AtomicFileTest, onlyTheOwnerMayRead)
{
    const mode_t before = umask(0);
    ASSERT_TRUE(writeText(m_target, "new"));
    umask(before);
    struct stat status = {};
    ASSERT_EQ(stat(m_target.c_str(), &status), 0);

    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(AtomicFileTest, shortWritesAreContinued)
{
    FailingFileCalls calls;
    calls.maxWriteBytes = 1;

    ASSERT_TRUE(writeText(m_target, "new text", calls));
    EXPECT_EQ(fileText(m_target), "new text");
}

TEST_F(AtomicFileTest, aWriteThatTakesNothingFails)
{
    FailingFileCalls calls;
    calls.maxWriteBytes = 0;

    EXPECT_FALSE(writeText(m_target, "new", calls));
    EXPECT_EQ(fileText(m_target), "old");
}

TEST_F(AtomicFileTest, theContentIsOnDiskBeforeTheNameChanges)
{
    FailingFileCalls calls;
    ASSERT_TRUE(writeText(m_target, "new", calls));

    EXPECT_EQ(calls.log(), (Names{"open", "flock", "fstat", "write", "fsync", "rename", "close",
                                  "open", "fsync", "close"}));
}

TEST_F(AtomicFileTest, interruptedCallsAreMadeAgain)
{
    for (std::size_t call = 0; call < 10; ++call) {
        FailingFileCalls calls;
        calls.failingCall = call;
        calls.errorNumber = EINTR;
        const bool isRename = call == 5;
        EXPECT_EQ(writeText(m_target, "new", calls).hasValue(), !isRename) << call;
    }
}

TEST_F(AtomicFileTest, folderFlushesThatAreNotKnownAreNotMissed)
{
    for (const int errorNumber : {EINVAL, EROFS}) {
        FailingFileCalls calls;
        calls.failingCall = 8;
        calls.errorNumber = errorNumber;
        EXPECT_TRUE(writeText(m_target, "new", calls));
        EXPECT_EQ(calls.log()[8], "fsync!");
    }
}

TEST_F(AtomicFileTest, aNameThatIsTakenIsNotUsed)
{
    FailingFileCalls calls;
    calls.failingCall = 0;
    calls.errorNumber = EEXIST;

    ASSERT_TRUE(writeText(m_target, "new", calls));
    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(AtomicFileTest, aFileThatASweepHoldsIsLeftForAnother)
{
    FailingFileCalls calls;
    calls.failingCall = 1;
    calls.errorNumber = EWOULDBLOCK;

    ASSERT_TRUE(writeText(m_target, "new", calls));
    EXPECT_EQ(fileText(m_target), "new");
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

TEST_F(AtomicFileTest, aFileSystemWithoutLocksWillDo)
{
    FailingFileCalls calls;
    calls.failingCall = 1;
    calls.errorNumber = ENOLCK;

    EXPECT_TRUE(writeText(m_target, "new", calls));
}

TEST_F(AtomicFileTest, theLongestNameCanBeWritten)
{
    const std::string name(NAME_MAX, 'n');
    ASSERT_TRUE(writeText(m_folder.path(name), "text"));

    EXPECT_EQ(fileText(m_folder.path(name)), "text");
}

TEST_F(AtomicFileTest, aPathWithoutFolderLiesInTheCurrentOne)
{
    runInChild([&] {
        ASSERT_EQ(chdir(m_folder.path().c_str()), 0);
        ASSERT_TRUE(writeText("target", "new"));
    });

    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(AtomicFileTest, aMissingFolderIsAnError)
{
    const auto written = writeText(m_folder.path("missing/target"), "new");

    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind, ArchiveError::Kind::unwritable);
    EXPECT_EQ(written.error().message, "cannot write in the folder of " +
                                           m_folder.path("missing/target") +
                                           ": No such file or directory");
}

TEST_F(AtomicFileTest, aFolderIsNotReplaced)
{
    m_folder.folder("folder");

    EXPECT_FALSE(writeText(m_folder.path("folder"), "new"));
    EXPECT_EQ(sortedNames(m_folder), (Names{"folder", "target"}));
}

TEST_F(AtomicFileTest, whatIsNoFileIsNotReplaced)
{
    const std::string path = m_folder.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const auto written = writeText(path, "new");

    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message, "cannot replace " + path + ": not a regular file");
    struct stat status = {};
    ASSERT_EQ(lstat(path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_EQ(sortedNames(m_folder), (Names{"fifo", "target"}));
}

TEST_F(AtomicFileTest, aLinkIsReplacedAndNotWhatItLeadsTo)
{
    const std::string path = m_folder.path("link");
    ASSERT_EQ(symlink("target", path.c_str()), 0);

    EXPECT_TRUE(writeText(path, "new"));
    EXPECT_EQ(fileText(path), "new");
    EXPECT_EQ(fileText(m_target), "old");
}

TEST_F(AtomicFileTest, messagesStayOnOneLine)
{
    const auto written = writeText(m_folder.path("missing/a\nb"), "new");

    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message, "cannot write in the folder of " +
                                           m_folder.path("missing/a?b") +
                                           ": No such file or directory");
}

TEST_F(AtomicFileTest, aReadOnlyFolderIsAnError)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    runUnprivileged([&] { EXPECT_FALSE(writeText(m_target, "new")); });

    EXPECT_EQ(fileText(m_target), "old");
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

TEST_F(AtomicFileTest, writersOfTheSameTargetDoNotMix)
{
    AtomicFile first(m_target);
    AtomicFile second(m_target);
    ASSERT_TRUE(first.open());
    ASSERT_TRUE(second.open());
    ASSERT_TRUE(first.write(bytesOf("first")));
    ASSERT_TRUE(second.write(bytesOf("second")));
    ASSERT_TRUE(second.commit());
    ASSERT_TRUE(first.commit());

    EXPECT_EQ(fileText(m_target), "first");
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

TEST_F(AtomicFileTest, leftoversOfTheDeadAreRemoved)
{
    KillableChild writer([&] {
        FailingFileCalls calls;
        calls.fatalCall = 5;
        (void)writeText(m_target, "new", calls);
    });
    ASSERT_TRUE(writer.wasKilled());
    ASSERT_EQ(sortedNames(m_folder).size(), 2U);

    AtomicFile::removeLeftovers(m_folder.path());
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
    EXPECT_EQ(fileText(m_target), "old");
}

TEST_F(AtomicFileTest, filesOfWritersAtWorkAreNotRemoved)
{
    AtomicFile file(m_target);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.write(bytesOf("new")));
    AtomicFile::removeLeftovers(m_folder.path());

    ASSERT_TRUE(file.commit());
    EXPECT_EQ(fileText(m_target), "new");
}

TEST_F(AtomicFileTest, otherFilesAreNotRemoved)
{
    const Names others{".tessaly-.tmp",
                       ".tessaly-0123456789abcde.tmp",
                       ".tessaly-0123456789abcdef",
                       ".tessaly-0123456789abcdef.tmp2",
                       ".tessaly-0123456789abcdef0.tmp",
                       ".tessaly-0123456789abcdeg.tmp",
                       ".tessaly-notes.tmp",
                       "a.tmp",
                       "tessaly-0123456789abcdef.tmp"};
    for (const std::string &name : others) {
        m_folder.file(name);
    }
    m_folder.folder(".tessaly-00000000000000f0.tmp");
    m_folder.link(".tessaly-00000000000000f1.tmp", "a.tmp");
    const Names before = sortedNames(m_folder);

    AtomicFile::removeLeftovers(m_folder.path());
    EXPECT_EQ(sortedNames(m_folder), before);
}

TEST_F(AtomicFileTest, aMissingFolderHasNoLeftovers)
{
    const int before = openDescriptorCount();
    AtomicFile::removeLeftovers(m_folder.path("missing"));
    AtomicFile::removeLeftovers("");

    EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(ScanFileReplacementTest, whateverCallFailsTheTargetIsOldOrNew)
{
    const std::size_t count = callCount(m_old->root(), m_target, 200);
    const int descriptors = openDescriptorCount();
    for (const int errorNumber : {ENOSPC, EIO, EINTR, EDQUOT, ENOMEM}) {
        for (std::size_t call = 0; call < 2 * count; ++call) {
            ASSERT_TRUE(writeScanFile(m_old->root(), m_target));
            FailingFileCalls calls;
            calls.failingCall = call;
            calls.errorNumber = errorNumber;
            calls.maxWriteBytes = 200;
            const auto written = writeScanFile(m_new->root(), m_target, calls);

            // Only the flush of the folder comes after the renaming.
            EXPECT_TRUE(written || written.error().kind == ArchiveError::Kind::unwritable);
            EXPECT_EQ(contentOfTarget(), dumpOf(calls.hasCalled("rename") ? *m_new : *m_old))
                << call;
            EXPECT_TRUE(calls.hasCalled("rename") || !written) << call;
            EXPECT_EQ(sortedNames(m_folder), Names{"target"}) << call;
            EXPECT_EQ(openDescriptorCount(), descriptors) << call;
        }
    }
}

TEST_F(ScanFileReplacementTest, killedBeforeAnyCallTheTargetIsOldOrNew)
{
    const std::size_t count = callCount(m_new->root(), m_target, 100);
    for (std::size_t call = 0; call < count; ++call) {
        ASSERT_TRUE(writeScanFile(m_old->root(), m_target));
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.fatalCall = call;
            calls.maxWriteBytes = 100;
            (void)writeScanFile(m_new->root(), m_target, calls);
        });
        EXPECT_TRUE(writer.wasKilled()) << call;
        expectOldOrNew();
        AtomicFile::removeLeftovers(m_folder.path());
        EXPECT_EQ(sortedNames(m_folder), Names{"target"}) << call;
    }
}

TEST_F(ScanFileReplacementTest, killedAtAnyMomentTheTargetIsOldOrNew)
{
    std::mt19937 random(42); // NOLINT(cert-msc51-cpp): the same moments in every run
    for (int round = 0; round < 100; ++round) {
        std::array<int, 2> progress{};
        ASSERT_EQ(pipe2(progress.data(), O_CLOEXEC), 0);
        KillableChild writer([&] {
            FailingFileCalls calls;
            calls.maxWriteBytes = 50;
            calls.beforeEach = [&] { (void)!write(progress[1], ".", 1); };
            while (writeScanFile(m_old->root(), m_target, calls) &&
                   writeScanFile(m_new->root(), m_target, calls)) {}
        });
        close(progress[1]);
        char event = 0;
        for (auto left = random() % 200 + 1; left > 0 && read(progress[0], &event, 1) == 1;
             --left) {}
        writer.kill();
        EXPECT_TRUE(writer.wasKilled());
        close(progress[0]);
        expectOldOrNew();
    }
    AtomicFile::removeLeftovers(m_folder.path());
    EXPECT_EQ(sortedNames(m_folder), Names{"target"});
}

} // namespace tessaly::archive
