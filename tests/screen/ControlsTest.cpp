#include "ScreenRig.h"
#include "host/TextFunctions.h"
#include "screen/TextMetrics.h"

namespace lorvane::screen {
namespace {

class ControlsTest : public ScreenTest {
protected:
    /// The sample window, up, with what it said so far forgotten.
    frmSample& shown() {
        frmSample& form = sample();
        form.Show(false);
        said().clear();
        return form;
    }
};

TEST_F(ControlsTest, EachCharacterRaisesItsEventsInOrder) {
    frmSample& form = shown();
    user.Type(u"frmSample", u"txtSearch", u"aB");
    EXPECT_EQ(said(), (Said{"KeyDown 65/0", "KeyPress 97", "Change a|1", "KeyUp 65", "KeyDown 66/1", "KeyPress 66", "Change aB|2", "KeyUp 66"}));
    EXPECT_EQ(form.focus(), &form.txtSearch);
}

TEST_F(ControlsTest, EachActIsToldBeforeItsHandlersRun) {
    shown();
    user.onAct([](std::u16string_view act) { said().push_back(host::toUtf8(act)); });
    user.Click(u"frmsample", u"CMDOK");
    user.Select(u"frmSample", u"lstLines", 0);
    user.Type(u"frmSample", u"txtSearch", u"a");
    user.Check(u"frmSample", u"chkTips", true);
    EXPECT_THROW(user.Click(u"frmSample", u"cmdNone"), host::HostError);
    user.CloseWindow(u"frmSample");
    EXPECT_EQ(said(), (Said{"act Click frmSample.cmdOK", "cmdOK_Click", "act Select frmSample.lstLines 0", "lstLines_Click 0", "act Type frmSample.txtSearch a",
                            "KeyDown 65/0", "KeyPress 97", "Change a|1", "KeyUp 65", "act Check frmSample.chkTips on", "chkTips_Click 1",
                            "act CloseWindow frmSample", "Unload", "gone"}));
}

TEST_F(ControlsTest, TypingGoesToTheCaretAndTakesTheSelectionsPlace) {
    frmSample& form = shown();
    form.txtOther.Text = u"abcdef";
    form.txtOther.SelStart = 3;
    user.Type(u"frmSample", u"txtOther", u"XY");
    EXPECT_EQ(form.txtOther.Text.get(), u"abcXYdef");
    form.txtOther.SelStart = 1;
    form.txtOther.SelLength = 4;
    user.Type(u"frmSample", u"txtOther", u"-");
    EXPECT_EQ(form.txtOther.Text.get(), u"a-def");
    EXPECT_EQ(form.txtOther.SelStart, 2);
}

TEST_F(ControlsTest, AHandlerSwallowsAKeyByItsCodeOrItsCharacter) {
    frmSample& form = shown();
    form.txtSearch.KeyDown = [](std::int32_t& code, std::int32_t) {
        if (code == 65) code = 0;
    };
    form.txtSearch.KeyPress = [](std::int32_t& character) {
        if (character == u'b') character = 0;
        if (character == u'c') character = u'*';
    };
    user.Type(u"frmSample", u"txtSearch", u"abcd");
    EXPECT_EQ(form.txtSearch.Text.get(), u"*d");
    EXPECT_EQ(said(), (Said{"KeyUp 65", "KeyUp 66", "Change *|1", "KeyUp 67", "Change *d|2", "KeyUp 68"}));
}

TEST_F(ControlsTest, SwallowedKeysMoveNoCaretAndEraseNothing) {
    frmSample& form = shown();
    form.txtSearch.Text = u"abc";
    form.txtSearch.SelStart = 2;
    form.txtSearch.KeyDown = [](std::int32_t& code, std::int32_t) { code = 0; };
    user.Key(u"frmSample", u"txtSearch", u"{LEFT}{DEL}{BS}");
    EXPECT_EQ(form.txtSearch.Text.get(), u"abc");
    EXPECT_EQ(form.txtSearch.SelStart, 2);
}

TEST_F(ControlsTest, TypingEndsWhereAHandlerClosesTheWindow) {
    frmSample& form = shown();
    form.atChange = [&form] { form.unload(); };
    user.Type(u"frmSample", u"txtSearch", u"abc");
    EXPECT_EQ(said(), (Said{"KeyDown 65/0", "KeyPress 97", "Change a|1", "Unload", "gone"}));
}

TEST_F(ControlsTest, TheRestOfTheKeysFollowsTheFocus) {
    frmSample& form = shown();
    form.atChange = [&form] { form.txtOther.SetFocus(); };
    user.Type(u"frmSample", u"txtSearch", u"abc");
    EXPECT_EQ(form.txtSearch.Text.get(), u"a");
    EXPECT_EQ(form.txtOther.Text.get(), u"bc");
}

TEST_F(ControlsTest, ABoxThatIsDisabledOnTheWayTakesNoMore) {
    frmSample& form = shown();
    form.atChange = [&form] { form.txtSearch.Enabled = false; };
    user.Type(u"frmSample", u"txtSearch", u"abc");
    EXPECT_EQ(form.txtSearch.Text.get(), u"a");
}

TEST_F(ControlsTest, TheCaretMovesAndErasesWholeCharacters) {
    frmSample& form = shown();
    form.txtOther.Text = u"a\U0001F600b\r\nc";
    user.Key(u"frmSample", u"txtOther", u"{END}{LEFT 2}{BS}");
    EXPECT_EQ(form.txtOther.Text.get(), u"a\U0001F600\r\nc");
    user.Key(u"frmSample", u"txtOther", u"{DEL}{BS}");
    EXPECT_EQ(form.txtOther.Text.get(), u"ac");
    user.Key(u"frmSample", u"txtOther", u"{HOME}{BS}{RIGHT}x+{HOME}{DEL}");
    EXPECT_EQ(form.txtOther.Text.get(), u"c");
    user.Key(u"frmSample", u"txtOther", u"{END}{DEL}de+{LEFT 2}");
    EXPECT_EQ(form.txtOther.SelStart, 1);
    EXPECT_EQ(form.txtOther.SelLength, 2);
    user.Key(u"frmSample", u"txtOther", u"{RIGHT}+{HOME}{LEFT}+{END}");
    EXPECT_EQ(form.txtOther.SelStart, 0);
    EXPECT_EQ(form.txtOther.SelLength, 3);
}

TEST_F(ControlsTest, KeysForTheDesktopGoToTheFocusedControl) {
    frmSample& form = shown();
    EXPECT_EQ(form.focus(), &form.txtSearch);
    screen().SendKeys(u"ab{TAB}xy+{TAB}{BS}{TAB}", true);
    EXPECT_EQ(form.txtSearch.Text.get(), u"a");
    EXPECT_EQ(form.txtOther.Text.get(), u"xy");
    EXPECT_EQ(form.focus(), &form.txtOther);
}

TEST_F(ControlsTest, KeysThatAreNotWaitedForComeWithTheNextPump) {
    frmSample& form = shown();
    screen().SendKeys(u"ab", false);
    EXPECT_EQ(form.txtSearch.Text.get(), u"");
    screen().DoEvents();
    EXPECT_EQ(form.txtSearch.Text.get(), u"ab");
    EXPECT_THROW(screen().SendKeys(u"{NOKEY}", false), host::HostError);
    screen().DoEvents();
    EXPECT_EQ(form.txtSearch.Text.get(), u"ab");
}

TEST_F(ControlsTest, TabGoesRoundWhatCanBeReached) {
    frmSample& form = shown();
    form.txtOther.Enabled = false;
    form.picPanel.Visible = false;
    std::vector<std::u16string_view> stops;
    for (int i = 0; i < 8; ++i) {
        screen().SendKeys(u"{TAB}", true);
        stops.push_back(form.focus()->name());
    }
    EXPECT_EQ(stops, (std::vector<std::u16string_view>{u"lstLines", u"cmbNames", u"optAll", u"optSome", u"chkTips", u"cmdOK", u"cmdCancel", u"txtSearch"}));
    screen().SendKeys(u"+{TAB}", true);
    EXPECT_EQ(form.focus(), &form.cmdCancel);
}

TEST_F(ControlsTest, KeysPressButtonsAndTurnBoxes) {
    shown();
    user.Key(u"frmSample", u"cmdOK", u"~");
    user.Key(u"frmSample", u"cmdOK", u" ");
    user.Key(u"frmSample", u"chkTips", u"  ");
    user.Key(u"frmSample", u"optSome", u" ");
    EXPECT_EQ(said(), (Said{"cmdOK_Click", "cmdOK_Click", "chkTips_Click 1", "chkTips_Click 0", "optSome_Click"}));
}

TEST_F(ControlsTest, EnterAndEscapePressTheButtonsMarkedForThem) {
    frmSample& form = shown();
    user.Key(u"frmSample", u"txtSearch", u"{ESC}");
    EXPECT_EQ(said(), (Said{"KeyDown 27/0", "KeyPress 27", "KeyUp 27"}));
    said().clear();
    form.cmdCancel.Cancel = true;
    form.cmdOK.Default = true;
    user.Key(u"frmSample", u"txtSearch", u"{ESC}");
    user.Key(u"frmSample", u"txtSearch", u"~");
    user.Key(u"frmSample", u"cmdCancel", u"~");
    EXPECT_EQ(said(), (Said{"cmdCancel_Click", "cmdOK_Click", "cmdCancel_Click"}));
    form.cmdCancel.Enabled = false;
    said().clear();
    user.Key(u"frmSample", u"lstLines", u"{ESC}");
    EXPECT_TRUE(said().empty());
}

TEST_F(ControlsTest, AltGoesByTheLettersOfCaptions) {
    frmSample& form = shown();
    user.Key(u"frmSample", u"cmdOK", u"%t");
    EXPECT_EQ(said(), (Said{"chkTips_Click 1"}));
    user.Key(u"frmSample", u"cmdOK", u"%s");
    EXPECT_EQ(form.focus(), &form.txtSearch);
    form.cmdOK.Caption = u"You && &me";
    user.Key(u"frmSample", u"txtSearch", u"%m");
    EXPECT_EQ(said(), (Said{"chkTips_Click 1", "cmdOK_Click"}));
}

TEST_F(ControlsTest, AListIsChosenFromByClicksAndKeys) {
    frmSample& form = shown();
    user.Click(u"frmSample", u"lstLines", 1);
    user.Click(u"frmSample", u"lstLines", 1);
    user.Key(u"frmSample", u"lstLines", u"{DOWN 5}{HOME}");
    user.Select(u"frmSample", u"lstLines", 0);
    EXPECT_EQ(said(), (Said{"lstLines_MouseDown 1 row 1", "lstLines_Click 1", "lstLines_MouseDown 1 row 1", "lstLines_Click 1", "lstLines_Click 2",
                            "lstLines_Click 0", "lstLines_Click 0"}));
    EXPECT_EQ(form.lstLines.Text(), u"one");
    EXPECT_EQ(refusal([&] { user.Select(u"frmSample", u"lstLines", 3); }), u"The control \"lstLines\" has no line 3.");
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"lstLines", -1); }), u"The control \"lstLines\" has no line -1.");
}

