#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "host/Guards.h"
#include "respond/FurtherWindows.h"
#include "store/FoldersRig.h"
#include "support/FaultSweep.h"

/// Each host call of the chooser's commands fails once: nothing escapes, the items are whole, and what the chooser does next is whole again.
namespace lorvane::support {
namespace {

using namespace host;

const NamedBox noPrivatePermission{u"No Permission - Lorvane", u"You do not have permission to access the private folder.", msgbox::Critical};
const NamedBox noSharedPermission{u"No Permission - Lorvane", u"You do not have permission to access the shared folder.", msgbox::Critical};
const NamedBox noPickedPermission{u"No Permission - Lorvane", u"You do not have permission to access this folder.", msgbox::Critical};
const NamedBox loadingEnded{u"Lorvane", u"Program has encountered an unknown error.", msgbox::Information};
const NamedBox sharedFolderLost{u"Shared Templates Folder Not Found - Lorvane", u"Unable to locate your SHARED templates folder.", msgbox::Exclamation};

/// Which templates there are: those of the private folder, and with a team its own.
void prepareTemplates(TestRun& run) {
    run.addTemplate(u"Alpha", html(u"<HTML><BODY><B>Alpha</B></BODY></HTML>"), u"Sales");
    run.addTemplate(u"Beta", plain(u"Text"));
}
void prepareShared(TestRun& run) {
    prepareTemplates(run);
    const MAPIFolder team = teamFolder(run);
    run.addTemplate(team, u"Ours", plain(u"Text"), u"Team");
    useShared(run, team);
}

/// The files of the category names may lack what the walk could not read, but they are whole files.
const std::set<std::string> categoryFiles = {"data/Tolvenar", "data/Tolvenar/Lorvane", "data/Tolvenar/Lorvane/Private.xml", "data/Tolvenar/Lorvane/Shared.xml"};
void expectWholeCategoryFiles(const TestRun& run) {
    const Files files(run.services().files);
    for (const std::u16string_view name : {u"Private.xml", u"Shared.xml"}) {
        const std::u16string path = files.GetFolderPath(26) + u"\\Tolvenar\\Lorvane\\" + std::u16string(name);
        if (!files.FileExists(path)) continue;
        EXPECT_TRUE(files.ReadText(path).ends_with(u"</xml>\r\n")) << toUtf8(name);
    }
}

/// The chooser is taken down where it still is, and opened again.
void expectTheNextOpeningWhole(TestRun& run, const Subjects& subjects) {
    if (isChooserOpen()) {
        if (chooser().isVisible())
            run.user().CloseWindow(chooserName);
        else
            chooser().unload();
    }
    openChooser(run, [&](ScriptedUser&) {
        EXPECT_EQ(listed(), subjects);
        EXPECT_TRUE(chooser().txtSearch.Enabled);
        EXPECT_TRUE(chooser().cmdClose.Enabled);
    });
}

/// A command of the open chooser, beside no open item.
FaultSweep commandOf(std::function<void(TestRun&)> command) {
    FaultSweep sweep;
    sweep.prepare = prepareTemplates;
    sweep.open = [](TestRun&) { chooser().Show(false); };
    sweep.command = std::move(command);
    sweep.lossBoxes = 4;
    sweep.check = [](TestRun& run, const SweptFault&) { expectTheNextOpeningWhole(run, {u"Alpha", u"Beta"}); };
    return sweep;
}
FaultSweep clickOn(std::u16string_view control) {
    return commandOf([control](TestRun& run) { run.user().Click(chooserName, control); });
}

/// The window stays, or it goes; where it goes another may come.
constexpr auto chooserMayGo = [](std::size_t before, std::size_t after) { return after == before || after == before - 1; };

class ChooserSweepTest : public SweepTest {};
SWEEP_CALLS(ChooserSweepTest);

FaultSweep opening() {
    FaultSweep sweep;
    sweep.prepare = prepareTemplates;
    // Nobody acts: the screen closes the window. What fails before there is one is the opener's, who has a guard.
    sweep.command = [](TestRun&) { withErrorBox(u"opener", [] { chooser().Show(true); }); };
    sweep.files = categoryFiles;
    sweep.lossBoxes = 5;  // a table that is lost is met by the walk, its file, the combo and the list
    sweep.boxes = {loadingEnded,
                   noPrivatePermission,
                   errorBox(u"opener"),
                   errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),
                   errorBox(u"basGlobals.SaveRSToFile"),
                   errorBox(u"basGlobals.LoadCategories"),
                   errorBox(u"frmEmail.UpdateEmailList"),
                   errorBox(u"frmEmail.lstEmails_Click")};
    return sweep;
}

TEST_P(ChooserSweepTest, Opening) {
    FaultSweep sweep = opening();
    sweep.check = [](TestRun& run, const SweptFault&) {
        expectWholeCategoryFiles(run);
        expectTheNextOpeningWhole(run, {u"Alpha", u"Beta"});
    };
    run(sweep);
}

TEST_P(ChooserSweepTest, OpeningWithSharing) {
    FaultSweep sweep = opening();
    sweep.team = true;
    sweep.prepare = prepareShared;
    sweep.errorBoxes = 2;  // one for each of the two files
    // The path is written before the folder turns out to be lost.
    sweep.maySet = [](std::u16string_view key, std::u16string_view value) { return isCutPath(key, value) || (key == u"SharedTemplFldrPath" && value.empty()); };
    for (const NamedBox& box : {noSharedPermission, sharedFolderLost, errorBox(u"frmEmail.optAll_Click")}) sweep.boxes.push_back(box);
    sweep.check = [](TestRun& run, const SweptFault&) {
        expectWholeCategoryFiles(run);
        expectTheNextOpeningWhole(run, {u"Alpha", u"Beta", u"Ours (Shared)"});
    };
    run(sweep);
}

TEST_P(ChooserSweepTest, Listing) {
    FaultSweep sweep = commandOf([](TestRun&) { chooser().UpdateEmailList(); });
    sweep.boxes = {errorBox(u"frmEmail.UpdateEmailList")};
    sweep.check = [](TestRun&, const SweptFault&) {
        EXPECT_EQ(chooser().UpdateEmailList(), respond::ListResult::Filled) << "the next run is whole again";
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"Beta"}));
    };
    run(sweep);
}

