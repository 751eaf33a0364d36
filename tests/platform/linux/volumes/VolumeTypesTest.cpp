#include "platform/linux/volumes/VolumeTypes.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace tessaly {

namespace {

TEST(VolumeTypes, haveTheNamesThatRowsCompare)
{
    const std::map<std::string, std::string> names = {
        {"hfs", "hfs"},
        {"hfsplus", "hfs"},
        {"afpfs", "afpfs"},
        {"fuse.afpfs", "afpfs"},
        {"vfat", "msdos"},
        {"msdos", "msdos"},
        {"fat", "msdos"},
        {"exfat", "exfat"},
        {"ext4", "ext4"},
        {"fuseblk", "fuseblk"},
        {"HFS", "HFS"},
        {"nfs4", "nfs4"},
        {"fuse.sshfs", "fuse.sshfs"},
        {"", ""},
    };
    for (const auto &[type, name] : names) {
        EXPECT_EQ(volumeTypeName(type), name) << type;
    }
}

TEST(VolumeTypes, holdUserDataOnDisksSharesAndFuse)
{
    for (const char *type :
         {"ext2",  "ext4",    "xfs",        "btrfs",       "zfs",          "f2fs",      "vfat",
          "exfat", "ntfs3",   "hfsplus",    "udf",         "iso9660",      "nfs",       "nfs4",
          "cifs",  "smb3",    "afpfs",      "ceph",        "9p",           "virtiofs",  "ecryptfs",
          "fuse",  "fuseblk", "fuse.sshfs", "fuse.rclone", "fuse.fuse2fs", "fuse.afpfs"}) {
        EXPECT_TRUE(holdsUserData(type)) << type;
    }
}

TEST(VolumeTypes, holdNoUserDataInTheKernelTheDesktopOrImages)
{
    for (const char *type : {"",           "proc",          "sysfs",
                             "tmpfs",      "ramfs",         "devtmpfs",
                             "devpts",     "cgroup",        "cgroup2",
                             "securityfs", "debugfs",       "tracefs",
                             "bpf",        "mqueue",        "hugetlbfs",
                             "pstore",     "efivarfs",      "autofs",
                             "nsfs",       "configfs",      "binfmt_misc",
                             "fusectl",    "rpc_pipefs",    "nfsd",
                             "overlay",    "aufs",          "squashfs",
                             "erofs",      "fuse.portal",   "fuse.gvfsd-fuse",
                             "fuse.lxcfs", "fuse.snapfuse", "fuse.squashfuse"}) {
        EXPECT_FALSE(holdsUserData(type)) << type;
    }
}

TEST(VolumeTypes, knowWhatProgramsServe)
{
    for (const char *type : {"fuse", "fuseblk", "fuse.sshfs"}) {
        EXPECT_TRUE(isFuse(type)) << type;
    }
    for (const char *type : {"", "fusectl", "ext4", "nfs"}) {
        EXPECT_FALSE(isFuse(type)) << type;
    }
}

} // namespace

} // namespace tessaly