TEST_F(ControlsTest, ADoubleClickComesBehindItsClickAndARightOneChoosesNothing) {
    frmSample& form = shown();
    user.DblClick(u"frmSample", u"lstLines", 2);
    EXPECT_EQ(said(), (Said{"lstLines_MouseDown 1 row 2", "lstLines_Click 2", "lstLines_DblClick"}));
    said().clear();
    user.RightClick(u"frmSample", u"lstLines", 0);
    user.RightClick(u"frmSample", u"lstLines");
    EXPECT_EQ(said(), (Said{"lstLines_MouseDown 2 row 0", "lstLines_MouseDown 2 row -1"}));
    EXPECT_EQ(form.lstLines.ListIndex, 2);
}

TEST_F(ControlsTest, ADoubleClickEndsWhereItsClickClosesTheWindow) {
    frmSample& form = shown();
    form.lstLines.Click = [&form] { form.Hide(); };
    user.DblClick(u"frmSample", u"lstLines", 0);
    EXPECT_EQ(said(), (Said{"lstLines_MouseDown 1 row 0"}));
}

TEST_F(ControlsTest, ACombosLineIsItsTextAndTypingLeavesTheLines) {
    frmSample& form = shown();
    user.Select(u"frmSample", u"cmbNames", 1);
    EXPECT_EQ(form.cmbNames.Text.get(), u"two");
    user.Key(u"frmSample", u"cmbNames", u"{END}");
    user.Type(u"frmSample", u"cmbNames", u",x");
    EXPECT_EQ(form.cmbNames.ListIndex, -1);
    user.Key(u"frmSample", u"cmbNames", u"{DOWN}");
    EXPECT_EQ(said(), (Said{"cmbNames_Click two", "cmbNames_Change two,", "cmbNames_Change two,x", "cmbNames_Click one"}));
}

