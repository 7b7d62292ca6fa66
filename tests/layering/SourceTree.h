#pragma once

#include <string>
#include <vector>

namespace lorvane::layering {

struct SourceFile {
    std::string path;  ///< from the top of the tree, with "/"
    std::string text;
};

/// Every file below a folder of the source tree but CMakeLists.txt, ordered by path. Throws where the folder cannot be read.
std::vector<SourceFile> sourceFiles(const std::string& folder);

}  // namespace lorvane::layering
