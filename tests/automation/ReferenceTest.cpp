#include "automation/Reference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "AddInTables.h"
#include "support/GoldenText.h"

namespace lorvane::automation {
namespace {

std::string pageText() {
    std::ifstream stream(std::filesystem::path(LORVANE_SOURCE_DIR) / "docs/automation.md", std::ios::binary);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST(Reference, ThePageIsWhatTheTablesGive) {
    const std::string page = pageText();
    for (const char* name : {"methods", "roots", "user", "globals", "modules"})
        EXPECT_NE(page.find(std::string("<!-- table: ") + name + " -->\n"), std::string::npos) << name;
    support::expectGolden("../docs/automation.md", withTables(page, cli::addInTables()));
}

TEST(Reference, OnlyTheTablesOfAPageChange) {
    const std::string filled = withTables("before\n<!-- table: roots -->\nold\n<!-- end -->\nbehind\n", {});
    EXPECT_TRUE(filled.starts_with("before\n<!-- table: roots -->\n| name | object |\n"));
    EXPECT_TRUE(filled.ends_with("<!-- end -->\nbehind\n"));
    EXPECT_EQ(filled.find("old"), std::string::npos);
    EXPECT_EQ(withTables("none", {}), "none");
    EXPECT_THROW(withTables("<!-- table: nonsense -->\n<!-- end -->\n", {}), std::runtime_error);
    EXPECT_THROW(withTables("<!-- table: roots -->\n", {}), std::runtime_error);
}

}  // namespace
}  // namespace lorvane::automation