TEST_P(ChooserSweepTest, TypedSearch) {
    FaultSweep sweep = commandOf([](TestRun& run) {
        run.user().Type(chooserName, u"txtSearch", u"al");
        run.user().Advance(1000);
    });
    sweep.boxes = {errorBox(u"frmEmail.UpdateEmailList"), errorBox(u"FilterEmailSubject"), errorBox(u"frmEmail.lstEmails_Click"),
                   errorBox(u"frmEmail.tmrCompleteType_Timer"), errorBox(u"frmEmail.txtSearch_Change")};
    sweep.errorBoxes = 2;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_EQ(chooser().UpdateEmailList(), respond::ListResult::Filled);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
        expectTheNextOpeningWhole(run, {u"Alpha", u"Beta"});
    };
    run(sweep);
}

TEST_P(ChooserSweepTest, TypedSearchInACategory) {
    FaultSweep sweep = commandOf([](TestRun& run) {
        run.user().Type(chooserName, u"txtSearch", u"al");
        run.user().Advance(1000);
    });
    sweep.open = [](TestRun& run) {
        chooser().Show(false);
        run.user().Select(chooserName, u"cmbCategories", 1);
    };
    sweep.boxes = {errorBox(u"frmEmail.UpdateEmailList"), errorBox(u"FilterEmailSubject"), errorBox(u"frmEmail.lstEmails_Click"),
                   errorBox(u"frmEmail.tmrCompleteType_Timer"), errorBox(u"frmEmail.txtSearch_Change")};
    sweep.errorBoxes = 2;
    run(sweep);
}

