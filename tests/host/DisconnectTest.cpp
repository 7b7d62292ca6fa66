#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "WindowRig.h"
#include "host/CommandBars.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/modCommandBarCode.h"
#include "model/ExplorerObject.h"

/// What the add-in does when the host unloads it.
namespace lorvane::host {
namespace {

using namespace support;

TEST(DisconnectTest, LetsTheReferencesGo) {
    TestRun run;
    run.disconnect();
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_TRUE(run.boxes().empty());
}

/// What a window does when it is unloaded.
std::function<void(std::u16string_view name)> atUnload;

constexpr std::u16string_view releasedNames[] = {
    u"frmAbout",        u"frmAddFolder",         u"frmEmail",           u"frmPickFolder",       u"frmProgress",         u"frmSaveTemplate", u"frmCalendar",
    u"frmCreateEmail",  u"frmDeleteAppointment", u"frmEditApptDetails", u"frmOpenDeleteEvents", u"frmRescheduleWizard", u"frmSelectEmail",  u"frmProcEvent",
    u"frmProcTemplate", u"frmProcTemplateList",  u"frmWizard",
};
constexpr std::u16string_view otherNames[] = {u"frmSettings", u"frmSystemTray", u"frmStartUpWizard", u"frmMsgTmplsSave"};

/// A window of a name.
template <const auto& names, std::size_t index>
struct Named final : Form {
    static constexpr std::u16string_view formName = names[index];
    Named() : Form(formName, u"") {}
    void Form_Unload() override {
        if (atUnload) atUnload(name());
    }
};

/// Loads a window of each name.
template <const auto& names>
void loadAll() {
    const auto load = []<std::size_t... I>(std::index_sequence<I...>) {
        (apartment().forms.use<Named<names, I>>(), ...);
    };
    load(std::make_index_sequence<std::size(names)>());
}

class ReleasedWindows : public testing::Test {
protected:
    ~ReleasedWindows() override { atUnload = nullptr; }
    TestRun run{{.instruments = true}};
};

TEST_F(ReleasedWindows, AreSeventeenAndOthersStay) {
    loadAll<releasedNames>();
    loadAll<otherNames>();
    run.disconnect();
    for (const std::u16string_view name : releasedNames) EXPECT_FALSE(run.apartment().forms.find(name)) << toUtf8(name);
    for (const std::u16string_view name : otherNames) EXPECT_TRUE(run.apartment().forms.find(name)) << toUtf8(name);
}

TEST_F(ReleasedWindows, GoBetweenTheSessionAndTheMenu) {
    loadAll<releasedNames>();
    std::vector<std::u16string> gone;
    atUnload = [&](std::u16string_view name) {
        gone.emplace_back(name);
        EXPECT_FALSE(run.apartment().gRdoSession);
        EXPECT_EQ(explorerKeys(), Keys{0});
        run.recorder().note(u"window");
    };
    laterCommands().unloadSystemTray = [&] {
        EXPECT_FALSE(run.apartment().gOutlook);
        EXPECT_FALSE(connection(run).gBaseClass());
        run.recorder().note(u"tray");
    };
    run.recorder().clear();
    run.disconnect();
    EXPECT_EQ(gone, (std::vector<std::u16string>(std::begin(releasedNames), std::end(releasedNames))));
    std::vector<std::string> expected(std::size(releasedNames), "window");
    expected.insert(expected.end(),
                    {"call Explorer.Display", "get Explorer.CommandBars", "call CommandBarPopup.Delete", "call CommandBarPopup.Delete", "tray"});
    EXPECT_EQ(headsIn(run, expected), expected);
}

TEST_F(ReleasedWindows, OneThatCannotBeUnloadedKeepsNothingBack) {
    loadAll<releasedNames>();
    atUnload = [](std::u16string_view) { throw HostError(host_failure::Failed); };
    run.disconnect();
    for (const std::u16string_view name : releasedNames) EXPECT_FALSE(run.apartment().forms.find(name)) << toUtf8(name);
    EXPECT_FALSE(run.apartment().gOutlook);
}

TEST_F(ReleasedWindows, MayEndTheLastExplorer) {
    loadAll<releasedNames>();
    atUnload = [&](std::u16string_view name) {
        if (name == u"frmPickFolder") closeWindow(firstExplorer(run));
    };
    run.disconnect();
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(run.apartment().forms.find(u"frmWizard"));
    EXPECT_EQ(explorerKeys(), Keys());
}

TEST(DisconnectTest, ToleratesThatTheLastWindowTookTheReferencesBefore) {
    TestRun run;
    int trays = 0;
    laterCommands().unloadSystemTray = [&] { ++trays; };
    closeWindow(firstExplorer(run));
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_TRUE(run.apartment().gRdoSession);
    run.disconnect();
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_EQ(trays, 1);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(DisconnectTest, ARefusedHostLosesItsTrayWindow) {
    TestRun run({.version = u"12.0.0.4518"});
    int trays = 0;
    laterCommands().unloadSystemTray = [&] { ++trays; };
    run.disconnect();
    EXPECT_EQ(trays, 1);
    EXPECT_FALSE(run.apartment().gOutlook);
}

TEST(DisconnectTest, TheNextConnectionIsWholeAndItsKeysGoOn) {
    TestRun run;
    run.disconnect();
    run.connect();
    EXPECT_EQ(explorerKeys(), Keys{1});
    EXPECT_TRUE(run.apartment().TemplatesFolder);
    run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys{0});
}

/// The captions of what a popup of the menu bar opens; none where it is not there.
using Captions = std::vector<std::u16string>;
std::optional<Captions> menuOf(const TestRun& run, const Object& explorer, const Captions& path) {
    const auto bars = run.driver().bars(explorer);
    const auto menuBar = std::ranges::find(bars, u"Menu Bar", &model::BarTree::name);
    if (menuBar == bars.end()) return std::nullopt;
    const std::vector<model::ControlTree>* controls = &menuBar->controls;
    for (const std::u16string& caption : path) {
        const auto found = std::ranges::find(*controls, caption, &model::ControlTree::caption);
        if (found == controls->end()) return std::nullopt;
        controls = &found->controls;
    }
    Captions captions;
    for (const model::ControlTree& control : *controls) captions.push_back(control.caption);
    return captions;
}

const Captions tools{u"&Tools"}, shared{u"&Tools", u"Meravix"};
constexpr const char16_t* ownPath = u"Meravix/Lo&rvane";

class ExplorerMenu : public testing::Test {
protected:
    static CommandBar toolsOf(const Object& explorer) { return commandBarsOf(explorer).Item(u"Menu Bar").Controls().Item(u"&Tools").CommandBar(); }
    TestRun run{{.instruments = true}};
    Object first = firstExplorer(run);
};

TEST_F(ExplorerMenu, GoesWithTheEmptyPopupAroundIt) {
    ASSERT_EQ(menuOf(run, first, shared), Captions{u"Lo&rvane"});
    RemoveExplMenu(ownPath);
    EXPECT_EQ(menuOf(run, first, shared), std::nullopt);
    EXPECT_NE(menuOf(run, first, tools), std::nullopt);
}

TEST_F(ExplorerMenu, LeavesAnotherAddInsEntry) {
    ExplorerMenuPopUpAdd(toolsOf(first).Controls().Item(u"Meravix").CommandBar(), u"Brindle", u"", false);
    ASSERT_EQ(menuOf(run, first, shared), (Captions{u"Lo&rvane", u"Brindle"}));
    run.disconnect();
    EXPECT_EQ(menuOf(run, first, shared), Captions{u"Brindle"});
}

TEST_F(ExplorerMenu, OfASecondExplorerKeepsItsEntries) {
    const Object second = run.driver().openExplorer();
    run.disconnect();
    EXPECT_EQ(menuOf(run, first, shared), std::nullopt);
    EXPECT_EQ(menuOf(run, second, shared), Captions{u"Lo&rvane"});
}

TEST_F(ExplorerMenu, OfASecondExplorerLosesWhatStandsInTheToolsMenuItself) {
    const Object second = run.driver().openExplorer();
    ExplorerMenuPopUpAdd(toolsOf(second), u"Lo&rvane", u"", false);
    RemoveExplMenu(ownPath);
    EXPECT_EQ(menuOf(run, second, tools), Captions{u"Meravix"});
    EXPECT_EQ(menuOf(run, second, shared), Captions{u"Lo&rvane"});
}

TEST_F(ExplorerMenu, WithoutTheOuterPopupTheEntryIsSoughtInTheToolsMenu) {
    toolsOf(first).Controls().Item(u"Meravix").Delete();
    ExplorerMenuPopUpAdd(toolsOf(first), u"Lo&rvane", u"", false);
    RemoveExplMenu(ownPath);
    EXPECT_EQ(menuOf(run, first, tools), Captions());
}

TEST_F(ExplorerMenu, APathOfOneNameIsSoughtInTheToolsMenu) {
    ExplorerMenuPopUpAdd(toolsOf(first), u"Brindle", u"", false);
    RemoveExplMenu(u"Brindle");
    EXPECT_EQ(menuOf(run, first, tools), Captions{u"Meravix"});
}

TEST_F(ExplorerMenu, AnEntryThatIsNotThereIsNoMatter) {
    RemoveExplMenu(u"Meravix/Brindle");
    RemoveExplMenu(u"Brindle");
    EXPECT_EQ(menuOf(run, first, shared), Captions{u"Lo&rvane"});
    RemoveExplMenu(ownPath);
    RemoveExplMenu(ownPath);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ExplorerMenu, AnEmptyOuterPopupGoesThoughTheEntryWasGoneBefore) {
    toolsOf(first).Controls().Item(u"Meravix").CommandBar().Controls().Item(u"Lo&rvane").Delete();
    ASSERT_EQ(menuOf(run, first, shared), Captions());
    RemoveExplMenu(ownPath);
    EXPECT_EQ(menuOf(run, first, shared), std::nullopt);
}

TEST_F(ExplorerMenu, AnExplorerThatWasNeverShownIsShownFirst) {
    const auto core = implementation<model::HostWindow>(first)->sharedCore();
    const Object hidden = makeObject<model::ExplorerObject>(core, core->folderFromId(run.folder(default_folder::Inbox).EntryID(), u""));
    run.faults().failNth(u"Explorer", u"Display", 1, host_failure::Failed);
    AddExpl(run.seen(hidden));
    ASSERT_EQ(menuOf(run, hidden, {}), std::nullopt) << "there is no menu bar yet";
    auto ofFirst = explorerWraps().gExplorerWraps.Item(u"0");
    KillExpl(0, ofFirst);
    run.recorder().clear();
    RemoveExplMenu(ownPath);
    const std::vector<std::string> lines = run.recorder().lines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "call Explorer.Display");
    EXPECT_EQ(lines[1], "get Explorer.CommandBars");
    EXPECT_NE(menuOf(run, hidden, tools), std::nullopt);
    EXPECT_TRUE(implementation<model::HostWindow>(hidden)->isDisplayed());
}

TEST_F(ExplorerMenu, AnExplorerWithoutAToolsMenuIsPassedOver) {
    const Object second = run.driver().openExplorer();
    commandBarsOf(first).Item(u"Menu Bar").Controls().Item(u"&Tools").Delete();
    RemoveExplMenu(ownPath);
    EXPECT_EQ(menuOf(run, second, shared), std::nullopt) << "the first menu that is found goes through the outer popup";
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ExplorerMenuInGerman, GoesFromTheToolsMenuThatTheAddInMade) {
    TestRun run({.toolsCaption = u"E&xtras", .helpCaption = u"&?"});
    const Object explorer = firstExplorer(run);
    ASSERT_EQ(menuOf(run, explorer, shared), Captions{u"Lo&rvane"});
    run.disconnect();
    EXPECT_EQ(menuOf(run, explorer, tools), Captions());
    EXPECT_NE(menuOf(run, explorer, {u"E&xtras"}), std::nullopt);
}

TEST_F(ExplorerMenu, NoFailureIsShown) {
    run.recorder().clear();
    run.faults().clear();
    RemoveExplMenu(ownPath);
    const std::size_t uses = run.faults().uses();
    for (std::size_t n = 1; n <= uses; ++n) {
        TestRun again({.instruments = true});
        again.faults().clear();
        again.faults().failCall(n, host_failure::Failed);
        EXPECT_NO_THROW(RemoveExplMenu(ownPath)) << n;
        EXPECT_EQ(again.faults().failures(), 1U);
        EXPECT_TRUE(again.boxes().empty());
    }
}

}  // namespace
}  // namespace lorvane::host