TEST_F(ControlsTest, OptionsExcludeEachOther) {
    frmSample& form = shown();
    user.Check(u"frmSample", u"optAll", true);
    user.Click(u"frmSample", u"optSome");
    user.Click(u"frmSample", u"optSome");
    EXPECT_FALSE(form.optAll.Value);
    EXPECT_EQ(said(), (Said{"optAll_Click", "optSome_Click"}));
    EXPECT_EQ(refusal([&] { user.Check(u"frmSample", u"optSome", false); }), u"The control \"optSome\" is an option: choosing another one turns it off.");
}

TEST_F(ControlsTest, CheckSetsAndClickTurns) {
    shown();
    user.Check(u"frmSample", u"chkTips", false);
    user.Check(u"frmSample", u"chkTips", true);
    user.Check(u"frmSample", u"chkTips", true);
    user.Click(u"frmSample", u"chkTips");
    EXPECT_EQ(said(), (Said{"chkTips_Click 1", "chkTips_Click 0"}));
    EXPECT_EQ(refusal([&] { user.Check(u"frmSample", u"cmdOK", true); }), u"The control \"cmdOK\" cannot be checked.");
}

TEST_F(ControlsTest, ThePointerIsOverALabelBeforeItClicksIt) {
    shown();
    user.Hover(u"frmSample", u"lblLink");
    user.Click(u"frmSample", u"lblLink");
    EXPECT_EQ(said(), (Said{"lblLink_MouseMove", "lblLink_MouseMove", "lblLink_Click"}));
}