TEST_P(ChooserSweepTest, Category) {
    FaultSweep sweep = commandOf([](TestRun& run) { run.user().Select(chooserName, u"cmbCategories", 1); });
    sweep.boxes = {errorBox(u"frmEmail.UpdateEmailList"), errorBox(u"FilterEmailSubject"), errorBox(u"frmEmail.lstEmails_Click"),
                   errorBox(u"frmEmail.cmbCategories_Click")};
    sweep.errorBoxes = 2;
    sweep.check = [](TestRun& run, const SweptFault&) {
        EXPECT_TRUE(chooser().cmdClose.Enabled) << "the window can be left";
        expectTheNextOpeningWhole(run, {u"Alpha", u"Beta"});
    };
    run(sweep);
}

/// The scopes one after the other; what is not loaded yet is.
FaultSweep changeOfScope(std::u16string_view option, std::u16string_view loadedFirst) {
    FaultSweep sweep = clickOn(option);
    sweep.team = true;
    sweep.prepare = [loadedFirst](TestRun& run) {
        prepareShared(run);
        run.setSetting(u"LoadTemplateDefault", loadedFirst);
    };
    sweep.boxes = {errorBox(u"frmEmail." + std::u16string(option) + u"_Click"),
                   errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),
                   errorBox(u"basGlobals.LoadCategories"),
                   errorBox(u"frmEmail.cmbCategories_Click"),
                   errorBox(u"frmEmail.UpdateEmailList"),
                   errorBox(u"frmEmail.lstEmails_Click"),
                   noPrivatePermission,
                   noSharedPermission};
    sweep.errorBoxes = 2;
    sweep.check = [loadedFirst](TestRun& run, const SweptFault&) {
        expectTheNextOpeningWhole(run, loadedFirst == u"1" ? Subjects{u"Alpha", u"Beta"} : Subjects{u"Ours"});
    };
    return sweep;
}

TEST_P(ChooserSweepTest, ScopeAll) {
    run(changeOfScope(u"optAll", u"1"));
}
TEST_P(ChooserSweepTest, ScopeShared) {
    run(changeOfScope(u"optShared", u"1"));
}
TEST_P(ChooserSweepTest, ScopePrivate) {
    run(changeOfScope(u"optPrivate", u"2"));
}

TEST_P(ChooserSweepTest, CopyingText) {
    FaultSweep sweep = clickOn(u"cmdCopyToClipBoard");
    sweep.windowsFit = chooserMayGo;
    sweep.boxes = {errorBox(u"frmEmail.cmdCopyToClipBoard_Click"), errorBox(u"modTemplateLog.TemplateLogRecord")};
    run(sweep);
}

TEST_P(ChooserSweepTest, CopyingHtml) {
    FaultSweep sweep = clickOn(u"cmdCopyHTMLToClipB");
    sweep.windowsFit = chooserMayGo;
    sweep.boxes = {errorBox(u"frmEmail.cmdCopyHTMLToClipB_Click"), errorBox(u"modTemplateLog.TemplateLogRecord")};
    run(sweep);
}

TEST_P(ChooserSweepTest, NewTemplate) {
    FaultSweep sweep = clickOn(u"cmdNew");
    sweep.windowsFit = chooserMayGo;
    sweep.boxes = {errorBox(u"frmEmail.cmdNew_Click"), newInspectorBox};
    run(sweep);
}

TEST_P(ChooserSweepTest, Editing) {
    FaultSweep sweep = clickOn(u"cmdEdit");
    sweep.windowsFit = chooserMayGo;
    sweep.boxes = {errorBox(u"frmEmail.cmdEdit_Click"), newInspectorBox};
    run(sweep);
}

