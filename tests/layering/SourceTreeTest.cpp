#include "layering/SourceTree.h"

#include <gtest/gtest.h>

#include <set>

#include "layering/LayeringRules.h"

namespace lorvane::layering {
namespace {

std::string report(const std::vector<SourceFile>& files) {
    std::string text;
    for (const SourceFile& file : files) {
        for (const Violation& violation : violations(file.path, file.text)) {
            text += file.path + ":" + std::to_string(violation.line) + ": " + violation.what + "\n";
        }
    }
    return text;
}

std::string inFirstOnly(const std::set<std::string>& first, const std::set<std::string>& second) {
    std::string names;
    for (const std::string& name : first) {
        if (!second.contains(name)) names += name + " ";
    }
    return names;
}

TEST(SourceTree, LogicIncludesOnlyWhatStandsBelowItAndTheStandardLibrary) {
    const auto files = sourceFiles("src");
    ASSERT_FALSE(files.empty());
    EXPECT_EQ(report(files), "");
}

TEST(SourceTree, PlatformIncludesTheSurfaceAndItsListedNeighboursOnly) {
    const auto files = sourceFiles("platform");
    ASSERT_FALSE(files.empty());
    EXPECT_EQ(report(files), "");
}

TEST(SourceTree, EachRowOfTheMemberTableIsUsedByTheLogicAndTheLogicUsesNoOther) {
    std::set<std::string> rows, used;
    for (const SourceFile& file : sourceFiles("src")) {
        if (file.path == "src/host/members.def") {
            for (const std::string& row : memberRows(file.text)) EXPECT_TRUE(rows.insert(row).second) << row << " stands twice in the table";
        } else {
            for (std::string& id : membersNamed(file.text)) used.insert(std::move(id));
        }
    }
    ASSERT_FALSE(rows.empty());
    used.erase("None");
    used.erase("Count_");
    EXPECT_EQ(inFirstOnly(rows, used), "") << "no file of src/ uses these members: take their rows out of members.def";
    EXPECT_EQ(inFirstOnly(used, rows), "") << "these members have no row in members.def";
}

}  // namespace
}  // namespace lorvane::layering
