#pragma once

#include <cstdint>
#include <filesystem>

namespace lorvane::services {

inline constexpr std::int32_t BadFileName = 52;
inline constexpr std::int32_t DeviceError = 57;
inline constexpr std::int32_t DiskFull = 61;
inline constexpr std::int32_t TooManyFiles = 67;

/// The run-time number for a failure of the system (`errno`) at a path: 53 where the file is missing, 76 where its folder is, 61 a full disk, 75 whatever else
/// keeps from using it (rights, a folder in place of a file, a read-only disk).
std::int32_t fileErrorNumber(int systemError, const std::filesystem::path& path);

/// Raises it.
[[noreturn]] void raiseFileError(int systemError, const std::filesystem::path& path);

}  // namespace lorvane::services
