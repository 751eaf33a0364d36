#include "engine/scan/LUMThreadedScanner.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <new>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>

namespace tessaly::scan {

namespace {

using Lines = std::vector<std::string>;

/// Threads that do their work at once, in order, on the thread that starts them.
bool runAtOnce(const std::function<void()> &work)
{
    work();
    return true;
}

bool startNothing(const std::function<void()> & /*work*/)
{
    return false;
}

/// What a scan should find, found by other means.
Lines referenceLines(const std::filesystem::path &root)
{
    namespace fs = std::filesystem;
    Lines lines;
    const auto options = fs::directory_options::none;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root, options)) {
        const std::string path = entry.path().lexically_relative(root).string();
        std::error_code ignored;
        if (entry.is_symlink()) {
            if (fs::is_directory(entry.status(ignored))) {
                lines.push_back(path + '/');
            }
        } else if (entry.is_directory()) {
            lines.push_back(path + '/');
        } else {
            struct stat facts = {};
            EXPECT_EQ(lstat(entry.path().c_str(), &facts), 0);
            lines.push_back(path + ' ' + std::to_string(facts.st_size));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// Makes a folder "Volumes" with folders before and after it in the listing, whatever the file
/// system's order is, and a file in each of them. `where` is "" or ends in a slash. Gives the names
/// that are listed before it.
Lines makeVolumesAmongFolders(const TemporaryFolder &folder, const std::string &where)
{
    constexpr int maxFolders = 1000;
    const auto makeFolder = [&](const std::string &name) {
        folder.folder(where + name);
        folder.file(where + name + "/inside", 1);
    };
    makeFolder("0");
    makeFolder("Volumes");
    for (int count = 1; count <= maxFolders; ++count) {
        makeFolder(std::to_string(count));
        Lines names = listedNames(folder.path(where));
        const auto volumes = std::find(names.begin(), names.end(), "Volumes");
        if (volumes != names.begin() && names.end() - volumes > 1) {
            names.erase(volumes, names.end());
            return names;
        }
    }
    ADD_FAILURE() << "Volumes is always the first or the last entry";
    return {};
}

void expectEachToHoldOneFile(const tree::LUMFileContainer &folder)
{
    for (const tree::LUMFileItem &child : folder.subitems()) {
        ASSERT_TRUE(child.isContainer());
        EXPECT_EQ(childNames(*child.asContainer()), Lines{"inside"}) << child.itemName();
    }
}

} // namespace

TEST(LUMThreadedScanner, isIdleWithAnEmptyRootBeforeItsScan)
{
    const LUMThreadedScanner scanner;

    EXPECT_EQ(scanner.scanThreadCount(), 0);
    EXPECT_FALSE(scanner.scanInProgress());
    EXPECT_FALSE(scanner.scanWasCancelled());
    EXPECT_EQ(scanner.rootContainer()->itemName(), "Empty Item");
    EXPECT_EQ(scanner.rootContainer()->itemSize(), 0U);
    EXPECT_TRUE(scanner.rootContainer()->subitems().empty());
    scanner.waitUntilFinished();
}

TEST(LUMThreadedScanner, recordsFilesAndFoldersInTheOrderOfTheListing)
{
    const TemporaryFolder folder;
    folder.file("a", 10);
    folder.file("b", 20);
    folder.folder("s");
    folder.file("s/c", 5);

    const auto root = scanned(folder.path());

    EXPECT_EQ(treeLines(*root), (Lines{"a 10", "b 20", "s/", "s/c 5"}));
    EXPECT_EQ(childNames(*root), listedNames(folder.path()));
    EXPECT_EQ(root->valueOfSubitems(), 35U);
}

TEST(LUMThreadedScanner, recordsDeeperFoldersInTheOrderOfTheListing)
{
    const TemporaryFolder folder;
    folder.folder("s");
    for (int i = 0; i < 50; ++i) {
        const std::string name = "s/" + std::to_string(i * i);
        i % 3 == 0 ? folder.folder(name) : folder.file(name);
    }

    const auto root = scanned(folder.path());

    const tree::LUMFileContainer *s = childNamed(*root, "s")->asContainer();
    EXPECT_EQ(childNames(*s), listedNames(folder.path("s")));
}

TEST(LUMThreadedScanner, hasFinishedWhenItReturnsFromAFolderWithoutSubfolders)
{
    const TemporaryFolder folder;
    folder.file("a", 1);
    LUMThreadedScanner scanner;

    const tree::LUMFileContainer &root = scanner.scanRootFolder(folder.path());

    EXPECT_FALSE(scanner.scanInProgress());
    EXPECT_EQ(treeLines(root), Lines{"a 1"});
    EXPECT_EQ(&root, scanner.rootContainer().get());
}

TEST(LUMThreadedScanner, namesTheRootWithThePathExactlyAsGiven)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/a", 3);

    for (const std::string &path : {folder.path(), folder.path() + '/', folder.path() + "//",
                                    folder.path("s/../."), folder.path("s/..//")}) {
        const auto root = scanned(path);
        EXPECT_EQ(root->itemName(), path);
        EXPECT_EQ(root->parentContainer(), nullptr);
        EXPECT_EQ(treeLines(*root), (Lines{"s/", "s/a 3"})) << path;
    }
}

TEST(LUMThreadedScanner, stopsListingTheScannedFolderAtAnEntryNamedVolumes)
{
    const TemporaryFolder folder;
    const Lines beforeVolumes = makeVolumesAmongFolders(folder, "");
    ASSERT_FALSE(beforeVolumes.empty());

    const auto root = scanned(folder.path());

    EXPECT_EQ(childNames(*root), beforeVolumes);
    expectEachToHoldOneFile(*root);
}

TEST(LUMThreadedScanner, stopsListingADeeperFolderAtAnEntryNamedVolumes)
{
    const TemporaryFolder folder;
    for (const std::string path : {"one", "one/more", "three", "three/more", "three/more/deep"}) {
        folder.folder(path);
    }
    const Lines inDeep = makeVolumesAmongFolders(folder, "three/more/deep/");
    const Lines inOne = makeVolumesAmongFolders(folder, "one/");
    ASSERT_FALSE(inDeep.empty());
    ASSERT_FALSE(inOne.empty());

    const auto root = scanned(folder.path());

    const tree::LUMFileContainer &one = *childNamed(*root, "one")->asContainer();
    EXPECT_EQ(childNames(one), inOne);
    const tree::LUMFileContainer &three = *childNamed(*root, "three")->asContainer();
    const tree::LUMFileContainer &more = *childNamed(three, "more")->asContainer();
    const tree::LUMFileContainer &deep = *childNamed(more, "deep")->asContainer();
    EXPECT_EQ(childNames(deep), inDeep);
    expectEachToHoldOneFile(deep);
}

TEST(LUMThreadedScanner, stopsAtVolumesWhateverItIs)
{
    const TemporaryFolder folder;
    folder.file("Volumes");

    EXPECT_EQ(scannedLines(folder.path()), Lines{});
}

TEST(LUMThreadedScanner, takesNamesLikeVolumesForOrdinary)
{
    const TemporaryFolder folder;
    folder.folder("volumes");
    folder.file("volumes/a", 1);
    folder.folder("volumes/volumes");
    folder.file("volumes/volumes/b", 3);
    folder.folder("Volumes2");
    folder.file("Volume", 2);

    EXPECT_EQ(scannedLines(folder.path()),
              (Lines{"Volume 2", "Volumes2/", "volumes/", "volumes/a 1", "volumes/volumes/",
                     "volumes/volumes/b 3"}));
}

TEST(LUMThreadedScanner, recordsALinkToAFolderAsAnEmptyFolderAndNoOtherLink)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/file", 7);
    for (const std::string where : {"", "s/"}) {
        folder.link(where + "toFolder", folder.path("s"));
        folder.link(where + "toFile", folder.path("s/file"));
        folder.link(where + "broken", "nowhere");
        folder.link(where + "loop", "loop");
        folder.link(where + "toLink", "toFolder");
        folder.link(where + "toHere", ".");
    }

