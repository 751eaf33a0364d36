#include "engine/scan/OpenedFolder.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>

#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::scan {

namespace {

bool isSameFolder(const FileDescriptor &opened, const std::string &path)
{
    struct stat a = {};
    struct stat b = {};
    return fstat(opened.number(), &a) == 0 && stat(path.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

int errorOfPath(const std::string &path)
{
    return openFolderPath(path).descriptor.isOpen() ? 0 : errno;
}

} // namespace

TEST(OpenedFolder, opensAFolderByAnyPathThatLeadsThere)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.link("link", "s");

    for (const std::string &path :
         {folder.path("s"), folder.path("s///"), folder.path("link"), folder.path("link/")}) {
        const OpenedFolder opened = openFolderPath(path);
        EXPECT_TRUE(isSameFolder(opened.descriptor, folder.path("s"))) << path;
        EXPECT_EQ(opened.kind, FileSystemKind::storage);
    }
    EXPECT_TRUE(isSameFolder(openFolderPath("/").descriptor, "/"));
    EXPECT_TRUE(isSameFolder(openFolderPath("///").descriptor, "/"));
    EXPECT_TRUE(isSameFolder(openFolderPath(".").descriptor, "."));
}

TEST(OpenedFolder, takesPathsOfAnyLength)
{
    const TemporaryFolder folder;
    folder.folder("s");
    for (std::size_t length = PATH_MAX - 300; length < PATH_MAX + 300; ++length) {
        std::string path = folder.path();
        while (path.size() < length) {
            path += length % 2 == 0 ? "/." : "/";
        }
        path += "/s";
        EXPECT_TRUE(isSameFolder(openFolderPath(path).descriptor, folder.path("s"))) << length;
    }
    std::string farAway = folder.path();
    for (int i = 0; i < 20'000; ++i) {
        farAway += "/s/..";
    }
    EXPECT_TRUE(isSameFolder(openFolderPath(farAway).descriptor, folder.path()));
    EXPECT_TRUE(isSameFolder(openFolderPath(std::string(10'000, '/')).descriptor, "/"));
}

TEST(OpenedFolder, tellsWhyAPathLeadsToNoFolder)
{
    const TemporaryFolder folder;
    folder.file("file");
    folder.link("loop", "loop");

    EXPECT_EQ(errorOfPath(""), ENOENT);
    EXPECT_EQ(errorOfPath(folder.path("missing")), ENOENT);
    EXPECT_EQ(errorOfPath(folder.path() + std::string(1, '\0')), ENOENT);
    EXPECT_EQ(errorOfPath(folder.path("file")), ENOTDIR);
    EXPECT_EQ(errorOfPath(folder.path("loop")), ELOOP);
    EXPECT_EQ(errorOfPath(std::string(256, 'n')), ENAMETOOLONG);
    EXPECT_EQ(errorOfPath(std::string(5000, 'n')), ENAMETOOLONG);
    EXPECT_EQ(errorOfPath("/" + std::string(5000, 'n')), ENAMETOOLONG);
}

TEST(OpenedFolder, isClosedForAKernelFileSystem)
{
    errno = EIO;
    const OpenedFolder opened = openFolderPath("/proc");

    EXPECT_EQ(errno, 0);
    EXPECT_FALSE(opened.descriptor.isOpen());
    EXPECT_EQ(opened.kind, FileSystemKind::kernel);
}

TEST(OpenedFolder, followsNoLinkFromAParent)
{
    const TemporaryFolder folder;
    folder.folder("s");
    folder.link("link", "s");

    for (const FileSystemCheck check : {FileSystemCheck::first, FileSystemCheck::needless}) {
        EXPECT_TRUE(openSubfolder(folder.descriptor(), "s", check).descriptor.isOpen());
        EXPECT_FALSE(openSubfolder(folder.descriptor(), "link", check).descriptor.isOpen());
    }
}

TEST(OpenedFolder, leavesNoDescriptorOpen)
{
    const TemporaryFolder folder;
    const int before = openDescriptorCount();

    static_cast<void>(openFolderPath(folder.path() + std::string(9000, '/') + "x"));
    static_cast<void>(openFolderPath("/proc"));
    static_cast<void>(openFolderPath(folder.path()));

    EXPECT_EQ(openDescriptorCount(), before);
}

} // namespace tessaly::scan
