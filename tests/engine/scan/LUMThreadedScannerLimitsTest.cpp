// Scans of trees that are deep, wide or large, and scans with few resources.

#include "engine/scan/LUMThreadedScanner.hpp"
#include "engine/tree/TreeWalk.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

struct Measure {
    std::size_t folders = 0;
    std::size_t files = 0;
    std::size_t depth = 0;
    std::size_t deepest = 0;
    std::uint64_t byteCount = 0;

    void file(const tree::LUMFileItem &item)
    {
        ++files;
        byteCount += item.itemSize();
    }
    void enter(const tree::LUMFileContainer & /*folder*/)
    {
        ++folders;
        deepest = std::max(deepest, depth++);
    }
    void leave(const tree::LUMFileContainer & /*folder*/) { --depth; }
};

Measure measured(const tree::LUMFileContainer &root)
{
    Measure measure;
    tree::walkTree(root, measure);
    return measure;
}

/// Holds all descriptors that the process may still open.
class Hoard {
public:
    void takeAll()
    {
        for (;;) {
            FileDescriptor taken(::open("/", O_PATH | O_CLOEXEC));
            if (!taken.isOpen()) {
                return;
            }
            m_taken.push_back(std::move(taken));
        }
    }
    void leave(std::size_t count)
    {
        m_taken.resize(m_taken.size() - std::min(count, m_taken.size()));
    }
    void giveAllBack() { m_taken.clear(); }

private:
    std::vector<FileDescriptor> m_taken;
};

void makeWideFolder(const TemporaryFolder &folder, int subfolderCount)
{
    for (int i = 0; i < subfolderCount; ++i) {
        const std::string name = std::to_string(i);
        folder.folder(name);
        folder.folder(name + "/in");
        folder.file(name + "/in/file", 3);
    }
}

} // namespace

TEST(LUMThreadedScannerLimits, reachTheBottomOfAHundredThousandFolders)
{
    constexpr int depth = 100'000;
    const TemporaryFolder folder;
    folder.nestedFolders("d", depth, 77);

    const Measure measure = measured(*scanned(folder.path()));

    EXPECT_EQ(measure.deepest, static_cast<std::size_t>(depth));
    EXPECT_EQ(measure.byteCount, 77U);
}

TEST(LUMThreadedScannerLimits, reachTheBottomWithSixtyFourDescriptors)
{
    constexpr int depth = 20'000;
    const TemporaryFolder folder;
    folder.nestedFolders("d", depth, 77, TemporaryFolder::Siblings::two);
    const DescriptorLimit limit(64);

    const Measure measure = measured(*scanned(folder.path()));

    EXPECT_EQ(measure.deepest, static_cast<std::size_t>(depth));
    EXPECT_EQ(measure.folders, 3U * depth + 1);
    EXPECT_EQ(measure.byteCount, 77U + 2U * depth);
}

TEST(LUMThreadedScannerLimits, scanAFolderWhosePathIsLongerThanThePathsThatTheSystemTakes)
{
    const TemporaryFolder folder;
    const std::string name(200, 'n');
    folder.nestedFolders(name, 50, 5);
    std::string path = folder.path();
    for (int level = 0; level < 49; ++level) {
        path += (level % 10 == 0 ? "///" : "/") + name;
    }

    EXPECT_EQ(scannedLines(path), (std::vector<std::string>{name + '/', name + "/leaf 5"}));
    EXPECT_EQ(scannedLines(path + "/" + name + "//"), std::vector<std::string>{"leaf 5"});
    EXPECT_EQ(measured(*scanned(folder.path())).deepest, 50U);
}

TEST(LUMThreadedScannerLimits, scanTenThousandSubfoldersWithAThousandDescriptors)
{
    constexpr int subfolderCount = 10'000;
    const TemporaryFolder folder;
    makeWideFolder(folder, subfolderCount);
    const DescriptorLimit limit(1024);

    const Measure measure = measured(*scanned(folder.path()));
    EXPECT_EQ(measure.files, static_cast<std::size_t>(subfolderCount));
    EXPECT_EQ(measure.byteCount, 3U * subfolderCount);

    int asked = 0;
    const auto startForAWhile = [&](const std::function<void()> &work) {
        return ++asked < subfolderCount / 50 && startDetachedThread(work);
    };
    EXPECT_EQ(measured(*scanned(folder.path(), {.startThread = startForAWhile})).files,
              static_cast<std::size_t>(subfolderCount));
}

TEST(LUMThreadedScannerLimits, recordEverythingWhenTheSystemHasNoThreadsLeft)
{
    if (!isRoot() || isSanitized) {
        GTEST_SKIP() << "needs root, to become somebody with a limit of processes, and a process "
                        "without helper threads of its own";
    }
    const TemporaryFolder folder;
    makeWideFolder(folder, 500);

    runUnprivileged([&] {
        const rlimit few = {20, 20};
        ASSERT_EQ(setrlimit(RLIMIT_NPROC, &few), 0);
        EXPECT_EQ(measured(*scanned(folder.path())).files, 500U);
    });
}