    EXPECT_EQ(scannedLines(folder.path()), (Lines{"s/", "s/file 7", "s/toFolder/", "s/toHere/",
                                                  "s/toLink/", "toFolder/", "toHere/", "toLink/"}));
}

TEST(LUMThreadedScanner, recordsHiddenEntriesAndPackagesLikeAnyOther)
{
    const TemporaryFolder folder;
    folder.file(".hidden", 4);
    folder.folder(".folder");
    folder.file(".folder/...", 5);
    folder.folder("Thing.app");
    folder.file("Thing.app/inside", 6);

    EXPECT_EQ(scannedLines(folder.path()), (Lines{".folder/", ".folder/... 5", ".hidden 4",
                                                  "Thing.app/", "Thing.app/inside 6"}));
}

TEST(LUMThreadedScanner, countsAFileInFullAtEveryHardLink)
{
    const TemporaryFolder folder;
    folder.file("a", 1000);
    folder.folder("s");
    ASSERT_EQ(linkat(folder.descriptor(), "a", folder.descriptor(), "s/b", 0), 0);

    EXPECT_EQ(scanned(folder.path())->valueOfSubitems(), 2000U);
}

TEST(LUMThreadedScanner, recordsLogicalSizesBeyondFourGigabytes)
{
    const TemporaryFolder folder;
    folder.file("sparse", 5'000'000'000);

    EXPECT_EQ(scannedLines(folder.path()), Lines{"sparse 5000000000"});
}

TEST(LUMThreadedScanner, recordsPipesSocketsAndDevicesWithoutOpeningThem)
{
    const TemporaryFolder folder;
    folder.folder("s");
    for (const std::string where : {"", "s/"}) {
        ASSERT_EQ(mkfifo(folder.path(where + "pipe").c_str(), 0644), 0);
        const FileDescriptor socketDescriptor(socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        folder.path(where + "socket").copy(address.sun_path, sizeof(address.sun_path) - 1);
        ASSERT_EQ(bind(socketDescriptor.number(), reinterpret_cast<const sockaddr *>(&address),
                       sizeof(address)),
                  0);
    }
    Lines expected{"pipe 0", "s/", "s/pipe 0", "s/socket 0", "socket 0"};
    if (mknodat(folder.descriptor(), "device", S_IFCHR | 0600, makedev(1, 5)) == 0) {
        expected.insert(expected.begin(), "device 0");
    }

    EXPECT_EQ(scannedLines(folder.path()), expected);
}

TEST(LUMThreadedScanner, keepsEveryByteOfAName)
{
    const TemporaryFolder folder;
    const std::string names[] = {
        std::string(255, '\xff'), "line\nbreak", "\x01\x7f", " ", "\\040", "\xc3\xa9", "e\xcc\x81"};
    Lines expected;
    for (const std::string &name : names) {
        folder.folder(name);
        folder.file(name + "/" + name, 1);
        expected.push_back(name + '/');
        expected.push_back(name + '/' + name + " 1");
    }
    std::sort(expected.begin(), expected.end());

    EXPECT_EQ(scannedLines(folder.path()), expected);
}

TEST(LUMThreadedScanner, givesARootWithoutChildrenForWhatCannotBeListed)
{
    const TemporaryFolder folder;
    folder.file("file");
    folder.link("broken", "nowhere");

    for (const std::string &path :
         {folder.path("missing"), folder.path("file"), folder.path("broken"), std::string(),
          folder.path() + std::string(1, '\0'), std::string(5000, 'x'),
          "/" + std::string(9000, 'x')}) {
        LUMThreadedScanner scanner;
        const tree::LUMFileContainer &root = scanner.scanRootFolder(path);
        EXPECT_FALSE(scanner.scanInProgress());
        EXPECT_TRUE(root.subitems().empty());
        EXPECT_EQ(root.itemName(), path);
    }
}

TEST(LUMThreadedScanner, scansWhatALinkGivenAsTheRootLeadsTo)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/a", 1);
    folder.link("link", "s");

    EXPECT_EQ(scannedLines(folder.path("link")), Lines{"a 1"});
    EXPECT_EQ(scannedLines(folder.path("link/")), Lines{"a 1"});
}

TEST(LUMThreadedScanner, findsWhatAnotherWayOfWalkingFinds)
{
    for (const std::string path : {"/usr/share/doc", "/usr/include", "/etc"}) {
        if (std::filesystem::is_directory(path)) {
            EXPECT_EQ(scannedLines(path), referenceLines(path)) << path;
        }
    }
}

TEST(LUMThreadedScanner, leavesEmptyWhatMayNotBeListedAndSizesZeroWhatMayNotBeRead)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody else";
    }
    const TemporaryFolder folder;
    for (const std::string where : {"", "s/"}) {
        folder.folder(where + "s");
        folder.folder(where + "closed");
        folder.file(where + "closed/inside", 1);
        folder.folder(where + "namesOnly");
        folder.folder(where + "namesOnly/folder");
        folder.file(where + "namesOnly/folder/inside", 2);
        folder.file(where + "namesOnly/file", 3);
        folder.file(where + "secret", 4);
        ASSERT_EQ(chmod(folder.path(where + "closed").c_str(), 0), 0);
        ASSERT_EQ(chmod(folder.path(where + "namesOnly").c_str(), 0744), 0);
        ASSERT_EQ(chmod(folder.path(where + "secret").c_str(), 0), 0);
    }

    runUnprivileged([&] {
        EXPECT_EQ(scannedLines(folder.path()),
                  (Lines{"closed/", "namesOnly/", "namesOnly/file 0", "namesOnly/folder/", "s/",
                         "s/closed/", "s/namesOnly/", "s/namesOnly/file 0", "s/namesOnly/folder/",
                         "s/s/", "s/secret 4", "secret 4"}));
        EXPECT_EQ(scannedLines(folder.path("closed")), Lines{});
    });
}

