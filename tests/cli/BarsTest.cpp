#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "support/GoldenText.h"

/// `bars`: the command bars of each kind of window, with the add-in's own in them.
namespace lorvane::cli::test {
namespace {

using nlohmann::json;

constexpr bool withProcesses = LORVANE_WITH_PROCESSES;
const std::vector<std::string> windows = {"explorer", "mail", "received", "post", "task", "appointment"};

json barsOf(const Program& lorvane, const std::string& window) {
    return json::parse(lorvane.done({"bars", "--window", window, "--json"}));
}

/// The one of a list whose `key` is this text.
json named(const json& list, const char* key, const std::string& text) {
    for (const json& one : list)
        if (one[key] == text) return one;
    ADD_FAILURE() << text << " is not there";
    return json::object();
}

std::string withoutMarks(std::string caption) {
    std::erase(caption, '&');
    return caption;
}

/// What the readable form says of these controls.
std::string linesOf(const json& controls, std::size_t depth) {
    std::string lines;
    const std::string indent(2 * depth, ' ');
    for (const json& control : controls) {
        if (control["beginGroup"]) lines += indent + "--\n";
        lines += indent + withoutMarks(control["caption"]) + (control["visible"] ? "" : " (hidden)") + (control["enabled"] ? "" : " (disabled)") + "\n";
        if (control.contains("controls")) lines += linesOf(control["controls"], depth + 1);
    }
    return lines;
}

TEST(Bars, OfEachWindowAsTheHostHasThem) {
    const Program lorvane;
    std::string text;
    for (const std::string& window : windows) text += "== " + window + "\n" + lorvane.done({"bars", "--window", window});
    support::expectGolden(withProcesses ? "cli/golden/bars-processes.txt" : "cli/golden/bars.txt", text);
}

TEST(Bars, OfTheExplorerUnlessTold) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"bars"}), (Ended{0, lorvane.done({"bars", "--window", "explorer"}), ""}));
}

TEST(Bars, BothFormsTellTheSame) {
    const Program lorvane;
    for (const std::string& window : windows) {
        std::string lines;
        for (const json& bar : barsOf(lorvane, window)) lines += bar["name"].get<std::string>() + "\n" + linesOf(bar["controls"], 1);
        EXPECT_EQ(lines, lorvane.done({"bars", "--window", window})) << window;
    }
}

TEST(Bars, AsJsonWithAllThatAProgramCanAskOfThem) {
    const json bars = barsOf(Program(), "mail");
    json bar = named(bars, "name", "Lorvane");
    const json button = named(bar["controls"], "caption", "Lo&rvane");
    const json popup = named(bar["controls"], "caption", "Insert m-Fiel&d");
    bar.erase("controls");
    EXPECT_EQ(bar, (json{{"name", "Lorvane"}, {"position", 1}, {"visible", true}, {"temporary", true}, {"builtIn", false}}));
    EXPECT_EQ(button, (json{{"type", 1},
                            {"id", 1},
                            {"caption", "Lo&rvane"},
                            {"tag", "Lorvane0"},
                            {"parameter", "Lorvane0"},
                            {"tooltipText", "Lorvane in mail"},
                            {"onAction", "<!Lorvane.Connect>"},
                            {"faceId", 1679},
                            {"style", 3},
                            {"priority", 1},
                            {"beginGroup", true},
                            {"enabled", true},
                            {"visible", true},
                            {"temporary", true},
                            {"builtIn", false}}));
    EXPECT_EQ(popup["type"], 10);
    EXPECT_EQ(popup["controls"].size(), 3u);
    EXPECT_FALSE(popup.contains("faceId") || popup.contains("style"));
    const json menu = named(bars, "name", "Menu Bar");
    EXPECT_EQ(menu["position"], 6);
    EXPECT_TRUE(menu["builtIn"]);
    EXPECT_EQ(named(menu["controls"], "caption", "&Tools")["id"], 30007);
}

TEST(Bars, LeaveTheStoreAsItWas) {
    const Program lorvane;
    lorvane.done({"templates"});
    const std::string items = lorvane.storedState(), settings = lorvane.done({"settings", "list"}), check = lorvane.done({"store", "check"});
    for (const std::string& window : windows) {
        lorvane.done({"bars", "--window", window});
        EXPECT_EQ(lorvane.storedState(), items) << window;
        EXPECT_EQ(lorvane.done({"settings", "list"}), settings) << window;
        EXPECT_EQ(lorvane.done({"store", "check"}), check) << window;
    }
}

TEST(Bars, AFirstRunMakesTheTemplateFoldersAndNothingElse) {
    const Program lorvane, other;
    lorvane.done({"bars", "--window", "received"});
    other.done({"templates"});
    EXPECT_EQ(lorvane.templates().size(), 3u);
    EXPECT_EQ(lorvane.itemCount(), other.itemCount());
}

TEST(Bars, WithoutAnExplorerThereAreThoseOfOpenItemsOnly) {
    const Program lorvane;
    lorvane.done({"templates"});
    for (const Program::Words& form : {Program::Words{"bars"}, Program::Words{"bars", "--json"}}) {
        Program::Words words = form;
        words.push_back("--no-explorer");
        EXPECT_EQ(lorvane(words), (Ended{1, "", "lorvane: the host has no Explorer: --no-explorer left it out\n"}));
    }
    for (const std::string& window : windows) {
        if (window == "explorer") continue;
        EXPECT_EQ(lorvane.done({"--no-explorer", "bars", "--window", window}), lorvane.done({"bars", "--window", window}));
    }
}

TEST(Bars, TheHostsOwnEditorsAndItsVersionsHaveTheSame) {
    const Program lorvane;
    const std::string bars = lorvane.done({"bars", "--window", "mail"});
    for (const char* editor : {"plain", "html", "rich"}) EXPECT_EQ(lorvane.done({"bars", "--window", "mail", "--editor", editor}), bars) << editor;
    for (const char* version : {"9", "10", "10.0.0.6515"}) EXPECT_EQ(lorvane.done({"bars", "--window", "mail", "--host-version", version}), bars) << version;
}

TEST(Bars, WhereWordEditsTheyAreWords) {
    const Program lorvane;
    for (const char* window : {"mail", "received", "post"}) {
        const std::string bars = lorvane.done({"bars", "--window", window, "--editor", "word"});
        EXPECT_NE(bars.find("\nFormatting\n  Bold\n"), std::string::npos) << bars;
        EXPECT_EQ(bars.find("First Name"), std::string::npos) << "the bar is the template's";
    }
    EXPECT_EQ(lorvane.done({"bars", "--window", "task", "--editor", "word"}), lorvane.done({"bars", "--window", "task"})) << "tasks are not edited in Word";
}

TEST(Bars, OfAHostThatTheAddInRefusesThereAreNone) {
    const Program lorvane;
    for (const std::string& window : windows) {
        const Ended ended = lorvane({"bars", "--window", window, "--host-version", "12"});
        EXPECT_EQ(ended.status, 1) << ended;
        EXPECT_EQ(ended.out, "");
        EXPECT_NE(ended.err.find("Please Download Software for Correct Version of Outlook!: "), std::string::npos) << ended;
    }
    EXPECT_EQ(lorvane.itemCount(), 0u);
}

}  // namespace
}  // namespace lorvane::cli::test
