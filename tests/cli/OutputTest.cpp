#include <gtest/gtest.h>
#include <sys/stat.h>

#include "cli/Program.h"

/// Where results go, and what cannot be read or written: status 3 with a line that names it.
namespace lorvane::cli::test {
namespace {

using Words = Program::Words;

const Words insertSample = {"insert", "--template", "Quote (Sample)"};

Words sampleTo(const std::string& out) {
    Words words = insertSample;
    words.insert(words.end(), {"--out", out});
    return words;
}

void expectFault(const Ended& ended, const std::string& line) {
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_EQ(ended.out, "") << ended;
    EXPECT_NE(ended.err.find(line), std::string::npos) << ended;
}

TEST(Output, AFileGetsWhatStandardOutputWould) {
    const Program lorvane;
    const std::string message = lorvane.done(insertSample);
    ASSERT_NE(message, "");
    for (const char* name : {"plain.eml", "with blanks and ümläuts 漢.eml", "./here.eml", "../files/there.eml"}) {
        EXPECT_EQ(lorvane.done(sampleTo(name)), "");
        EXPECT_EQ(lorvane.content(name), message) << name;
    }
    EXPECT_EQ(lorvane.done(sampleTo((lorvane.folder() / "absolute.eml").string())), "");
    EXPECT_EQ(lorvane.content("absolute.eml"), message);
    EXPECT_EQ(lorvane.done(sampleTo("-")), message);
}

TEST(Output, AFileIsReplacedWholeAndKeepsItsRights) {
    const Program lorvane;
    const auto file = lorvane.file("out.eml", std::string(100'000, 'x'));
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    const std::string message = lorvane.done(insertSample);
    lorvane.done(sampleTo("out.eml"));
    EXPECT_EQ(lorvane.content("out.eml"), message);
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(lorvane.folder()), {}), 1) << "nothing else stays";
}

TEST(Output, ALinkStaysALink) {
    const Program lorvane;
    const auto file = lorvane.file("target.eml", "old");
    std::filesystem::create_symlink(file, lorvane.folder() / "link.eml");
    lorvane.done(sampleTo("link.eml"));
    EXPECT_TRUE(std::filesystem::is_symlink(lorvane.folder() / "link.eml"));
    EXPECT_NE(lorvane.content("target.eml"), "old");
}

TEST(Output, TheDraftMayBeReplacedByItsResult) {
    const Program lorvane;
    lorvane.file("draft.eml", draft("text"));
    Words words = sampleTo("draft.eml");
    words.insert(words.end(), {"--into", "draft.eml"});
    lorvane.done(words);
    EXPECT_NE(lorvane.content("draft.eml").find("Dear Mary"), std::string::npos);
}

TEST(Output, APlaceThatCannotBeWrittenIsFoundOutBeforeAnythingIsDone) {
    const Program lorvane;
    expectFault(lorvane(sampleTo("no/such/folder.eml")), "cannot write no/such/folder.eml");
    expectFault(lorvane(sampleTo(lorvane.folder().string())), "Is a directory");
    expectFault(lorvane(sampleTo("/proc/new.eml")), "cannot write /proc/new.eml");
    EXPECT_FALSE(std::filesystem::exists(lorvane.store()));
}

TEST(Output, WhatCannotBeWrittenOutStaysInDrafts) {
    const Program lorvane;
    expectFault(lorvane(sampleTo("/dev/full")), "cannot write /dev/full: No space left on device");
    ASSERT_EQ(lorvane.drafts().size(), 1u);
    EXPECT_NE(lorvane.drafts()[0].body.find(u"Dear "), std::u16string::npos);
    expectFault(lorvane(insertSample, {.outTo = "/dev/full"}), "cannot write standard output");
    expectFault(lorvane(insertSample, {.readerGone = true}), "cannot write standard output: Broken pipe");
    EXPECT_EQ(lorvane.drafts().size(), 3u);
}

TEST(Output, AListThatCannotBeWrittenIsAFault) {
    const Program lorvane;
    for (const Words& words : {Words{"templates"}, Words{"templates", "--json"}, Words{"settings", "list"}, Words{"settings", "get", "LastFolderName"}})
        expectFault(lorvane(words, {.outTo = "/dev/full"}), "cannot write standard output");
}

TEST(Output, WhatCannotBeReadIsNamed) {
    const Program lorvane;
    lorvane.file("noise.eml", std::string("\x89PNG\r\n\x1A\n\0\0\0\xFF", 12));
    lorvane.file("empty.eml", "");
    lorvane.file("latin1.txt", "M\xFCller");
    const auto into = [&](const std::string& file) { return lorvane({"insert", "--template", "Quote (Sample)", "--into", file}); };
    expectFault(into("missing.eml"), "cannot read missing.eml: No such file or directory");
    expectFault(into("."), "cannot read .: Is a directory");
    expectFault(into("noise.eml"), "noise.eml: The file is not a mail");
    expectFault(into("empty.eml"), "empty.eml: The file is empty");
    const auto add = [&](const std::string& option, const std::string& file) { return lorvane({"template", "add", "--subject", "A", option, file}); };
    expectFault(add("--text", "missing.txt"), "cannot read missing.txt");
    expectFault(add("--html", "."), "cannot read .: Is a directory");
    expectFault(add("--text", "latin1.txt"), "cannot read latin1.txt: it is not text in UTF-8");
    expectFault(add("--eml", "noise.eml"), "noise.eml: The file is not a mail");
    expectFault(lorvane({"template", "add", "--subject", "A", "--text", "/dev/null", "--attach", "missing.pdf"}), "cannot read missing.pdf");
    expectFault(lorvane({"templates", "--log", "no/such/log"}), "cannot write no/such/log");
    EXPECT_EQ(lorvane.templates().size(), 3u) << "the samples alone";
    EXPECT_EQ(lorvane.drafts().size(), 0u);
}

TEST(Output, AVeryLargeMailGoesThrough) {
    const Program lorvane;
    lorvane.addText("Mark", "[*]");
    std::string text;
    for (int line = 0; line < 12'000; ++line) text += "A line of an honest mail, number " + std::to_string(line) + ".\r\n";
    const std::string message = lorvane.done({"insert", "--template", "Mark", "--into", "-", "--caret", "body:-1"}, {.input = draft(text)});
    EXPECT_NE(message.find("number 11999.\r\n[*]"), std::string::npos);
    EXPECT_GT(message.size(), text.size());
}

}  // namespace
}  // namespace lorvane::cli::test
