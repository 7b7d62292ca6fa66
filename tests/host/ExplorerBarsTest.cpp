#include <gtest/gtest.h>

#include "host/BarsRig.h"

/// The popup in an Explorer's toolbar and the entry in its Tools menu.
namespace lorvane::support {
namespace {

using namespace host;

std::vector<RunOptions> everyRun() {
    std::vector<RunOptions> runs = runsWithOwnEditors();
    for (const std::u16string_view version : supportedVersions) runs.push_back(wordRun(version));
    return runs;
}

/// A run whose Explorer is open and has nothing of the add-in in it yet.
RunOptions beforeConnection() {
    return {.connected = false, .instruments = true};
}

Object barOfProgram(const Object& window, std::u16string_view name) {
    return commandBarsOf(window).Item(name);
}

/// Another program's control at the end of a bar or popup.
CommandBarControl addOther(const CommandBarControls& controls, std::int32_t type, std::u16string_view caption) {
    const CommandBarControl control = controls.Add({.type = type});
    control.Caption(caption);
    return control;
}

TEST(ExplorerBarsTest, AreTheSameOnEveryHostWithEveryEditor) {
    expectBars(byConfiguration("explorer"), everyRun(), theExplorer);
}

TEST(ExplorerBarsTest, AreTheSameInAnExplorerThatOpensLater) {
    expectBars(byConfiguration("explorer"), {RunOptions{}}, [](TestRun& run) { return run.driver().openExplorer(); });
}

TEST(ExplorerBarsTest, AreBuiltInAWindowThatWasNeverShown) {
    expectBars(byConfiguration("explorer"), {RunOptions{.explorer = false}}, [](TestRun& run) { return run.driver().openExplorer(); });
}

TEST(ExplorerBarsTest, BuildingTwiceAddsNothing) {
    TestRun run;
    const Object explorer = theExplorer(run);
    const std::string before = barLines(run, explorer);
    explorerWrap()->InitButton();
    EXPECT_EQ(barLines(run, explorer), before);
    const auto told = recordCommands();
    run.driver().clickBar(explorer, u"Standard/Lorvane/Settings");
    EXPECT_EQ(told->lines, Lines{"showSettings"}) << "and each click is heard once";
}

TEST(ExplorerBarsTest, BuildingTwiceShowsWhatWasHidden) {
    TestRun run;
    const Object explorer = theExplorer(run);
    const CommandBarControl popup = commandBarsOf(explorer).Item(u"Standard").Controls().Item(u"Lo&rvane");
    popup.Visible(false);
    popup.Controls().Item(u"Tutorial").Visible(false);
    explorerWrap()->InitButton();
    EXPECT_TRUE(controlAt(run, explorer, u"Standard/Lorvane/Tutorial")->visible);
    EXPECT_FALSE(controlAt(run, explorer, u"Standard/Lorvane")->visible) << "a popup that is there stays as it is";
}

TEST(ExplorerBarsTest, AMissingToolbarIsToldAndTheMenuIsStillBuilt) {
    TestRun run(beforeConnection());
    run.faults().failNth(u"CommandBars", u"Item", 1, host_failure::Failed);
    run.connect();
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Std toolbar not found");
    EXPECT_EQ(run.lastBox().style, 0);
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
    const Object explorer = theExplorer(run);
    EXPECT_FALSE(controlAt(run, explorer, u"Standard/Lorvane"));
    EXPECT_TRUE(controlAt(run, explorer, u"Menu Bar/Tools/Meravix/Lorvane/Settings..."));
}

TEST(ExplorerBarsTest, AControlThatCannotBeMadeIsJustNotThere) {
    TestRun run(beforeConnection());
    run.faults().failNth(u"CommandBarControls", u"Add", 3, host_failure::Failed);
    run.connect();
    EXPECT_TRUE(run.boxes().empty());
    const Object explorer = theExplorer(run);
    EXPECT_TRUE(controlAt(run, explorer, u"Standard/Lorvane/Templates"));
    EXPECT_FALSE(controlAt(run, explorer, u"Standard/Lorvane/Create Template"));
    EXPECT_TRUE(controlAt(run, explorer, u"Standard/Lorvane/New Email using Template"));
    EXPECT_FALSE(explorerWrap()->CBB_Expl_CreateTempl);
}

TEST(ExplorerBarsTest, WithoutItsPopupTheToolbarGetsNoneOfTheButtons) {
    TestRun run(beforeConnection());
    const Object explorer = theExplorer(run);
    const Captions before = captionsOf(run, explorer, u"Standard");
    run.faults().failNth(u"CommandBarControls", u"Add", 1, host_failure::Failed);
    run.connect();
    EXPECT_EQ(captionsOf(run, explorer, u"Standard"), before);
    EXPECT_FALSE(explorerWrap()->CBB_Templates);
    EXPECT_TRUE(explorerWrap()->gmnuTemplates);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ExplorerBarsTest, NothingIsBuiltWhereNoBarCanBeReached) {
    TestRun run(beforeConnection());
    for (std::size_t nth = 1; nth <= 2; ++nth) run.faults().failNth(u"Explorer", u"CommandBars", nth, host_failure::Failed);
    const Object explorer = theExplorer(run);
    const std::string before = barLines(run, explorer);
    run.connect();
    EXPECT_EQ(barLines(run, explorer), before);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Std toolbar not found");
}

/// Hosts whose Tools menu has another caption.
TEST(ForeignMenuTest, ASecondToolsMenuStandsInFrontOfHelp) {
    TestRun run({.toolsCaption = u"E&xtras"});
    const Object explorer = theExplorer(run);
    EXPECT_EQ(captionsOf(run, explorer, u"Menu Bar"), (Captions{u"&File", u"&Edit", u"&View", u"&Go", u"E&xtras", u"&Actions", u"&Tools", u"&Help"}));
    EXPECT_TRUE(controlAt(run, explorer, u"Menu Bar/Tools/Meravix/Lorvane/Templates..."));
    EXPECT_EQ(controlAt(run, explorer, u"Menu Bar/Tools")->tooltip, u"");
    EXPECT_FALSE(controlAt(run, explorer, u"Menu Bar/Tools")->beginGroup);
    EXPECT_TRUE(controlAt(run, explorer, u"Menu Bar/Tools")->temporary);
    EXPECT_TRUE(controlAt(run, explorer, u"Menu Bar/Extras")->controls.empty());
}

TEST(ForeignMenuTest, WhereHelpHasAnotherCaptionTooItStandsInFrontOfTheLastMenu) {
    for (const char16_t* const help : {u"&?", u"&Hilfe"}) {
        TestRun run({.toolsCaption = u"E&xtras", .helpCaption = help});
        EXPECT_EQ(captionsOf(run, theExplorer(run), u"Menu Bar"), (Captions{u"&File", u"&Edit", u"&View", u"&Go", u"E&xtras", u"&Actions", u"&Tools", help}));
        explorerWrap()->InitButton();
        EXPECT_EQ(captionsOf(run, theExplorer(run), u"Menu Bar").size(), 8U) << "and is found the next time";
    }
}

TEST(ForeignMenuTest, AMenuBehindHelpTellsHelpFromTheLastOne) {
    for (const auto& [help, expected] : {std::pair(u"&Help", Captions{u"&Tools", u"&Help", u"Team"}), std::pair(u"&?", Captions{u"&?", u"&Tools", u"Team"})}) {
        TestRun run({.toolsCaption = u"E&xtras", .helpCaption = help, .connected = false});
        addOther(CommandBar(barOfProgram(theExplorer(run), u"Menu Bar")).Controls(), msoControlPopup, u"Team");
        run.connect();
        const Captions captions = captionsOf(run, theExplorer(run), u"Menu Bar");
        EXPECT_EQ(Captions(captions.end() - 3, captions.end()), expected);
    }
}

TEST(ForeignMenuTest, WithoutAnyHelpItStandsInFrontOfTheLastMenu) {
    TestRun run({.toolsCaption = u"E&xtras", .connected = false});
    CommandBar(barOfProgram(theExplorer(run), u"Menu Bar")).Controls().Item(u"Help").Delete();
    run.connect();
    EXPECT_EQ(captionsOf(run, theExplorer(run), u"Menu Bar"), (Captions{u"&File", u"&Edit", u"&View", u"&Go", u"E&xtras", u"&Tools", u"&Actions"}));
}

TEST(ForeignMenuTest, ACaptionThatIsAlmostToolsIsWrittenAnew) {
    for (const char16_t* const caption : {u"Tools", u"T&ools", u"&tools"}) {
        TestRun run({.toolsCaption = caption});
        EXPECT_EQ(captionsOf(run, theExplorer(run), u"Menu Bar"), (Captions{u"&File", u"&Edit", u"&View", u"&Go", u"&Tools", u"&Actions", u"&Help"}));
        EXPECT_TRUE(controlAt(run, theExplorer(run), u"Menu Bar/Tools")->builtIn);
    }
}

TEST(ForeignMenuTest, ACaptionThatIsRightIsNotWritten) {
    TestRun run(beforeConnection());
    run.recorder().clear();
    run.connect();
    EXPECT_EQ(run.recorder().text().find("CommandBarPopup.Caption \"&Tools\""), std::string::npos);
}

/// Other add-ins with entries on the same bars.
TEST(SharedMenuTest, ThePopupOfAnotherAddInIsUsedAndNotDoubled) {
    TestRun run({.connected = false});
    const CommandBarControl tools = CommandBar(barOfProgram(theExplorer(run), u"Menu Bar")).Controls().Item(u"&Tools");
    const CommandBarControl shared = addOther(tools.Controls(), msoControlPopup, u"Meravix");
    addOther(shared.Controls(), msoControlButton, u"Brindle");
    addOther(CommandBar(barOfProgram(theExplorer(run), u"Standard")).Controls(), msoControlButton, u"Brindle");
    run.connect();
    const Object explorer = theExplorer(run);
    EXPECT_EQ(captionsOf(controlAt(run, explorer, u"Menu Bar/Tools")->controls), Captions{u"Meravix"});
    EXPECT_EQ(captionsOf(controlAt(run, explorer, u"Menu Bar/Tools/Meravix")->controls), (Captions{u"Brindle", u"Lo&rvane"}));
    EXPECT_TRUE(controlAt(run, explorer, u"Standard/Brindle"));
    EXPECT_TRUE(controlAt(run, explorer, u"Standard/Lorvane/Templates"));
}

TEST(SharedMenuTest, AnEntryWithOneOfTheCaptionsIsTakenAsItIs) {
    TestRun run({.connected = false});
    const CommandBarControls standard = CommandBar(barOfProgram(theExplorer(run), u"Standard")).Controls();
    const CommandBarControl popup = addOther(standard, msoControlPopup, u"Lorvane");
    const CommandBarControl support = addOther(popup.Controls(), msoControlButton, u"S&upport");
    support.FaceId(59);
    support.Visible(false);
    run.connect();
    const auto shown = controlAt(run, theExplorer(run), u"Standard/Lorvane/Support");
    EXPECT_EQ(shown->caption, u"S&upport");
    EXPECT_EQ(shown->faceId, 59);
    EXPECT_FALSE(shown->beginGroup);
    EXPECT_TRUE(shown->visible);
    const auto told = recordCommands();
    run.driver().clickBar(theExplorer(run), u"Standard/Lorvane/Support");
    EXPECT_EQ(told->lines, Lines{"writeSupportMail"});
}

TEST(ToolbarTest, IsHiddenOnHostsFrom14On) {
    for (const auto& [version, visible] : {std::pair(u"11.0.0.5510", true), std::pair(u"13.9.0.0", true), std::pair(u"14.0.0.4760", false)}) {
        TestRun run({.version = version, .connected = false});
        AddExpl(theExplorer(run));
        EXPECT_EQ(barOf(run, theExplorer(run), u"Standard")->visible, visible) << toUtf8(version);
        EXPECT_TRUE(controlAt(run, theExplorer(run), u"Menu Bar/Tools/Meravix/Lorvane"));
    }
}

}  // namespace
}  // namespace lorvane::support
