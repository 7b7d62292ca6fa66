#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "cli/Program.h"

/// Each command runs the add-in's own windows and handlers: the log of a run shows what the user did and the host calls that came of it, in one order.
namespace lorvane::cli::test {
namespace {

using Lines = std::vector<std::string>;

/// The log of a command that ends with this status.
Lines logOf(const Program& lorvane, Program::Words words, int status = 0, const Call& call = {}) {
    words.insert(words.end(), {"--log", "log.txt"});
    const Ended ended = lorvane(words, call);
    EXPECT_EQ(ended.status, status) << ended;
    Lines lines;
    std::istringstream stream(lorvane.content("log.txt"));
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// What the user did and which windows of the add-in came and went.
Lines windowsOf(const Lines& log) {
    Lines lines;
    std::ranges::copy_if(log, std::back_inserter(lines), [](const std::string& line) {
        const bool window = line.starts_with("call Screen.Load ") || line.starts_with("call Screen.Show ") || line.starts_with("call Screen.Hide ") ||
                            line.starts_with("call Screen.Unload ") || line.starts_with("call Screen.MsgBox ");
        return line.starts_with("act ") || (window && line.find("frmProgress") == std::string::npos);
    });
    return lines;
}

/// The lines between two that begin so.
Lines between(const Lines& log, std::string_view first, std::string_view last) {
    const auto begins = [&](std::string_view start) { return [=](const std::string& line) { return line.starts_with(start); }; };
    const auto from = std::ranges::find_if(log, begins(first));
    const auto to = std::find_if(from, log.end(), begins(last));
    EXPECT_NE(to, log.end()) << first << " … " << last;
    return from == to ? Lines() : Lines(from + 1, to);
}

/// The first line that was expected and does not follow in its place; "" where all are there in this order.
std::string missingFrom(const Lines& log, const Lines& expected) {
    auto at = log.begin();
    for (const std::string& start : expected) {
        at = std::find_if(at, log.end(), [&](const std::string& line) { return line.starts_with(start); });
        if (at == log.end()) return start;
        ++at;
    }
    return {};
}

const Lines textOnlySteps = {
    "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"LastFolderStoreid\"",
    "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"LastSubFolderName\"",
    "put Recordset.AbsolutePosition",
    "call NameSpace.GetItemFromID",
    "call Settings.GetSetting \"kelvorn\", \"0x951592256\", \"TemplatesLogFilePath\"",
    "call Application.ActiveInspector",
    "call MailItem.Save",
    "get SafeMailItem.Fields 4194334",
    "call Screen.Hide frmEmail",
    "call Inspector.Activate",
    "call Inspector.Display",
    "call Clipboard.Clear",
    "get Inspector.EditorType",
    "call Clipboard.SetText \"Dear ",
    "call Screen.SendKeys \"^v\", True",
    "call SafeMailItem.Save",
    "call MAPIUtils.Cleanup",
    "call Screen.Unload frmEmail",
};

TEST(Handlers, InsertOpensTheChooserChoosesTheLineAndPressesTheButton) {
    const Program lorvane;
    const Lines log = logOf(lorvane, {"insert", "--template", "Quote (Sample)"});
    EXPECT_EQ(windowsOf(log), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 1",
                                     "act Click frmEmail.cmdInsert", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    const Lines selected = between(log, "act Select frmEmail.lstEmails", "act Click");
    EXPECT_EQ(missingFrom(selected, {"put Recordset.AbsolutePosition 2", "call NameSpace.GetItemFromID", "get SafeMailItem.Subject", "get SafeMailItem.Body"}),
              "")
        << "the preview of the chosen line";
    const Lines clicked(std::ranges::find(log, "act Click frmEmail.cmdInsert"), log.end());
    EXPECT_EQ(missingFrom(clicked, textOnlySteps), "");
}

TEST(Handlers, InsertWithFormatPressesTheOtherButton) {
    const Program lorvane;
    lorvane.addHtml("Bold", "<html><body><b>bold</b></body></html>");
    const Lines log = logOf(lorvane, {"insert", "--template", "Bold", "--with-format"});
    EXPECT_EQ(windowsOf(log), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 0",
                                     "act Click frmEmail.cmdInsertWithFormat", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    const Lines clicked(std::ranges::find(log, "act Click frmEmail.cmdInsertWithFormat"), log.end());
    EXPECT_EQ(missingFrom(clicked, {"call Inspector.Activate", "call Inspector.Display", "call Inspector.Activate", "get SafeMailItem.HTMLBody",
                                    "call Screen.SendKeys \"Asdw34r2wjkytui983jnd2m\", True", "call SafeMailItem.Save", "get SafeMailItem.HTMLBody",
                                    "call SafeMailItem.Save", "call Application.ActiveInspector", "call MailItem.Save", "get SafeMailItem.HTMLBody",
                                    "put SafeMailItem.HTMLBody", "call SafeMailItem.Save", "call MAPIUtils.Cleanup"}),
              "");
}

TEST(Handlers, ARefusalIsTheButtonsOwnBox) {
    const Program lorvane;
    lorvane.file("received.eml", "From: jane@example.com\r\nSubject: Hello\r\n\r\nHello\r\n");
    const Lines log = logOf(lorvane, {"insert", "--template", "Quote (Sample)", "--into", "received.eml"}, 1);
    EXPECT_EQ(windowsOf(log),
              (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 1", "act Click frmEmail.cmdInsert",
                     "call Screen.MsgBox \"You can only insert text into mails that are to be sent out.\", 64, \"Lorvane\"", "call Screen.Hide frmEmail",
                     "call Screen.Unload frmEmail"}));
}

TEST(Handlers, AMistakenSubjectClicksNothing) {
    const Program lorvane;
    EXPECT_EQ(windowsOf(logOf(lorvane, {"insert", "--template", "No such"}, 1)),
              (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act CloseWindow frmEmail", "call Screen.Hide frmEmail",
                     "call Screen.Unload frmEmail"}));
    lorvane.addText("Same", "");
    lorvane.addText("Same", "");
    const Lines log = windowsOf(logOf(lorvane, {"insert", "--template", "Same"}, 1));
    EXPECT_TRUE(std::ranges::none_of(log, [](const std::string& line) { return line.starts_with("act ") && line != "act CloseWindow frmEmail"; }));
}

TEST(Handlers, TemplatesNarrowsTheListAsAPersonWould) {
    const Program lorvane;
    lorvane.done({"template", "add", "--subject", "One", "--category", "Sales", "--text", "/dev/null"});
    EXPECT_EQ(windowsOf(logOf(lorvane, {"templates"})), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Click frmEmail.cmdClose",
                                                               "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    const Lines log = logOf(lorvane, {"templates", "--category", "Sales", "--search", "on"});
    EXPECT_EQ(windowsOf(log),
              (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.cmbCategories 1", "act Type frmEmail.txtSearch on",
                     "act Click frmEmail.cmdClose", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    const Lines chosen = between(log, "act Select frmEmail.cmbCategories", "act Type");
    EXPECT_EQ(missingFrom(chosen, {"put Recordset.Sort \"strSubject\"", "call NameSpace.GetItemFromID", "call Screen.TextWidth \"One\""}), "")
        << "the list anew";
    const Lines typed = between(log, "act Type frmEmail.txtSearch", "act Click");
    EXPECT_EQ(missingFrom(typed, {"call Screen.SetTimer frmEmail, \"tmrCompleteType\", 1000", "put Recordset.Filter \"strSubject LIKE '*on*'\"",
                                  "put Recordset.Sort \"strSubject\"", "call Screen.TextWidth \"One\""}),
              "")
        << "the search comes a second after the last key";
}

TEST(Handlers, ADisabledScopeIsNotClicked) {
    const Program lorvane;
    EXPECT_EQ(windowsOf(logOf(lorvane, {"templates", "--scope", "all"}, 1)),
              (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Click frmEmail.cmdClose", "call Screen.Hide frmEmail",
                     "call Screen.Unload frmEmail"}));
}

TEST(Handlers, TemplateAddMakesTheItemThroughTheHost) {
    const Program lorvane;
    lorvane.done({"templates"});
    const Lines log = logOf(lorvane, {"template", "add", "--subject", "A", "--category", "B", "--text", "-"}, 0, {.input = "text"});
    EXPECT_EQ(missingFrom(
                  log, {"call Application.CreateItem 0", "put SafeMailItem.Item MailItem", "put SafeMailItem.Subject \"A\"",
                        "put SafeMailItem.Categories \"B\"", "put SafeMailItem.Body \"text\"", "call SafeMailItem.Save", "call SafeMailItem.Move MAPIFolder"}),
              "");
    EXPECT_EQ(windowsOf(log), Lines());
}

/// The steps of the chooser's Edit and Delete buttons, which begin alike.
const Lines upkeepSteps = {"call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"LastFolderStoreid\"",
                           "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"LastSubFolderName\"", "put Recordset.AbsolutePosition 2"};

Lines from(const Lines& log, const std::string& start) {
    return Lines(std::ranges::find(log, start), log.end());
}

TEST(Handlers, ShowChoosesTheLineAndReadsThePreview) {
    const Program lorvane;
    lorvane.done({"templates"});
    const Lines log = logOf(lorvane, {"template", "show", "Quote (Sample)"});
    EXPECT_EQ(windowsOf(log), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 1",
                                     "act Click frmEmail.cmdClose", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    EXPECT_EQ(missingFrom(between(log, "act Select frmEmail.lstEmails", "act Click"),
                          {"put Recordset.AbsolutePosition 2", "call NameSpace.GetItemFromID", "get SafeMailItem.Subject", "get SafeMailItem.Body"}),
              "");
    EXPECT_TRUE(std::ranges::none_of(log, [](const std::string& line) { return line.ends_with("Item.Save"); })) << "nothing is saved";
}

TEST(Handlers, EditPressesTheButtonAndSavesTheOpenItemOnce) {
    const Program lorvane;
    const Lines log = logOf(lorvane, {"template", "edit", "Quote (Sample)", "--subject", "New", "--category", "A", "--text", "-"}, 0, {.input = "text"});
    EXPECT_EQ(windowsOf(log), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 1",
                                     "act Click frmEmail.cmdEdit", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    Lines steps = upkeepSteps;
    steps.insert(steps.end(),
                 {"call Application.ActiveInspector", "call Application.GetNamespace \"MAPI\"", "call NameSpace.GetItemFromID", "call Screen.Unload frmEmail",
                  "call MailItem.Display", "call Application.ActiveInspector", "put SafeMailItem.Item MailItem", "put SafeMailItem.Subject \"New\"",
                  "put SafeMailItem.Categories \"A\"", "put SafeMailItem.Body \"text\"", "call SafeMailItem.Save", "call Inspector.Close 0"});
    const Lines clicked = from(log, "act Click frmEmail.cmdEdit");
    EXPECT_EQ(missingFrom(clicked, steps), "");
    EXPECT_EQ(std::ranges::count_if(clicked, [](const std::string& line) { return line.ends_with("Item.Save"); }), 1);
}

TEST(Handlers, DeletePressesTheButtonAndAnswersItsQuestion) {
    const Program lorvane;
    const Lines log = logOf(lorvane, {"template", "delete", "Quote (Sample)"});
    EXPECT_EQ(windowsOf(log),
              (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act Select frmEmail.lstEmails 1", "act Click frmEmail.cmdDelete",
                     "call Screen.MsgBox \"Are you sure that you want to delete the selected template: Quote (Sample)?\", 36, \"Confirm Delete - Lorvane\"",
                     "act Click frmEmail.cmdClose", "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
    Lines steps = upkeepSteps;
    steps.insert(steps.end(),
                 {"call NameSpace.GetItemFromID", "call Machine.CreateObject \"qz7mredemption.qz7msafemailitem\"", "put SafeMailItem.Item MailItem",
                  "call Application.ActiveInspector", "get SafeMailItem.Subject", "call Screen.MsgBox", "call MailItem.Delete"});
    EXPECT_EQ(missingFrom(from(log, "act Click frmEmail.cmdDelete"), steps), "");
}

TEST(Handlers, HiddenButtonsArePressedThroughTheListsMenu) {
    const Program lorvane;
    lorvane.done({"settings", "set", "ShowFldrMainBtns", "False"});
    const Lines edited = logOf(lorvane, {"template", "edit", "Quote (Sample)", "--category", "A"});
    EXPECT_EQ(missingFrom(edited, {"act Select frmEmail.lstEmails 1", "act RightClick frmEmail.lstEmails 1", "call Screen.PopupMenu", "call MailItem.Display",
                                   "call SafeMailItem.Save"}),
              "");
    const Lines deleted = logOf(lorvane, {"template", "delete", "Quote (Sample)"});
    EXPECT_EQ(missingFrom(deleted, {"act RightClick frmEmail.lstEmails 1", "call Screen.PopupMenu", "call Screen.MsgBox", "call MailItem.Delete"}), "");
}

TEST(Handlers, AMistakenSubjectPressesNoButtonOfUpkeep) {
    const Program lorvane;
    lorvane.addText("Same", "");
    lorvane.addText("Same", "");
    for (const char* subject : {"No such", "Same"}) {
        for (Program::Words words : {Program::Words{"show", subject}, Program::Words{"edit", subject, "--category", "A"}, Program::Words{"delete", subject}}) {
            words.insert(words.begin(), "template");
            EXPECT_EQ(windowsOf(logOf(lorvane, words, 1)), (Lines{"call Screen.Load frmEmail", "call Screen.Show frmEmail, True", "act CloseWindow frmEmail",
                                                                  "call Screen.Hide frmEmail", "call Screen.Unload frmEmail"}));
        }
    }
}

TEST(Handlers, SettingsAreReadAndWrittenBehindAConnectedAddIn) {
    const Program lorvane;
    const Lines log = logOf(lorvane, {"settings", "set", "A", "B"});
    EXPECT_EQ(missingFrom(
                  log, {"get Application.Version", "get Application.Explorers", "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"LastFolderStoreid\"",
                        "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"A\", \"B\""}),
              "");
}

TEST(Handlers, BarsAreThoseThatTheAddInBuiltAndTakesAwayAgain) {
    const Program lorvane;
    lorvane.done({"templates"});
    const Lines log = logOf(lorvane, {"bars", "--window", "mail"});
    EXPECT_EQ(missingFrom(log, {"call CommandBars.Item \"Standard\"", "call CommandBarControls.Add Type:=10", "put CommandBarPopup.Caption \"Lo&rvane\"",
                                "call CommandBars.Item \"Menu Bar\"", "put CommandBarPopup.Caption \"Meravix\"", "get Inspector.CommandBars",
                                "call CommandBars.Add \"Lorvane\", 1, Missing, True", "put CommandBarButton.Caption \"Lo&rvane\"",
                                "put CommandBarPopup.Caption \"&Respond\"", "put CommandBarPopup.Caption \"Insert m-Fiel&d\"",
                                "put CommandBarButton.Caption \"&Help\"", "put CommandBar.Visible True", "put CommandBarPopup.Visible False",
                                "call CommandBarControls.Item \"Lo&rvane\"", "call CommandBarPopup.Delete"}),
              "");
    EXPECT_EQ(windowsOf(log), Lines()) << "nothing is clicked";
}

TEST(Handlers, EveryCommandConnectsTheAddInFirst) {
    const Program lorvane;
    for (const Program::Words& words :
         {Program::Words{"insert", "--template", "Quote (Sample)"}, Program::Words{"templates"}, Program::Words{"settings", "list"},
          Program::Words{"template", "add", "--subject", "A", "--text", "/dev/null"}, Program::Words{"import", "-"}, Program::Words{"template", "show", "A"},
          Program::Words{"template", "edit", "A", "--category", "B"}, Program::Words{"template", "delete", "A"}, Program::Words{"bars"}}) {
        const Lines log = logOf(lorvane, words, 0, {.input = draft("text")});
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.front(), "get Application.Version");
        EXPECT_EQ(missingFrom(log, {"get Application.Explorers", "call Application.GetNamespace \"MAPI\"",
                                    "call Machine.CreateObject \"qz7mRedemption.qz7mRDOSession\""}),
                  "");
    }
}

}  // namespace
}  // namespace lorvane::cli::test
