#include <gtest/gtest.h>

#include "ChooserRig.h"

/// The window itself: captions, what it hides and shows, links that answer the pointer.
namespace lorvane::support {
namespace {

using namespace host;
using respond::frmEmail;

struct CaptionCase {
    std::u16string_view control, caption, toolTip;
};

constexpr CaptionCase captions[] = {
    {u"lblShowTips", u"Show quick start tips", u""},
    {u"lblChangeFolder", u"Select Templates Folder", u""},
    {u"cmdPickfolder", u"&Folder...", u"Choose folder for Lorvane templates."},
    {u"cmbSubFolder", u"", u"Choose Sub folder for Lorvane templates."},
    {u"lblSubFolder", u"Sub Folder:", u""},
    {u"Label2", u"Templates Folder Settings", u""},
    {u"cmdClear", u"&Clear", u""},
    {u"optAll", u"All templates", u""},
    {u"optPrivate", u"Private only", u""},
    {u"optShared", u"Shared only", u""},
    {u"lblSearching", u"Searching ...", u""},
    {u"lblLoadingEmails", u"Loading E-mails ...", u""},
    {u"Label6", u"Formatting has been removed from preview", u""},
    {u"cmdNew", u"&New", u"Create New Template"},
    {u"cmdEdit", u"&Edit", u"Edit Chosen Template"},
    {u"cmdDelete", u"&Delete", u"Delete Chosen Template"},
    {u"lblFldrMainBtns", u"Show Template Maintenance Buttons", u""},
    {u"lblHide", u"<<< Hide Buttons", u""},
    {u"lblRightClick", u"or Right-Click on list for options", u""},
    {u"cmdInsert", u"Insert (text only)", u"Insert text in e-mail"},
    {u"cmdInsertWithFormat", u"Insert (with format)", u""},
    {u"cmdCopyToClipBoard", u"&Copy (text only)", u"Copy template text to Clipboard"},
    {u"cmdCopyHTMLToClipB", u"Copy (with format)", u"Copy template with formatting to Clipboard"},
    {u"cmdClose", u"&Close", u""},
    {u"cmdHelp", u"&Help", u""},
    {u"mnuTemplateMaint", u"Template Maintenance", u""},
};

TEST(ChooserWindowTest, ControlsHaveTheirCaptionsAndToolTips) {
    TestRun run;
    openChooser(run, [](ScriptedUser&) {
        for (const CaptionCase& row : captions) {
            const Control* control = chooser().control(row.control);
            ASSERT_NE(control, nullptr) << toUtf8(row.control);
            EXPECT_EQ(control->Caption.get(), row.caption);
            EXPECT_EQ(control->ToolTipText.get(), row.toolTip);
        }
    });
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

TEST(ChooserWindowTest, TipsChangeTheBannerAndTheSetting) {
    TestRun run;
    openChooser(run, [&](ScriptedUser&) {
        chooser().HideTips();
        EXPECT_EQ(run.setting(u"ShowTips"), u"False");
        EXPECT_EQ(chooser().picLorvane.Height, 480);
        EXPECT_TRUE(chooser().lblShowTips.Visible);
        chooser().ShowTips();
        EXPECT_EQ(run.setting(u"ShowTips"), u"True");
        EXPECT_EQ(chooser().picLorvane.Height, 1440);
        EXPECT_FALSE(chooser().lblShowTips.Visible);
    });
}

TEST(ChooserWindowTest, LinksAreOrangeUnderThePointerAndBlueElsewhere) {
    constexpr std::int32_t orange = 33023, blue = 16711680;
    TestRun run;
    openChooser(run, [&](ScriptedUser& she) {
        frmEmail& f = chooser();
        EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
        she.Hover(chooserName, u"lblChangeFolder");
        EXPECT_EQ(f.lblChangeFolder.ForeColor, orange);
        she.Hover(chooserName, u"picLorvane");
        EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
        she.Hover(chooserName, u"lblShowTips");
        EXPECT_EQ(f.lblShowTips.ForeColor, orange);
        she.Click(chooserName, u"lblChangeFolder");
        she.Hover(chooserName, u"lblChangeFolder");
        she.Hover(chooserName, u"Label2");
        EXPECT_EQ(f.lblChangeFolder.ForeColor, blue);
    });
}

TEST(ChooserWindowTest, ToggleControlsTurnsExactlyItsControls) {
    TestRun run;
    openChooser(run, [](ScriptedUser&) {
        frmEmail& f = chooser();
        f.ToggleControls(false);
        std::vector<std::u16string> off;
        for (const Control* control : f.controls())
            if (!control->Enabled && control->kind() != ControlKind::Timer && control->kind() != ControlKind::Option) off.emplace_back(control->name());
        EXPECT_EQ(off, (Subjects{u"txtSearch", u"cmdClear", u"cmbCategories", u"cmdNew", u"cmdEdit", u"cmdDelete", u"cmdInsert", u"cmdCopyToClipBoard",
                                 u"cmdCopyHTMLToClipB", u"cmdClose", u"cmdHelp"}));
        f.ToggleControls(true);
        for (const std::u16string& name : off) EXPECT_TRUE(f.control(name)->Enabled);
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
