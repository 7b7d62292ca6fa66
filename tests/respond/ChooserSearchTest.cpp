#include <gtest/gtest.h>

#include "ChooserRig.h"

/// Typing in the search box, and the second that the search waits for the end of it.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view searchBox = u"txtSearch";

class ChooserSearchTest : public testing::Test {
protected:
    ChooserSearchTest() {
        run.addTemplate(u"It's an offer", plain(u"Text"), u"Sales, Support");
        run.addTemplate(u"Invoice", plain(u"Text"), u"Sales");
        run.addTemplate(u"Offer two", plain(u"Text"));
    }
    static void search(ScriptedUser& she, std::u16string_view text) {
        she.Type(chooserName, searchBox, text);
        she.Advance(1000);
    }
    static std::u16string emptyText() { return chooser().lblNoEmails.Visible ? chooser().lblNoEmails.Caption.get() : u""; }
    TestRun run;
};

TEST_F(ChooserSearchTest, NothingHappensBeforeASecondIsOver) {
    openChooser(run, [](ScriptedUser& she) {
        she.Type(chooserName, searchBox, u"o");
        she.Advance(999);
        EXPECT_EQ(listed().size(), 3U);
        EXPECT_TRUE(chooser().tmrCompleteType.Enabled);
        EXPECT_EQ(chooser().tmrCompleteType.Interval, 1000);
        she.Advance(1);
        EXPECT_EQ(listed(), (Subjects{u"Invoice", u"It's an offer", u"Offer two"}));
        EXPECT_FALSE(chooser().tmrCompleteType.Enabled);
    });
}

TEST_F(ChooserSearchTest, EachKeyRestartsTheWait) {
    openChooser(run, [](ScriptedUser& she) {
        she.Type(chooserName, searchBox, u"off");
        she.Advance(900);
        she.Type(chooserName, searchBox, u"er");
        she.Advance(900);
        EXPECT_EQ(listed().size(), 3U);
        she.Advance(100);
        EXPECT_EQ(listed(), (Subjects{u"It's an offer", u"Offer two"}));
    });
}

TEST_F(ChooserSearchTest, TheSearchRunsOnceAndTheTimerRests) {
    openChooser(run, [&](ScriptedUser& she) {
        search(she, u"offer");
        const auto pumps = she.pumpCount();
        she.Advance(10000);
        EXPECT_EQ(she.pumpCount(), pumps);
    });
}

TEST_F(ChooserSearchTest, AfterASearchTheFirstLineIsChosenAndButtonsAreOn) {
    openChooser(run, [](ScriptedUser& she) {
        she.atPump(1, [](ScriptedUser&) {
            for (const Control* control :
                 std::initializer_list<const Control*>{&chooser().cmdInsert, &chooser().cmdClear, &chooser().cmdDelete, &chooser().cmdHelp})
                EXPECT_FALSE(control->Enabled);
            EXPECT_TRUE(chooser().txtSearch.Enabled) << "the user is typing in it";
        });
        search(she, u"two");
        EXPECT_EQ(chooser().lstEmails.ListIndex, 0);
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Offer two");
        EXPECT_TRUE(chooser().cmdInsert.Enabled);
        EXPECT_TRUE(chooser().cmdClear.Enabled);
    });
}

