#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host/TextFunctions.h"

/// Pairs of files with one name: what goes in, and what has to come out.
namespace golden {

inline std::filesystem::path folder() {
    return std::filesystem::path(LORVANE_SOURCE_DIR) / "tests" / "html" / "golden";
}

inline std::u16string read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    std::stringstream text;
    text << stream.rdbuf();
    return lorvane::host::fromUtf8(text.str());
}

inline std::vector<std::filesystem::path> inputs(const std::filesystem::path& in, const std::string& extension) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(in)) {
        if (entry.path().extension() == extension) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Compares with the file, or writes it where LORVANE_REWRITE_GOLDENS is set.
inline void expectFile(const std::filesystem::path& file, const std::u16string& actual) {
    if (std::getenv("LORVANE_REWRITE_GOLDENS") != nullptr) {
        std::ofstream(file, std::ios::binary) << lorvane::host::toUtf8(actual);
        return;
    }
    EXPECT_EQ(lorvane::host::toUtf8(actual), lorvane::host::toUtf8(read(file))) << file;
}

}  // namespace golden
