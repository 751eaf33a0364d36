#include "engine/archive/MappedFile.hpp"

#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ostream>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {

namespace {

constexpr std::size_t pageSize = 4096; // cuts below leave room for larger ones

class MappedFileTest : public testing::Test {
protected:
    /// A file of that many bytes "x".
    std::string filled(const std::string &name, std::size_t byteCount) const
    {
        std::ofstream(m_folder.path(name)) << std::string(byteCount, 'x');
        return m_folder.path(name);
    }

    static void cut(const std::string &path, std::size_t byteCount)
    {
        ASSERT_EQ(truncate(path.c_str(), static_cast<off_t>(byteCount)), 0);
    }

    /// The error of a path that cannot be mapped.
    static std::string errorOf(const std::string &path)
    {
        const auto file = MappedFile::open(path);
        EXPECT_FALSE(file);
        return file ? "" : file.error().message;
    }

    TemporaryFolder m_folder;
};

MappedFile mapped(const std::string &path)
{
    auto file = MappedFile::open(path);
    EXPECT_TRUE(file) << file.error().text();
    return std::move(file.value());
}

std::size_t countOf(const MappedFile &file, char c)
{
    return static_cast<std::size_t>(
        std::count(file.bytes().begin(), file.bytes().end(), static_cast<std::byte>(c)));
}

/// Reads from a mapping that is not ours and that has no file behind it any more.
void faultElsewhere()
{
    const int descriptor = memfd_create("cut", MFD_CLOEXEC); // leaves nothing behind
    if (ftruncate(descriptor, pageSize) != 0) {
        return;
    }
    const auto *memory = static_cast<const volatile char *>(
        mmap(nullptr, pageSize, PROT_READ, MAP_SHARED, descriptor, 0));
    if (ftruncate(descriptor, 0) == 0) {
        (void)*memory;
    }
}

class MappedFileDeathTest : public MappedFileTest {
protected:
    // Each statement runs in a new process, in which nothing has been mapped yet.
    MappedFileDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// For a process that ends without calling destructors. What is mapped stays.
    void leaveNothingBehind() const { std::filesystem::remove_all(m_folder.path()); }
};

/// A SIGBUS that has nothing to do with a mapped file.
struct ForeignSignal {
    std::string name;
    sighandler_t previousHandler;
    void (*provoke)();
    std::function<bool(int)> isExpectedEnd;

    friend void PrintTo(const ForeignSignal &signal, std::ostream *out) { *out << signal.name; }
};

class MappedFileSignalDeathTest : public MappedFileDeathTest,
                                  public testing::WithParamInterface<ForeignSignal> {};

} // namespace

