#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "host/TextFunctions.h"
#include "mailstore/SqliteStore.h"

/// `templates`: what the chooser lists.
namespace lorvane::cli::test {
namespace {

using nlohmann::json;

constexpr const char* samples = "Follow Up to Phone Call (Sample)\nQuote (Sample)\nRequest for Quote (Sample)\n";

TEST(Templates, AFirstRunHasTheThreeSamplesInOrder) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"templates"}), (Ended{0, samples, ""}));
    EXPECT_EQ(lorvane({"templates"}), (Ended{0, samples, ""})) << "and a second one has no more";
}

TEST(Templates, AsJsonWithTheirIdentities) {
    const Program lorvane;
    lorvane.done({"template", "add", "--subject", "Ä \"quoted\"", "--category", "Sales, Support", "--text", "/dev/null"});
    const json list = json::parse(lorvane.done({"templates", "--json"}));
    ASSERT_EQ(list.size(), 4u);
    json found;
    for (const json& entry : list) {
        EXPECT_EQ(entry.size(), 4u);
        if (entry["subject"] == "Ä \"quoted\"") found = entry;
    }
    ASSERT_FALSE(found.is_null());
    EXPECT_EQ(found["categories"], "Sales, Support");
    const auto items = lorvane.templates();
    EXPECT_EQ(found["entryID"], host::toUtf8(items.back().head.entryId));
    EXPECT_EQ(found["storeID"], host::toUtf8(mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore()->storeId()));
}

TEST(Templates, SearchLooksForAnyPartInAnyCase) {
    const Program lorvane;
    lorvane.addText("100% *starred*", "x");
    lorvane.addText("It's 'quoted'", "x");
    const auto search = [&](const std::string& text) { return lorvane.done({"templates", "--search", text}); };
    EXPECT_EQ(search("qUOTE ("), "Quote (Sample)\nRequest for Quote (Sample)\n");
    EXPECT_EQ(search("*"), "100% *starred*\n") << "ordinary characters";
    EXPECT_EQ(search("% *s"), "100% *starred*\n");
    EXPECT_EQ(search("'QUOTED'"), "It's 'quoted'\n");
}

TEST(Templates, AnEmptyListIsDone) {
    const Program lorvane;
    for (const Program::Words& narrowed : {Program::Words{"--search", "no such"}, Program::Words{"--category", "No such"}}) {
        Program::Words words = {"templates"};
        words.insert(words.end(), narrowed.begin(), narrowed.end());
        EXPECT_EQ(lorvane(words), (Ended{0, "", ""}));
        words.push_back("--json");
        EXPECT_EQ(lorvane(words), (Ended{0, "[]\n", ""}));
    }
}

TEST(Templates, OfACategory) {
    const Program lorvane;
    lorvane.done({"template", "add", "--subject", "One", "--category", "Sales", "--text", "/dev/null"});
    lorvane.done({"template", "add", "--subject", "Two", "--category", "Support, Sales", "--text", "/dev/null"});
    lorvane.done({"template", "add", "--subject", "Three", "--category", "Salesmen", "--text", "/dev/null"});
    EXPECT_EQ(lorvane.done({"templates", "--category", "Sales"}), "One\nTwo\n");
    EXPECT_EQ(lorvane.done({"templates", "--category", "sales"}), "One\nTwo\n");
    EXPECT_EQ(lorvane.done({"templates", "--category", "Sales", "--search", "tw"}), "Two\n");
}

TEST(Templates, ACategoryIsOneOfTheChoosersList) {
    const Program lorvane;
    const auto add = [&](const std::string& subject, const std::string& categories) {
        lorvane.done({"template", "add", "--subject", subject, "--category", categories, "--text", "/dev/null"});
    };
    add("One", " Sales ,Support, ");
    add("Two", "sales");
    add("Quoted", "Jane's, Other");
    const auto of = [&](const std::string& category) { return lorvane({"templates", "--category", category}); };
    EXPECT_EQ(of("SALES"), (Ended{0, "One\nTwo\n", ""}));
    EXPECT_EQ(of("  Support "), (Ended{0, "One\n", ""})) << "blanks around it are no part of it";
    EXPECT_EQ(of("Other"), (Ended{0, "Quoted\n", ""}));
    EXPECT_EQ(of("Jane's"), (Ended{0, "", ""})) << "a name with a quote never finds its own templates";
    for (const char* none : {"Sale", "Sales, Support", "No such", ","}) EXPECT_EQ(of(none), (Ended{0, "", ""})) << none;
    const std::string all = lorvane.done({"templates"});
    for (const char* every : {"", "  "}) EXPECT_EQ(of(every), (Ended{0, all, ""}));
}

TEST(Templates, AScopeThatIsDisabledIsRefused) {
    const Program lorvane;
    EXPECT_EQ(lorvane.done({"templates", "--scope", "private"}), samples) << "it is the one in force";
    for (const char* scope : {"all", "shared"}) {
        const Ended ended = lorvane({"templates", "--scope", scope});
        EXPECT_EQ(ended, (Ended{1, "", "lorvane: the scope " + std::string(scope) + " is not available: sharing is off\n"}));
    }
}

