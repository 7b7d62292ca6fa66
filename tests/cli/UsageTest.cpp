#include <gtest/gtest.h>

#include "cli/Program.h"

/// What the command line itself says: help, version, mistakes in the words.
namespace lorvane::cli::test {
namespace {

using Words = Program::Words;

const std::vector<Words> commands = {
    {"insert"},          {"templates"}, {"template", "add"}, {"template", "show"}, {"template", "edit"}, {"template", "delete"}, {"import"}, {"store", "check"},
    {"store", "backup"}, {"bars"},      {"serve"},           {"settings", "get"},  {"settings", "set"},  {"settings", "list"}};

std::string joined(const Words& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

TEST(Usage, EachCommandHasAHelpWithAnExampleOfIt) {
    const Program lorvane;
    for (Words words : commands) {
        const std::string command = joined(words);
        words.push_back("--help");
        const Ended help = lorvane.bare(words);
        EXPECT_EQ(help.status, 0) << help;
        EXPECT_NE(help.out.find("Example: lorvane " + command), std::string::npos) << help;
        EXPECT_EQ(help.err, "");
    }
    EXPECT_FALSE(std::filesystem::exists(lorvane.home() / ".local")) << "help made a store";
}

TEST(Usage, TheHelpOfTheProgramNamesEveryCommandAndOptionOfARun) {
    const Ended help = Program().bare({"--help"});
    EXPECT_EQ(help.status, 0) << help;
    for (const char* word : {"insert", "templates", "template", "import", "store", "settings", "bars", "serve", "--store", "--host-version", "--editor",
                             "--now", "--locale", "--from", "--no-explorer", "--answer", "--log", "--version"})
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
}

TEST(Usage, TheVersionIsOneLineThatEndsWithTheConfiguration) {
    const Ended version = Program().bare({"--version"});
    EXPECT_EQ(version, (Ended{0, std::string("lorvane " LORVANE_VERSION) + (LORVANE_WITH_PROCESSES ? " processes\n" : "\n"), ""}));
}

TEST(Usage, MistakesAreStatusTwoWithALineAndNoStore) {
    const Program lorvane;
    lorvane.file("mail.eml", draft(""));
    const std::vector<Words> mistakes = {
        {},
        {"nonsense"},
        {"insert"},
        {"insert", "--template"},
        {"insert", "--template", "A", "--template", "B"},
        {"insert", "--template", "A", "surplus"},
        {"insert", "--template", "A", "--to", "a@example.com", "b@example.com"},
        {"insert", "--template", "A", "--to", "nobody"},
        {"insert", "--template", "A", "--to", "Two <a@example.com> <b c>"},
        {"insert", "--template", "A", "--caret", "header"},
        {"insert", "--template", "A", "--caret", "body:"},
        {"insert", "--template", "A", "--caret", "body:-2"},
        {"insert", "--template", "A", "--caret", "body:1x"},
        {"insert", "--template", "A", "--caret", "body:99999999999"},
        {"insert", "--template", "A", "--into", "mail.eml", "--to", "a@example.com"},
        {"templates", "--scope", "mine"},
        {"template"},
        {"template", "add", "--subject", "A"},
        {"template", "add", "--text", "-"},
        {"template", "add", "--subject", "A", "--text", "-", "--html", "-"},
        {"template", "show"},
        {"template", "show", "A", "B"},
        {"template", "show", "A", "--id", ""},
        {"template", "edit", "A"},
        {"template", "edit", "A", "--id", "00FF"},
        {"template", "edit", "--subject", "B"},
        {"template", "edit", "A", "--text", "-", "--html", "-"},
        {"template", "edit", "A", "--attach", ""},
        {"template", "delete"},
        {"template", "delete", "A", "--json"},
        {"import"},
        {"store"},
        {"store", "check", ""},
        {"store", "check", "-"},
        {"store", "check", "A", "B"},
        {"store", "backup"},
        {"store", "backup", "-"},
        {"store", "backup", ""},
        {"bars", "mail"},
        {"bars", "--window"},
        {"bars", "--window", "contact"},
        {"bars", "--window", "Mail"},
        {"bars", "--window", ""},
        {"bars", "--window", "mail", "--window", "task"},
        {"settings"},
        {"settings", "get"},
        {"settings", "set", "Key"},
        {"templates", "--answer", "maybe"},
        {"templates", "--editor", "paper"},
        {"templates", "--host-version", "eleven"},
        {"templates", "--from", "nobody"},
        {"templates", "--locale", "xx"},
        {"templates", "--log", "-"},
        {"insert", "--template", "A", "--into", ""},
        {"insert", "--template", "A", "--out", ""},
        {"template", "add", "--subject", "A", "--text", ""},
        {"templates", "--now", ""},
    };
    for (const Words& words : mistakes) {
        const Ended ended = lorvane(words);
        EXPECT_EQ(ended.status, 2) << joined(words) << "\n" << ended;
        EXPECT_EQ(ended.out, "") << joined(words);
        EXPECT_NE(ended.err, "") << joined(words);
    }
    for (const char* moment : {"tomorrow", "2028-01-10T09:00Z", "2028-02-30", "2028-01-10T25:00"})
        EXPECT_EQ(lorvane({"templates", "--now", moment}).status, 2) << moment;
    EXPECT_FALSE(std::filesystem::exists(lorvane.store())) << "a mistake made a store";
}

TEST(Usage, TheManualsNameEveryOptionOfTheHelp) {
    const Program lorvane;
    const std::string reference = textOf(LORVANE_SOURCE_DIR "/docs/command-line.md");
    std::string page = textOf(LORVANE_SOURCE_DIR "/docs/lorvane.1");
    for (std::size_t at = 0; (at = page.find("\\-", at)) != std::string::npos; ++at) page.erase(at, 1);
    std::vector<Words> helps = commands;
    helps.emplace_back();
    for (Words words : helps) {
        words.push_back("--help");
        const std::string help = lorvane.bare(words).out;
        for (std::size_t at = help.find("--"); at != std::string::npos; at = help.find("--", at + 2)) {
            const std::string option = help.substr(at, help.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at) - at);
            EXPECT_NE(reference.find(option), std::string::npos) << option;
            EXPECT_NE(page.find(option), std::string::npos) << option;
        }
    }
    EXPECT_NE(page.find("lorvane " LORVANE_VERSION), std::string::npos);
}

TEST(Usage, OptionsOfARunStandInFrontOfTheCommandOrBehindIt) {
    const Program lorvane;
    const std::string store = lorvane.store().string();
    const Ended before = lorvane.bare({"--store", store, "templates", "--json"});
    EXPECT_EQ(before.status, 0) << before;
    EXPECT_EQ(lorvane.bare({"templates", "--json", "--store", store}), before);
}

}  // namespace
}  // namespace lorvane::cli::test
