#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
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

/// The log with what differs between runs replaced: identities become <id1>, <id2> … in the order they come, the folder for temporary files becomes <temp>\.
inline std::string comparableLog(const std::string& log, const std::string& temporaryFolder) {
    std::string text = log;
    const std::string written = std::regex_replace(temporaryFolder, std::regex(R"(\\)"), R"(\\)");  // the log doubles "\"
    for (std::size_t at = text.find(written); !written.empty() && at != std::string::npos; at = text.find(written, at))
        text.replace(at, written.size(), "<temp>\\");

    static const std::regex identity("\"([0-9A-F]{32,})\"");
    std::vector<std::string> known;
    std::string result;
    auto rest = text.cbegin();
    for (std::sregex_iterator match(text.begin(), text.end(), identity), end; match != end; ++match) {
        const std::string id = (*match)[1];
        auto place = std::find(known.begin(), known.end(), id);
        if (place == known.end()) place = known.insert(known.end(), id);
        result.append(rest, (*match)[0].first).append("<id").append(std::to_string(place - known.begin() + 1)).append(">");
        rest = (*match)[0].second;
    }
    return result.append(rest, text.cend());
}

}  // namespace lorvane::support
