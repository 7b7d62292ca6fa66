#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "store/CategoryFiles.h"

/// Categories and scopes: what narrows the list by a click.
namespace lorvane::support {
namespace {

using namespace host;

class ChooserScopeTest : public testing::Test {
protected:
    ChooserScopeTest() {
        run.addTemplate(u"Mine", plain(u"Text"), u"Private, Both");
        run.addTemplate(team, u"Ours", plain(u"Text"), u"Team, Both");
    }
    static Subjects categories() { return linesOf(chooser().cmbCategories); }
    static void choose(ScriptedUser& she, std::u16string_view category) {
        const Subjects lines = categories();
        for (std::size_t line = 0; line < lines.size(); ++line)
            if (lines[line] == category) return she.Select(chooserName, u"cmbCategories", static_cast<std::int32_t>(line));
        FAIL() << "no such category";
    }
    TestRun run;
    MAPIFolder team = shareFolder(run);
};

TEST_F(ChooserScopeTest, OptionsShowTheirFolders) {
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_EQ(listed(), (Subjects{u"Mine", u"Ours (Shared)"}));
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(listed(), Subjects{u"Ours"});
        she.Click(chooserName, u"optPrivate");
        EXPECT_EQ(listed(), Subjects{u"Mine"});
        she.Click(chooserName, u"optAll");
        EXPECT_EQ(listed(), (Subjects{u"Mine", u"Ours (Shared)"}));
        EXPECT_EQ(chooser().lstEmails.ListIndex, 0);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserScopeTest, OptionsOfferTheirCategories) {
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_EQ(categories(), (Subjects{u"", u"Both", u"Private", u"Team"}));
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(categories(), (Subjects{u"", u"Both", u"Team"}));
        she.Click(chooserName, u"optPrivate");
        EXPECT_EQ(categories(), (Subjects{u"", u"Both", u"Private"}));
    });
}

TEST_F(ChooserScopeTest, ATableThatIsMissingIsLoadedOnTheClick) {
    run.setSetting(u"LoadTemplateDefault", u"1");
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_FALSE(store::templateTables().rsSharedTemplates);
        she.Click(chooserName, u"optAll");
        EXPECT_EQ(listed(), (Subjects{u"Mine", u"Ours (Shared)"}));
    });
}

TEST_F(ChooserScopeTest, AnOptionWritesNoFile) {
    run.setSetting(u"LoadTemplateDefault", u"1");
    openChooser(run, [](ScriptedUser& she) {
        const Files files = apartment().machine.files();
        EXPECT_TRUE(files.FileExists(store::privateCategoriesPath()));
        files.DeleteFile(store::privateCategoriesPath());
        for (const std::u16string_view option : {u"optAll", u"optShared", u"optPrivate"}) she.Click(chooserName, option);
        EXPECT_TRUE(store::templateTables().rsSharedCategories) << "rebuilt with its table";
        EXPECT_FALSE(files.FileExists(store::privateCategoriesPath()));
        EXPECT_FALSE(files.FileExists(store::sharedCategoriesPath()));
    });
}

TEST_F(ChooserScopeTest, ACategoryOfAnotherCaseIsNotKept) {
    openChooser(run, [](ScriptedUser& she) {
        for (const std::u16string_view text : {u"both", u" Both", u"Bot"}) {
            chooser().cmbCategories.Text = std::u16string(text);
            she.Click(chooserName, chooser().optShared.Value ? u"optAll" : u"optShared");
            EXPECT_EQ(chooser().cmbCategories.ListIndex, 0) << toUtf8(text);
        }
    });
}

TEST_F(ChooserScopeTest, ATableThatIsThereIsNotLoadedAgain) {
    openChooser(run, [&](ScriptedUser& she) {
        run.addTemplate(u"Later", plain(u"Text"));
        she.Click(chooserName, u"optPrivate");
        EXPECT_EQ(listed(), Subjects{u"Mine"});
    });
}

TEST_F(ChooserScopeTest, TheCategoryIsKeptWhereTheNewScopeOffersIt) {
    openChooser(run, [](ScriptedUser& she) {
        choose(she, u"Both");
        she.Click(chooserName, u"optShared");
        EXPECT_EQ(chooser().cmbCategories.Text.get(), u"Both");
        EXPECT_EQ(listed(), Subjects{u"Ours"});
        choose(she, u"Team");
        she.Click(chooserName, u"optPrivate");
        EXPECT_EQ(chooser().cmbCategories.ListIndex, 0);
        EXPECT_EQ(chooser().cmbCategories.Text.get(), u"");
        EXPECT_EQ(listed(), Subjects{u"Mine"});
    });
}

