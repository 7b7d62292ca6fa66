#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "store/CategoryFiles.h"
#include "store/FoldersRig.h"

/// Copying a template, and making, editing and deleting one.
namespace lorvane::support {
namespace {

using namespace host;

class MaintenanceTest : public testing::Test {
protected:
    void clickWith(std::u16string_view subject, std::u16string_view button) { useTemplate(run, subject, button); }
    /// With an empty list, and with a list of which no row is selected.
    void clickOnEmptyList(std::u16string_view button) {
        openChooser(run, [=](ScriptedUser& she) {
            she.Click(chooserName, button);
            EXPECT_TRUE(isChooserOpen());
        });
    }
    void clickWithoutSelection(std::u16string_view button) {
        run.addTemplate(u"Offer", plain(u"Text"));
        openChooser(run, [=](ScriptedUser& she) {
            chooser().lstEmails.ListIndex = -1;
            she.Click(chooserName, button);
            EXPECT_TRUE(isChooserOpen());
        });
    }
    void expectBox(std::u16string_view title, std::u16string_view text, std::int32_t style) {
        ASSERT_EQ(run.boxes().size(), 1U);
        EXPECT_EQ(run.lastBox().title, title);
        EXPECT_EQ(run.lastBox().text, text);
        EXPECT_EQ(run.lastBox().style, style);
    }
    TestRun run;
};

TEST_F(MaintenanceTest, CopyTakesTheTextOfThePreviewWithItsTags) {
    run.addTemplate(u"Offer", html(u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>"));
    run.clipboard().replaceText(u"old");
    clickWith(u"Offer", u"cmdCopyToClipBoard");
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName]");
    EXPECT_FALSE(run.clipboardHtml());
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, CopyOfAnEmptyPreviewIsSilentAndStaysOpen) {
    run.addTemplate(u"Blank", plain(u"   "));
    run.clipboard().replaceText(u"old");
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdCopyToClipBoard");
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_EQ(run.clipboardText(), u"old");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, CopyWithNothingSelectedIsSilentThoughAPreviewStandsThere) {
    clickWithoutSelection(u"cmdCopyToClipBoard");
    EXPECT_FALSE(run.clipboardText());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, CopyTakesThePreviewAsItStands) {
    run.addTemplate(u"Offer", plain(u"Dear [FirstName]"));
    openChooser(run, [](ScriptedUser& she) {
        chooser().txtPreview.Text = u"Only this";
        she.Click(chooserName, u"cmdCopyToClipBoard");
    });
    EXPECT_EQ(run.clipboardText(), u"Only this");
}

TEST_F(MaintenanceTest, CopyWithFormatTakesTheHtmlWithItsTags) {
    run.addTemplate(u"Offer", html(u"<HTML><BODY><B>Dear</B> [FirstName], [Date]</BODY></HTML>"));
    clickWith(u"Offer", u"cmdCopyHTMLToClipB");
    ASSERT_TRUE(run.clipboardHtml());
    EXPECT_NE(run.clipboardHtml()->find(u"<B>Dear</B> [FirstName], [Date]"), std::u16string::npos);
    EXPECT_FALSE(isChooserOpen());
}

TEST_F(MaintenanceTest, CopyWithFormatWithoutASelectionIsSilent) {
    clickWithoutSelection(u"cmdCopyHTMLToClipB");
    EXPECT_FALSE(run.clipboardHtml());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, NewOpensAnEmptyMailInPlaceOfTheChooser) {
    run.addTemplate(u"Offer", plain(u"Text"));
    clickWith(u"Offer", u"cmdNew");
    EXPECT_FALSE(isChooserOpen());
    const Inspector mail = run.application().ActiveInspector();
    ASSERT_TRUE(mail);
    EXPECT_EQ(mail.CurrentItem().Class(), 43);
    EXPECT_EQ(mail.CurrentItem().Subject(), u"");
    EXPECT_EQ(mail.CurrentItem().EntryID(), u"") << "it is not saved";
}

TEST_F(MaintenanceTest, EditOpensTheTemplateInPlaceOfTheChooser) {
    run.addTemplate(u"Answer", plain(u"Text"));
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    clickWith(u"Offer", u"cmdEdit");
    EXPECT_FALSE(isChooserOpen());
    ASSERT_TRUE(run.application().ActiveInspector());
    EXPECT_EQ(run.application().ActiveInspector().CurrentItem().EntryID(), offer.EntryID());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, EditBesideAnotherOpenItemOpensTheTemplate) {
    run.openMail(run.draft(u"Draft", plain(u"Text")));
    run.addTemplate(u"Offer", plain(u"Text"));
    clickWith(u"Offer", u"cmdEdit");
    EXPECT_EQ(run.application().ActiveInspector().CurrentItem().Subject(), u"Offer");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(MaintenanceTest, EditOfATemplateThatIsGoneShowsTheStandardBox) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        run.driver().purge(offer);
        she.Click(chooserName, u"cmdEdit");
        EXPECT_TRUE(isChooserOpen());
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdEdit_Click - Lorvane");
}

TEST_F(MaintenanceTest, EditOfAnEmptyListIsRefused) {
    clickOnEmptyList(u"cmdEdit");
    expectBox(u"Lorvane", u"There are no items to edit.\r\nPlease search for another e-mail or create a standard item first.", 64);
}

TEST_F(MaintenanceTest, EditWithoutASelectionIsRefused) {
    clickWithoutSelection(u"cmdEdit");
    expectBox(u"Lorvane", u"Please select an item from the list first.", 64);
}

TEST_F(MaintenanceTest, EditOfATemplateThatIsOpenIsRefused) {
    run.openMail(run.addTemplate(u"Offer", plain(u"Text")));
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdEdit");
        EXPECT_TRUE(isChooserOpen());
    });
    expectBox(u"Lorvane",
              u"This item is already open or it is selected in Outlook.\r\n\r\nIf you want to edit it close the Lorvane  screen or else choose another "
              u"template to edit.",
              64);
}

TEST_F(MaintenanceTest, DeleteAsksAndDeletesOnYes) {
    run.addTemplate(u"Answer", plain(u"Text"), u"Letters");
    run.addTemplate(u"Offer", plain(u"Text"), u"Sales");
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        selectSubject(she, u"Offer");
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{u"Answer"});
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_EQ(chooser().txtPreview.Text.get(), u"");
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Select a template from the list to preview");
    });
    expectBox(u"Confirm Delete - Lorvane", u"Are you sure that you want to delete the selected template: Offer?", 36);
    EXPECT_EQ(subjectsIn(run.templatesFolder()), Names{u"Answer"});
}

