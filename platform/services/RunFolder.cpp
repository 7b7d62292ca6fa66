#include "services/RunFolder.h"

#include <stdlib.h>

#include <string>

namespace lorvane::services {

namespace fs = std::filesystem;

RunFolder::~RunFolder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
}

std::optional<fs::path> RunFolder::path() {
    std::error_code failure;
    if (!path_.empty() && fs::is_directory(path_, failure)) return path_;
    const fs::path root = fs::absolute(root_.empty() ? fs::temp_directory_path(failure) : root_, failure);
    if (root.empty()) return std::nullopt;
    std::string pattern = (root / "lorvane-XXXXXX").native();
    if (!::mkdtemp(pattern.data())) return std::nullopt;  // which makes it with mode 0700
    path_ = pattern;
    return path_;
}

}  // namespace lorvane::services
