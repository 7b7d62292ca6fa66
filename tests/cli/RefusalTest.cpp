#include <gtest/gtest.h>

#include "cli/Program.h"

/// `insert` where it is refused, or finds nothing to do: status 1, nothing on standard output, the file of `--out` and the store as they were.
namespace lorvane::cli::test {
namespace {

constexpr const char* untouched = "as it was";

class Refusal : public testing::Test {
protected:
    Refusal() {
        lorvane.done({"templates"});
        lorvane.addHtml("Bold", "<html><body><b>Dear [FirstName]</b></body></html>");
        lorvane.file("out.eml", untouched);
        items_ = lorvane.itemCount();
    }

    Ended refused(const Program::Words& words, const Call& call = {}) {
        const Ended ended = lorvane(words, call);
        EXPECT_EQ(ended.out, "") << ended;
        EXPECT_EQ(lorvane.content("out.eml"), untouched);
        EXPECT_EQ(lorvane.itemCount(), items_) << "the mail stayed in the store";
        return ended;
    }

    Program lorvane;

private:
    std::size_t items_ = 0;
};

TEST_F(Refusal, OfAReceivedMailWithTheAddInsOwnMessage) {
    const std::string mail = "From: Jane <jane@example.com>\r\nTo: user@localhost\r\nSubject: Hello\r\n\r\nHello\r\n";
    lorvane.file("received.eml", mail);
    EXPECT_EQ(refused({"insert", "--template", "Quote (Sample)", "--into", "received.eml"}), (Ended{1, "", std::string(receivedRefusal)}));
    EXPECT_EQ(refused({"insert", "--template", "Quote (Sample)", "--into", "-"}, {.input = mail}), (Ended{1, "", std::string(receivedRefusal)}));
}

TEST_F(Refusal, LeavesTheFileOfOutAlone) {
    lorvane.file("received.eml", "From: Jane <jane@example.com>\r\nSubject: Hello\r\n\r\nHello\r\n");
    for (Program::Words words :
         {Program::Words{"insert", "--template", "Quote (Sample)", "--into", "received.eml"}, Program::Words{"insert", "--template", "No such"},
          Program::Words{"insert", "--template", "Bold", "--with-format", "--caret", "subject"}}) {
        words.insert(words.end(), {"--out", "out.eml"});
        EXPECT_EQ(refused(words).status, 1);
    }
}

TEST_F(Refusal, NothingGoesIntoTheSubjectWithFormat) {
    lorvane.file("draft.eml", draft("<html><body>text</body></html>", "MIME-Version: 1.0\r\nContent-Type: text/html\r\n"));
    for (const Program::Words& target : {Program::Words{}, Program::Words{"--into", "draft.eml"}}) {
        Program::Words words = {"insert", "--template", "Bold", "--with-format", "--caret", "subject"};
        words.insert(words.end(), target.begin(), target.end());
        const Ended ended = refused(words);
        EXPECT_EQ(ended.status, 1) << ended;
        EXPECT_NE(ended.err.find("nothing was inserted: the caret was not in the body"), std::string::npos) << ended;
    }
}

TEST_F(Refusal, ATemplateWithoutTextInsertsNothing) {
    lorvane.addText("Empty", "");
    const Ended ended = lorvane({"insert", "--template", "Empty"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_EQ(ended.out, "");
    EXPECT_NE(ended.err.find("nothing was inserted"), std::string::npos) << ended;
}

TEST_F(Refusal, OfASubjectThatIsNotExactlyATemplates) {
    for (const char* subject : {"No such", "quote (sample)", "Quote (Sample) ", "Quote", "", "NO SUBJECT", "*"}) {
        const Ended ended = refused({"insert", "--template", subject});
        EXPECT_EQ(ended, (Ended{1, "", "lorvane: there is no template with the subject \"" + std::string(subject) + "\"\n"}));
    }
}

TEST_F(Refusal, OfASubjectThatSeveralTemplatesShare) {
    lorvane.addText("Same", "one");
    lorvane.addText("Same", "two");
    std::vector<std::string> ids;
    for (const auto& item : lorvane.templates())
        if (item.head.subject == u"Same") ids.emplace_back(item.head.entryId.begin(), item.head.entryId.end());
    ASSERT_EQ(ids.size(), 2u);

    const Ended ended = lorvane({"insert", "--template", "Same"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_EQ(ended.out, "");
    for (const std::string& id : ids) EXPECT_NE(ended.err.find("\n  " + id), std::string::npos) << ended;
    EXPECT_NE(lorvane.done({"insert", "--template", "Same", "--id", ids[0]}).find("one"), std::string::npos);
    EXPECT_NE(lorvane.done({"insert", "--template", "Same", "--id", ids[1]}).find("two"), std::string::npos);
    EXPECT_EQ(lorvane({"insert", "--template", "Other", "--id", ids[1]}).status, 1);
    EXPECT_EQ(lorvane({"insert", "--template", "Same", "--id", "00FF"}).status, 1);
}

TEST_F(Refusal, ATemplateWithoutASubjectIsChosenByAnEmptyOne) {
    lorvane.addText("", "found");
    EXPECT_NE(lorvane.done({"insert", "--template", ""}).find("found"), std::string::npos);
    EXPECT_EQ(lorvane({"insert", "--template", "NO SUBJECT"}).status, 1) << "the words of the list are not its subject";
}

TEST_F(Refusal, BlanksOfASubjectCount) {
    lorvane.addText(" two  blanks ", "found");
    EXPECT_NE(lorvane.done({"insert", "--template", " two  blanks "}).find("found"), std::string::npos);
    for (const char* subject : {"two  blanks", " two  blanks", " two blanks "}) EXPECT_EQ(lorvane({"insert", "--template", subject}).status, 1) << subject;
}

TEST_F(Refusal, OfAHostThatTheAddInDoesNotWorkWith) {
    const Ended ended = refused({"insert", "--template", "Quote (Sample)", "--host-version", "12"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_NE(ended.err.find("Please Download Software for Correct Version of Outlook!: "), std::string::npos) << ended;
}

TEST_F(Refusal, KeepLeavesARefusedMailToo) {
    lorvane.file("received.eml", "From: jane@example.com\r\nTo: user@localhost\r\nSubject: Hello\r\n\r\nHello\r\n");
    EXPECT_EQ(lorvane({"insert", "--template", "Quote (Sample)", "--into", "received.eml", "--keep"}).status, 1);
    ASSERT_EQ(lorvane.drafts().size(), 1u);
    EXPECT_EQ(lorvane.drafts()[0].head.subject, u"Hello");
}

TEST_F(Refusal, AKeptMailHasNothingOfWhatWasTypedForAMoment) {
    lorvane.file("draft.eml", draft("<html><body>text</body></html>", "MIME-Version: 1.0\r\nContent-Type: text/html\r\n"));
    for (const char* editor : {"html", "word"}) {
        const Ended ended =
            lorvane({"insert", "--template", "Bold", "--with-format", "--into", "draft.eml", "--caret", "subject", "--keep", "--editor", editor});
        EXPECT_EQ(ended.status, 1) << ended;
        ASSERT_FALSE(lorvane.drafts().empty());
        EXPECT_EQ(lorvane.drafts().back().head.subject, u"Begun") << editor;
    }
}

TEST_F(Refusal, AFailingUsageLogDoesNotHinderAnInsertion) {
    lorvane.done({"settings", "set", "LogTemplate", "True"});
    lorvane.done({"settings", "set", "TemplatesLogFilePath", "\\no\\such\\folder\\log.txt"});
    const Ended ended = lorvane({"insert", "--template", "Quote (Sample)"});
    EXPECT_EQ(ended.status, 0) << ended;
    EXPECT_NE(ended.err, "") << "its box is told";
    EXPECT_NE(ended.out.find("Dear "), std::string::npos);
}

}  // namespace
}  // namespace lorvane::cli::test
