#include "platform/linux/volumes/UserMounts.hpp"

#include "tests/platform/linux/MadeUpSystem.hpp"

#include <gtest/gtest.h>

namespace tessaly {

namespace {

scan::Mount mountAt(const std::string &path, const std::string &type = "ext4",
                    const std::string &options = "rw")
{
    scan::Mount mount;
    mount.mountPoint = path;
    mount.type = type;
    mount.superOptions = options;
    return mount;
}

TEST(UserMounts, areThoseThatFstabLetsUsersMount)
{
    MadeUpSystem system;
    system.writeFstab("# /dev/sdz1 /comment ext4 user 0 0\n"
                      "\n"
                      "/dev/sda1 /system ext4 defaults 0 1\n"
                      "/dev/sdb1 /mnt/my\\040stick/ vfat noauto,user,rw 0 0\n"
                      "server:/x\t/mnt/nfs\tnfs\tusers\n"
                      "/dev/sdc1 /nouser ext4 nouser,userquota 0 0\n"
                      "//server/share /login cifs rw,user=alice,users=bob 0 0\n"
                      "/dev/sdd1 /broken\n");
    const UserMounts mounts(system.sources());

    EXPECT_TRUE(mounts.mayUnmount(mountAt("/mnt/my stick")));
    EXPECT_TRUE(mounts.mayUnmount(mountAt("/mnt/nfs", "nfs")));
    for (const char *path :
         {"/system", "/comment", "/nouser", "/login", "/broken", "/mnt", "/elsewhere"}) {
        EXPECT_FALSE(mounts.mayUnmount(mountAt(path))) << path;
    }
}

TEST(UserMounts, areTheUsersOwnByFuse)
{
    MadeUpSystem system;
    system.sources().user = 1000;
    const UserMounts mounts(system.sources());

    EXPECT_TRUE(mounts.mayUnmount(mountAt("/r", "fuse.sshfs", "rw,user_id=1000,group_id=1000")));
    EXPECT_FALSE(mounts.mayUnmount(mountAt("/r", "fuse.sshfs", "rw,user_id=0,group_id=1000")));
    EXPECT_FALSE(mounts.mayUnmount(mountAt("/r", "fuse.sshfs", "rw,user_id=10001")));
    EXPECT_FALSE(mounts.mayUnmount(mountAt("/r", "ext4", "rw,user_id=1000")));
    EXPECT_FALSE(mounts.mayUnmount(mountAt("/r", "fuse.sshfs", "rw")));
}

} // namespace

} // namespace tessaly
