#include <gtest/gtest.h>

#include "InsertRig.h"

/// When nothing is inserted: what is said, what is logged, and whether the window stays.
namespace lorvane::support {
namespace {

using namespace host;

class InsertRefusalTest : public testing::TestWithParam<std::u16string_view> {
protected:
    void logUses() {
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", logPath());
    }
    std::u16string logPath() { return apartment().machine.files().GetFolderPath(5) + u"\\log.csv"; }
    bool isLogged(std::u16string_view subject) {
        const Files files = apartment().machine.files();
        return files.FileExists(logPath()) && files.ReadText(logPath()).find(u"\"" + std::u16string(subject) + u"\"") != std::u16string::npos;
    }
    void expectBox(std::u16string_view text) {
        ASSERT_EQ(run.boxes().size(), 1U);
        EXPECT_EQ(run.lastBox().text, text);
        EXPECT_EQ(run.lastBox().style, 64);
        EXPECT_EQ(run.lastBox().title, u"Lorvane");
    }
    TestRun run;
};
INSTANTIATE_TEST_SUITE_P(Buttons, InsertRefusalTest, testing::Values(insertText, insertWithFormat));

TEST_P(InsertRefusalTest, AnEmptyListIsToldAndTheWindowStays) {
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, GetParam());
        EXPECT_TRUE(isChooserOpen());
        EXPECT_TRUE(chooser().isVisible());
    });
    expectBox(u"There are no items to insert text from.\r\nPlease search for another e-mail or create a standard item first.");
    EXPECT_EQ(sourceOf(run, mail), document(u"Text"));
}

TEST_P(InsertRefusalTest, AnEmptySearchResultIsAnEmptyList) {
    run.addTemplate(u"Offer", plain(u"Text"));
    openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [](ScriptedUser& she) {
        she.Type(chooserName, u"txtSearch", u"zzz");
        she.Advance(1000);
        she.Click(chooserName, GetParam());
        EXPECT_TRUE(isChooserOpen());
    });
    expectBox(u"There are no items to insert text from.\r\nPlease search for another e-mail or create a standard item first.");
}

TEST_P(InsertRefusalTest, AMissingSelectionIsToldAndTheWindowStays) {
    run.addTemplate(u"Offer", plain(u"Text"));
    logUses();
    openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [](ScriptedUser& she) {
        chooser().lstEmails.ListIndex = -1;
        she.Click(chooserName, GetParam());
        EXPECT_TRUE(isChooserOpen());
    });
    expectBox(u"Please select an item from the list first.");
    EXPECT_FALSE(isLogged(u"Offer"));
}

TEST_P(InsertRefusalTest, AReceivedMailIsRefusedAfterTheUseIsLogged) {
    run.addTemplate(u"Offer", plain(u"Text"));
    logUses();
    const Inspector mail = run.openMail(run.receivedMail(u"Question", plain(u"Their text")));
    run.focus(mail, model::EditorFieldName::Body);
    run.type(u"x");
    useTemplate(run, u"Offer", GetParam());
    expectBox(u"You can only insert text into mails that are to be sent out.");
    EXPECT_FALSE(isChooserOpen());
    EXPECT_EQ(sourceOf(run, mail), u"xTheir text");
    EXPECT_EQ(savedSourceOf(run, mail), u"xTheir text") << "untouched but saved";
    EXPECT_TRUE(isLogged(u"Offer"));
    EXPECT_FALSE(run.clipboardText());
}

TEST_P(InsertRefusalTest, AMailWithASenderIsRefused) {
    run.addTemplate(u"Offer", plain(u"Text"));
    mailstore::ItemRecord record;
    record.bodyKind = mailstore::BodyKind::Plain;
    record.body = u"Sent text";
    record.properties[mailstore::tags::SenderName] = std::u16string(u"Jane");
    record.properties[mailstore::tags::SenderAddress] = std::u16string(u"jane@example.com");
    record.properties[mailstore::tags::SenderAddressType] = std::u16string(u"SMTP");
    const Inspector mail = run.openMail(MailItem(run.driver().import(std::move(record), run.folder(default_folder::Drafts))));
    useTemplate(run, u"Offer", GetParam());
    expectBox(u"You can only insert text into mails that are to be sent out.");
    EXPECT_FALSE(isChooserOpen());
}