TEST_F(MaintenanceTest, DeleteRebuildsTheTablesAndWritesNoFile) {
    run.addTemplate(u"Answer", plain(u"Text"), u"Letters");
    run.addTemplate(u"Offer", plain(u"Text"), u"Sales");
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        const std::u16string file = store::ReadFile(store::privateCategoriesPath());
        selectSubject(she, u"Offer");
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(store::templateTables().rsPrivateTemplates.RecordCount(), 1);
        EXPECT_EQ(store::templateTables().rsPrivateCategories.RecordCount(), 1);
        EXPECT_EQ(store::ReadFile(store::privateCategoriesPath()), file) << "its name stays there until the next opening";
        EXPECT_NE(file.find(u"Sales"), std::u16string::npos);
    });
    openChooser(run);
    EXPECT_EQ(store::ReadFile(store::privateCategoriesPath()).find(u"Sales"), std::u16string::npos);
}

TEST_F(MaintenanceTest, DeleteKeepsWhatNarrowsTheList) {
    for (const std::u16string_view subject : {u"Offer one", u"Offer two", u"Answer"}) run.addTemplate(subject, plain(u"Text"), u"Sales");
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        she.Type(chooserName, u"txtSearch", u"offer");
        she.Advance(1000);
        selectSubject(she, u"Offer one");
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{u"Offer two"});
    });
}

TEST_F(MaintenanceTest, DeleteTakesASharedTemplateToo) {
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"));
    run.addTemplate(team, u"Ours", plain(u"Text"));
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        selectSubject(she, u"Ours (Shared)");
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{u"Mine"});
    });
    expectBox(u"Confirm Delete - Lorvane", u"Are you sure that you want to delete the selected template: Ours?", 36);
    EXPECT_EQ(team.Items().Count(), 0);
}

TEST_F(MaintenanceTest, DeleteIsDroppedOnNo) {
    run.addTemplate(u"Offer", plain(u"Text"));
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{u"Offer"});
        EXPECT_EQ(chooser().txtPreview.Text.get(), u"Text");
    });
    EXPECT_EQ(run.lastBox().answer, msgbox::No);
    EXPECT_EQ(run.templatesFolder().Items().Count(), 1);
}

