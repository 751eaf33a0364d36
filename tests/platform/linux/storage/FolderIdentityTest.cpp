#include "platform/linux/storage/FolderIdentity.hpp"

#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace std::string_literals;

namespace tessaly {
namespace {

/// What the system says of a folder.
struct Facts {
    struct statx folder = {};
    struct statfs fileSystem = {};
    std::string handle = "1:handle";

    explicit Facts(long fileSystemType)
    {
        folder.stx_mask = STATX_INO | STATX_BTIME;
        folder.stx_ino = 12;
        folder.stx_btime.tv_sec = 34;
        folder.stx_btime.tv_nsec = 56;
        fileSystem.f_type = fileSystemType;
        fileSystem.f_fsid = fsid_t{{7, 8}};
    }

    [[nodiscard]] FolderIdentity identity() const
    {
        return folderIdentity(folder, fileSystem, handle);
    }
};

/// The names of the properties, one after the other.
std::string namesOf(const FolderIdentity &identity)
{
    std::string names;
    for (const auto &[name, value] : identity) {
        names += name + ' ';
    }
    return names;
}

TEST(FolderIdentity, holdsWhatTheFileSystemKeeps)
{
    EXPECT_EQ(namesOf(Facts(EXT4_SUPER_MAGIC).identity()), "birth fileSystem handle inode volume ");
    for (const long type : std::initializer_list<long>{XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                                       TMPFS_MAGIC, NFS_SUPER_MAGIC}) {
        EXPECT_EQ(namesOf(Facts(type).identity()), "birth fileSystem handle inode ") << type;
    }
    for (const long type :
         std::initializer_list<long>{EXFAT_SUPER_MAGIC, FUSE_SUPER_MAGIC, SMB_SUPER_MAGIC,
                                     CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC}) {
        EXPECT_EQ(namesOf(Facts(type).identity()), "birth fileSystem ") << type;
    }
    EXPECT_EQ(namesOf(Facts(MSDOS_SUPER_MAGIC).identity()), "fileSystem ");
}

TEST(FolderIdentity, lacksWhatTheFileSystemDoesNotGive)
{
    Facts facts(XFS_SUPER_MAGIC);
    facts.folder.stx_mask = STATX_INO;
    facts.handle.clear();

    EXPECT_EQ(namesOf(facts.identity()), "fileSystem inode ");
}

TEST(FolderIdentity, staysWhenTheDeviceHasAnotherNumber)
{
    Facts facts(XFS_SUPER_MAGIC);
    const FolderIdentity before = facts.identity();
    facts.folder.stx_dev_major = 8;
    facts.folder.stx_dev_minor = 17;
    facts.fileSystem.f_fsid = fsid_t{{817, 0}}; // made from that number
    facts.folder.stx_mnt_id = 99;

    EXPECT_EQ(facts.identity(), before);
}

TEST(FolderIdentity, changesWithEachProperty)
{
    const FolderIdentity before = Facts(EXT4_SUPER_MAGIC).identity();
    Facts changed(EXT4_SUPER_MAGIC);
    changed.folder.stx_ino = 13;
    EXPECT_FALSE(isSameFolder(before, changed.identity()));

    changed = Facts(EXT4_SUPER_MAGIC);
    changed.folder.stx_btime.tv_sec = 35;
    EXPECT_FALSE(isSameFolder(before, changed.identity()));

    changed = Facts(EXT4_SUPER_MAGIC);
    changed.folder.stx_btime.tv_nsec = 57;
    EXPECT_FALSE(isSameFolder(before, changed.identity()));

    changed = Facts(EXT4_SUPER_MAGIC);
    changed.fileSystem.f_fsid = fsid_t{{7, 9}};
    EXPECT_FALSE(isSameFolder(before, changed.identity()));

    changed = Facts(EXT4_SUPER_MAGIC);
    changed.handle = "1:another";
    EXPECT_FALSE(isSameFolder(before, changed.identity()));

    changed = Facts(MSDOS_SUPER_MAGIC);
    EXPECT_FALSE(isSameFolder(before, changed.identity()));
    EXPECT_TRUE(isSameFolder(before, Facts(EXT4_SUPER_MAGIC).identity()));
}

TEST(FolderIdentity, isMetByAFolderOfWhichMoreIsKnown)
{
    const Facts present(EXT4_SUPER_MAGIC);
    Facts recorded(EXT4_SUPER_MAGIC);
    recorded.folder.stx_mask = STATX_INO;
    recorded.handle.clear();

    EXPECT_TRUE(isSameFolder(recorded.identity(), present.identity()));
    EXPECT_FALSE(isSameFolder(present.identity(), recorded.identity()));
}

TEST(FolderIdentity, withoutAnythingIsThatOfNoFolder)
{
    EXPECT_FALSE(isSameFolder({}, Facts(EXT4_SUPER_MAGIC).identity()));
    EXPECT_FALSE(isSameFolder({}, {}));
}

TEST(FolderIdentity, ofAFolderOnDiskStaysTheSame)
{
    const TemporaryFolder folder;
    folder.folder("a");
    const auto before = folderIdentity(folder.path("a"));
    ASSERT_TRUE(before);
    folder.file("a/new file", 1);
    ASSERT_EQ(chmod(folder.path("a").c_str(), 0700), 0);

    EXPECT_EQ(folderIdentity(folder.path("a")), before);
    EXPECT_EQ(folderIdentity(folder.path("a/")), before);
}

TEST(FolderIdentity, ofALinkIsThatOfWhatItLeadsTo)
{
    const TemporaryFolder folder;
    folder.folder("a");
    folder.link("link", "a");

    EXPECT_EQ(folderIdentity(folder.path("link")), folderIdentity(folder.path("a")));
}

TEST(FolderIdentity, isNothingWithoutAFolder)
{
    const TemporaryFolder folder;
    folder.file("file");
    folder.link("dangling", "missing");
    folder.link("to file", "file");
    folder.link("loop", "loop");
    for (const char *name : {"file", "missing", "dangling", "to file", "loop", "file/inside"}) {
        EXPECT_EQ(folderIdentity(folder.path(name)), std::nullopt) << name;
    }
    EXPECT_EQ(folderIdentity(""), std::nullopt);
    EXPECT_EQ(folderIdentity(folder.path() + "\0x"s), std::nullopt);
    EXPECT_EQ(folderIdentity(folder.path() + std::string(5000, '/')), std::nullopt);
}

} // namespace
} // namespace tessaly
