#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace lorvane::mailstore {

/// What kind of file system a file lies on.
struct FileSystemKind {
    std::uint64_t magic = 0;  ///< the number statfs gives
    std::string typeName;     ///< the name in the table of mounts, told only where the magic alone does not tell ("fuse.sshfs")
};

/// The file system of an existing file or folder; an empty kind where the system does not tell.
FileSystemKind fileSystemOf(const std::filesystem::path& path);

/// Whether several computers may have the file open at once. Programs on one computer share a store through memory that such a file system does not carry.
bool isNetworkFileSystem(const FileSystemKind& kind);

/// The type name of the mount with this device number in the text of /proc/self/mountinfo; empty where there is none.
std::string mountTypeName(std::string_view mountInfo, unsigned deviceMajor, unsigned deviceMinor);

}  // namespace lorvane::mailstore
