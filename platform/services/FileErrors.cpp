#include "services/FileErrors.h"

#include <cerrno>

#include "host/HostError.h"

namespace lorvane::services {

std::int32_t fileErrorNumber(int systemError, const std::filesystem::path& path) {
    using namespace host;
    switch (systemError) {
        case ENOENT: {
            std::error_code ignored;
            const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
            return std::filesystem::is_directory(folder, ignored) ? runtime_error::FileNotFound : runtime_error::PathNotFound;
        }
        case ENOTDIR:
        case ELOOP:
            return runtime_error::PathNotFound;
        case ENAMETOOLONG:
            return BadFileName;
        case EIO:
            return DeviceError;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return DiskFull;
        case EMFILE:
        case ENFILE:
            return TooManyFiles;
        default:
            return runtime_error::PathFileAccess;
    }
}

void raiseFileError(int systemError, const std::filesystem::path& path) {
    throw host::HostError(fileErrorNumber(systemError, path));
}

}  // namespace lorvane::services
