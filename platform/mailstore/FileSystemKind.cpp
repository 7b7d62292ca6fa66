#include "mailstore/FileSystemKind.h"

#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace lorvane::mailstore {

namespace {

constexpr std::uint64_t FuseMagic = 0x65735546;

// 9p (0x01021997) is left out on purpose: it mostly carries a host's folder into a virtual machine or container that has it alone.
constexpr std::uint64_t NetworkMagics[] = {
    0x00006969,  // NFS
    0x0000517B,  // SMB
    0xFF534D42,  // CIFS
    0xFE534D42,  // SMB 2 and 3
    0x0000564C,  // NCP
    0x5346414F,  // AFS
    0x6B414653,  // the kernel's AFS
    0x73757245,  // Coda
    0x00C36400,  // Ceph
    0x0BD00BD0,  // Lustre
    0x01161970,  // GFS2
    0x7461636F,  // OCFS2
};

constexpr std::string_view NetworkFuseTypes[] = {"fuse.sshfs",   "fuse.rclone",    "fuse.gvfsd-fuse", "fuse.glusterfs", "fuse.ceph",     "fuse.ceph-fuse",
                                                 "fuse.s3fs",    "fuse.curlftpfs", "fuse.davfs",      "fuse.davfs2",    "fuse.smbnetfs", "fuse.gcsfuse",
                                                 "fuse.juicefs", "fuse.seaweedfs", "fuse.kio-fuse",   "fuse.mount.nfs"};

std::string_view nextField(std::string_view& line) {
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return field;
}

}  // namespace

bool isNetworkFileSystem(const FileSystemKind& kind) {
    if (kind.magic == FuseMagic) return std::ranges::find(NetworkFuseTypes, kind.typeName) != std::end(NetworkFuseTypes);
    return std::ranges::find(NetworkMagics, kind.magic) != std::end(NetworkMagics);
}

std::string mountTypeName(std::string_view mountInfo, unsigned deviceMajor, unsigned deviceMinor) {
    const std::string device = std::to_string(deviceMajor) + ":" + std::to_string(deviceMinor);
    while (!mountInfo.empty()) {
        const std::size_t end = std::min(mountInfo.find('\n'), mountInfo.size());
        std::string_view line = mountInfo.substr(0, end);
        mountInfo.remove_prefix(std::min(end + 1, mountInfo.size()));
        nextField(line);  // number of the mount
        nextField(line);  // number of the mount it lies in
        if (nextField(line) != device) continue;
        // The optional fields in front of the type end with a dash that stands alone.
        const std::size_t dash = line.find(" - ");
        if (dash == std::string_view::npos) continue;
        line.remove_prefix(dash + 3);
        return std::string(nextField(line));
    }
    return {};
}

FileSystemKind fileSystemOf(const std::filesystem::path& path) {
    FileSystemKind kind;
    struct statfs about {};
    if (::statfs(path.c_str(), &about) != 0) return kind;
    // Some magics use the top bit of 32, which a signed field would carry on upwards.
    kind.magic = static_cast<std::uint64_t>(about.f_type) & 0xFFFFFFFFu;
    struct stat file {};
    if (kind.magic == FuseMagic && ::stat(path.c_str(), &file) == 0) {
        std::ifstream table("/proc/self/mountinfo", std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(table), {}};
        kind.typeName = mountTypeName(text, major(file.st_dev), minor(file.st_dev));
    }
    return kind;
}

}  // namespace lorvane::mailstore