TEST(LUMThreadedScannerLimits, endTheScanWhenMemoryRunsOut)
{
    if (isSanitized) {
        GTEST_SKIP() << "a sanitizer needs all the address space that there is";
    }
    const TemporaryFolder folder;
    folder.folder("s");
    for (int i = 0; i < 20'000; ++i) {
        folder.file("s/" + std::string(200, 'x') + std::to_string(i), 1);
    }

    runInChild([&] {
        // Address space: the program, a thread, and less than what the names take.
        std::size_t pagesUsed = 0;
        std::ifstream("/proc/self/statm") >> pagesUsed;
        const rlim_t byteCount = pagesUsed * 4096 + (3U << 20U);
        const rlimit little = {byteCount, byteCount};
        ASSERT_EQ(setrlimit(RLIMIT_AS, &little), 0);

        const auto root = scanned(folder.path());

        ASSERT_EQ(root->subitems().size(), 1U);
        const Measure measure = measured(*root);
        EXPECT_GT(measure.files, 0U);
        EXPECT_LT(measure.files, 20'000U);
        EXPECT_EQ(measure.byteCount, measure.files);
    });
}

TEST(LUMThreadedScannerLimits, recordAFolderOfTwoHundredThousandFiles)
{
    constexpr int fileCount = 200'000;
    const TemporaryFolder folder;
    folder.folder("s");
    const FileDescriptor s(openat(folder.descriptor(), "s", O_RDONLY | O_DIRECTORY));
    for (int i = 0; i < fileCount; ++i) {
        ASSERT_EQ(mknodat(s.number(), std::to_string(i).c_str(), S_IFREG | 0644, 0), 0);
    }

    EXPECT_EQ(measured(*scanned(folder.path())).files, static_cast<std::size_t>(fileCount));
    EXPECT_EQ(measured(*scanned(folder.path("s"))).files, static_cast<std::size_t>(fileCount));
}

TEST(LUMThreadedScannerLimits, waitForDescriptorsThatTheProcessUsesForAWhile)
{
    const TemporaryFolder folder;
    makeWideFolder(folder, 30);
    folder.nestedFolders("d", 100, 3, TemporaryFolder::Siblings::two);
    const DescriptorLimit limit(64);
    Hoard hoard;
    const auto hoardAtFirst = [&](const std::function<void()> &work) {
        hoard.takeAll();
        return startDetachedThread(work);
    };

    LUMThreadedScanner scanner({.startThread = hoardAtFirst});
    scanner.scanRootFolder(folder.path());
    hoard.giveAllBack();
    scanner.waitUntilFinished();

    EXPECT_EQ(measured(*scanner.rootContainer()).files, 30U + 200U + 1U);
}

TEST(LUMThreadedScannerLimits, finishWithTwoDescriptors)
{
    const TemporaryFolder folder;
    makeWideFolder(folder, 5);
    folder.nestedFolders("d", 60, 3, TemporaryFolder::Siblings::two);
    const DescriptorLimit limit(64);
    Hoard hoard;
    const auto leaveTwo = [&](const std::function<void()> &work) {
        hoard.takeAll();
        hoard.leave(2);
        return startDetachedThread(work);
    };

    LUMThreadedScanner scanner({.startThread = leaveTwo});
    scanner.scanRootFolder(folder.path());
    scanner.waitUntilFinished();

    EXPECT_EQ(measured(*scanner.rootContainer()).files, 5U + 120U + 1U);
}

TEST(LUMThreadedScannerLimits, leaveFoldersEmptyWhenThereIsNeverADescriptor)
{
    const TemporaryFolder folder;
    makeWideFolder(folder, 30);
    const DescriptorLimit limit(64);
    Hoard hoard;
    const auto hoardForGood = [&](const std::function<void()> &work) {
        hoard.takeAll();
        return startDetachedThread(work);
    };

    // Nobody will ever close one, so there is nothing to wait for.
    constexpr DescriptorBudget::Timing withoutWaiting{std::chrono::milliseconds(0),
                                                      std::chrono::milliseconds(0)};
    LUMThreadedScanner scanner({.startThread = hoardForGood, .descriptorTiming = withoutWaiting});
    scanner.scanRootFolder(folder.path());
    scanner.waitUntilFinished();

    EXPECT_EQ(scanner.rootContainer()->subitems().size(), 30U);
    EXPECT_EQ(measured(*scanner.rootContainer()).folders, 31U);
}

TEST(LUMThreadedScannerLimits, endACancelledScanOfManySubfolders)
{
    const TemporaryFolder folder;
    makeWideFolder(folder, 1000);
    const DescriptorLimit limit(64);
    Hoard hoard;
    int startedCount = 0;
    LUMThreadedScanner *scanning = nullptr;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        hoard.takeAll(); // so that the threads are waiting
        if (++startedCount == 500) {
            scanning->cancelScanInProgress();
        }
        return startDetachedThread(work);
    }});
    scanning = &scanner;

    scanner.scanRootFolder(folder.path());
    scanner.waitUntilFinished();

    EXPECT_TRUE(scanner.scanWasCancelled());
    EXPECT_EQ(scanner.rootContainer()->subitems().size(), 1000U);
}

} // namespace tessaly::scan
