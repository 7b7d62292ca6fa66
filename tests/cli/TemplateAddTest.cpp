#include <gtest/gtest.h>

#include "cli/Program.h"
#include "host/TextFunctions.h"

/// `template add`.
namespace lorvane::cli::test {
namespace {

using mailstore::BodyKind;

TEST(TemplateAdd, FromPlainTextWithCategories) {
    const Program lorvane;
    lorvane.file("thanks.txt",
                 "\xEF\xBB\xBF"
                 "Dear [FirstName]\nThank yöu\r\n");
    EXPECT_EQ(lorvane({"template", "add", "--subject", "Thanks", "--category", "Sales, Support", "--text", "thanks.txt"}), (Ended{0, "", ""}));
    const auto made = lorvane.templates().back();
    EXPECT_EQ(made.head.subject, u"Thanks");
    EXPECT_EQ(made.head.categories, u"Sales, Support");
    EXPECT_EQ(made.bodyKind, BodyKind::Plain);
    EXPECT_EQ(made.body, u"Dear [FirstName]\r\nThank y\u00F6u\r\n");
    EXPECT_EQ(lorvane.drafts().size(), 0u);
}

TEST(TemplateAdd, FromHtmlAsItStands) {
    const Program lorvane;
    lorvane.file("offer.html", "<html><body class=x><p>Dear [FirstName]</body></html>");
    lorvane.done({"template", "add", "--subject", "Offer", "--html", "offer.html"});
    EXPECT_EQ(lorvane.templates().back().bodyKind, BodyKind::Html);
    EXPECT_EQ(lorvane.templates().back().body, u"<html><body class=x><p>Dear [FirstName]</body></html>");
}

TEST(TemplateAdd, FromAMessageWithItsAttachments) {
    const Program lorvane;
    const auto mail = dataFolder() / "mail" / "attachment_emails__attachment_pdf.eml";
    lorvane.done({"template", "add", "--eml", mail.string()});
    lorvane.done({"template", "add", "--subject", "Renamed", "--category", "Mine", "--eml", "-"}, {.input = textOf(mail)});
    const auto made = lorvane.templates();
    ASSERT_EQ(made.size(), 5u);
    EXPECT_FALSE(made[3].head.subject.empty()) << "its own";
    EXPECT_EQ(made[4].head.subject, u"Renamed");
    EXPECT_EQ(made[4].head.categories, u"Mine");
    EXPECT_EQ(made[3].body, made[4].body);
    ASSERT_EQ(made[3].attachments.size(), 1u);
    EXPECT_EQ(made[3].attachments, made[4].attachments);
    EXPECT_EQ(lorvane.drafts().size(), 0u);
}

TEST(TemplateAdd, WithFilesOfAnyName) {
    const Program lorvane;
    lorvane.file("price list ü.txt", "1");
    lorvane.file("[brackets]", "2");
    lorvane.file("a,b;c=d.bin", std::string("\0\xFF", 2));
    lorvane.done({"template", "add", "--subject", "Files", "--text", "/dev/null", "--attach", "price list ü.txt", "--attach", "[brackets]", "--attach",
                  "./a,b;c=d.bin"});
    const auto made = lorvane.templates().back();
    ASSERT_EQ(made.attachments.size(), 3u);
    EXPECT_EQ(made.attachments[0].fileName, u"price list \u00FC.txt");
    EXPECT_EQ(made.attachments[1].fileName, u"[brackets]");
    EXPECT_EQ(made.attachments[2].fileName, u"a,b;c=d.bin");
    EXPECT_EQ(*made.attachments[2].data, (host::Bytes{0, 0xFF}));
}

TEST(TemplateAdd, ASubjectMayHaveSixHundredCharactersAndNotOneMore) {
    const Program lorvane;
    const std::string longest(600, 'x');
    lorvane.addText(longest, "found");
    EXPECT_NE(lorvane.done({"templates"}).find(longest + "\n"), std::string::npos);
    EXPECT_NE(lorvane.done({"insert", "--template", longest}).find("found"), std::string::npos);

    const Ended refused = lorvane({"template", "add", "--subject", longest + "x", "--text", "/dev/null"});
    EXPECT_EQ(refused, (Ended{1, "", "lorvane: the subject has over 600 characters; no list could show it\n"}));
    lorvane.file("long.eml", "Subject: " + longest + "x\r\n\r\ntext");
    EXPECT_EQ(lorvane({"template", "add", "--eml", "long.eml"}), refused);
    lorvane.done({"template", "add", "--subject", "Short", "--eml", "long.eml"});
    EXPECT_EQ(lorvane.templates().size(), 5u);
    EXPECT_EQ(lorvane.drafts().size(), 0u);
}

TEST(TemplateAdd, WithoutAWindowOfTheHostThereMayBeNoFolder) {
    const Program lorvane;
    const Ended ended = lorvane({"--no-explorer", "template", "add", "--subject", "A", "--text", "/dev/null"});
    EXPECT_EQ(ended.status, 1) << ended;
    EXPECT_NE(ended.err.find("--no-explorer"), std::string::npos) << ended;
    EXPECT_EQ(lorvane.itemCount(), 0u);
}

}  // namespace
}  // namespace lorvane::cli::test
