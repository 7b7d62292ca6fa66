#include <gtest/gtest.h>

#include <algorithm>

#include <nlohmann/json.hpp>

#include "cli/Program.h"

/// `settings get|set|list`.
namespace lorvane::cli::test {
namespace {

using nlohmann::json;

TEST(Settings, WhatWasSetIsThere) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"settings", "set", "LogTemplate", "True"}), (Ended{0, "", ""}));
    EXPECT_EQ(lorvane({"settings", "get", "LogTemplate"}), (Ended{0, "True\n", ""}));
    EXPECT_EQ(lorvane({"settings", "get", "logtemplate"}), (Ended{0, "True\n", ""})) << "in any case";
    lorvane.done({"settings", "set", "LogTemplate", ""});
    EXPECT_EQ(lorvane({"settings", "get", "LogTemplate"}), (Ended{0, "\n", ""}));
}

TEST(Settings, ValuesOfAnyText) {
    const Program lorvane;
    for (const char* value : {"-1", "a=b", "Zoë 漢", "two\nlines", "[x]", "\\\\server\\share"}) {
        lorvane.done({"settings", "set", "Key", "--", value});
        EXPECT_EQ(lorvane.done({"settings", "get", "Key"}), std::string(value) + "\n");
    }
}

TEST(Settings, AKeyThatWasNeverWrittenIsRefused) {
    EXPECT_EQ(Program()({"settings", "get", "Nothing"}), (Ended{1, "", "lorvane: the key Nothing was never written\n"}));
}

TEST(Settings, TheListHasALineForEachKey) {
    const Program lorvane;
    lorvane.done({"settings", "set", "ShowTips", "False"});
    lorvane.done({"settings", "set", "Key", "two\nlines"});
    const std::string list = lorvane.done({"settings", "list"});
    EXPECT_NE(list.find("LastFolderName=\\Personal Folders\\Meravix Settings\\Lorvane\n"), std::string::npos) << list;
    EXPECT_NE(list.find("\nShowTips=False\n"), std::string::npos) << list;
    EXPECT_NE(list.find("Key=two lines\n"), std::string::npos) << list;
    EXPECT_EQ(list.find("Nothing"), std::string::npos);
}

TEST(Settings, TheListAsJson) {
    const Program lorvane;
    lorvane.done({"settings", "set", "ShowTips", "False"});
    const json list = json::parse(lorvane.done({"settings", "list", "--json"}));
    const json entry = {{"application", "kelvorn"}, {"section", "0x951592256"}, {"key", "ShowTips"}, {"value", "False"}};
    EXPECT_NE(std::find(list.begin(), list.end(), entry), list.end()) << list.dump(1);
}

TEST(Settings, AreTheOnesTheAddInReads) {
    const Program lorvane;
    const auto log = lorvane.folder() / "log.csv";
    std::string path = log.string();
    std::replace(path.begin(), path.end(), '/', '\\');
    lorvane.done({"settings", "set", "LogTemplate", "True"});
    lorvane.done({"settings", "set", "TemplatesLogFilePath", path});
    lorvane.done({"insert", "--template", "Quote (Sample)", "--locale", "de-DE"});
    lorvane.done({"insert", "--template", "Quote (Sample)", "--locale", "en-GB"});
    lorvane.done({"insert", "--template", "Quote (Sample)", "--locale", "en-US"});
    const std::string content = lorvane.content("log.csv");
    EXPECT_EQ(content.rfind("User Name,Date,Time,Template Name,Template EntryID,Template StoreID\r\n", 0), 0u) << content;
    for (const char* moment :
         {",10.01.2028,09:00:00,\"Quote (Sample)\",", ",10/01/2028,09:00:00,\"Quote (Sample)\",", ",1/10/2028,9:00:00 AM,\"Quote (Sample)\","})
        EXPECT_NE(content.find(moment), std::string::npos) << content;
}

}  // namespace
}  // namespace lorvane::cli::test
