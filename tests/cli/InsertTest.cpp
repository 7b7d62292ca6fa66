#include <gtest/gtest.h>

#include <algorithm>

#include "cli/Program.h"
#include "host/TextFunctions.h"
#include "mime/MimeReader.h"

/// `insert` where it does its work.
namespace lorvane::cli::test {
namespace {

mailstore::ItemRecord read(const std::string& message) {
    return mime::readMessage({reinterpret_cast<const std::uint8_t*>(message.data()), message.size()});
}

std::string body(const std::string& message) {
    return host::toUtf8(read(message).body);
}

TEST(Insert, ANewMailBeginsWithTheGreetingOfItsRecipient) {
    const Program lorvane;
    const std::string message = lorvane.done({"insert", "--template", "Quote (Sample)", "--to", "John Public <john@example.com>"});
    EXPECT_NE(message.find("From: Lorvane User <user@localhost>\r\n"), std::string::npos) << message;
    EXPECT_NE(message.find("To: John Public <john@example.com>\r\n"), std::string::npos) << message;
    EXPECT_NE(message.find("Date: Mon, 10 Jan 2028 09:00:00 +0000\r\n"), std::string::npos) << message;
    EXPECT_NE(message.find("X-Unsent: 1\r\n"), std::string::npos) << message;
    EXPECT_NE(message.find("\r\n\r\nDear John\r\n\r\nProject: "), std::string::npos) << message;
    EXPECT_EQ(body(message).rfind("<HTML><BODY>Dear John<BR>", 0), 0u) << message;
}

TEST(Insert, TheSameCommandGivesTheSameBytes) {
    const Program one, another;
    const Program::Words words = {"insert", "--template", "Quote (Sample)", "--to", "John Public <john@example.com>", "--with-format"};
    const std::string message = one.done(words);
    EXPECT_EQ(one.done(words), message) << "on the same store";
    EXPECT_EQ(another.done(words), message) << "on a new store";
    EXPECT_NE(message.find("Message-ID: <2028-01-10T090000.1@localhost>"), std::string::npos) << message;
}

TEST(Insert, WithoutAMomentEachMessageHasAnIdOfItsOwn) {
    const Program lorvane;
    const Program::Words words = {"--store", lorvane.store().string(), "insert", "--template", "Quote (Sample)"};
    const std::string one = lorvane.bare(words).out, another = lorvane.bare(words).out;
    ASSERT_NE(one.find("Message-ID: <"), std::string::npos) << one;
    EXPECT_NE(one.substr(one.find("Message-ID:"), 40), another.substr(another.find("Message-ID:"), 40));
}

TEST(Insert, SeveralRecipientsAsTheyWereWritten) {
    const Program lorvane;
    const std::string message = lorvane.done(
        {"insert", "--template", "Quote (Sample)", "--to", "\"Public, John\" <john@example.com>", "--to", "mary@example.com", "--to", "Zoë <zoe@example.com>"});
    const mailstore::ItemRecord mail = read(message);
    ASSERT_EQ(mail.recipients.size(), 3u) << message;
    EXPECT_EQ(mail.recipients[0].name, u"Public, John");
    EXPECT_EQ(mail.recipients[0].address, u"john@example.com");
    EXPECT_EQ(mail.recipients[1].address, u"mary@example.com");
    EXPECT_EQ(mail.recipients[2].name, u"Zo\u00EB");
}

TEST(Insert, TheSenderIsTheAccountThatWasNamed) {
    const Program lorvane;
    const std::string message = lorvane.done({"insert", "--template", "Quote (Sample)", "--from", "Ann Account <ann@example.org>"});
    EXPECT_NE(message.find("From: Ann Account <ann@example.org>\r\n"), std::string::npos) << message;
    EXPECT_NE(message.find("@example.org>\r\n"), std::string::npos) << message;
}

TEST(Insert, IntoADraftAtAPlaceOfItsText) {
    const Program lorvane;
    lorvane.addText("Mark", "[*]");
    lorvane.file("draft.eml", draft("one\r\ntwo\r\n"));
    const auto insertedAt = [&](const std::string& caret) {
        return body(lorvane.done({"insert", "--template", "Mark", "--into", "draft.eml", "--caret", caret}));
    };
    EXPECT_EQ(insertedAt("body"), "[*]one\r\ntwo\r\n");
    EXPECT_EQ(insertedAt("body:0"), "[*]one\r\ntwo\r\n");
    EXPECT_EQ(insertedAt("body:2"), "on[*]e\r\ntwo\r\n");
    EXPECT_EQ(insertedAt("body:4"), "one\r\n[*]two\r\n") << "a line end counts as one";
    EXPECT_EQ(insertedAt("body:-1"), "one\r\ntwo\r\n[*]");
    EXPECT_EQ(insertedAt("body:99"), "one\r\ntwo\r\n[*]");
}

TEST(Insert, IntoAnHtmlDraftWithItsFormat) {
    const Program lorvane;
    lorvane.addHtml("Bold", "<html><body><b>Dear [FirstName]</b></body></html>");
    const std::string source = draft("<html><head><title>t</title></head><body class=\"mine\"><p>one</p><p>two</p></body></html>\r\n",
                                     "MIME-Version: 1.0\r\nContent-Type: text/html; charset=utf-8\r\n");
    lorvane.file("draft.eml", source);
    const std::string message = lorvane.done({"insert", "--template", "Bold", "--into", "draft.eml", "--caret", "body:4", "--with-format"});
    EXPECT_NE(body(message).find("<p>one</p><p><b>Dear Mary</b>two</p>"), std::string::npos) << body(message);
    EXPECT_NE(body(message).find("<body class=\"mine\">"), std::string::npos) << body(message);
}

TEST(Insert, TheMailMayComeFromStandardInput) {
    const Program lorvane;
    lorvane.addText("Mark", "[*]");
    const std::string message = lorvane.done({"insert", "--template", "Mark", "--into", "-", "--out", "-"}, {.input = draft("text")});
    EXPECT_EQ(body(message), "[*]text");
    EXPECT_NE(message.find("Subject: Begun\r\n"), std::string::npos) << message;
}

TEST(Insert, ADraftKeepsItsOwnSenderUnlessOneIsNamed) {
    const Program lorvane;
    lorvane.addText("Mark", "[*]");
    lorvane.file("draft.eml", draft("text", "From: Own Name <own@example.com>\r\n"));
    EXPECT_NE(lorvane.done({"insert", "--template", "Mark", "--into", "draft.eml"}).find("From: Own Name <own@example.com>\r\n"), std::string::npos);
    const std::string named = lorvane.done({"insert", "--template", "Mark", "--into", "draft.eml", "--from", "Ann <ann@example.org>"});
    EXPECT_NE(named.find("From: Ann <ann@example.org>\r\n"), std::string::npos) << named;
    EXPECT_EQ(named.find("own@example.com"), std::string::npos) << named;
}

TEST(Insert, IntoTheSubjectIsDoneAndTold) {
    const Program lorvane;
    lorvane.addText("Words", "and more\r\nsecond line");
    lorvane.file("draft.eml", draft("text"));
    const Ended ended = lorvane({"insert", "--template", "Words", "--into", "draft.eml", "--caret", "subject"});
    EXPECT_EQ(ended.status, 0) << ended;
    EXPECT_NE(ended.err.find("the text went into the subject, where the caret stood"), std::string::npos) << ended;
    EXPECT_NE(ended.out.find("Subject: Begunand more\r\n"), std::string::npos) << ended;
    EXPECT_NE(ended.out.find("\r\n\r\ntext"), std::string::npos) << ended;
}

TEST(Insert, AttachmentsOfTheTemplateComeAlong) {
    const Program lorvane;
    lorvane.file("list of prices – 2028.txt", "one, two");
    lorvane.done({"template", "add", "--subject", "Prices", "--text", "-", "--attach", "list of prices – 2028.txt"}, {.input = "Please find"});
    lorvane.done({"template", "add", "--subject", "Only a file", "--text", "/dev/null", "--attach", "list of prices – 2028.txt"});
    for (const char* subject : {"Prices", "Only a file"}) {
        const mailstore::ItemRecord mail = read(lorvane.done({"insert", "--template", subject}));
        ASSERT_EQ(mail.attachments.size(), 1u) << subject;
        EXPECT_EQ(mail.attachments[0].fileName, u"list of prices \u2013 2028.txt");
        EXPECT_EQ(std::string(mail.attachments[0].data->begin(), mail.attachments[0].data->end()), "one, two");
    }
}

TEST(Insert, TheEditorOfNewMailsDecidesTheKind) {
    const Program lorvane;
    const std::string plain = lorvane.done({"insert", "--template", "Quote (Sample)", "--editor", "plain"});
    EXPECT_EQ(read(plain).bodyKind, mailstore::BodyKind::Plain) << plain;
    const std::string rich = lorvane.done({"insert", "--template", "Quote (Sample)", "--editor", "rich"});
    EXPECT_NE(rich.find("text/rtf"), std::string::npos) << rich;
    EXPECT_NE(rich.find("\r\n\r\nDear [FirstName]\r\n"), std::string::npos) << "the plain text beside it";
}

TEST(Insert, TheMailIsGoneFromTheStoreOnceItIsWrittenOut) {
    const Program lorvane;
    lorvane.done({"templates"});
    const std::size_t before = lorvane.itemCount();
    lorvane.file("draft.eml", draft("text"));
    lorvane.done({"insert", "--template", "Quote (Sample)"});
    lorvane.done({"insert", "--template", "Quote (Sample)", "--into", "draft.eml"});
    EXPECT_EQ(lorvane.itemCount(), before);
}

TEST(Insert, KeptMailsLieInDraftsAsTheyWereWritten) {
    const Program lorvane;
    lorvane.file("draft.eml", draft("text"));
    const std::string made = lorvane.done({"insert", "--template", "Quote (Sample)", "--to", "john@example.com", "--keep"});
    const std::string begun = lorvane.done({"insert", "--template", "Quote (Sample)", "--into", "draft.eml", "--keep", "--caret", "body:-1"});
    const auto drafts = lorvane.drafts();
    ASSERT_EQ(drafts.size(), 2u);
    for (const auto& [kept, message] : {std::pair(drafts[0], made), std::pair(drafts[1], begun)}) {
        EXPECT_EQ(kept.body, read(message).body);
        EXPECT_EQ(kept.head.subject, read(message).head.subject);
        EXPECT_EQ(kept.recipients.size(), 1u);
    }
}

}  // namespace
}  // namespace lorvane::cli::test