TEST(LUMThreadedScanner, countsTheRootWalkAndEachSubfolderBeforeItsThreadStarts)
{
    const TemporaryFolder folder;
    folder.folder("a");
    folder.folder("b");
    folder.folder("c");
    folder.link("link", "a");
    folder.file("file");
    std::vector<std::function<void()>> started;
    std::vector<std::int32_t> counts;
    LUMThreadedScanner *scanning = nullptr;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        counts.push_back(scanning->scanThreadCount());
        started.push_back(work);
        return true;
    }});
    scanning = &scanner;

    scanner.scanRootFolder(folder.path());

    EXPECT_EQ(counts, (std::vector<std::int32_t>{2, 3, 4}));
    EXPECT_EQ(scanner.scanThreadCount(), 3);
    EXPECT_TRUE(scanner.scanInProgress());
    for (const std::function<void()> &work : started) {
        const std::int32_t before = scanner.scanThreadCount();
        work();
        EXPECT_EQ(scanner.scanThreadCount(), before - 1);
    }
    EXPECT_FALSE(scanner.scanInProgress());
    scanner.waitUntilFinished();
}

TEST(LUMThreadedScanner, walksASubfolderItselfWhenThereIsNoThread)
{
    const TemporaryFolder folder;
    folder.file("file", 1);
    for (const std::string name : {"a", "b", "c", "d", "e"}) {
        folder.folder(name);
        folder.folder(name + "/deeper");
        folder.file(name + "/deeper/file", 2);
    }
    const Lines expected = referenceLines(folder.path());

    EXPECT_EQ(scannedLines(folder.path(), {.startThread = startNothing}), expected);

    int asked = 0;
    const auto startSome = [&](const std::function<void()> &work) {
        return ++asked % 2 == 0 && startDetachedThread(work);
    };
    EXPECT_EQ(scannedLines(folder.path(), {.startThread = startSome}), expected);

    const auto runOutOfMemory = [](const std::function<void()> & /*work*/) -> bool {
        throw std::bad_alloc();
    };
    EXPECT_EQ(scannedLines(folder.path(), {.startThread = runOutOfMemory}), expected);
}

