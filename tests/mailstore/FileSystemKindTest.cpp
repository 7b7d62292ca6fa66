#include "mailstore/FileSystemKind.h"

#include <gtest/gtest.h>

#include "mailstore/TempFolder.h"

namespace lorvane::mailstore {
namespace {

TEST(FileSystemKind, NetworkFileSystemsAreKnownByTheirMagic) {
    for (const std::uint64_t magic : {0x6969u, 0x517Bu, 0xFF534D42u, 0xFE534D42u, 0x5346414Fu, 0x00C36400u}) {
        EXPECT_TRUE(isNetworkFileSystem({magic, ""})) << std::hex << magic;
    }
    for (const std::uint64_t magic : {0xEF53u, 0x9123683Eu, 0x58465342u, 0x01021994u, 0x794C7630u, 0u}) {  // ext4, btrfs, xfs, tmpfs, overlay, not told
        EXPECT_FALSE(isNetworkFileSystem({magic, ""})) << std::hex << magic;
    }
}

TEST(FileSystemKind, FuseIsANetworkOnlyWhereItsTypeSaysSo) {
    constexpr std::uint64_t fuse = 0x65735546;
    EXPECT_TRUE(isNetworkFileSystem({fuse, "fuse.sshfs"}));
    EXPECT_TRUE(isNetworkFileSystem({fuse, "fuse.rclone"}));
    EXPECT_FALSE(isNetworkFileSystem({fuse, "fuseblk"}));
    EXPECT_FALSE(isNetworkFileSystem({fuse, "fuse.gocryptfs"}));
    EXPECT_FALSE(isNetworkFileSystem({fuse, ""}));
}

TEST(FileSystemKind, TheTypeIsFoundInTheTableOfMounts) {
    constexpr std::string_view table =
        "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
        "40 27 0:4 / /home/u/remote rw shared:7 master:1 - fuse.sshfs u@host:/ rw\n"
        "41 27 0:45 / /mnt/x rw - fuseblk /dev/sdb1 rw\n"
        "42 27 8:1 / /broken rw";
    EXPECT_EQ(mountTypeName(table, 0, 4), "fuse.sshfs");
    EXPECT_EQ(mountTypeName(table, 0, 45), "fuseblk");
    EXPECT_EQ(mountTypeName(table, 8, 1), "");
    EXPECT_EQ(mountTypeName(table, 9, 9), "");
    EXPECT_EQ(mountTypeName("", 0, 4), "");
}

TEST(FileSystemKind, TheSystemTellsTheKindOfARealFolder) {
    const test::TempFolder folder;
    EXPECT_NE(fileSystemOf(folder.path()).magic, 0u);
    EXPECT_EQ(fileSystemOf(folder.file("absent")).magic, 0u);
}

}  // namespace
}  // namespace lorvane::mailstore
