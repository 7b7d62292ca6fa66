#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "store/CategoryFiles.h"
#include "store/FoldersRig.h"

/// What the user sees when the chooser opens, with each state of the folders.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view hint = u"Select a template from the list to preview";
constexpr std::u16string_view noneInFolder = u"No templates were found in the selected folder.";

void expectEmptyState(std::u16string_view text) {
    EXPECT_FALSE(chooser().lstEmails.Visible);
    EXPECT_TRUE(chooser().picBlankBkGrnd.Visible);
    EXPECT_TRUE(chooser().lblNoEmails.Visible);
    EXPECT_FALSE(chooser().lblSearching.Visible);
    EXPECT_FALSE(chooser().lblLoadingEmails.Visible);
    EXPECT_EQ(chooser().lblNoEmails.Caption.get(), text);
    EXPECT_EQ(chooser().txtSubject.Text.get(), hint);
    EXPECT_EQ(chooser().txtPreview.Text.get(), u"");
}

TEST(ChooserOpeningTest, ListsTheTemplatesInOrderAndPreviewsTheFirst) {
    TestRun run;
    run.addTemplate(u"beta", plain(u"Second text"));
    run.addTemplate(u"Alpha", html(u"<HTML><BODY><B>First</B> text</BODY></HTML>"));
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"beta"}));
        EXPECT_EQ(chooser().lstEmails.ListIndex, 0);
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Alpha");
        EXPECT_EQ(chooser().txtPreview.Text.get(), u"First text");
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_FALSE(chooser().picBlankBkGrnd.Visible);
        EXPECT_EQ(chooser().focus(), &chooser().txtSearch);
        EXPECT_EQ(chooser().Caption.get(), u"Lorvane");
        EXPECT_EQ(chooser().MousePointer, 0);
    });
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, TheProgressWindowIsGoneBeforeTheListShows) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        for (const auto& window : she.Windows()) EXPECT_NE(window.name, u"frmProgress");
    });
    EXPECT_TRUE(run.user().leftUp().size() == 1 && run.user().leftUp()[0] == u"frmEmail");
}

TEST(ChooserOpeningTest, AnEmptyFolderShowsTheEmptyState) {
    TestRun run;
    openChooser(run, [&](ScriptedUser&) { expectEmptyState(noneInFolder); });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, WithoutSharingThePrivateFolderIsTheOnlyScope) {
    TestRun run;
    run.setSetting(u"LoadTemplateDefault", u"2");
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_TRUE(chooser().optPrivate.Value);
        for (const auto* option : {&chooser().optAll, &chooser().optPrivate, &chooser().optShared}) EXPECT_FALSE(option->Enabled);
        EXPECT_EQ(listed(), Subjects{u"Mine"});
    });
    EXPECT_FALSE(store::templateTables().rsSharedTemplates);
}

struct ScopeCase {
    std::u16string_view byDefault;
    Subjects expected;
    std::u16string_view option;
};

class ChooserScopeAtOpening : public testing::TestWithParam<ScopeCase> {};

TEST_P(ChooserScopeAtOpening, FollowsTheSetting) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"B mine", plain(u"Text"));
    run.addTemplate(team, u"A ours", plain(u"Text"));
    run.addTemplate(team, u"", plain(u"Text"));
    run.setSetting(u"LoadTemplateDefault", GetParam().byDefault);
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), GetParam().expected);
        for (const auto* option : {&chooser().optAll, &chooser().optPrivate, &chooser().optShared}) {
            EXPECT_EQ(option->Value, option->name() == GetParam().option);
            EXPECT_TRUE(option->Enabled);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Settings, ChooserScopeAtOpening,
                         testing::Values(ScopeCase{u"", {u"A ours (Shared)", u"B mine", u"NO SUBJECT (Shared)"}, u"optAll"},
                                         ScopeCase{u"0", {u"A ours (Shared)", u"B mine", u"NO SUBJECT (Shared)"}, u"optAll"},
                                         ScopeCase{u"1", {u"B mine"}, u"optPrivate"}, ScopeCase{u"2", {u"A ours", u"NO SUBJECT"}, u"optShared"}));