TEST_P(InsertRefusalTest, AnyOtherClassIsRefused) {
    constexpr OtherKind kinds[] = {{item_class::Contact, u"IPM.Contact"},
                                   {item_class::Document, u"IPM.Document"},
                                   {item_class::Journal, u"IPM.Activity"},
                                   {item_class::Note, u"IPM.StickyNote"},
                                   {item_class::DistributionList, u"IPM.DistList"}};
    run.addTemplate(u"Offer", plain(u"Text"));
    logUses();
    std::size_t boxes = 0;
    for (const OtherKind& kind : kinds) {
        const Inspector item = openOther(run, kind, plain(u"ab"));
        run.type(u"x");
        useTemplate(run, u"Offer", GetParam());
        ASSERT_EQ(run.boxes().size(), ++boxes);
        EXPECT_EQ(run.lastBox(), (screen::ScriptedUser::BoxRecord{u"Lorvane", u"You can only insert text into items that has mails.", 64, 1}));
        EXPECT_FALSE(isChooserOpen());
        EXPECT_EQ(run.bodyShown(item), u"xab");
        EXPECT_EQ(savedSourceOf(run, item), u"ab") << "not even saved";
    }
    EXPECT_TRUE(isLogged(u"Offer"));
    EXPECT_FALSE(run.clipboardText());
}

TEST_P(InsertRefusalTest, WithoutAnOpenItemTheStandardBoxComesAndTheWindowGoes) {
    run.addTemplate(u"Offer", plain(u"Text"));
    useTemplate(run, u"Offer", GetParam());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdInsert_Click - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    EXPECT_EQ(run.lastBox().text, u"Error 91: Object variable or With block variable not set");
    EXPECT_FALSE(isChooserOpen());
}

TEST_P(InsertRefusalTest, ATemplateThatIsGoneShowsTheStandardBoxAndTheWindowGoes) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [&](ScriptedUser& she) {
        run.driver().purge(offer);
        she.Click(chooserName, GetParam());
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdInsert_Click - Lorvane");
    EXPECT_FALSE(isChooserOpen());
    EXPECT_EQ(sourceOf(run, mail), document(u"Text"));
}

TEST_P(InsertRefusalTest, AMailOfAFolderThatRefusesSavingShowsTheStandardBox) {
    run.addTemplate(u"Offer", plain(u"Text"));
    const MAPIFolder team = run.addFolder(run.addStore(u"Team"), u"Drafts");
    const MailItem draft = run.addTemplate(team, u"About us", html(document(u"Text")));
    const Inspector mail = run.openMail(draft);
    run.focus(mail, model::EditorFieldName::Body);
    run.type(u"x");
    run.driver().setRights(team, model::FolderRights::Read);
    useTemplate(run, u"Offer", GetParam());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdInsert_Click - Lorvane");
    EXPECT_FALSE(isChooserOpen());
}

TEST(InsertWithoutFoldersTest, NothingIsDoneAndNothingIsSaid) {
    TestRun run({.connected = false});
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, insertText);
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_EQ(sourceOf(run, mail), document(u"Text"));
}

TEST(InsertLogTest, ALogThatCannotBeWrittenDoesNotHoldTheInsertionUp) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    run.setSetting(u"LogTemplate", u"True");
    run.setSetting(u"TemplatesLogFilePath", u"\\no\\such\\folder\\log.csv");
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    useTemplate(run, u"Offer", insertText);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Invalid File Location - Lorvane");
    EXPECT_EQ(run.bodyShown(mail), u"Text");
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.boxes().size(), 2U) << "at each use";
    EXPECT_EQ(run.bodyShown(mail), u"TextText");
}

TEST(InsertLogTest, ASettingThatIsNoBooleanIsToldAndTheInsertionGoesOn) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    run.setSetting(u"LogTemplate", u"maybe");
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    useTemplate(run, u"Offer", insertText);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"modTemplateLog.TemplateLogRecord - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 13: Type mismatch");
    EXPECT_EQ(run.bodyShown(mail), u"Text");
}

TEST(InsertSenderTest, ASenderThatCannotBeReadIsToldAndCountsAsNone) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Offer", plain(u"Text"));
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    run.faults().failNth(u"SafeMailItem", u"Sender", 1, host_failure::AccessDenied);
    useTemplate(run, u"Offer", insertText);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox(),
              (screen::ScriptedUser::BoxRecord{u"Invalid E-mail Address", u"E-mail address cannot be resolved. Please check e-mail address.", 48, 1}));
    EXPECT_EQ(run.bodyShown(mail), u"Text");
}

TEST(InsertFormatFlagTest, ATextInsertionBehindARefusedOneWithFormatKeepsTheFormat) {
    // The flag is cleared when the window goes, not between clicks.
    TestRun run;
    run.addTemplate(u"Bold", html(document(u"<B>x</B>")));
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    openChooser(run, [](ScriptedUser& she) {
        chooser().lstEmails.ListIndex = -1;
        she.Click(chooserName, insertWithFormat);
        she.Select(chooserName, u"lstEmails", 0);
        she.Click(chooserName, insertText);
    });
    EXPECT_EQ(sourceOf(run, mail), document(u"<B>x</B>"));
}

}  // namespace
}  // namespace lorvane::support