TEST(LUMThreadedScanner, forgetsACancelRequestFromBeforeTheScan)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/a", 1);
    LUMThreadedScanner scanner;
    scanner.cancelScanInProgress();
    EXPECT_TRUE(scanner.scanWasCancelled());

    scanner.scanRootFolder(folder.path());
    scanner.waitUntilFinished();

    EXPECT_FALSE(scanner.scanWasCancelled());
    EXPECT_EQ(treeLines(*scanner.rootContainer()), (Lines{"s/", "s/a 1"}));
}

TEST(LUMThreadedScanner, stopsEveryWalkButTheRootsWhenCancelled)
{
    const TemporaryFolder folder;
    for (const std::string name : {"a", "b", "c", "d"}) {
        folder.folder(name);
        folder.file(name + "/file");
    }
    int startedCount = 0;
    LUMThreadedScanner *scanning = nullptr;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        if (++startedCount == 3) {
            scanning->cancelScanInProgress();
        }
        return runAtOnce(work);
    }});
    scanning = &scanner;

    const tree::LUMFileContainer &root = scanner.scanRootFolder(folder.path());

    EXPECT_TRUE(scanner.scanWasCancelled());
    EXPECT_FALSE(scanner.scanInProgress());
    const Lines names = listedNames(folder.path());
    EXPECT_EQ(childNames(root), names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const tree::LUMFileContainer *subfolder = childNamed(root, names[i])->asContainer();
        EXPECT_EQ(subfolder->subitems().size(), i < 2 ? 1U : 0U) << names[i];
    }
}

