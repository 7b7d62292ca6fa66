#include <gtest/gtest.h>

#include "ChooserRig.h"

/// The four ways in which the chooser opens, and what a double or a right click does in each.
namespace lorvane::support {
namespace {

using namespace host;
using respond::frmEmail;

void expectHidden(std::initializer_list<const Control*> controls) {
    for (const Control* control : controls) {
        EXPECT_FALSE(control->Visible) << toUtf8(control->name());
        EXPECT_FALSE(control->Enabled) << toUtf8(control->name());
    }
}
void expectShown(std::initializer_list<const Control*> controls) {
    for (const Control* control : controls) {
        EXPECT_TRUE(control->Visible) << toUtf8(control->name());
        EXPECT_TRUE(control->Enabled) << toUtf8(control->name());
    }
}

class ChooserModesTest : public testing::Test {
protected:
    ChooserModesTest() { run.addTemplate(u"Offer", plain(u"Dear [FirstName]")); }
    void openCopying(Act act) {
        openChooserAs(
            run, [](frmEmail& form) { form.DisableInsert = true; }, std::move(act));
    }
    static void doubleClick(ScriptedUser& she) { she.DblClick(chooserName, u"lstEmails", 0); }
    TestRun run;
};

TEST_F(ChooserModesTest, PlainOpeningShowsAll) {
    openChooser(run, [](ScriptedUser&) {
        frmEmail& f = chooser();
        EXPECT_EQ(f.Caption.get(), u"Lorvane");
        expectShown({&f.cmdInsert, &f.cmdInsertWithFormat, &f.cmdCopyToClipBoard, &f.cmdCopyHTMLToClipB, &f.cmdNew, &f.cmdEdit, &f.cmdDelete, &f.mcmdInsert,
                     &f.mcmdInsertWithFormat, &f.mnuSeparator1, &f.mcmdEdit, &f.cmdCategorize, &f.mcmdDelete, &f.mnuSeparator, &f.cmdCopyCBWithFormatting,
                     &f.cmdCopyToCB});
    });
}

TEST_F(ChooserModesTest, CopyModeOffersNoInsertion) {
    openCopying([](ScriptedUser&) {
        frmEmail& f = chooser();
        EXPECT_EQ(f.Caption.get(), u"Templates");
        expectHidden({&f.mcmdInsert, &f.mcmdInsertWithFormat, &f.cmdInsert, &f.cmdInsertWithFormat, &f.mnuSeparator1});
        expectShown({&f.cmdCopyToClipBoard, &f.cmdCopyHTMLToClipB, &f.cmdNew, &f.mcmdEdit});
    });
}

TEST_F(ChooserModesTest, NewMailModeOffersInsertionOnly) {
    openChooserAs(
        run, [](frmEmail& form) { form.NewMailUsingTempl = true; },
        [](ScriptedUser&) {
            frmEmail& f = chooser();
            EXPECT_EQ(f.Caption.get(), u"New Email Using Template");
            expectHidden({&f.cmdNew, &f.cmdEdit, &f.cmdDelete, &f.lblFldrMainBtns, &f.lblHide, &f.lblRightClick, &f.mcmdDelete, &f.cmdCopyToClipBoard,
                          &f.cmdCopyHTMLToClipB, &f.cmdCopyToCB, &f.cmdCopyCBWithFormatting, &f.mnuSeparator});
            expectShown({&f.mcmdInsert, &f.mcmdInsertWithFormat, &f.cmdInsert, &f.cmdInsertWithFormat});
        });
}

TEST_F(ChooserModesTest, ReplyModesKeepTheCopyButtonsButNotTheirMenuItems) {
    const std::u16string_view captions[] = {u"Reply Using Template", u"Reply To All Using Template", u"Forward Using Template"};
    for (std::int32_t kind = 1; kind <= 3; ++kind) {
        openChooserAs(
            run,
            [kind](frmEmail& form) {
                form.ReplyUsingTempl = true;
                form.ReplyKind = kind;
            },
            [&](ScriptedUser&) {
                frmEmail& f = chooser();
                EXPECT_EQ(f.Caption.get(), captions[kind - 1]);
                expectHidden({&f.cmdNew, &f.cmdEdit, &f.cmdDelete, &f.lblFldrMainBtns, &f.lblHide, &f.lblRightClick, &f.mcmdDelete, &f.cmdCopyCBWithFormatting,
                              &f.cmdCopyToCB, &f.mnuSeparator});
                expectShown({&f.cmdCopyToClipBoard, &f.cmdCopyHTMLToClipB, &f.cmdInsert, &f.cmdInsertWithFormat});
            });
    }
}

TEST_F(ChooserModesTest, TheMenuOffersWhatTheModeDoes) {
    struct Case {
        void (*prepare)(frmEmail&);
        Subjects captions;
    };
    const Case cases[] = {
        {[](frmEmail& form) { form.DisableInsert = true; }, {u"&Edit", u"&Categorize", u"&Delete", u"-", u"&Copy (with format)", u"Copy (text &only)"}},
        {[](frmEmail& form) { form.NewMailUsingTempl = true; }, {u"&Insert (text only)", u"Insert (with &format)", u"-", u"&Edit", u"&Categorize"}},
        {[](frmEmail& form) { form.ReplyUsingTempl = true; }, {u"&Insert (text only)", u"Insert (with &format)", u"-", u"&Edit", u"&Categorize"}},
    };
    for (const Case& turn : cases) {
        openChooserAs(run, turn.prepare, [&](ScriptedUser& she) {
            she.RightClick(chooserName, u"lstEmails", 0);
            Subjects captions;
            for (const auto& item : she.Menus().back().items) captions.push_back(item.caption);
            EXPECT_EQ(captions, turn.captions);
        });
    }
}

TEST_F(ChooserModesTest, WhatAModeHidesStaysHiddenBehindASearchAndACategory) {
    openChooserAs(
        run, [](frmEmail& form) { form.NewMailUsingTempl = true; },
        [](ScriptedUser& she) {
            she.Type(chooserName, u"txtSearch", u"o");
            she.Advance(1000);
            she.Select(chooserName, u"cmbCategories", 0);
            for (const Control* control : std::initializer_list<const Control*>{&chooser().cmdNew, &chooser().cmdEdit, &chooser().cmdDelete,
                                                                                &chooser().cmdCopyToClipBoard, &chooser().cmdCopyHTMLToClipB})
                EXPECT_FALSE(control->Visible) << toUtf8(control->name());
            EXPECT_TRUE(chooser().cmdInsert.Visible);
            EXPECT_TRUE(chooser().cmdInsert.Enabled);
        });
}

TEST_F(ChooserModesTest, HiddenMaintenanceButtonsGiveTheirLabelsWayToTheMode) {
    run.setSetting(u"ShowFldrMainBtns", u"False");
    openChooserAs(
        run, [](frmEmail& form) { form.ReplyUsingTempl = true; },
        [](ScriptedUser&) {
            expectHidden({&chooser().lblFldrMainBtns, &chooser().lblRightClick, &chooser().lblHide});
        });
}

TEST_F(ChooserModesTest, UnloadingForgetsTheMode) {
    openCopying([](ScriptedUser& she) {
        const Object keep(&chooser());
        frmEmail& f = chooser();
        f.NewMailUsingTempl = true;
        f.ReplyUsingTempl = true;
        f.ReplyKind = 3;
        f.AnsweredMail = Object(&f);
        she.CloseWindow(chooserName);
        EXPECT_FALSE(f.DisableInsert);
        EXPECT_FALSE(f.NewMailUsingTempl);
        EXPECT_FALSE(f.ReplyUsingTempl);
        EXPECT_EQ(f.ReplyKind, 0);
        EXPECT_FALSE(f.AnsweredMail);
    });
    openChooser(run, [](ScriptedUser&) {
        EXPECT_EQ(chooser().Caption.get(), u"Lorvane");
        EXPECT_TRUE(chooser().cmdInsert.Visible);
    });
}

TEST_F(ChooserModesTest, TheOpeningFlagKeepsTheCategoryStillUntilTheWindowIsUp) {
    run.addTemplate(u"Answer", plain(u"Text"), u"Sales");
    openChooserAs(
        run,
        [](frmEmail& form) {
            form.cmbCategories.ListIndex = 1;
            EXPECT_EQ(form.lstEmails.ListCount(), 2) << "the click is not answered yet";
        },
        [](ScriptedUser& she) {
            she.Select(chooserName, u"cmbCategories", 0);
            she.Select(chooserName, u"cmbCategories", 1);
            EXPECT_EQ(listed(), Subjects{u"Answer"});
        });
}

TEST_F(ChooserModesTest, ADoubleClickCopiesTextUnlessToldOtherwise) {
    for (const std::u16string_view choice : {u"", u"  ", u"Copy (text only)", u" Copy (text only) ", u"NOT FOUND"}) {
        run.setSetting(u"CopyDefaultFormat", choice);
        run.clipboard().clear();
        openCopying([](ScriptedUser& she) { doubleClick(she); });
        EXPECT_EQ(run.clipboardText(), u"Dear [FirstName]") << toUtf8(choice);
        EXPECT_FALSE(isChooserOpen());
    }
}

TEST_F(ChooserModesTest, ADoubleClickCopiesWithFormatWhereTheSettingSaysSo) {
    for (const std::u16string_view choice : {u"Copy (with format)", u"  Copy (with format) "}) {
        run.setSetting(u"CopyDefaultFormat", choice);
        run.clipboard().clear();
        openCopying([](ScriptedUser& she) { doubleClick(she); });
        EXPECT_TRUE(run.clipboardHtml());
        EXPECT_FALSE(isChooserOpen());
    }
}

TEST_F(ChooserModesTest, ADoubleClickEditsWhereTheSettingSaysSo) {
    run.setSetting(u"CopyDefaultFormat", u"Edit template");
    openCopying([](ScriptedUser& she) { doubleClick(she); });
    ASSERT_TRUE(run.application().ActiveInspector());
    EXPECT_EQ(run.application().ActiveInspector().CurrentItem().Subject(), u"Offer");
    EXPECT_FALSE(run.clipboardText());
}

TEST_F(ChooserModesTest, WithHiddenButtonsTheDoubleClickThatEditsDoesNothing) {
    run.setSetting(u"CopyDefaultFormat", u"Edit template");
    run.setSetting(u"ShowFldrMainBtns", u"False");
    openCopying([](ScriptedUser& she) {
        doubleClick(she);
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_FALSE(run.application().ActiveInspector());
    EXPECT_FALSE(run.clipboardText());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserModesTest, AnUnknownChoiceDoesNothing) {
    run.setSetting(u"CopyDefaultFormat", u"Fly");
    run.setSetting(u"InsertDefaultFormat", u"Fly");
    openCopying([](ScriptedUser& she) { doubleClick(she); });
    EXPECT_FALSE(run.clipboardText());
    const Inspector mail = run.newMail();
    openChooser(run, [](ScriptedUser& she) {
        doubleClick(she);
        EXPECT_TRUE(isChooserOpen());
    });
    EXPECT_EQ(run.bodyShown(mail), u"");
}

TEST_F(ChooserModesTest, ADoubleClickInsertsByItsSetting) {
    run.addTemplate(u"Bold", html(u"<HTML><BODY><B>Bold</B></BODY></HTML>"));
    for (const std::u16string_view choice : {u"", u" ", u"NOT FOUND", u" Insert (text only) ", u"Insert (text only)", u"Insert (with format)"}) {
        run.setSetting(u"InsertDefaultFormat", choice);
        const Inspector mail = run.newMail();
        run.focus(mail, model::EditorFieldName::Body);
        openChooser(run, [](ScriptedUser& she) {
            selectSubject(she, u"Bold");
            doubleClick(she);
        });
        EXPECT_EQ(run.bodyShown(mail), u"Bold");
        EXPECT_EQ(run.record(mail.CurrentItem()).body.find(u"<B>") != std::u16string::npos, choice == u"Insert (with format)");
    }
}

TEST_F(ChooserModesTest, ARightClickSelectsTheRowAndShowsTheMenu) {
    run.addTemplate(u"Zeta", plain(u"Text"));
    openChooser(run, [](ScriptedUser& she) {
        she.RightClick(chooserName, u"lstEmails", 1);
        EXPECT_EQ(chooser().lstEmails.ListIndex, 1);
        ASSERT_EQ(she.Menus().size(), 1U);
        Subjects captions;
        for (const auto& item : she.Menus()[0].items) captions.push_back(item.caption);
        EXPECT_EQ(captions, (Subjects{u"&Insert (text only)", u"Insert (with &format)", u"-", u"&Edit", u"&Categorize", u"&Delete", u"-",
                                      u"&Copy (with format)", u"Copy (text &only)"}));
        she.RightClick(chooserName, u"lstEmails");
        EXPECT_EQ(chooser().lstEmails.ListIndex, 1) << "below the last row nothing is selected anew";
        EXPECT_EQ(she.Menus().size(), 2U);
    });
}

TEST_F(ChooserModesTest, MenuItemsRunTheButtonsHandlers) {
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    const auto choose = [&](std::u16string_view item) {
        run.user().ChooseNext(std::u16string(item));
        openChooser(run, [](ScriptedUser& she) { she.RightClick(chooserName, u"lstEmails", 0); });
    };
    choose(u"mcmdInsert");
    EXPECT_EQ(run.bodyShown(mail), u"Dear John");
    choose(u"mcmdInsertWithFormat");
    EXPECT_EQ(run.bodyShown(mail), u"Dear JohnDear John");
    run.clipboard().clear();
    choose(u"cmdCopyToCB");
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName]");
    choose(u"cmdCopyCBWithFormatting");
    EXPECT_TRUE(run.clipboardHtml());
    run.user().AnswerNext({msgbox::Yes});
    choose(u"mcmdDelete");
    EXPECT_EQ(run.templatesFolder().Items().Count(), 0);
}

TEST_F(ChooserModesTest, TheMenusEditOpensTheTemplate) {
    run.user().ChooseNext(u"mcmdEdit");
    openChooser(run, [](ScriptedUser& she) { she.RightClick(chooserName, u"lstEmails", 0); });
    ASSERT_TRUE(run.application().ActiveInspector());
    EXPECT_EQ(run.application().ActiveInspector().CurrentItem().Subject(), u"Offer");
}

}  // namespace
}  // namespace lorvane::support