TEST_F(ControlsTest, ThePointerOverTheWindowItselfIsHeardThere) {
    frmSample& form = shown();
    form.MouseMove = [] { said().push_back("Form_MouseMove"); };
    user.Hover(u"frmSample");
    EXPECT_EQ(said(), Said{"Form_MouseMove"});
    form.Hide();
    EXPECT_EQ(refusal([&] { user.Hover(u"frmSample"); }), u"The window \"frmSample\" is not open.");
}

TEST_F(ControlsTest, ASelectionStaysInsideTheTextOfAnyBox) {
    frmSample& form = shown();
    const auto expectInside = [](host::TextEntry& box) {
        box.Text = u"abc";
        box.SelStart = 9;
        EXPECT_EQ(box.SelStart, 3);
        box.SelStart = 1;
        box.SelLength = 9;
        EXPECT_EQ(box.SelLength, 2);
        box.Text = u"d";
        EXPECT_EQ(box.SelStart, 0);
        EXPECT_EQ(box.SelLength, 0);
    };
    expectInside(form.txtOther);
    expectInside(form.cmbNames);
    form.cmbNames.AddItem(u"x");
    form.cmbNames.Text = u"abc";
    form.cmbNames.SelStart = 2;
    form.cmbNames.ListIndex = form.cmbNames.ListCount() - 1;
    EXPECT_EQ(form.cmbNames.Text.get(), u"x");
    EXPECT_EQ(form.cmbNames.SelStart, 0) << "a line that is chosen is a new text";
}