TEST_F(MaintenanceTest, DeleteOfTheLastRowShowsTheEmptyState) {
    run.addTemplate(u"Offer", plain(u"Text"));
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_FALSE(chooser().lstEmails.Visible);
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Select a template from the list to preview");
    });
}

TEST_F(MaintenanceTest, DeleteOfATemplateThatIsOpenIsRefused) {
    run.openMail(run.addTemplate(u"Offer", plain(u"Text")));
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdDelete");
        EXPECT_EQ(listed(), Subjects{u"Offer"});
    });
    expectBox(u"Item Open - Lorvane", u"You can not delete this Lorvane Template while it is open.", 64);
}

TEST_F(MaintenanceTest, DeleteOfAnEmptyListIsRefused) {
    clickOnEmptyList(u"cmdDelete");
    expectBox(u"Lorvane", u"There are no items to delete.\r\nPlease search for another e-mail or create a standard item first.", 64);
}

TEST_F(MaintenanceTest, DeleteWithoutASelectionIsRefused) {
    clickWithoutSelection(u"cmdDelete");
    expectBox(u"Lorvane", u"Please select the item that you want to delete from the list.", 64);
}

TEST_F(MaintenanceTest, DeleteThatTheFolderRefusesShowsTheStandardBox) {
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(team, u"Ours", plain(u"Text"));
    run.driver().setRights(team, model::FolderRights::Read);
    run.user().AnswerNext({msgbox::Yes});
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdDelete");
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdDelete_Click - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    EXPECT_EQ(team.Items().Count(), 1);
}

TEST_F(MaintenanceTest, HostErrorsOfTheCopiesShowTheStandardBoxAndTheWindowStays) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        run.driver().purge(offer);
        she.Click(chooserName, u"cmdCopyHTMLToClipB");
        EXPECT_TRUE(isChooserOpen());
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdCopyHTMLToClipB_Click - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST_F(MaintenanceTest, HandlersThatChangeThingsRememberTheFolder) {
    run.addTemplate(u"Offer", plain(u"Text"));
    for (const std::u16string_view button : {u"cmdNew", u"cmdEdit", u"cmdDelete"}) {
        openChooser(run, [&](ScriptedUser& she) {
            for (const std::u16string_view key : {u"LastFolderStoreid", u"LastFolderEntryid", u"LastFolderName"}) run.setSetting(key, u"");
            run.apartment().TemplatesFolder = {};
            chooser().cmbSubFolder.Text = u"  Letters  ";
            she.Click(chooserName, button);
        });
        const MAPIFolder folder = run.templatesFolder();
        EXPECT_EQ(run.setting(u"LastFolderStoreid"), folder.StoreID());
        EXPECT_EQ(run.setting(u"LastFolderEntryid"), folder.EntryID());
        EXPECT_EQ(run.setting(u"LastFolderName"), defaultPath);
        EXPECT_EQ(run.setting(u"LastSubFolderName"), u"Letters");
        EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), folder.EntryID());
        if (const Inspector open = run.application().ActiveInspector()) run.driver().closeInspector(open, false);
    }
}

class CopyFaultTest : public testing::TestWithParam<std::u16string_view> {};

TEST_P(CopyFaultTest, AnErrorOfTheHostShowsTheStandardBoxAndTheWindowStays) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Offer", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        run.faults().failNth(u"Machine", u"Clipboard", 1, host_failure::Failed, u"In use");
        she.Click(chooserName, GetParam());
        EXPECT_TRUE(isChooserOpen());
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail." + std::u16string(GetParam()) + u"_Click - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error -2147467259: In use");
    EXPECT_EQ(run.lastBox().style, 16);
}

INSTANTIATE_TEST_SUITE_P(Buttons, CopyFaultTest, testing::Values(u"cmdCopyToClipBoard", u"cmdCopyHTMLToClipB"));

TEST(MaintenanceWithoutFolderTest, TheFolderKeysStayAndTheRestIsWritten) {
    TestRun run({.connected = false});
    openChooser(run, [&](ScriptedUser& she) {
        run.setSetting(u"LastFolderName", u"\\Kept");
        run.setSetting(u"LastFolderEntryid", u"00AA");
        chooser().cmbSubFolder.Text = u"Letters";
        she.Click(chooserName, u"cmdDelete");
    });
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Kept");
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), u"00AA");
    EXPECT_EQ(run.setting(u"LastSubFolderName"), u"Letters");
    EXPECT_FALSE(run.apartment().TemplatesFolder);
}

}  // namespace
}  // namespace lorvane::support
