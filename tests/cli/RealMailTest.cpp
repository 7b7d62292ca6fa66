#include <gtest/gtest.h>

#include <algorithm>

#include "cli/Program.h"
#include "host/TextFunctions.h"

/// Real mails and templates through the whole program, judged by another mail reader.
namespace lorvane::cli::test {
namespace {

constexpr const char* inserted = "Marker text of the template";

TEST(RealTemplates, StandInTheHtmlPartAsOneRun) {
    const Program lorvane;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dataFolder() / "templates")) {
        const std::string name = entry.path().stem().string();
        // A greeting shows that the tags are replaced in the same run.
        std::string source = textOf(entry.path());
        const std::size_t body = source.find('>', source.find("<body"));
        ASSERT_NE(body, std::string::npos) << name;
        source.insert(body + 1, "<p>Dear [FirstName], it is [Date]</p>");
        lorvane.file(name + ".html", source);
        lorvane.done({"template", "add", "--subject", name, "--html", name + ".html"});
        lorvane.done({"insert", "--template", name, "--with-format", "--to", "John Public <john@example.com>", "--out", name + ".eml"});
        EXPECT_EQ(python("fragment_check.py", {(lorvane.folder() / (name + ".html")).string(), (lorvane.folder() / (name + ".eml")).string(), "[FirstName]",
                                               "John", "[Date]", "10-Jan-2028"}),
                  "")
            << name;
        ++count;
    }
    EXPECT_EQ(count, 4u);
}

TEST(RealMails, ReceivedOnesAreRefused) {
    const Program lorvane;
    const auto mails = realMails();
    ASSERT_EQ(mails.size(), 51u);
    for (const auto& mail : mails)
        EXPECT_EQ(lorvane({"insert", "--template", "Quote (Sample)", "--into", mail.string()}), (Ended{1, "", std::string(receivedRefusal)})) << mail;
    EXPECT_EQ(lorvane.itemCount(), 3u) << "the samples alone";
}

TEST(RealMails, AsDraftsKeepAllTheyHad) {
    const Program lorvane;
    lorvane.addText("Text", inserted);
    lorvane.addHtml("Format", std::string("<html><body><b>") + inserted + "</b></body></html>");
    std::vector<std::string> arguments = {inserted};
    for (const char* name : {"attachment_emails__attachment_message_rfc822_inline_image", "attachment_emails__attachment_nonascii_filename",
                             "attachment_emails__attachment_only_email", "attachment_emails__attachment_pdf_lf", "error_emails__encoding_madness",
                             "mime_emails__raw_email_with_nested_attachment", "mime_emails__raw_email2", "multi_charset__japanese_attachment",
                             "multi_charset__japanese_shift_jis", "plain_emails__raw_email_quoted_with_0d0a", "rfc2822__example13"}) {
        std::string mail = textOf(dataFolder() / "mail" / (std::string(name) + ".eml"));
        if (mail.starts_with("From ")) mail.erase(0, mail.find('\n') + 1);
        const bool crlf = mail.find("\r\n") != std::string::npos;
        lorvane.file(std::string(name) + ".eml", (crlf ? "X-Unsent: 1\r\n" : "X-Unsent: 1\n") + mail);
        for (const bool withFormat : {false, true}) {
            const std::string out = std::string(name) + (withFormat ? ".html.eml" : ".text.eml");
            Program::Words words = {"insert", "--template", withFormat ? "Format" : "Text", "--into", std::string(name) + ".eml", "--out", out};
            if (withFormat) words.push_back("--with-format");
            lorvane.done(words);
            arguments.push_back((lorvane.folder() / (std::string(name) + ".eml")).string());
            arguments.push_back((lorvane.folder() / out).string());
        }
    }
    EXPECT_EQ(python("draft_check.py", arguments), "");
}

TEST(RealMails, AFolderOfThemBecomesTemplates) {
    const Program lorvane;
    const Ended ended = lorvane({"import", (dataFolder() / "mail").string()});
    EXPECT_EQ(ended, (Ended{0, "", "lorvane: 51 of 51 messages imported\n"}));
    EXPECT_EQ(lorvane.templates().size(), 54u);
    const std::string list = lorvane.done({"templates"});
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 54);
    EXPECT_NE(lorvane.done({"templates", "--search", "Testing outlook"}), "");
}

}  // namespace
}  // namespace lorvane::cli::test
