#include <gtest/gtest.h>

#include "ChooserRig.h"

/// The window itself: captions, what it hides and shows, what it turns off.
namespace lorvane::support {
namespace {

using namespace host;
using respond::frmEmail;

struct ControlCase {
    std::u16string_view control, caption = u"", toolTip = u"";
};

/// All controls in the order of the window; those of the menu in the order of the menu.
constexpr ControlCase controls[] = {
    {u"picLorvane"},
    {u"lblShowTips", u"Show quick start tips"},
    {u"lblChangeFolder", u"Select Templates Folder"},
    {u"picTemplatesFldr"},
    {u"txtFolder"},
    {u"cmdPickfolder", u"&Folder...", u"Choose folder for Lorvane templates."},
    {u"cmbSubFolder", u"", u"Choose Sub folder for Lorvane templates."},
    {u"lblSubFolder", u"Sub Folder:"},
    {u"Label2", u"Templates Folder Settings"},
    {u"txtSearch", u"Search for:"},
    {u"cmdClear", u"&Clear"},
    {u"fraShow", u"Show:"},
    {u"optAll", u"All templates"},
    {u"optPrivate", u"Private only"},
    {u"optShared", u"Shared only"},
    {u"cmbCategories", u"Category:"},
    {u"lstEmails", u"Template List:"},
    {u"picBlankBkGrnd"},
    {u"lblNoEmails", u"No matching templates were found in the selected folder."},
    {u"lblSearching", u"Searching ..."},
    {u"lblLoadingEmails", u"Loading E-mails ..."},
    {u"picPreviewPane"},
    {u"fraPreviewPane"},
    {u"txtSubject"},
    {u"txtPreview"},
    {u"Label6", u"Formatting has been removed from preview"},
    {u"cmdNew", u"&New", u"Create New Template"},
    {u"cmdEdit", u"&Edit", u"Edit Chosen Template"},
    {u"cmdDelete", u"&Delete", u"Delete Chosen Template"},
    {u"lblFldrMainBtns", u"Show Template Maintenance Buttons"},
    {u"lblHide", u"<<< Hide Buttons"},
    {u"lblRightClick", u"or Right-Click on list for options"},
    {u"cmdInsert", u"Insert (text only)", u"Insert text in e-mail"},
    {u"cmdInsertWithFormat", u"Insert (with format)"},
    {u"cmdCopyToClipBoard", u"&Copy (text only)", u"Copy template text to Clipboard"},
    {u"cmdCopyHTMLToClipB", u"Copy (with format)", u"Copy template with formatting to Clipboard"},
    {u"cmdClose", u"&Close"},
    {u"cmdHelp", u"&Help"},
    {u"tmrCompleteType"},
    {u"mnuTemplateMaint", u"Template Maintenance"},
    {u"mcmdInsert", u"&Insert (text only)"},
    {u"mcmdInsertWithFormat", u"Insert (with &format)"},
    {u"mnuSeparator1", u"-"},
    {u"mcmdEdit", u"&Edit"},
    {u"cmdCategorize", u"&Categorize"},
    {u"mcmdDelete", u"&Delete"},
    {u"mnuSeparator", u"-"},
    {u"cmdCopyCBWithFormatting", u"&Copy (with format)"},
    {u"cmdCopyToCB", u"Copy (text &only)"},
};

TEST(ChooserWindowTest, ControlsHaveTheirCaptionsAndToolTips) {
    TestRun run;
    const Object made = makeObject<frmEmail>();
    const auto& form = *implementation<frmEmail>(made);
    EXPECT_EQ(form.Caption.get(), u"Lorvane");
    ASSERT_EQ(form.controls().size(), std::size(controls));
    for (std::size_t place = 0; place < std::size(controls); ++place) {
        const Control& control = *form.controls()[place];
        EXPECT_EQ(control.name(), controls[place].control);
        EXPECT_EQ(control.Caption.get(), controls[place].caption) << toUtf8(control.name());
        EXPECT_EQ(control.ToolTipText.get(), controls[place].toolTip) << toUtf8(control.name());
        EXPECT_EQ(control.Visible, control.name() != u"picTemplatesFldr") << toUtf8(control.name());
        EXPECT_EQ(control.Enabled, control.kind() != ControlKind::Timer) << toUtf8(control.name());
    }
    EXPECT_EQ(form.txtSubject.Text.get(), u"Select a template from the list to preview");
    EXPECT_EQ(form.txtPreview.Text.get(), u"");
    EXPECT_EQ(form.ReplyKind, 0);
    for (const bool member : {form.DisableInsert.get(), form.NewMailUsingTempl.get(), form.ReplyUsingTempl.get(), form.FromInspector.get()})
        EXPECT_FALSE(member);
}

TEST(ChooserWindowTest, TheFolderPanelOpensAndClosesWithItsLabel) {
    TestRun run;
    openChooser(run, [](ScriptedUser& she) {
        EXPECT_FALSE(chooser().picTemplatesFldr.Visible);
        she.Click(chooserName, u"lblChangeFolder");
        EXPECT_TRUE(chooser().picTemplatesFldr.Visible);
        EXPECT_EQ(chooser().lblChangeFolder.Caption.get(), u"Hide Select Template Folder Buttons");
        she.Click(chooserName, u"lblChangeFolder");
        EXPECT_FALSE(chooser().picTemplatesFldr.Visible);
        EXPECT_EQ(chooser().lblChangeFolder.Caption.get(), u"Select Templates Folder");
    });
}

void expectButtons(bool shown) {
    frmEmail& f = chooser();
    for (const Control* control : std::initializer_list<const Control*>{&f.cmdNew, &f.cmdEdit, &f.cmdDelete, &f.lblHide}) EXPECT_EQ(control->Visible, shown);
    for (const Control* control : std::initializer_list<const Control*>{&f.lblRightClick, &f.lblFldrMainBtns}) EXPECT_EQ(control->Visible, !shown);
}

TEST(ChooserWindowTest, TheMaintenanceButtonsHideAndComeBack) {
    TestRun run;
    run.setSetting(u"ShowFldrMainBtns", u"True");
    openChooser(run, [&](ScriptedUser& she) {
        expectButtons(true);
        she.Click(chooserName, u"lblHide");
        expectButtons(false);
        EXPECT_EQ(run.setting(u"ShowFldrMainBtns"), u"False");
        she.Click(chooserName, u"lblFldrMainBtns");
        expectButtons(true);
        EXPECT_EQ(run.setting(u"ShowFldrMainBtns"), u"True");
    });
}

TEST(ChooserWindowTest, WithoutTheSettingTheFirstClickWritesTrue) {
    TestRun run;
    openChooser(run, [&](ScriptedUser& she) {
        she.Click(chooserName, u"lblHide");
        expectButtons(true);
        EXPECT_EQ(run.setting(u"ShowFldrMainBtns"), u"True");
        she.Click(chooserName, u"lblHide");
        expectButtons(false);
    });
}

/// The buttons, boxes and lists that are off, without what is hidden in the mode or never was on.
Subjects turnedOff() {
    Subjects off;
    for (const Control* control : chooser().controls())
        if (!control->Enabled && control->kind() != ControlKind::Timer && control->kind() != ControlKind::Option) off.emplace_back(control->name());
    return off;
}

TEST(ChooserWindowTest, ToggleControlsTurnsExactlyItsControls) {
    TestRun run;
    openChooser(run, [](ScriptedUser&) {
        chooser().ToggleControls(false);
        EXPECT_EQ(turnedOff(), (Subjects{u"txtSearch", u"cmdClear", u"cmbCategories", u"cmdNew", u"cmdEdit", u"cmdDelete", u"cmdInsert", u"cmdCopyToClipBoard",
                                         u"cmdCopyHTMLToClipB", u"cmdClose", u"cmdHelp"}));
        chooser().ToggleControls(true);
        EXPECT_EQ(turnedOff(), Subjects{});
    });
}

TEST(ChooserWindowTest, DisableButtonsLeavesTheBoxTheUserTypesIn) {
    TestRun run;
    openChooser(run, [](ScriptedUser&) {
        chooser().DisableButtons();
        EXPECT_EQ(turnedOff(), (Subjects{u"cmdClear", u"cmdNew", u"cmdEdit", u"cmdDelete", u"cmdInsert", u"cmdClose", u"cmdHelp"}));
        chooser().EnableButtons();
        EXPECT_EQ(turnedOff(), Subjects{});
    });
}

TEST(ChooserWindowTest, EnableButtonsTakesTheCopyModeUpAgain) {
    TestRun run;
    openChooserAs(
        run, [](frmEmail& form) { form.DisableInsert = true; },
        [](ScriptedUser&) {
            chooser().DisableButtons();
            chooser().cmdCopyToClipBoard.Visible = false;
            chooser().EnableButtons();
            EXPECT_EQ(turnedOff(), (Subjects{u"cmdInsert", u"cmdInsertWithFormat", u"mcmdInsert", u"mcmdInsertWithFormat", u"mnuSeparator1"}));
            EXPECT_TRUE(chooser().cmdCopyToClipBoard.Visible);
        });
}

TEST(ChooserWindowTest, CloseUnloads) {
    TestRun run;
    openChooser(run, [](ScriptedUser& she) { she.Click(chooserName, u"cmdClose"); });
    EXPECT_TRUE(run.user().leftUp().empty());
    EXPECT_FALSE(isChooserOpen());
}

TEST(ChooserWindowTest, APreviewOfATemplateThatIsGoneShowsTheStandardBox) {
    TestRun run;
    run.addTemplate(u"Alpha", plain(u"Text"));
    const MailItem second = run.addTemplate(u"Beta", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        run.driver().purge(second);
        selectSubject(she, u"Beta");
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.lstEmails_Click - Lorvane");
}

}  // namespace
}  // namespace lorvane::support
