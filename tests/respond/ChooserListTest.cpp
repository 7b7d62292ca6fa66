#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "mailstore/MemoryStore.h"
#include "store/FoldersRig.h"

/// Filling the list: what stops it, what stays, and what is said.
namespace lorvane::support {
namespace {

using namespace host;
using respond::ListResult;

void addThree(const TestRun& run) {
    for (const std::u16string_view subject : {u"Alpha", u"Beta", u"Gamma"}) run.addTemplate(subject, plain(u"Text"));
}

TEST(UpdateEmailListTest, GivesTheWidestSubjectToTheScrollExtent) {
    TestRun run;
    run.addTemplate(u"Short", plain(u"Text"));
    run.addTemplate(u"A much longer subject", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        const double width = apartment().machine.screen().TextWidth(u"A much longer subject");
        EXPECT_EQ(chooser().lstEmails.HorizontalExtent, static_cast<std::int32_t>(width + 10));
    });
}

TEST(UpdateEmailListTest, LinesHoldThePositionBehindTheSubject) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(chooser().lstEmails.List(0), u"Alpha" + std::u16string(595, u' ') + u"1");
        EXPECT_EQ(store::GetListId(chooser().lstEmails.List(2)), 3);
    });
}

TEST(UpdateEmailListTest, ASubjectOf600CharactersIsListed) {
    TestRun run;
    run.addTemplate(std::u16string(600, u'x'), plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), Subjects{std::u16string(600, u'x')}); });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, ASubjectOf601CharactersStopsTheRun) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    run.addTemplate(u"b" + std::u16string(600, u'x'), plain(u"Text"));
    run.addTemplate(u"Gamma", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), Subjects{u"Alpha"}) << "the lines added so far stay";
        EXPECT_FALSE(chooser().lstEmails.Visible) << "the empty state lies over them";
        EXPECT_EQ(chooser().MousePointer, 11) << "this path does not reset it";
        EXPECT_EQ(chooser().lastListResult(), ListResult::Failed);
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.UpdateEmailList - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 5: Invalid procedure call or argument");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(UpdateEmailListTest, AFailedRunLeavesPointerAndScrollExtentAsTheyWere) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    const MailItem second = run.addTemplate(u"A subject that is much longer", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        const std::int32_t extent = chooser().lstEmails.HorizontalExtent;
        run.driver().purge(second);
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Failed);
        EXPECT_EQ(chooser().lstEmails.HorizontalExtent, extent);
        EXPECT_EQ(chooser().MousePointer, 11);
        EXPECT_EQ(chooser().txtSearch.Text.get(), u"");
    });
}

TEST(UpdateEmailListTest, TheSharedSuffixCountsAmongThe600) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(team, std::u16string(592, u'x'), plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        EXPECT_EQ(listed(), Subjects{}) << "592 and the suffix's 9";
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(listed(), Subjects{std::u16string(592, u'x')});
    });
    EXPECT_EQ(run.boxes().size(), 1U);
}

TEST(UpdateEmailListTest, ATemplateDeletedMeanwhileStopsTheRun) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    const MailItem second = run.addTemplate(u"Beta", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        run.driver().purge(second);
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Failed);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.UpdateEmailList - Lorvane");
    EXPECT_EQ(run.lastBox().text.substr(0, 7), u"Error -") << "a failure of the host";
}

TEST(UpdateEmailListTest, AnotherProgramsDeletionIsFoundOut) {
    const std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(u"Personal Folders", 2);
    TestRun run({.store = store});
    addThree(run);
    const MailItem second = run.templatesFolder().Items().Item(2);
    openChooser(run, [&](ScriptedUser&) {
        store->removeItem(second.EntryID());
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Failed);
    });
    EXPECT_EQ(run.boxes().size(), 1U);
}

TEST(UpdateEmailListTest, AKeyStopsTheRunAtItsNextRow) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser& she) {
        she.atPump(2, [](ScriptedUser& typist) { typist.Key(chooserName, u"txtSearch", u"{LEFT}"); });
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Stopped);
        EXPECT_EQ(listed(), Subjects{u"Alpha"}) << "the list keeps the rows it had";
        EXPECT_EQ(chooser().MousePointer, 0);
        EXPECT_GT(chooser().lstEmails.HorizontalExtent, 0);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, ClosingTheWindowEndsTheRunInSilence) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser& she) {
        const Object keep(&chooser());
        auto& form = chooser();
        she.atPump(2, [](ScriptedUser& user) { user.Click(chooserName, u"cmdClose"); });
        EXPECT_EQ(form.UpdateEmailList(), ListResult::Superseded);
        EXPECT_FALSE(isChooserOpen());
        EXPECT_EQ(form.lstEmails.ListCount(), 1);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, ClosingTheWindowUnderASearchChangesNothingOnIt) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser& she) {
        const Object keep(&chooser());
        auto& form = chooser();
        she.Type(chooserName, u"txtSearch", u"a");
        she.atPump(1, [](ScriptedUser& user) { user.CloseWindow(chooserName); });
        she.Advance(1000);
        EXPECT_FALSE(form.isLoaded());
        EXPECT_TRUE(form.lblSearching.Visible) << "left as the run had it";
        EXPECT_FALSE(form.cmdInsert.Enabled);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, ANestedRunTakesTheListOver) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser& she) {
        she.atPump(2, [](ScriptedUser&) { EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Filled); });
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Superseded);
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"Beta", u"Gamma"})) << "each line once";
        EXPECT_EQ(chooser().lastListResult(), ListResult::Filled);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, TheOverTakenRunsCallerLeavesTheWindowAlone) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales");
    run.addTemplate(u"Beta", plain(u"Text"), u"Sales");
    openChooser(run, [&](ScriptedUser& she) {
        // While the category's run stands at its second row, another run finds nothing and leaves the empty state.
        she.atPump(2, [](ScriptedUser&) {
            chooser().txtSearch.Text = u"no such subject";
            EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Empty);
        });
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_FALSE(chooser().lstEmails.Visible) << "the category's handler did not show the list";
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, ThePrivateScopeWithoutItsTableIsEmpty) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser&) {
        store::templateTables().rsPrivateTemplates = {};
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Empty);
        EXPECT_EQ(chooser().MousePointer, 0);
    });
}