TEST(LUMThreadedScanner, endsSoonWhenCancelledFromAnotherThread)
{
    LUMThreadedScanner *scanning = nullptr;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        const bool started = startDetachedThread(work);
        std::thread([&] { scanning->cancelScanInProgress(); }).join();
        return started;
    }});
    scanning = &scanner;

    scanner.scanRootFolder("/usr");
    scanner.waitUntilFinished();

    EXPECT_TRUE(scanner.scanWasCancelled());
    EXPECT_FALSE(scanner.scanInProgress());
    EXPECT_FALSE(treeLines(*scanner.rootContainer()).empty());
}

TEST(LUMThreadedScanner, canBeWaitedForBySeveralThreads)
{
    LUMThreadedScanner scanner;
    scanner.scanRootFolder("/usr/share");
    std::vector<std::uint64_t> totals(4);
    std::vector<std::thread> waiters;
    for (std::uint64_t &total : totals) {
        waiters.emplace_back([&] {
            scanner.waitUntilFinished();
            total = scanner.rootContainer()->valueOfSubitems();
        });
    }
    for (std::thread &waiter : waiters) {
        waiter.join();
    }

    EXPECT_EQ(totals, std::vector<std::uint64_t>(4, totals.front()));
    EXPECT_GT(totals.front(), 0U);
}

TEST(LUMThreadedScanner, mayGoBeforeItsScanHasEnded)
{
    std::shared_ptr<tree::ScanTree> tree;
    std::vector<std::function<void()>> started;
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/a", 1);
    {
        LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
            started.push_back(work);
            return true;
        }});
        scanner.scanRootFolder(folder.path());
        tree = scanner.tree();
    }
    started.front()();

    EXPECT_EQ(treeLines(tree->root()), (Lines{"s/", "s/a 1"}));
}

TEST(LUMThreadedScanner, mayBeDestroyedWithItsTreeWhileThreadsAreWalking)
{
    std::vector<std::weak_ptr<tree::ScanTree>> trees;
    for (int i = 0; i < 5; ++i) {
        LUMThreadedScanner scanner;
        scanner.scanRootFolder("/usr/share");
        trees.push_back(scanner.tree());
    }
    // The last walk frees the tree. No walk may be left for the tests that count what is open.
    for (const auto &tree : trees) {
        while (!tree.expired()) {
            std::this_thread::yield();
        }
    }
}

TEST(LUMThreadedScanner, givesARootThatKeepsTheTreeAlive)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.file("s/a", 1);
    std::shared_ptr<tree::LUMFileContainer> root;
    {
        LUMThreadedScanner scanner;
        scanner.scanRootFolder(folder.path());
        scanner.waitUntilFinished();
        root = scanner.rootContainer();
    }

    EXPECT_EQ(treeLines(*root), (Lines{"s/", "s/a 1"}));
}