TEST_F(ChooserScopeTest, ACategoryNarrowsTheListAndTheEmptyLineWidensItAgain) {
    openChooser(run, [](ScriptedUser& she) {
        choose(she, u"Team");
        EXPECT_EQ(listed(), Subjects{u"Ours (Shared)"});
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Ours");
        choose(she, u"");
        EXPECT_EQ(listed().size(), 2U);
    });
}

TEST_F(ChooserScopeTest, WhileACategoryIsListedTheControlsAreOff) {
    openChooser(run, [](ScriptedUser& she) {
        she.atPump(1, [](ScriptedUser&) {
            auto& form = chooser();
            for (const Control* control : std::initializer_list<const Control*>{
                     &form.cmdClear, &form.cmdClose, &form.cmdCopyHTMLToClipB, &form.cmdCopyToClipBoard, &form.cmdDelete, &form.cmdEdit, &form.cmdHelp,
                     &form.cmdInsert, &form.cmdNew, &form.cmbCategories, &form.txtSearch, &form.optAll, &form.optPrivate, &form.optShared})
                EXPECT_FALSE(control->Enabled) << toUtf8(control->name());
        });
        choose(she, u"Both");
        auto& form = chooser();
        for (const Control* control : std::initializer_list<const Control*>{&form.cmdClear, &form.cmdClose, &form.cmdInsert, &form.cmbCategories,
                                                                            &form.txtSearch, &form.optAll, &form.optPrivate, &form.optShared})
            EXPECT_TRUE(control->Enabled) << toUtf8(control->name());
    });
}

TEST_F(ChooserScopeTest, ACategoryWithoutTemplatesSaysThatNoneWereFound) {
    openChooser(run, [&](ScriptedUser& she) {
        she.Type(chooserName, u"txtSearch", u"zzz");
        choose(she, u"Both");
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
        EXPECT_EQ(chooser().lblNoEmails.Caption.get(), u"No templates were found in the selected folder.");
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserCategoryTest, WithoutSharingTheOptionsStayOff) {
    TestRun run;
    run.addTemplate(u"Mine", plain(u"Text"), u"Sales");
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_TRUE(chooser().optPrivate.Value);
        for (const auto* option : {&chooser().optAll, &chooser().optPrivate, &chooser().optShared}) EXPECT_FALSE(option->Enabled);
        EXPECT_EQ(listed(), Subjects{u"Mine"});
    });
}

TEST(ChooserCategoryTest, ACategoryIsFoundInAnyCaseAndBehindABlank) {
    TestRun run;
    run.addTemplate(u"One", plain(u"Text"), u"Sales, Support");
    run.addTemplate(u"Two", plain(u"Text"), u"SUPPORT");
    run.addTemplate(u"Three", plain(u"Text"), u"Supporters");
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_EQ(linesOf(chooser().cmbCategories), (Subjects{u"", u"Sales", u"Support", u"Supporters"}));
        she.Select(chooserName, u"cmbCategories", 2);
        EXPECT_EQ(listed(), (Subjects{u"One", u"Two"}));
    });
}

TEST(ChooserCategoryTest, ACategoryWithAQuoteFindsNothing) {
    TestRun run;
    run.addTemplate(u"One", plain(u"Text"), u"Jane's");
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ChooserInListTest, LinesAreComparedWholeWithCaseAndTheFirstOneIsLeftOut) {
    TestRun run;
    run.addTemplate(u"One", plain(u"Text"), u"Sales,Support");
    openChooser(run, [](ScriptedUser&) {
        const ComboBox& combo = chooser().cmbCategories;
        EXPECT_EQ(chooser().InList(combo, u"Support"), 2);
        EXPECT_EQ(chooser().InList(combo, u"support"), 0);
        EXPECT_EQ(chooser().InList(combo, u"Sale"), 0);
        EXPECT_EQ(chooser().InList(combo, u" Sales"), 0);
        EXPECT_EQ(chooser().InList(combo, u"Sales "), 0);
        EXPECT_EQ(chooser().InList(combo, u"Sales"), 1);
        EXPECT_EQ(chooser().InList(combo, u""), 0);
    });
}

TEST(ChooserScopeFaultTest, AnErrorOfAClickShowsTheStandardBoxAndTheWindowStays) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Mine", plain(u"Text"));
    shareFolder(run);
    openChooser(run, [&](ScriptedUser& she) {
        run.faults().failNth(u"Screen", u"Show", 1, host_failure::Failed, u"No window left");
        store::templateTables().rsSharedTemplates = {};
        she.Click(chooserName, u"optShared");
        EXPECT_TRUE(isChooserOpen());
    });
    ASSERT_FALSE(run.boxes().empty());
    EXPECT_EQ(run.boxes().front().title, u"frmEmail.optShared_Click - Lorvane");
    EXPECT_EQ(run.boxes().front().text, u"Error -2147467259: No window left");
}

}  // namespace
}  // namespace lorvane::support