TEST(ChooserOpeningTest, ADefaultScopeThatIsNoNumberIsToldAndEndsTheLoading) {
    TestRun run;
    shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"));
    run.setSetting(u"LoadTemplateDefault", u"all");
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{}); });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"13 Type mismatch");
    EXPECT_EQ(run.lastBox().style, 64);
}

TEST(ChooserOpeningTest, WithoutAPrivateFolderTheListIsEmptyAndNothingIsSaid) {
    TestRun run({.connected = false});
    openChooser(run, [&](ScriptedUser&) {
        expectEmptyState(noneInFolder);
        EXPECT_TRUE(chooser().cmdNew.Visible) << "the loading went on to its end";
        EXPECT_FALSE(chooser().optAll.Enabled);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, ALostPrivateFolderEndsTheLoadingWithAMessage) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"));
    run.setSetting(u"LastFolderEntryid", u"00AA");
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_TRUE(chooser().optAll.Enabled) << "the step that disables it was not reached";
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Program has encountered an unknown error.");
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
    EXPECT_EQ(run.lastBox().style, 64);
}

TEST(ChooserOpeningTest, ARunTimeErrorIsShownByNumberAndEndsTheLoading) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Mine", plain(u"Text"));
    run.faults().failNth(u"NameSpace", u"GetFolderFromID", 1, 5);
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{}); });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"5 Invalid procedure call or argument");
}

TEST(ChooserOpeningTest, ALostSharedFolderIsToldOnceAndThePrivateOneGoesOn) {
    TestRun run;
    shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"));
    run.driver().removeStore(u"Team");
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"Mine"}); });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Shared Templates Folder Not Found - Lorvane");
    EXPECT_EQ(run.setting(u"SharedTemplFldrPath"), u"");
}

TEST(ChooserOpeningTest, SharingWithoutAChosenFolderIsSilent) {
    TestRun run;
    run.setSetting(u"SharedTemplates", u"True");
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{u"Mine"});
        EXPECT_TRUE(chooser().optAll.Value);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, ARenamedPrivateFolderIsFollowed) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"));
    rename(run.templatesFolder(), u"Letters");
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"Mine"}); });
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Personal Folders\\Meravix Settings\\Letters");
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, ARefusedPrivateFolderShowsItsMessage) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"));
    run.driver().setRights(run.templatesFolder(), model::FolderRights::None);
    openChooser(run, [&](ScriptedUser&) { expectEmptyState(noneInFolder); });
    ASSERT_FALSE(run.boxes().empty());
    EXPECT_EQ(run.boxes().front().title, u"No Permission - Lorvane");
    EXPECT_EQ(run.boxes().front().text.substr(0, 62), u"You do not have permission to access the private folder. Pleas");
}

TEST(ChooserOpeningTest, ARefusedSharedFolderLeavesThePrivateTemplates) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"));
    run.addTemplate(team, u"Ours", plain(u"Text"));
    run.driver().setRights(team, model::FolderRights::None);
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"Mine"}); });
    EXPECT_EQ(run.boxes().front().title, u"No Permission - Lorvane");
}

TEST(ChooserOpeningTest, PostsAreCachedWithTheirCategoriesAndNeverListed) {
    TestRun run;
    run.addTemplate(u"Mail", plain(u"Text"), u"Letters");
    addPost(run, run.templatesFolder(), u"Post", u"Notices");
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{u"Mail"});
        EXPECT_EQ(linesOf(chooser().cmbCategories), (Subjects{u"", u"Letters", u"Notices"}));
        EXPECT_EQ(store::templateTables().rsPrivateTemplates.RecordCount(), 2);
    });
}

TEST(ChooserOpeningTest, AFolderOfPostsAloneShowsAnEmptyList) {
    TestRun run;
    addPost(run, run.templatesFolder(), u"Post");
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_TRUE(chooser().lstEmails.Visible) << "the run itself was complete";
    });
}