TEST_F(ChooserSearchTest, ASingleQuoteIsFound) {
    openChooser(run, [](ScriptedUser& she) {
        search(she, u"it's");
        EXPECT_EQ(listed(), Subjects{u"It's an offer"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserSearchTest, OuterBlanksAreCutAndBlanksAloneAreAnEmptySearch) {
    openChooser(run, [](ScriptedUser& she) {
        search(she, u"  offer two  ");
        EXPECT_EQ(listed(), Subjects{u"Offer two"});
        she.Click(chooserName, u"cmdClear");
        search(she, u"   ");
        EXPECT_EQ(listed().size(), 3U);
    });
}

TEST_F(ChooserSearchTest, NoMatchSaysSoByWhetherThereWasAText) {
    openChooser(run, [this](ScriptedUser& she) {
        search(she, u"nothing like it");
        EXPECT_EQ(emptyText(), u"No matching templates were found in the selected folder.");
        EXPECT_FALSE(chooser().lstEmails.Visible);
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Select a template from the list to preview");
        EXPECT_EQ(chooser().txtPreview.Text.get(), u"");
        store::templateTables().rsPrivateTemplates = {};
        she.Click(chooserName, u"cmdClear");
        she.Advance(1000);
        EXPECT_EQ(emptyText(), u"No templates were found in the selected folder.");
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserSearchTest, ClearEmptiesTheBoxTakesTheFocusAndSearchesAgain) {
    openChooser(run, [](ScriptedUser& she) {
        search(she, u"invoice");
        EXPECT_EQ(listed(), Subjects{u"Invoice"});
        she.Click(chooserName, u"cmdClear");
        EXPECT_EQ(chooser().txtSearch.Text.get(), u"");
        EXPECT_EQ(chooser().focus(), &chooser().txtSearch);
        EXPECT_EQ(listed(), Subjects{u"Invoice"});
        she.Advance(1000);
        EXPECT_EQ(listed().size(), 3U);
    });
}

TEST_F(ChooserSearchTest, ClearOfAnEmptyBoxStartsNoWait) {
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdClear");
        EXPECT_FALSE(chooser().tmrCompleteType.Enabled);
    });
}

TEST_F(ChooserSearchTest, TypingWhileTheListFillsStopsItAndSearchesASecondLater) {
    openChooser(run, [](ScriptedUser& she) {
        she.atPump(2, [](ScriptedUser& typist) { typist.Type(chooserName, searchBox, u"x"); });
        she.Type(chooserName, searchBox, u"o");
        she.Advance(1000);
        EXPECT_EQ(listed().size(), 1U) << "the list keeps the rows it had";
        EXPECT_FALSE(chooser().lblNoEmails.Visible) << "it is not known to be empty";
        EXPECT_TRUE(chooser().tmrCompleteType.Enabled);
        EXPECT_TRUE(chooser().cmdInsert.Enabled);
        she.Advance(999);
        EXPECT_EQ(listed().size(), 1U);
        she.Advance(1);
        EXPECT_EQ(chooser().txtSearch.Text.get(), u"ox");
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserSearchTest, AKeyThatChangesNothingBreaksTheRunOffAndStartsTheWaitAnew) {
    openChooser(run, [](ScriptedUser& she) {
        she.Type(chooserName, searchBox, u"o");
        she.atPump(3, [](ScriptedUser& typist) { typist.Key(chooserName, searchBox, u"{LEFT}"); });
        she.Advance(1000);
        EXPECT_EQ(chooser().lastListResult(), respond::ListResult::Stopped);
        EXPECT_EQ(listed(), (Subjects{u"Invoice", u"It's an offer"})) << "the rows so far stay";
        EXPECT_EQ(chooser().lstEmails.ListIndex, 0);
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Invoice");
        EXPECT_TRUE(chooser().tmrCompleteType.Enabled);
        EXPECT_EQ(chooser().tmrCompleteType.Interval, 1000);
        EXPECT_TRUE(chooser().cmdDelete.Enabled);
        she.Advance(999);
        EXPECT_EQ(listed().size(), 2U);
        she.Advance(1);
        EXPECT_EQ(listed(), (Subjects{u"Invoice", u"It's an offer", u"Offer two"}));
        EXPECT_FALSE(chooser().tmrCompleteType.Enabled);
        EXPECT_TRUE(chooser().lstEmails.Visible);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserSearchTest, ACategoryThatIsTypedCountsTrimmedAndInAnyCase) {
    openChooser(run, [](ScriptedUser& she) {
        chooser().cmbCategories.Text = u"  SUPPORT ";
        search(she, u"o");
        EXPECT_EQ(listed(), Subjects{u"It's an offer"});
    });
}

TEST_F(ChooserSearchTest, MatchesAreListedByTheirSubjectsWhereverTheTextStands) {
    openChooser(run, [](ScriptedUser& she) {
        search(she, u"OFFER");
        EXPECT_EQ(listed(), (Subjects{u"It's an offer", u"Offer two"}));
    });
}

TEST_F(ChooserSearchTest, CategoryAndTextBothHaveToHold) {
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        ASSERT_EQ(chooser().cmbCategories.Text.get(), u"Sales");
        EXPECT_EQ(listed(), (Subjects{u"Invoice", u"It's an offer"}));
        search(she, u"offer");
        EXPECT_EQ(listed(), Subjects{u"It's an offer"});
    });
}

TEST_F(ChooserSearchTest, TheSelectedLineIsTheRowOfTheNarrowedTable) {
    openChooser(run, [](ScriptedUser& she) {
        search(she, u"offer");
        selectSubject(she, u"Offer two");
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Offer two");
    });
}

TEST(ChooserSharedSearchTest, TheSuffixIsPartOfTheSubjectInTheWholeListOnly) {
    TestRun run;
    const MAPIFolder team = shareFolder(run);
    run.addTemplate(u"Mine", plain(u"Text"));
    run.addTemplate(team, u"Ours", plain(u"Text"));
    openChooser(run, [](ScriptedUser& she) {
        she.Type(chooserName, searchBox, u"(Shared)");
        she.Advance(1000);
        EXPECT_EQ(listed(), Subjects{u"Ours (Shared)"});
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(listed(), Subjects{});
    });
}

TEST(ChooserCopySearchTest, AfterASearchTheCopyModeHoldsStill) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooserAs(
        run, [](respond::frmEmail& form) { form.DisableInsert = true; },
        [](ScriptedUser& she) {
            she.Type(chooserName, searchBox, u"m");
            she.Advance(1000);
            EXPECT_FALSE(chooser().cmdInsert.Enabled);
            EXPECT_FALSE(chooser().cmdInsert.Visible);
            EXPECT_TRUE(chooser().cmdClear.Enabled);
        });
}

TEST(ChooserTimerFaultTest, ATimerThatCannotBeSetShowsTheBoxOfItsHandler) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Mine", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        run.faults().failNth(u"Screen", u"SetTimer", 1, host_failure::Failed, u"No timer left");
        she.Type(chooserName, searchBox, u"m");
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.txtSearch_Change - Lorvane");
}

}  // namespace
}  // namespace lorvane::support