TEST_F(MappedFileTest, holdsTheBytesOfTheFile)
{
    const MappedFile file = mapped(filled("f", 10'000));

    EXPECT_EQ(file.bytes().size(), 10'000U);
    EXPECT_EQ(countOf(file, 'x'), 10'000U);
    EXPECT_FALSE(file.wasTruncated());
}

TEST_F(MappedFileTest, anEmptyFileHasNoBytes)
{
    const MappedFile file = mapped(filled("f", 0));

    EXPECT_TRUE(file.bytes().empty());
    EXPECT_FALSE(file.wasTruncated());
}

TEST_F(MappedFileTest, aMissingFileIsAnError)
{
    EXPECT_EQ(errorOf(m_folder.path("missing")),
              "cannot read " + m_folder.path("missing") + ": No such file or directory");
    EXPECT_EQ(errorOf(""), "cannot read : No such file or directory");
}

TEST_F(MappedFileTest, foldersAndFifosAndDevicesAreRefused)
{
    ASSERT_EQ(mkfifo(m_folder.path("fifo").c_str(), 0600), 0);

    EXPECT_EQ(errorOf(m_folder.path()), "cannot read " + m_folder.path() + ": not a regular file");
    EXPECT_EQ(errorOf(m_folder.path("fifo")),
              "cannot read " + m_folder.path("fifo") + ": not a regular file");
    EXPECT_EQ(errorOf("/dev/zero"), "cannot read /dev/zero: not a regular file");
}

TEST_F(MappedFileTest, aFileThatMayNotBeReadIsAnError)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody without rights";
    }
    const std::string path = filled("f", 1);
    ASSERT_EQ(chmod(path.c_str(), 0600), 0);

    runUnprivileged(
        [&] { EXPECT_EQ(errorOf(path), "cannot read " + path + ": Permission denied"); });
}

TEST_F(MappedFileTest, noDescriptorStaysOpen)
{
    const int before = openDescriptorCount();
    const MappedFile file = mapped(filled("f", 1));
    errorOf(m_folder.path());

    EXPECT_EQ(openDescriptorCount(), before);
}

TEST_F(MappedFileTest, theMissingPartOfATruncatedFileReadsAsZerosAndIsNoticedThen)
{
    const std::string path = filled("f", 64 * pageSize);
    const MappedFile file = mapped(path);
    cut(path, 16 * pageSize);

    EXPECT_EQ(file.bytes()[0], std::byte{'x'});
    EXPECT_FALSE(file.wasTruncated()) << "nothing of the missing part has been read";
    EXPECT_EQ(countOf(file, 'x'), 16 * pageSize);
    EXPECT_EQ(countOf(file, '\0'), 48 * pageSize);
    EXPECT_TRUE(file.wasTruncated());
}

TEST_F(MappedFileTest, aTruncationConcernsNoOtherMappingAndNoLaterOne)
{
    const std::string path = filled("f", 64 * pageSize);
    const MappedFile other = mapped(filled("g", 64 * pageSize));
    {
        const MappedFile file = mapped(path);
        cut(path, 0);
        EXPECT_EQ(countOf(file, '\0'), 64 * pageSize);
        EXPECT_EQ(countOf(other, 'x'), 64 * pageSize);
        EXPECT_TRUE(file.wasTruncated());
        EXPECT_FALSE(other.wasTruncated());
    }

    EXPECT_FALSE(mapped(filled("h", 1)).wasTruncated());
}

TEST_F(MappedFileTest, aMappingMayMove)
{
    const std::string path = filled("f", 64 * pageSize);
    MappedFile first = mapped(path);
    const MappedFile second = std::move(first);
    cut(path, 0);

    EXPECT_EQ(countOf(second, '\0'), 64 * pageSize);
    EXPECT_TRUE(second.wasTruncated());
    // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): an empty mapping remains
    EXPECT_TRUE(first.bytes().empty());
    EXPECT_FALSE(first.wasTruncated());
    // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
}

TEST_F(MappedFileTest, manyMappingsAtOnceAreAnErrorAndTheirPlacesComeBack)
{
    const std::string path = filled("f", 1);
    std::vector<MappedFile> files;
    for (int i = 0; i < 64; ++i) {
        files.push_back(mapped(path));
    }
    EXPECT_EQ(errorOf(path), "cannot read " + path + ": too many files at once");

    files.clear();
    EXPECT_EQ(mapped(path).bytes().size(), 1U);
}

TEST_F(MappedFileTest, aHugeFileOfHolesIsMappedWithoutBeingRead)
{
    m_folder.file("f", std::uint64_t{1} << 40U);
    const auto tree = readScanFile(m_folder.path("f"));
    struct stat status = {};
    ASSERT_EQ(stat(m_folder.path("f").c_str(), &status), 0);

    ASSERT_FALSE(tree);
    EXPECT_EQ(tree.error().kind, ArchiveError::Kind::notAnArchive);
    EXPECT_LT(status.st_blocks, 1000); // a read hole takes memory where files lie in memory
}

TEST_F(MappedFileTest, anArchiveThatIsCutWhileItIsReadIsAnError)
{
    const std::string path = m_folder.path("f");
    const auto tree = makeDeepTree(20'000);
    ASSERT_TRUE(writeScanFile(tree->root(), path));
    const MappedFile file = mapped(path);
    const std::size_t whole = file.bytes().size();
    for (std::size_t size = whole; size > 0; size -= std::min(size, whole / 20)) {
        cut(path, size);
        EXPECT_EQ(readScanArchive(file.bytes()).hasValue(), size == whole) << size;
    }
    EXPECT_TRUE(file.wasTruncated());
}

TEST_F(MappedFileTest, readingAFileThatKeepsChangingEndsInATreeOrAnError)
{
    const std::string path = m_folder.path("f");
    const auto tree = makeDeepTree(2'000);
    ASSERT_TRUE(writeScanFile(tree->root(), path));
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    std::atomic<bool> stop = false;
    std::jthread cutter([&] { // in place: a scan file of ours would be replaced
        while (!stop) {
            EXPECT_EQ(truncate(path.c_str(), 0), 0);
            EXPECT_EQ(truncate(path.c_str(), status.st_size), 0);
        }
    });

    for (int i = 0; i < 300; ++i) {
        const auto read = readScanFile(path);
        EXPECT_TRUE(read || !read.error().message.empty());
    }
    stop = true;
}

TEST_P(MappedFileSignalDeathTest, endsTheProcessAsItWouldWithoutAMapping)
{
    EXPECT_EXIT(
        {
            std::signal(SIGBUS, GetParam().previousHandler);
            const MappedFile file = mapped(filled("f", 1));
            leaveNothingBehind();
            GetParam().provoke();
            _exit(0);
        },
        GetParam().isExpectedEnd, "");
}

INSTANTIATE_TEST_SUITE_P(
    Signals, MappedFileSignalDeathTest,
    testing::Values(ForeignSignal{"aFaultElsewhereIsPassedToTheHandlerBefore",
                                  [](int) { _exit(42); }, faultElsewhere,
                                  testing::ExitedWithCode(42)},
                    ForeignSignal{"aFaultElsewhereIsFatalWithoutAHandler", SIG_DFL, faultElsewhere,
                                  testing::KilledBySignal(SIGBUS)},
                    ForeignSignal{"aSignalThatAProcessSendsIsNotAFault", SIG_DFL,
                                  [] { std::raise(SIGBUS); }, testing::KilledBySignal(SIGBUS)}),
    [](const auto &signal) { return signal.param.name; });

TEST_F(MappedFileDeathTest, aSignalThatIsSurvivedDoesNotSwitchTheGuardOff)
{
    const sighandler_t doNothing = [](int) {};
    for (const sighandler_t previousHandler : {doNothing, SIG_IGN}) {
        EXPECT_EXIT(
            {
                std::signal(SIGBUS, previousHandler);
                const std::string path = filled("f", 64 * pageSize);
                const MappedFile file = mapped(path);
                std::raise(SIGBUS);
                cut(path, 0);
                leaveNothingBehind();
                _exit(countOf(file, '\0') == 64 * pageSize ? 0 : 1);
            },
            testing::ExitedWithCode(0), "");
    }
}

} // namespace tessaly::archive
