#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/Program.h"
#include "host/TextFunctions.h"
#include "mailstore/SqliteStore.h"

/// `template show`: what the chooser previews.
namespace lorvane::cli::test {
namespace {

using nlohmann::json;

json shown(const Program& lorvane, const std::string& subject) {
    return json::parse(lorvane.done({"template", "show", subject, "--json"}));
}

TEST(TemplateShow, PrintsTheSubjectAndTheTextOfThePreview) {
    const Program lorvane;
    lorvane.addText("Thanks", "Dear [FirstName]\r\n\r\nThank yöu\r\n");
    EXPECT_EQ(lorvane({"template", "show", "Thanks"}), (Ended{0, "Thanks\n\nDear [FirstName]\n\nThank yöu\n", ""}));
    lorvane.addText("No end", "text");
    EXPECT_EQ(lorvane.done({"template", "show", "No end"}), "No end\n\ntext\n");
    lorvane.addText("Nothing", "");
    EXPECT_EQ(lorvane.done({"template", "show", "Nothing"}), "Nothing\n\n");
}

TEST(TemplateShow, OfAnHtmlTemplateTheVisibleText) {
    const Program lorvane;
    lorvane.addHtml("Offer", "<html><head><style>p{}</style></head><body><p>Dear&nbsp;<b>[FirstName]</b></p><p>Price &lt; 5</p></body></html>");
    const std::string text = lorvane.done({"template", "show", "Offer"});
    EXPECT_EQ(text, "Offer\n\nDear [FirstName]\nPrice < 5\n");
}

TEST(TemplateShow, WhatATerminalWouldObeyIsNotPrintedButTabsAre) {
    const Program lorvane;
    lorvane.addText("A\tB\x1B[31m", "one\ttwo\r\n\x1B[2Jthree");
    EXPECT_EQ(lorvane.done({"template", "show", "A\tB\x1B[31m"}), "A B\uFFFD[31m\n\none\ttwo\n\uFFFD[2Jthree\n");
    const json object = shown(lorvane, "A\tB\x1B[31m");
    EXPECT_EQ(object["subject"], "A\tB\x1B[31m");
    EXPECT_EQ(object["text"], "one\ttwo\r\n\x1B[2Jthree");
}

TEST(TemplateShow, AsJsonWithAllThatBelongsToIt) {
    const Program lorvane;
    lorvane.file("list.bin", std::string(1234, 'x'));
    lorvane.done({"template", "add", "--subject", "Prices", "--category", "Sales, Support", "--text", "-", "--attach", "list.bin"}, {.input = "a\nb"});
    const auto item = lorvane.templates().back();
    const auto store = mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore();
    const json expected = {{"subject", "Prices"},
                           {"text", "a\r\nb"},
                           {"categories", "Sales, Support"},
                           {"kind", "plain"},
                           {"attachments", {{{"name", "list.bin"}, {"size", 1234}, {"type", ""}, {"contentID", ""}, {"inline", false}}}},
                           {"entryID", host::toUtf8(item.head.entryId)},
                           {"storeID", host::toUtf8(store->storeId())}};
    EXPECT_EQ(shown(lorvane, "Prices"), expected);
}

TEST(TemplateShow, TheKindIsThatOfTheText) {
    const Program lorvane;
    lorvane.addText("Plain", "text");
    lorvane.addHtml("Html", "<html><body>text</body></html>");
    lorvane.file("rich.eml", "Subject: Rich\r\nMIME-Version: 1.0\r\nContent-Type: text/rtf\r\n\r\n{\\rtf1 text}\r\n");
    lorvane.done({"import", "rich.eml"});
    for (const auto& [subject, kind] : {std::pair("Plain", "plain"), std::pair("Html", "html"), std::pair("Rich", "rich")}) {
        const json object = shown(lorvane, subject);
        EXPECT_EQ(object["kind"], kind);
        EXPECT_EQ(object["text"], "text");
        EXPECT_EQ(object["attachments"], json::array());
    }
}

TEST(TemplateShow, PicturesAreToldWithTheirContentIds) {
    const Program lorvane;
    lorvane.done(
        {"template", "add", "--subject", "Picture", "--eml", (dataFolder() / "mail/attachment_emails__attachment_message_rfc822_inline_image.eml").string()});
    const json attachments = shown(lorvane, "Picture")["attachments"];
    ASSERT_EQ(attachments.size(), 2u);
    EXPECT_EQ(attachments[0]["type"], "image/png");
    EXPECT_TRUE(attachments[0]["inline"]);
    EXPECT_NE(attachments[0]["contentID"], "");
    EXPECT_EQ(attachments[1]["type"], "message/rfc822");
    EXPECT_FALSE(attachments[1]["inline"]);
}

TEST(TemplateShow, ASubjectThatIsNoneIsRefusedAndOneOfSeveralIsChosenById) {
    const Program lorvane;
    lorvane.addText("Same", "one");
    lorvane.addText("Same", "two");
    EXPECT_EQ(lorvane({"template", "show", "same"}), (Ended{1, "", "lorvane: there is no template with the subject \"same\"\n"}));
    const Ended several = lorvane({"template", "show", "Same"});
    EXPECT_EQ(several.status, 1) << several;
    EXPECT_EQ(several.out, "");
    const auto items = lorvane.templates();
    for (std::size_t at = items.size() - 2; at < items.size(); ++at) {
        const std::string id = host::toUtf8(items[at].head.entryId);
        EXPECT_NE(several.err.find("\n  " + id), std::string::npos) << several;
        EXPECT_NE(lorvane.done({"template", "show", "Same", "--id", id}).find(host::toUtf8(items[at].body)), std::string::npos);
    }
    EXPECT_EQ(lorvane({"template", "show", "Same", "--id", "00FF"}).status, 1);
}

TEST(TemplateShow, ASubjectOfAnyTextCanBeNamed) {
    const Program lorvane;
    for (const std::string subject : {"", "--json", "-", "[a, b]", " two  blanks ", "Zoë \"quoted\" 漢", "100% (Shared)"}) {
        Program::Words words = {"template", "add", "--text", "-"};
        if (subject.starts_with("-"))
            words.push_back("--subject=" + subject);
        else
            words.insert(words.end(), {"--subject", subject});
        lorvane.done(words, {.input = "found " + subject});
        EXPECT_EQ(lorvane.done({"template", "show", "--", subject}), subject + "\n\nfound " + subject + "\n");
    }
}

TEST(TemplateShow, AListThatBreaksOffIsAFault) {
    const Program lorvane;
    lorvane.addText("Long", "x");
    {
        const auto store = mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore();
        mailstore::ItemRecord record = lorvane.templates().back();
        record.head.subject = std::u16string(601, u'x');
        store->saveItem({}, record);
    }
    for (const Program::Words& words : {Program::Words{"show", "None"}, Program::Words{"edit", "None", "--subject", "x"}, Program::Words{"delete", "None"}}) {
        Program::Words all = {"template"};
        all.insert(all.end(), words.begin(), words.end());
        const Ended ended = lorvane(all);
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_EQ(ended.out, "");
        EXPECT_NE(ended.err.find("lorvane: the list of templates broke off\n"), std::string::npos) << ended;
    }
}

}  // namespace
}  // namespace lorvane::cli::test