TEST_F(ControlsTest, WhatCannotBeReachedIsRefusedInASentence) {
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"cmdOK"); }), u"The window \"frmSample\" is not open.");
    frmSample& form = shown();
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"cmdNone"); }), u"The window \"frmSample\" has no control \"cmdNone\".");
    form.cmdOK.Enabled = false;
    EXPECT_EQ(refusal([&] { user.Click(u"frmsample", u"CMDOK"); }), u"The control \"cmdOK\" of the window \"frmSample\" is disabled.");
    form.cmdOK.Visible = false;
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"cmdOK"); }), u"The control \"cmdOK\" of the window \"frmSample\" is hidden.");
    form.picPanel.Visible = false;
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"cmdInside"); }), u"The control \"cmdInside\" of the window \"frmSample\" is hidden with \"picPanel\".");
    EXPECT_EQ(refusal([&] { user.Type(u"frmSample", u"lstLines", u"x"); }), u"The control \"lstLines\" takes no text.");
    EXPECT_EQ(refusal([&] { user.Select(u"frmSample", u"txtOther", 0); }), u"The control \"txtOther\" has no lines to choose from.");
    EXPECT_EQ(refusal([&] { user.Click(u"frmSample", u"tmrBeat"); }), u"The control \"tmrBeat\" of the window \"frmSample\" is disabled.");
    EXPECT_TRUE(said().empty());
}

TEST_F(ControlsTest, AClickBringsItsWindowToTheFront) {
    shown();
    inner().Show(false);
    user.Click(u"frmSample", u"cmdOK");
    EXPECT_EQ(user.Windows().back().name, u"frmSample");
}

TEST_F(ControlsTest, WindowsOfTheHostStandBesideThoseOfTheAddIn) {
    class Explorer final : public DesktopWindow {
    public:
        std::u16string caption() const override { return u"Inbox"; }
        void keys(const std::vector<KeyStroke>&) override {}
    } explorer;
    desktop.open(explorer);
    EXPECT_NO_THROW(windows.requireInput(explorer));
    user.then([&](ScriptedUser& she) {
        EXPECT_EQ(she.Windows(), (std::vector<WindowList::Row>{{u"", u"Inbox", false}, {u"frmSample", u"A sample", true}}));
        EXPECT_EQ(refusal([&] { windows.requireInput(explorer); }), u"The window \"Inbox\" is covered by the modal window \"frmSample\".");
        she.CloseWindow(u"frmSample");
    });
    sample().Show(true);
    EXPECT_EQ(screen().GetForegroundWindow(), desktop.handleOf(explorer));
    desktop.close(explorer);
}

TEST_F(ControlsTest, SizesArePublishedWhereThereAreNone) {
    frmSample& form = sample();
    EXPECT_GT(form.Width, 0);
    EXPECT_GT(form.Height, 0);
    EXPECT_GT(form.cmdOK.Width, 0);
    form.picPanel.Height = 480;
    form.unload();
    EXPECT_EQ(said().back(), "gone");
}

TEST_F(ControlsTest, TextHasAWidthThatNeverVaries) {
    EXPECT_EQ(screen().TextWidth(u""), 0);
    EXPECT_EQ(screen().TextWidth(u"il"), 120);
    EXPECT_EQ(screen().TextWidth(u"Mab"), 330);
    EXPECT_EQ(screen().TextWidth(u"ab") + screen().TextWidth(u"cd"), screen().TextWidth(u"abcd"));
    EXPECT_EQ(screen().TextWidth(u"\U0001F600"), 180);
}

TEST_F(ControlsTest, WindowsAndControlsNameTheirMembersBothWays) {
    frmSample& form = shown();
    for (const char16_t* name : {u"Caption", u"Show", u"txtSearch"}) EXPECT_EQ(form.memberText(form.memberNamed(name).value()), name);
    const host::Object box = form.txtSearch.handle();
    for (const char16_t* name : {u"Text", u"SetFocus"}) EXPECT_EQ(box.dispatch()->memberText(box.dispatch()->memberNamed(name).value()), name);
    EXPECT_EQ(form.memberText(host::Member::Subject), u"Subject") << "a member of the surface, though the window has none";
    EXPECT_EQ(form.memberText(static_cast<host::Member>(0x2FFF)), u"?");
}

TEST_F(ControlsTest, TheScreenNamesAMemberItDoesNotHave) {
    try {
        screen().call(host::Member::FolderExists, {u"x"});
        FAIL();
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), 438);
        EXPECT_NE(error.description().find(u"Screen.FolderExists"), std::u16string::npos);
    }
}

}  // namespace
}  // namespace lorvane::screen