TEST(LUMThreadedScanner, scansIntoTheTreeThatItIsGivenBehindWhatIsInIt)
{
    const TemporaryFolder folder;
    folder.file("a", 1);
    const auto tree = std::make_shared<tree::ScanTree>();
    tree->root().subitems().append(tree->leaseArena()->make<tree::LUMFileItem>("before", 2U));
    LUMThreadedScanner scanner;
    scanner.setRootContainer(tree);

    tree::LUMFileContainer &root = scanner.scanRootFolder(folder.path());

    EXPECT_EQ(&root, &tree->root());
    EXPECT_EQ(scanner.tree(), tree);
    EXPECT_EQ(childNames(root), (Lines{"before", "a"}));
}

TEST(LUMThreadedScanner, runsBesideOtherScans)
{
    const Lines expected = scannedLines("/usr/share/doc");
    std::vector<std::thread> scans;
    for (int i = 0; i < 4; ++i) {
        scans.emplace_back([&] { EXPECT_EQ(scannedLines("/usr/share/doc"), expected); });
    }
    for (std::thread &scan : scans) {
        scan.join();
    }
}

TEST(LUMThreadedScanner, saysWhyItsRootCouldNotBeOpened)
{
    const auto problemOf = [](const std::string &path) {
        LUMThreadedScanner scanner;
        scanner.scanRootFolder(path);
        scanner.waitUntilFinished();
        return scanner.rootProblem();
    };
    const TemporaryFolder folder;
    folder.file("file", 1);
    EXPECT_EQ(problemOf(folder.path("missing")), "No such file or directory");
    EXPECT_EQ(problemOf(folder.path("file")), "Not a directory");
    EXPECT_EQ(problemOf(folder.path()), std::nullopt);
    EXPECT_EQ(problemOf("/proc"), std::nullopt) << "it is not listed, but could be";
}

TEST(LUMThreadedScanner, leavesNoDescriptorOpen)
{
    const int before = openDescriptorCount();

    EXPECT_FALSE(scannedLines("/usr/share/doc").empty());
    EXPECT_FALSE(scannedLines("/etc", {startNothing, "/nowhere"}).empty());
    EXPECT_TRUE(scannedLines("/nowhere").empty());

    EXPECT_EQ(openDescriptorCount(), before);
}

TEST(LUMThreadedScanner, leavesEmptyASubfolderThatVanishesOrTurnsIntoALink)
{
    const TemporaryFolder folder;
    for (const std::string name : {"gone", "linked", "target", "stays"}) {
        folder.folder(name);
        folder.file(name + "/file", 1);
    }
    std::vector<std::function<void()>> started;
    LUMThreadedScanner scanner({.startThread = [&](const std::function<void()> &work) {
        started.push_back(work);
        return true;
    }});
    scanner.scanRootFolder(folder.path());

    std::filesystem::remove_all(folder.path("gone"));
    std::filesystem::remove_all(folder.path("linked"));
    folder.link("linked", "target");
    for (const std::function<void()> &work : started) {
        work();
    }

    EXPECT_EQ(treeLines(*scanner.rootContainer()),
              (Lines{"gone/", "linked/", "stays/", "stays/file 1", "target/", "target/file 1"}));
}

TEST(LUMThreadedScanner, survivesFoldersThatMoveAndVanishMeanwhile)
{
    const TemporaryFolder folder;
    folder.folder("a");
    folder.folder("b");
    std::atomic<bool> done = false;
    std::thread mutator([&] {
        namespace fs = std::filesystem;
        std::error_code ignored;
        for (int round = 0; !done; ++round) {
            for (const std::string name : {"1", "2", "3", "4", "5", "6"}) {
                fs::create_directories(folder.path("a/x" + name + "/y/z/" + name), ignored);
                fs::create_directories(folder.path("a/x" + name + "/w"), ignored);
                fs::rename(folder.path("a/x" + name + "/y"), folder.path("b/" + name), ignored);
                fs::permissions(folder.path("a/x" + name), fs::perms(round % 2 == 0 ? 0700 : 0),
                                ignored);
            }
            fs::remove_all(folder.path("b"), ignored);
            fs::create_directory(folder.path("b"), ignored);
            fs::remove_all(folder.path("a/x2"), ignored);
        }
    });
    for (int i = 0; i < 200; ++i) {
        const Lines lines = scannedLines(folder.path());
        EXPECT_TRUE(std::find(lines.begin(), lines.end(), "a/") != lines.end());
    }
    done = true;
    mutator.join();
}

} // namespace tessaly::scan
