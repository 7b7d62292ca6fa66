#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// Texts that are compared with a file, and the log of host calls in the form that such a file holds.
namespace lorvane::support {

/// Compares with tests/`file`, or writes it where LORVANE_REWRITE_GOLDENS is set.
inline void expectGolden(const std::filesystem::path& file, const std::string& actual) {
    const std::filesystem::path path = std::filesystem::path(LORVANE_SOURCE_DIR) / "tests" / file;
    if (std::getenv("LORVANE_REWRITE_GOLDENS") != nullptr) {
        std::ofstream(path, std::ios::binary) << actual;
        return;
    }
    std::ifstream stream(path, std::ios::binary);
    ASSERT_TRUE(stream.is_open()) << path << " is missing";
    std::stringstream expected;
    expected << stream.rdbuf();
    EXPECT_EQ(actual, expected.str()) << path;
}

/// A folder whose place differs between runs, and what a golden calls it.
struct NamedFolder {
    std::string path, name;
};

/// Each "\\" doubled, as the log writes it.
inline std::string withBackslashesDoubled(const std::string& text) {
    std::string doubled;
    for (const char character : text) doubled.append(character == '\\' ? 2 : 1, character);
    return doubled;
}

/// Whether a quoted text is an identity: 32 or more upper-case hexadecimal digits.
inline bool isIdentity(const std::string& quoted) {
    return quoted.size() >= 32 && quoted.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

/// The log with what differs between runs replaced: identities become <id1>, <id2> … in the order they come, folders their names.
inline std::string comparableLog(const std::string& log, const std::vector<NamedFolder>& folders) {
    std::string text = log;
    for (const NamedFolder& folder : folders) {
        const std::string written = withBackslashesDoubled(folder.path);
        for (std::size_t at = text.find(written); !written.empty() && at != std::string::npos; at = text.find(written, at))
            text.replace(at, written.size(), folder.name);
    }

    std::vector<std::string> known;
    std::string result;
    std::size_t rest = 0;
    for (std::size_t open = text.find('"'); open != std::string::npos; open = text.find('"', open + 1)) {
        const std::size_t close = text.find('"', open + 1);
        if (close == std::string::npos) break;
        const std::string quoted = text.substr(open + 1, close - open - 1);
        if (!isIdentity(quoted)) continue;
        auto place = std::find(known.begin(), known.end(), quoted);
        if (place == known.end()) place = known.insert(known.end(), quoted);
        result.append(text, rest, open - rest).append("<id").append(std::to_string(place - known.begin() + 1)).append(">");
        rest = close + 1;
        open = close;
    }
    return result.append(text, rest);
}

}  // namespace lorvane::support