/// Templates of a second folder as the shared ones.
class SharedTemplates : public testing::Test {
protected:
    SharedTemplates() {
        lorvane.file("shared.eml", "From: jane@example.com\r\nTo: a@example.com\r\nSubject: Of the team\r\nKeywords: Team\r\n\r\nText\r\n");
        lorvane.done({"import", "--folder", "\\Personal Folders\\Inbox", "shared.eml"});
        const auto store = mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore();
        constexpr std::int32_t inbox = 6;
        share(host::toUtf8(store->wellKnownFolder(inbox)->entryId), host::toUtf8(store->storeId()));
    }
    void share(const std::string& entryId, const std::string& storeId) const {
        lorvane.done({"settings", "set", "SharedTemplates", "True"});
        lorvane.done({"settings", "set", "SharedFolderEntryid", entryId});
        lorvane.done({"settings", "set", "SharedFolderStoreid", storeId});
    }
    Program lorvane;
};

TEST_F(SharedTemplates, EachScopeListsItsOwn) {
    const std::string all = "Follow Up to Phone Call (Sample)\nOf the team (Shared)\nQuote (Sample)\nRequest for Quote (Sample)\n";
    EXPECT_EQ(lorvane.done({"templates"}), all);
    EXPECT_EQ(lorvane.done({"templates", "--scope", "all"}), all);
    EXPECT_EQ(lorvane.done({"templates", "--scope", "private"}), samples);
    EXPECT_EQ(lorvane.done({"templates", "--scope", "shared"}), "Of the team\n");
    EXPECT_EQ(lorvane.done({"templates", "--scope", "all", "--category", "team"}), "Of the team (Shared)\n");
    EXPECT_EQ(json::parse(lorvane.done({"templates", "--json", "--search", "team"}))[0]["subject"], "Of the team") << "its own subject";
}

TEST_F(SharedTemplates, ScopeCategoryAndSearchNarrowTogether) {
    for (const char* subject : {"Mine of the team", "Mine alone"})
        lorvane.done({"template", "add", "--subject", subject, "--category", "Team, Mine", "--text", "/dev/null"});
    const auto narrowed = [&](const std::string& scope, const std::string& category, const std::string& search) {
        return lorvane.done({"templates", "--scope", scope, "--category", category, "--search", search});
    };
    EXPECT_EQ(narrowed("all", "Team", "of the"), "Mine of the team\nOf the team (Shared)\n");
    EXPECT_EQ(narrowed("private", "Team", "of the"), "Mine of the team\n");
    EXPECT_EQ(narrowed("shared", "Team", "of the"), "Of the team\n");
    EXPECT_EQ(narrowed("shared", "Mine", "of the"), "") << "a category that the scope does not offer";
    EXPECT_EQ(narrowed("all", "mine", "ALONE"), "Mine alone\n");
    EXPECT_EQ(narrowed("all", "Team", "(shared)"), "Of the team (Shared)\n") << "as the list shows it";
    EXPECT_EQ(narrowed("shared", "Team", "(shared)"), "");
}

TEST_F(SharedTemplates, AreChosenByTheirOwnSubject) {
    EXPECT_NE(lorvane.done({"insert", "--template", "Of the team"}).find("Text"), std::string::npos);
    EXPECT_EQ(lorvane({"insert", "--template", "Of the team (Shared)"}).status, 1) << "as the list shows it, not as it is called";
}

TEST_F(SharedTemplates, AFolderThatIsLostIsToldAndTheRestListed) {
    share("00FF", "00FF");
    const Ended ended = lorvane({"templates"});
    EXPECT_EQ(ended.status, 0) << ended;
    EXPECT_EQ(ended.out, samples);
    EXPECT_NE(ended.err.find("Shared Templates Folder Not Found - Lorvane: Unable to locate your SHARED templates folder.\n\n"), std::string::npos) << ended;
}

TEST(Templates, AListingThatBreaksOffIsAFaultWithTheBoxesText) {
    const Program lorvane;
    lorvane.addText("Long", "x");
    // Behind the back of the commands, which refuse such a subject.
    {
        const auto store = mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore();
        mailstore::ItemRecord record = lorvane.templates().back();
        record.head.subject = std::u16string(601, u'x');
        store->saveItem({}, record);
    }
    for (const Program::Words& words : {Program::Words{"templates"}, Program::Words{"templates", "--json"}, Program::Words{"insert", "--template", "Long"}}) {
        const Ended ended = lorvane(words);
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_EQ(ended.out, "");
        EXPECT_NE(ended.err.find("frmEmail.UpdateEmailList - Lorvane: Error 5: "), std::string::npos) << ended;
    }
}

TEST(Templates, WhatATerminalWouldObeyIsNotPrinted) {
    const Program lorvane;
    lorvane.addText("a\x1B[31mred\x07\tb\r\nc\xC2\x9B", "x");
    EXPECT_EQ(lorvane.done({"templates", "--search", "red"}), "a\uFFFD[31mred\uFFFD b c\uFFFD\n");
    EXPECT_EQ(json::parse(lorvane.done({"templates", "--search", "red", "--json"}))[0]["subject"], "a\x1B[31mred\x07\tb\r\nc\xC2\x9B");
    const Ended ended = lorvane({"insert", "--template", "\x1B[31m"});
    EXPECT_EQ(ended.err, "lorvane: there is no template with the subject \"\uFFFD[31m\"\n");
}

}  // namespace
}  // namespace lorvane::cli::test
