#include <gtest/gtest.h>
#include <sqlite3.h>

#include "cli/Program.h"
#include "host/TextFunctions.h"
#include "mailstore/LargestFile.h"
#include "mailstore/SqliteStore.h"

/// `template edit` and `template delete`.
namespace lorvane::cli::test {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;
using Words = Program::Words;

class TemplateEdit : public testing::Test {
protected:
    TemplateEdit() {
        lorvane.file("list.txt", "one, two");
        lorvane.done({"template", "add", "--subject", "Thanks", "--category", "Sales", "--text", "-", "--attach", "list.txt"}, {.input = "Dear [FirstName]"});
        lorvane.addHtml("Bold", "<html><body><b>bold</b></body></html>");
    }
    ItemRecord item(std::u16string_view subject) const {
        for (ItemRecord& item : lorvane.templates())
            if (item.head.subject == subject) return item;
        ADD_FAILURE() << "no such template: " << host::toUtf8(subject);
        return {};
    }
    void edit(Words words, const std::string& input = "") const {
        words.insert(words.begin(), {"template", "edit"});
        const Ended ended = lorvane(words, {.input = input});
        EXPECT_EQ(ended, (Ended{0, "", ""}));
        EXPECT_EQ(lorvane.drafts().size(), 0u);
    }
    Ended refused(Words words, const Call& call = {}) const {
        const auto before = lorvane.templates();
        words.insert(words.begin(), {"template", "edit"});
        const Ended ended = lorvane(words, call);
        EXPECT_NE(ended.status, 0);
        EXPECT_EQ(ended.out, "");
        EXPECT_TRUE(lorvane.templates() == before) << "a template was changed";
        EXPECT_EQ(lorvane.drafts().size(), 0u);
        return ended;
    }
    Program lorvane;
};

TEST_F(TemplateEdit, ChangesWhatIsToldAndLeavesTheRest) {
    const ItemRecord before = item(u"Thanks");
    edit({"Thanks", "--category", "Support, Sales"});
    ItemRecord after = item(u"Thanks");
    EXPECT_EQ(after.head.categories, u"Support, Sales");
    EXPECT_EQ(after.head.entryId, before.head.entryId);
    EXPECT_EQ(after.head.version, before.head.version + 1) << "one save";
    EXPECT_EQ(after.body, before.body);
    EXPECT_EQ(after.attachments, before.attachments);
    edit({"Thanks", "--subject", "Many thanks"});
    after = item(u"Many thanks");
    EXPECT_EQ(after.head.entryId, before.head.entryId);
    EXPECT_EQ(after.head.categories, u"Support, Sales");
}

TEST_F(TemplateEdit, AllAtOnceIsOneSave) {
    const ItemRecord before = item(u"Thanks");
    lorvane.file("more.txt", "three");
    edit({"Thanks", "--subject", "New", "--category", "A", "--html", "-", "--attach", "more.txt", "--attach", "list.txt"}, "<html><body>new</body></html>");
    const ItemRecord after = item(u"New");
    EXPECT_EQ(after.head.version, before.head.version + 1);
    EXPECT_EQ(after.head.categories, u"A");
    EXPECT_EQ(after.body, u"<html><body>new</body></html>");
    ASSERT_EQ(after.attachments.size(), 3u);
    EXPECT_EQ(after.attachments[0], before.attachments[0]);
    EXPECT_EQ(after.attachments[1].fileName, u"more.txt");
    EXPECT_EQ(after.attachments[2].fileName, u"list.txt");
}

TEST_F(TemplateEdit, TheTextIsOfTheKindItIsGivenAs) {
    edit({"Bold", "--text", "-"}, "a < b\nc");
    EXPECT_EQ(item(u"Bold").bodyKind, BodyKind::Plain);
    EXPECT_EQ(item(u"Bold").body, u"a < b\r\nc");
    edit({"Bold", "--html", "-"}, "<html><body class=x>a</body></html>");
    EXPECT_EQ(item(u"Bold").bodyKind, BodyKind::Html);
    EXPECT_EQ(item(u"Bold").body, u"<html><body class=x>a</body></html>");
    for (const char* subject : {"Bold", "Thanks"}) {
        edit({subject, "--html", "/dev/null"});
        EXPECT_EQ(item(host::fromUtf8(subject)).bodyKind, BodyKind::Html);
        EXPECT_EQ(item(host::fromUtf8(subject)).body, u"");
        edit({subject, "--text", "/dev/null"});
        EXPECT_EQ(item(host::fromUtf8(subject)).bodyKind, BodyKind::Plain);
        EXPECT_EQ(item(host::fromUtf8(subject)).body, u"");
    }
}

TEST_F(TemplateEdit, AMessageReplacesTextAndAttachmentsAndNothingElse) {
    const auto mail = dataFolder() / "mail" / "attachment_emails__attachment_message_rfc822_inline_image.eml";
    const ItemRecord before = item(u"Thanks");
    edit({"Thanks", "--eml", mail.string(), "--attach", "list.txt"});
    lorvane.done({"template", "add", "--subject", "Beside", "--eml", mail.string()});
    const ItemRecord after = item(u"Thanks"), beside = item(u"Beside");
    EXPECT_EQ(after.head.entryId, before.head.entryId);
    EXPECT_EQ(after.head.version, before.head.version + 1);
    EXPECT_EQ(after.head.categories, u"Sales");
    EXPECT_EQ(after.bodyKind, BodyKind::Html);
    EXPECT_EQ(after.body, beside.body);
    ASSERT_EQ(after.attachments.size(), 3u);
    for (const std::size_t index : {0u, 1u}) {
        EXPECT_EQ(after.attachments[index].fileName, beside.attachments[index].fileName);
        EXPECT_EQ(after.attachments[index].contentId, beside.attachments[index].contentId);
        EXPECT_EQ(after.attachments[index].mimeType, beside.attachments[index].mimeType);
        EXPECT_EQ(after.attachments[index].inlinePicture, beside.attachments[index].inlinePicture);
        EXPECT_EQ(*after.attachments[index].data, *beside.attachments[index].data);
    }
    EXPECT_EQ(after.attachments[2].fileName, u"list.txt");
}

TEST_F(TemplateEdit, AMessageOfEveryKindReplacesOneOfEveryKind) {
    lorvane.file("plain.eml", "Subject: x\r\n\r\nplain");
    lorvane.file("html.eml", "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: text/html\r\n\r\n<html><body>html</body></html>");
    lorvane.file("rich.eml", "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: text/rtf\r\n\r\n{\\rtf1 rich}");
    lorvane.file("empty.eml", "Subject: x\r\n\r\n");
    const std::vector<std::tuple<const char*, BodyKind, std::u16string>> messages = {{"plain.eml", BodyKind::Plain, u"plain"},
                                                                                     {"html.eml", BodyKind::Html, u"<html><body>html</body></html>"},
                                                                                     {"rich.eml", BodyKind::Rich, u"{\\rtf1 rich}"},
                                                                                     {"empty.eml", BodyKind::Plain, u""}};
    for (const auto& [from, fromKind, fromBody] : messages) {
        for (const auto& [to, kind, body] : messages) {
            edit({"Thanks", "--eml", from});
            edit({"Thanks", "--eml", to});
            EXPECT_EQ(item(u"Thanks").bodyKind, kind) << from << " " << to;
            EXPECT_EQ(item(u"Thanks").body, body) << from << " " << to;
            EXPECT_EQ(item(u"Thanks").attachments.size(), 0u);
        }
    }
}

TEST_F(TemplateEdit, AnEmptyWordTakesSubjectOrCategoriesAway) {
    edit({"Thanks", "--category", ""});
    EXPECT_EQ(item(u"Thanks").head.categories, u"");
    edit({"Thanks", "--subject", ""});
    EXPECT_EQ(item(u"").body, u"Dear [FirstName]");
    edit({"", "--subject", "Back"});
    EXPECT_EQ(item(u"Back").body, u"Dear [FirstName]");
}

TEST_F(TemplateEdit, NothingNewIsNoSave) {
    const ItemRecord before = item(u"Thanks");
    edit({"Thanks", "--subject", "Thanks", "--category", "Sales"});
    EXPECT_EQ(item(u"Thanks"), before);
}

TEST_F(TemplateEdit, AnImportedMessageKeepsWhatItCameWith) {
    lorvane.file("hello.eml", "From: Jane <jane@example.com>\r\nX-Odd: kept\r\nSubject: Hello\r\nDate: Mon, 10 Jan 2028 08:00:00 +0000\r\n\r\nText\r\n");
    lorvane.done({"import", "hello.eml"});
    const ItemRecord before = item(u"Hello");
    edit({"Hello", "--text", "-"}, "New");
    const ItemRecord after = item(u"Hello");
    EXPECT_EQ(after.body, u"New");
    EXPECT_EQ(after.properties.at(mailstore::tags::SenderAddress), before.properties.at(mailstore::tags::SenderAddress));
    ASSERT_TRUE(after.original);
    EXPECT_EQ(*after.original, *before.original);
    EXPECT_TRUE(after.bodyChanged);
}

TEST_F(TemplateEdit, WithEveryEditorAndHostTheSame) {
    for (const char* editor : {"plain", "html", "rich"}) {
        for (const char* version : {"9", "10.0.0.6515", "11"}) {
            edit({"Bold", "--text", "-", "--editor", editor, "--host-version", version}, editor);
            EXPECT_EQ(item(u"Bold").body, host::fromUtf8(editor));
            edit({"Bold", "--html", "-", "--editor", editor, "--host-version", version}, "<html><body><i>x</i></body></html>");
            EXPECT_EQ(item(u"Bold").body, u"<html><body><i>x</i></body></html>") << editor << version;
        }
    }
}

TEST_F(TemplateEdit, OneOfSeveralIsChosenById) {
    lorvane.addText("Thanks", "the other");
    const Ended several = refused({"Thanks", "--category", "x"});
    EXPECT_EQ(several.status, 1) << several;
    const std::string id = host::toUtf8(lorvane.templates().back().head.entryId);
    EXPECT_NE(several.err.find(id), std::string::npos) << several;
    edit({"Thanks", "--id", id, "--subject", "Found"});
    EXPECT_EQ(item(u"Found").body, u"the other");
    EXPECT_EQ(item(u"Thanks").body, u"Dear [FirstName]");
}

TEST_F(TemplateEdit, WhatCannotBeDoneLeavesTheTemplateAsItWas) {
    EXPECT_EQ(refused({"None", "--category", "x"}), (Ended{1, "", "lorvane: there is no template with the subject \"None\"\n"}));
    EXPECT_EQ(refused({"Thanks", "--subject", std::string(601, 'x')}), (Ended{1, "", "lorvane: the subject has over 600 characters; no list could show it\n"}));
    EXPECT_EQ(refused({"Thanks", "--subject", "New", "--text", "missing.txt"}).status, 3);
    EXPECT_EQ(refused({"Thanks", "--subject", "New", "--attach", "missing.txt"}).status, 3);
    lorvane.file("noise.eml", std::string("\0\1\2", 3));
    EXPECT_EQ(refused({"Thanks", "--subject", "New", "--eml", "noise.eml"}).status, 3);
    EXPECT_EQ(refused({"Thanks", "--subject", "New", "--host-version", "12"}).status, 1);
}

TEST_F(TemplateEdit, ADiskThatIsFullLeavesTheTemplateAsItWas) {
    lorvane.file("large.bin", std::string(3'000'000, 'x'));
    lorvane.file("large.eml", "Subject: x\r\n\r\n" + std::string(3'000'000, 'x'));
    for (const Words& words : {Words{"Thanks", "--subject", "New", "--attach", "large.bin"}, Words{"Thanks", "--subject", "New", "--eml", "large.eml"}}) {
        const mailstore::test::LargestFile limit(1'000'000);
        const Ended ended = refused(words);
        EXPECT_EQ(ended.status, 3) << ended;
        EXPECT_NE(ended.err.find("disk is full"), std::string::npos) << ended;
    }
}

TEST_F(TemplateEdit, WhatTheChooserHidesIsInItsMenu) {
    lorvane.done({"settings", "set", "ShowFldrMainBtns", "False"});
    edit({"Thanks", "--category", "x"});
    EXPECT_EQ(item(u"Thanks").head.categories, u"x");
    EXPECT_EQ(lorvane({"template", "delete", "Thanks"}).status, 0);
    EXPECT_EQ(lorvane.templates().size(), 4u);
}

class TemplateDelete : public TemplateEdit {};

constexpr const char* question = "Confirm Delete - Lorvane: Are you sure that you want to delete the selected template: Thanks?\n";

TEST_F(TemplateDelete, IsItselfTheYes) {
    const ItemRecord before = item(u"Thanks");
    EXPECT_EQ(lorvane({"template", "delete", "Thanks"}), (Ended{0, "", question}));
    EXPECT_EQ(lorvane.templates().size(), 4u);
    const auto deleted = lorvane.itemsIn("Deleted Items");
    ASSERT_EQ(deleted.size(), 1u);
    EXPECT_EQ(deleted[0].body, before.body);
    EXPECT_EQ(lorvane({"template", "delete", "Thanks"}), (Ended{1, "", "lorvane: there is no template with the subject \"Thanks\"\n"}));
}

TEST_F(TemplateDelete, TheLastOneToo) {
    for (const char* subject : {"Thanks", "Bold", "Quote (Sample)", "Request for Quote (Sample)", "Follow Up to Phone Call (Sample)"})
        EXPECT_EQ(lorvane({"template", "delete", subject, "--answer", "yes"}).status, 0) << subject;
    EXPECT_EQ(lorvane.templates().size(), 0u);
    EXPECT_EQ(lorvane({"templates"}), (Ended{0, "", ""}));
}

TEST_F(TemplateDelete, OneOfSeveralIsChosenById) {
    lorvane.addText("Thanks", "the other");
    const Ended several = lorvane({"template", "delete", "Thanks"});
    EXPECT_EQ(several.status, 1) << several;
    EXPECT_EQ(several.err.find("Confirm"), std::string::npos) << "nothing was clicked";
    EXPECT_EQ(lorvane.templates().size(), 6u);
    EXPECT_EQ(lorvane({"template", "delete", "Thanks", "--id", host::toUtf8(lorvane.templates().back().head.entryId)}).status, 0);
    EXPECT_EQ(item(u"Thanks").body, u"Dear [FirstName]");
}

TEST_F(TemplateDelete, AFailureInItsStepsIsAFaultAndNothingIsDeleted) {
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open((lorvane.store() / "store.sqlite").c_str(), &writer), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(writer, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const Ended ended = lorvane({"template", "delete", "Thanks"});
    sqlite3_close(writer);
    EXPECT_EQ(ended.status, 3) << ended;
    EXPECT_NE(ended.err.find("in use by another program"), std::string::npos) << ended;
    EXPECT_EQ(lorvane.templates().size(), 5u);
}

/// Templates of a second folder as the shared ones.
class SharedTemplate : public TemplateEdit {
protected:
    SharedTemplate() {
        lorvane.file("shared.eml", "Subject: Of the team\r\nKeywords: Team\r\n\r\nText\r\n");
        lorvane.done({"import", "--folder", "\\Personal Folders\\Inbox", "shared.eml"});
        const auto store = mailstore::SqliteFile(lorvane.store() / "store.sqlite").mailStore();
        constexpr std::int32_t inbox = 6;
        lorvane.done({"settings", "set", "SharedTemplates", "True"});
        lorvane.done({"settings", "set", "SharedFolderEntryid", host::toUtf8(store->wellKnownFolder(inbox)->entryId)});
        lorvane.done({"settings", "set", "SharedFolderStoreid", host::toUtf8(store->storeId())});
    }
};

TEST_F(SharedTemplate, IsShownEditedAndDeletedWhereItLies) {
    EXPECT_EQ(lorvane.done({"template", "show", "Of the team"}), "Of the team\n\nText\n");
    edit({"Of the team", "--category", "Others", "--text", "-"}, "New");
    ASSERT_EQ(lorvane.itemsIn("Inbox").size(), 1u);
    EXPECT_EQ(lorvane.itemsIn("Inbox")[0].body, u"New");
    EXPECT_EQ(lorvane.itemsIn("Inbox")[0].head.categories, u"Others");
    EXPECT_EQ(lorvane({"template", "delete", "Of the team (Shared)"}).status, 1) << "as the list shows it, not as it is called";
    EXPECT_EQ(lorvane({"template", "delete", "Of the team"}).status, 0);
    EXPECT_EQ(lorvane.itemsIn("Inbox").size(), 0u);
    EXPECT_EQ(lorvane.itemsIn("Deleted Items").size(), 1u);
}

TEST_F(SharedTemplate, IsToldApartFromAPrivateOneByItsId) {
    lorvane.addText("Of the team", "my own");
    const Ended several = lorvane({"template", "show", "Of the team"});
    EXPECT_EQ(several.status, 1) << several;
    const std::string id = host::toUtf8(lorvane.itemsIn("Inbox")[0].head.entryId);
    EXPECT_NE(several.err.find(id), std::string::npos) << several;
    EXPECT_EQ(lorvane.done({"template", "show", "Of the team", "--id", id}), "Of the team\n\nText\n");
}

}  // namespace
}  // namespace lorvane::cli::test
