#include "layering/SourceTree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace lorvane::layering {

std::vector<SourceFile> sourceFiles(const std::string& folder) {
    const std::filesystem::path top = LORVANE_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top / folder)) {
        if (!entry.is_regular_file() || entry.path().filename() == "CMakeLists.txt") continue;
        std::ifstream in;
        in.exceptions(std::ios::failbit | std::ios::badbit);
        in.open(entry.path(), std::ios::binary);
        files.push_back({entry.path().lexically_relative(top).generic_string(), std::string(std::istreambuf_iterator<char>(in), {})});
    }
    std::sort(files.begin(), files.end(), [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
    return files;
}

}  // namespace lorvane::layering