TEST(ChooserOpeningTest, ClosingLetsTheListAndThePrivateTableGo) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"), u"Letters");
    run.addTemplate(team, u"Ours", plain(u"Text"));
    openChooser(run);
    const store::TemplateTables& tables = store::templateTables();
    EXPECT_FALSE(tables.rsPrivateTemplates);
    EXPECT_TRUE(tables.rsSharedTemplates);
    EXPECT_TRUE(tables.rsPrivateCategories);
    EXPECT_TRUE(tables.rsSharedCategories);
}

TEST(ChooserOpeningTest, OpeningAgainShowsWhatChangedMeanwhile) {
    TestRun run;
    const MailItem first = run.addTemplate(u"First", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"First"}); });
    run.driver().purge(first);
    run.addTemplate(u"Second", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{u"Second"}); });
}

TEST(ChooserOpeningTest, TheCategoriesAreWrittenToTheirFilesBeforeTheListFills) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"), u"Letters");
    run.addTemplate(team, u"Ours", plain(u"Text"), u"Team");
    EXPECT_FALSE(store::StorageFoldersExist());
    openChooser(run);
    for (const auto& [path, name] : {std::pair(store::privateCategoriesPath(), u"Letters"), std::pair(store::sharedCategoriesPath(), u"Team")}) {
        const Recordset table = makeRecordset();
        ASSERT_TRUE(store::LoadRSFromFile(table, path));
        EXPECT_EQ(table.RecordCount(), 1);
        EXPECT_EQ(table.Fields(u"strCategory").text(), name);
    }
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, WithoutSharingOnlyThePrivateFileIsWritten) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.setSetting(u"SharedTemplates", u"False");
    run.addTemplate(u"Mine", plain(u"Text"), u"Letters");
    run.addTemplate(team, u"Ours", plain(u"Text"), u"Team");
    openChooser(run);
    const Files files = apartment().machine.files();
    EXPECT_TRUE(files.FileExists(store::privateCategoriesPath()));
    EXPECT_FALSE(files.FileExists(store::sharedCategoriesPath()));
    EXPECT_FALSE(store::templateTables().rsSharedTemplates);
}

TEST(ChooserOpeningTest, AFileThatCannotBeWrittenIsToldAndTheWindowComesUp) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"), u"Letters");
    ASSERT_TRUE(store::qz7mCreateStorageFolders());
    apartment().machine.files().CreateFolder(store::privateCategoriesPath());
    openChooser(run, [](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{u"Mine"});
        EXPECT_EQ(linesOf(chooser().cmbCategories), (Subjects{u"", u"Letters"}));
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
}

TEST(ChooserOpeningTest, AnEmptyPrivateFolderBesideASharedOneShowsTheSharedOne) {
    TestRun run;
    run.addTemplate(shareFolder(run), u"Ours", plain(u"Text"));
    openChooser(run, [](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{u"Ours (Shared)"});
        ASSERT_TRUE(store::templateTables().rsPrivateTemplates);
        EXPECT_EQ(store::templateTables().rsPrivateTemplates.RecordCount(), 0);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserOpeningTest, MaintenanceButtonsFollowTheirSetting) {
    struct Case {
        std::u16string_view value;
        bool shown;
    };
    for (const Case& turn : {Case{u"", true}, Case{u"True", true}, Case{u"False", false}}) {
        TestRun run;
        run.setSetting(u"ShowFldrMainBtns", turn.value);
        openChooser(run, [&](ScriptedUser&) {
            auto& form = chooser();
            for (const Control* control : std::initializer_list<const Control*>{&form.cmdNew, &form.cmdEdit, &form.cmdDelete, &form.lblHide})
                EXPECT_EQ(control->Visible, turn.shown);
            for (const Control* control : std::initializer_list<const Control*>{&form.lblRightClick, &form.lblFldrMainBtns})
                EXPECT_EQ(control->Visible, !turn.shown);
        });
    }
}

}  // namespace
}  // namespace lorvane::support