TEST_P(ChooserSweepTest, Deleting) {
    FaultSweep sweep = clickOn(u"cmdDelete");
    sweep.open = [](TestRun& run) {
        chooser().Show(false);
        selectSubject(run.user(), u"Beta");
        run.user().answerWith([](const screen::BoxShown& box) { return box.style == msgbox::Question ? std::optional(msgbox::Yes) : std::nullopt; });
    };
    sweep.boxes = {errorBox(u"frmEmail.cmdDelete_Click"),
                   errorBox(u"frmEmail.UpdateEmailList"),
                   errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),
                   noPrivatePermission,
                   {u"Confirm Delete - Lorvane", u"Are you sure that you want to delete the selected template: Beta?", msgbox::Question}};
    sweep.errorBoxes = 2;  // the walk, and the list that has no table
    sweep.check = [](TestRun& run, const SweptFault&) {
        const bool deleted = subjectsIn(run.templatesFolder()).size() == 1;
        expectTheNextOpeningWhole(run, deleted ? Subjects{u"Alpha"} : Subjects{u"Alpha", u"Beta"});
    };
    run(sweep);
}

TEST_P(ChooserSweepTest, Categorize) {
    FaultSweep sweep = clickOn(u"cmdCategorize");
    sweep.open = [](TestRun&) {
        chooser().Show(false);
        respond::furtherWindows().categorizeTemplate = [](const MailItem&) { return true; };
    };
    sweep.boxes = {errorBox(u"frmEmail.cmdCategorize_Click"), errorBox(u"frmEmail.UpdateEmailList"),
                   errorBox(u"frmEmail.lstEmails_Click"),     errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.LoadCategories"),    errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),    noPrivatePermission};
    run(sweep);
}

TEST_P(ChooserSweepTest, AnotherFolder) {
    FaultSweep sweep = clickOn(u"cmdPickfolder");
    sweep.prepare = [](TestRun& run) {
        prepareTemplates(run);
        run.addTemplate(run.addFolder(topFolder(run), u"Letters"), u"Gamma", plain(u"Text"));
    };
    sweep.open = [](TestRun& run) {
        chooser().Show(false);
        // A refused folder brings the picker again; then the user cancels.
        const std::u16string letters = run.addFolder(topFolder(run), u"Letters").EntryID();
        respond::furtherWindows().pickFolder = [ids = std::vector<std::u16string>{u"", letters}]() mutable {
            std::u16string id = ids.back();
            if (ids.size() > 1) ids.pop_back();
            return id;
        };
        run.user().Click(chooserName, u"lblChangeFolder");
    };
    sweep.boxes = {errorBox(u"frmEmail.cmdPickfolder_Click"),
                   errorBox(u"frmEmail.UpdateEmailList"),
                   errorBox(u"frmEmail.lstEmails_Click"),
                   errorBox(u"basGlobals.LoadTemplateList"),
                   errorBox(u"basGlobals.AddCategoriesToList"),
                   errorBox(u"basGlobals.CategoryInList"),
                   noPrivatePermission,
                   noPickedPermission};
    run(sweep);
}

TEST_P(ChooserSweepTest, MaintenanceButtons) {
    FaultSweep sweep = clickOn(u"lblHide");
    sweep.boxes = {errorBox(u"frmEmail.FldrMaintBtnsClick")};
    run(sweep);
}

TEST_P(ChooserSweepTest, HidingTips) {
    FaultSweep sweep = commandOf([](TestRun&) { chooser().HideTips(); });
    sweep.raises = true;
    run(sweep);
}

TEST_P(ChooserSweepTest, ShowingTips) {
    FaultSweep sweep = commandOf([](TestRun&) { chooser().ShowTips(); });
    sweep.raises = true;
    run(sweep);
}

TEST_P(ChooserSweepTest, DoubleClick) {
    FaultSweep sweep = commandOf([](TestRun& run) { run.user().DblClick(chooserName, u"lstEmails"); });
    sweep.open = [](TestRun&) {
        chooser().DisableInsert = true;
        chooser().Show(false);
    };
    sweep.windowsFit = chooserMayGo;
    sweep.boxes = {errorBox(u"frmEmail.lstEmails_DblClick"), errorBox(u"frmEmail.cmdCopyToClipBoard_Click"), errorBox(u"modTemplateLog.TemplateLogRecord")};
    run(sweep);
}

}  // namespace
}  // namespace lorvane::support
