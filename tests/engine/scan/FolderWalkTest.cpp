#include "engine/scan/FolderWalk.hpp"

#include "engine/scan/LUMThreadedScanner.hpp"
#include "engine/scan/MountTable.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

using Lines = std::vector<std::string>;

/// Walks the folder's subfolder "d" with as few descriptors as possible; the tree's lines.
Lines linesWithMinShare(const TemporaryFolder &folder)
{
    ScanState scan;
    scan.mounts = MountPointTree::fromTable({}, "/");
    scan.budget.provide(DescriptorBudget::minShare);
    {
        DescriptorShare share(scan.budget, scan.cancelScanFlag);
        const tree::ScanTree::ArenaLease arena = scan.tree->leaseArena();
        auto &top = arena->make<tree::LUMFileContainer>("d", std::uint64_t{0});
        scan.tree->root().subitems().append(top);
        const FileDescriptor root(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
        FolderWalk(scan, root.number(), *arena, share).walk({&top, nullptr});
    }
    return treeLines(scan.tree->root());
}

/// Waits until a folder that was opened to be listed is closed again.
class CloseWatch {
public:
    explicit CloseWatch(const std::string &path) : m_events(inotify_init1(IN_CLOEXEC))
    {
        EXPECT_GE(inotify_add_watch(m_events.number(), path.c_str(), IN_CLOSE | IN_ONLYDIR), 0);
    }
    void wait() const
    {
        std::array<char, 4096> event;
        EXPECT_GT(read(m_events.number(), event.data(), event.size()), 0);
    }

private:
    FileDescriptor m_events;
};

/// Scans a folder, of which the walks of "d", "y" and "z" have one descriptor between them at
/// first. `meanwhile` runs when the walk of "d" has listed it, could open none of its subfolders,
/// and has closed it again. After that there are descriptors enough. The tree's lines.
Lines linesAfterShortage(const TemporaryFolder &folder, const std::function<void()> &meanwhile)
{
    std::vector<std::function<void()>> walks;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        walks.push_back(work);
        return true;
    }});
    scanner.scanRootFolder(folder.path());
    const CloseWatch watch(folder.path("d"));
    const DescriptorLimit limit(64);
    std::vector<FileDescriptor> hoard;
    do {
        hoard.emplace_back(open("/", O_PATH | O_CLOEXEC));
    } while (hoard.back().isOpen());
    hoard.resize(hoard.size() - 2);

    for (const std::function<void()> &walk : walks) {
        EXPECT_TRUE(startDetachedThread(walk));
    }
    watch.wait();
    meanwhile();
    hoard.clear();
    scanner.waitUntilFinished();
    return treeLines(*scanner.rootContainer());
}

} // namespace

TEST(FolderWalk, returnsFromTheDepthsToEveryFolderThatItClosed)
{
    const TemporaryFolder folder;
    folder.nestedFolders("d", 100, 5, TemporaryFolder::Siblings::two);

    const Lines lines = linesWithMinShare(folder);

    Lines expected = scannedLines(folder.path("d"));
    EXPECT_EQ(lines.size(), expected.size() + 1);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string &line) { return line.ends_with("/f 1"); }),
              2 * 99);
}

TEST(FolderWalk, returnsPastManyFoldersThatHaveNothingLeftToWalk)
{
    const TemporaryFolder folder;
    folder.nestedFolders("d", 2, 1, TemporaryFolder::Siblings::two);
    {
        FileDescriptor here(open(folder.path("d/d").c_str(), O_RDONLY | O_DIRECTORY));
        for (int i = 0; i < 3000; ++i) { // farther than one step upwards can span
            ASSERT_EQ(mkdirat(here.number(), "d", 0755), 0);
            here = FileDescriptor(openat(here.number(), "d", O_RDONLY | O_DIRECTORY));
        }
        for (int i = 0; i < 10; ++i) {
            for (const char *name : {"y", "d", "z"}) {
                ASSERT_EQ(mkdirat(here.number(), name, 0755), 0);
            }
            here = FileDescriptor(openat(here.number(), "d", O_RDONLY | O_DIRECTORY));
        }
    }

    const Lines lines = linesWithMinShare(folder);

    EXPECT_EQ(lines.size(), 1U + 4 + 2 + 3000 + 3 * 10);
    for (const std::string line : {"d/y/f 1", "d/z/f 1"}) {
        EXPECT_TRUE(std::find(lines.begin(), lines.end(), line) != lines.end()) << line;
    }
}

TEST(FolderWalk, returnsByNamesFromAFolderThatMayBeListedButNotEntered)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody else";
    }
    const TemporaryFolder folder;
    folder.nestedFolders("d", 10, 5, TemporaryFolder::Siblings::two);
    std::string bottom = "d";
    for (int i = 1; i < 10; ++i) {
        bottom += "/d";
    }
    const std::string listed = bottom + "/e";
    folder.folder(listed);
    folder.file(listed + "/file", 5);
    ASSERT_EQ(chmod(folder.path(listed).c_str(), 0744), 0);

    runUnprivileged([&] {
        const Lines lines = linesWithMinShare(folder);
        EXPECT_TRUE(std::find(lines.begin(), lines.end(), listed + "/file 0") != lines.end());
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                [](const std::string &line) { return line.ends_with("/f 1"); }),
                  2 * 9);
    });
}

TEST(FolderWalk, leavesEmptyWhatItCannotFindAgain)
{
    for (const bool isReplaced : {false, true}) {
        const TemporaryFolder folder;
        folder.nestedFolders("d", 3, 5, TemporaryFolder::Siblings::two);
        folder.folder("other");
        folder.folder("other/d");
        folder.file("other/d/wrong");
        folder.folder("other/z");
        folder.file("other/z/wrong");

        Lines below = linesAfterShortage(folder, [&] {
            EXPECT_EQ(rename(folder.path("d").c_str(), folder.path("moved").c_str()), 0);
            if (isReplaced) {
                EXPECT_EQ(rename(folder.path("other").c_str(), folder.path("d").c_str()), 0);
            }
        });

        std::erase_if(below, [](const std::string &line) { return !line.starts_with("d/"); });
        EXPECT_EQ(below, (Lines{"d/", "d/d/", "d/y/", "d/z/"}));
    }
}

TEST(FolderWalk, reopensAFolderThatItClosedOnlyForTheShortage)
{
    const TemporaryFolder folder;
    folder.nestedFolders("d", 3, 5, TemporaryFolder::Siblings::two);
    EXPECT_EQ(
        linesAfterShortage(folder, [] {}),
        (Lines{"d/", "d/d/", "d/d/d/", "d/d/d/leaf 5", "d/d/y/", "d/d/y/f 1", "d/d/z/", "d/d/z/f 1",
               "d/y/", "d/y/f 1", "d/z/", "d/z/f 1", "y/", "y/f 1", "z/", "z/f 1"}));
}

} // namespace tessaly::scan
