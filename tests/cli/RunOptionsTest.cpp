#include <gtest/gtest.h>

#include "cli/Program.h"

/// The options that every command takes.
namespace lorvane::cli::test {
namespace {

using Words = Program::Words;

constexpr const char* otherVersion = "Please Download Software for Correct Version of Outlook!: ";
constexpr const char* downloadPage = "https://www.lorvane.example/lorvane/download_process.asp";

const std::vector<Words> commands = {{"insert", "--template", "Quote (Sample)"},
                                     {"templates"},
                                     {"template", "add", "--subject", "A", "--text", "/dev/null"},
                                     {"template", "show", "Quote (Sample)"},
                                     {"template", "edit", "Quote (Sample)", "--subject", "A"},
                                     {"template", "delete", "Quote (Sample)"},
                                     {"import", "-"},
                                     {"settings", "get", "LastFolderName"},
                                     {"settings", "set", "A", "B"},
                                     {"settings", "list"},
                                     {"bars"},
                                     {"bars", "--window", "received"}};

TEST(HostVersion, FromTwelveOnEveryCommandIsRefusedBehindTheAddInsBox) {
    const Program lorvane;
    for (Words words : commands) {
        words.insert(words.end(), {"--host-version", "12"});
        const Ended ended = lorvane(words, {.input = draft("text")});
        EXPECT_EQ(ended.status, 1) << ended;
        EXPECT_EQ(ended.out, "") << ended;
        EXPECT_EQ(ended.err.rfind(otherVersion, 0), 0u) << ended;
        EXPECT_EQ(ended.err.find("to be opened"), std::string::npos) << "No is the answer unless Yes is asked for";
    }
    EXPECT_EQ(lorvane.itemCount(), 0u);
    EXPECT_EQ(lorvane({"templates", "--host-version", "14.0.0.1"}).status, 1);
}

TEST(HostVersion, AnsweredYesTheBoxNamesThePage) {
    const Ended ended = Program()({"templates", "--host-version", "12", "--answer", "yes"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_NE(ended.err.find(std::string("to be opened by yourself: ") + downloadPage + "\n"), std::string::npos) << ended;
}

TEST(HostVersion, EarlierHostsDoTheSame) {
    const Program lorvane;
    const Words words = {"insert", "--template", "Quote (Sample)", "--to", "John Public <john@example.com>"};
    const std::string message = lorvane.done(words);
    for (const char* version : {"9", "10", "10.0.0.6515", "11", "11.0.0.8000"}) {
        Words ofVersion = words;
        ofVersion.insert(ofVersion.end(), {"--host-version", version});
        EXPECT_EQ(lorvane.done(ofVersion), message) << version;
    }
}

TEST(NoExplorer, TheFirstRunMakesNoFolders) {
    const Program lorvane;
    EXPECT_EQ(lorvane({"--no-explorer", "templates"}), (Ended{0, "", ""}));
    EXPECT_EQ(lorvane.itemCount(), 0u);
    EXPECT_EQ(lorvane({"--no-explorer", "settings", "list"}), (Ended{0, "", ""}));
    EXPECT_EQ(lorvane({"--no-explorer", "insert", "--template", "Quote (Sample)"}).status, 1);
    EXPECT_EQ(lorvane({"--no-explorer", "import", "-"}, {.input = draft("")}).status, 1);
}

TEST(NoExplorer, FoldersThatAreThereAreUsed) {
    const Program lorvane;
    const std::string list = lorvane.done({"templates"});
    EXPECT_EQ(lorvane.done({"--no-explorer", "templates"}), list);
    EXPECT_NE(lorvane.done({"--no-explorer", "insert", "--template", "Quote (Sample)"}).find("Dear "), std::string::npos);
}

TEST(Moment, StandsInTheTextOfATemplate) {
    const Program lorvane;
    lorvane.addText("Today", "It is [Date].");
    EXPECT_NE(lorvane.done({"insert", "--template", "Today", "--now", "2028-02-29T23:59:59"}).find("29-Feb-2028"), std::string::npos)
        << lorvane.done({"insert", "--template", "Today", "--now", "2028-02-29"});
}

TEST(LocaleOption, ElseThatOfTheEnvironmentElseEnglish) {
    const Program lorvane;
    lorvane.addText("Today", "It is [Date].");
    const Words words = {"insert", "--template", "Today", "--now", "2028-03-01"};
    const auto with = [&](const Words& option, const std::map<std::string, std::string>& environment) {
        Words all = words;
        all.insert(all.end(), option.begin(), option.end());
        const std::string message = lorvane.done(all, {.environment = environment});
        const std::size_t at = message.find("It is ");
        return message.substr(at, message.find('.', at) - at);
    };
    const std::string english = with({}, {}), german = with({"--locale", "de-DE"}, {});
    EXPECT_NE(english, german);
    EXPECT_EQ(with({}, {{"LANG", "de_DE.UTF-8"}}), german);
    EXPECT_EQ(with({}, {{"LANG", "en_US.UTF-8"}, {"LC_TIME", "de_DE.UTF-8"}}), german);
    EXPECT_EQ(with({}, {{"LC_ALL", "C.UTF-8"}, {"LC_TIME", "de_DE.UTF-8"}}), english);
    EXPECT_EQ(with({"--locale", "en-US"}, {{"LANG", "de_DE.UTF-8"}}), english);
    EXPECT_EQ(with({}, {{"LANG", "tlh_QO"}}), english) << "one that nobody knows gives way";
}

TEST(StoreOption, ElseTheStoreLiesInTheUsersDataFolder) {
    const Program lorvane;
    EXPECT_EQ(lorvane.bare({"templates"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(lorvane.home() / ".local/share/lorvane/store.sqlite"));
    const auto data = lorvane.home() / "my data";
    EXPECT_EQ(lorvane.bare({"templates"}, {.environment = {{"XDG_DATA_HOME", data.string()}}}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(data / "lorvane/store.sqlite"));
    const Ended homeless = lorvane.bare({"templates"}, {.environment = {{"HOME", ""}}});
    EXPECT_EQ(homeless.status, 3) << homeless;
    EXPECT_NE(homeless.err.find("--store"), std::string::npos) << homeless;
}

TEST(StoreOption, MayBeAFolderByARelativePathWithBlanks) {
    const Program lorvane;
    EXPECT_EQ(lorvane.bare({"--store", "my störe/deeper", "templates"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(lorvane.folder() / "my störe" / "deeper" / "store.sqlite"));
}

}  // namespace
}  // namespace lorvane::cli::test