TEST(UpdateEmailListTest, SharedRowsAreLookedForByTheirCategories) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(team, u"Ours", plain(u"Text"));
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        store::templateTables().rsSharedCategories = {};
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Filled);
        EXPECT_EQ(listed(), Subjects{u"Mine"}) << "the shared templates are there, but their categories are not";
    });
}

TEST(UpdateEmailListTest, ASharedFolderThatWasLostSinceLeavesThePrivateTemplates) {
    TestRun run;
    run.addTemplate(shareFolder(run), u"Ours", plain(u"Text"), u"Team");
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) { EXPECT_EQ(listed(), (Subjects{u"Mine", u"Ours (Shared)"})); });
    run.driver().removeStore(u"Team");
    openChooser(run, [&](ScriptedUser& she) {
        EXPECT_TRUE(store::templateTables().rsSharedCategories) << "kept from before";
        EXPECT_FALSE(store::templateTables().rsSharedTemplates);
        EXPECT_EQ(listed(), Subjects{u"Mine"});
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
    });
    ASSERT_EQ(run.boxes().size(), 1U) << "the warning, and nothing else";
    EXPECT_EQ(run.lastBox().title, u"Shared Templates Folder Not Found - Lorvane");
}

TEST(UpdateEmailListTest, ACategoryWhoseRunASearchTookOverTurnsTheControlsOnAgain) {
    TestRun run;
    shareFolder(run);
    for (const std::u16string_view subject : {u"Alpha", u"Beta", u"Gamma"}) run.addTemplate(subject, plain(u"Text"), u"Sales");
    openChooser(run, [&](ScriptedUser& she) {
        she.Type(chooserName, u"txtSearch", u"b");
        she.atPump(1, [](ScriptedUser& user) { user.Advance(1000); });
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{u"Beta"});
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_EQ(chooser().lstEmails.ListIndex, 0);
        for (const Control* control : chooser().controls()) EXPECT_EQ(control->Enabled, control->kind() != ControlKind::Timer) << toUtf8(control->name());
    });
}

TEST(UpdateEmailListTest, ASearchWhoseRunACategoryTookOverTurnsTheButtonsOnAndTheTimerOff) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    run.addTemplate(u"Beta", plain(u"Text"), u"Sales");
    openChooser(run, [&](ScriptedUser& she) {
        she.Type(chooserName, u"txtSearch", u"a");
        she.atPump(2, [](ScriptedUser& user) { user.Select(chooserName, u"cmbCategories", 1); });
        she.Advance(1000);
        EXPECT_EQ(listed(), Subjects{u"Beta"});
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_TRUE(chooser().cmdInsert.Enabled);
        EXPECT_FALSE(chooser().tmrCompleteType.Enabled);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(UpdateEmailListTest, LoadingAndSearchingShowTheirStatesMeanwhile) {
    TestRun run;
    addThree(run);
    openChooser(run, [&](ScriptedUser& she) {
        she.atPump(1, [](ScriptedUser&) {
            EXPECT_TRUE(chooser().lblLoadingEmails.Visible);
            EXPECT_FALSE(chooser().lblSearching.Visible);
            EXPECT_FALSE(chooser().lblNoEmails.Visible);
            EXPECT_FALSE(chooser().lstEmails.Visible);
            EXPECT_EQ(chooser().MousePointer, 11);
        });
        chooser().UpdateEmailList();
        chooser().txtSearch.Text = u"a";
        she.atPump(1, [](ScriptedUser&) {
            EXPECT_TRUE(chooser().lblSearching.Visible);
            EXPECT_FALSE(chooser().lblNoEmails.Visible);
        });
        chooser().UpdateEmailList();
    });
}

TEST(UpdateEmailListTest, ASearchTextThatTheTableRefusesShowsBothBoxes) {
    TestRun run({.instruments = true});
    addThree(run);
    openChooser(run, [&](ScriptedUser&) {
        chooser().txtSearch.Text = u"a";
        run.faults().failNth(u"Recordset", u"Filter", 1, 3001, u"Refused");
        EXPECT_EQ(chooser().UpdateEmailList(), ListResult::Failed);
    });
    ASSERT_EQ(run.boxes().size(), 2U);
    EXPECT_EQ(run.boxes()[0].title, u"FilterEmailSubject - Lorvane");
    EXPECT_EQ(run.boxes()[0].text, u"Error 3001: Refused");
    EXPECT_EQ(run.boxes()[1].title, u"frmEmail.UpdateEmailList - Lorvane");
}

}  // namespace
}  // namespace lorvane::support
