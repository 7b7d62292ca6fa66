#include "host/Connect.h"

#include <gtest/gtest.h>

#include <ostream>

#include "host/BuildSwitches.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/WindowRig.h"
#include "store/FoldersRig.h"

/// What the add-in does when the host loads and unloads it.
namespace lorvane::host {
namespace {

using namespace support;

constexpr std::string_view processFolder = "process folder", wizard = "wizard", tray = "tray";

/// Notes the commands of a connection among the uses of the host.
void noteCommands(TestRun& run) {
    LaterCommands& commands = laterCommands();
    commands.createProcessFolder = [&run] { run.recorder().note(fromUtf8(processFolder)); };
    commands.showStartUpWizard = [&run] { run.recorder().note(fromUtf8(wizard)); };
    commands.showSystemTray = [&run] { run.recorder().note(fromUtf8(tray)); };
}

TEST(ConnectTest, StandsReadyWithFolderNameSpaceAndSession) {
    TestRun run({.connected = false});
    Apartment& here = run.apartment();
    here.title = u"Before";
    run.connect();
    EXPECT_TRUE(here.gOutlook);
    EXPECT_TRUE(here.gNameSpace);
    EXPECT_TRUE(here.gRdoSession);
    EXPECT_EQ(here.gProgId, u"Lorvane.Connect");
    EXPECT_EQ(here.TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
    EXPECT_EQ(here.title, u"Lorvane");
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ConnectTest, WithoutAnExplorerNoFolderIsLookedForAndNoSessionOpened) {
    TestRun run({.explorer = false, .connected = false, .samples = true});
    run.connect();
    EXPECT_TRUE(run.apartment().gOutlook);
    EXPECT_EQ(run.apartment().gProgId, u"Lorvane.Connect");
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), u"");
    const Folders folders = topFolder(run).Folders();
    for (std::int32_t index = 1; index <= folders.Count(); ++index) EXPECT_NE(folders.Item(index).Name(), u"Meravix Settings");
}

constexpr std::u16string_view refusal =
    u"You have installed a version of Lorvane that only works with Outlook 2000, 2002 and 2003.\r\nYou can download the Outlook 2007 version of Lorvane "
    u"from:\r\n";

class RefusedVersion : public testing::TestWithParam<std::u16string_view> {};

TEST_P(RefusedVersion, IsToldAndTheAddInStaysPassive) {
    TestRun run({.version = std::u16string(GetParam()), .connected = false, .samples = true, .instruments = true});
    noteCommands(run);
    run.connect();
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Please Download Software for Correct Version of Outlook!");
    EXPECT_EQ(run.lastBox().style, 68);
    EXPECT_EQ(run.lastBox().text.substr(0, refusal.size()), refusal);
    const std::u16string question = u"/lorvane/download_process.asp\r\n\r\nWould you like to go to the page and download the correct version now?";
    EXPECT_EQ(run.lastBox().text.substr(run.lastBox().text.size() - question.size()), question);
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_EQ(run.apartment().gProgId, u"");
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), u"");
    EXPECT_EQ(headsIn(run, {std::string(processFolder), std::string(wizard), std::string(tray)}), std::vector<std::string>());
    run.disconnect();
    EXPECT_EQ(run.boxes().size(), 1U);
}

/// The bars of a window that nobody has added anything to.
TEST_P(RefusedVersion, LeavesTheHostWithoutAnyBarOfTheAddIn) {
    TestRun run({.version = std::u16string(GetParam()), .connected = false});
    const Object explorer = firstExplorer(run);
    run.connect();
    const Object later = run.driver().openExplorer();
    const Object mail = run.newMail();
    for (const Object& window : {explorer, later, mail}) {
        EXPECT_FALSE(isHeard(window));
        for (const model::BarTree& bar : run.driver().bars(window)) {
            EXPECT_TRUE(bar.builtIn) << toUtf8(bar.name);
            for (const model::ControlTree& control : bar.controls) {
                EXPECT_TRUE(control.builtIn) << toUtf8(control.caption);
                EXPECT_TRUE(control.controls.empty()) << toUtf8(control.caption);
            }
        }
    }
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_FALSE(run.apartment().gOutlook);
}

INSTANTIATE_TEST_SUITE_P(Versions, RefusedVersion, testing::Values(u"12.0.0.4518", u"12", u"16.0.0.1"));

TEST(RefusedVersionTest, YesOpensThePageAndNoDoesNot) {
    for (const std::int32_t answer : {msgbox::Yes, msgbox::No}) {
        TestRun run({.version = u"12.0.0.4518", .connected = false});
        run.user().AnswerNext({answer});
        const std::int32_t foreground = run.apartment().machine.screen().GetForegroundWindow();
        EXPECT_NE(foreground, 0) << "that of the Explorer";
        run.connect();
        const auto* shell = implementation<services::Shell>(run.services().shell);
        ASSERT_NE(shell, nullptr);
        if (answer == msgbox::No) {
            EXPECT_TRUE(shell->requests().empty());
            continue;
        }
        ASSERT_EQ(shell->requests().size(), 1U);
        const services::ShellRequest& request = shell->requests()[0];
        EXPECT_EQ(request.owner, foreground);
        EXPECT_EQ(request.operation, u"Open");
        EXPECT_EQ(request.parameters, u"");
        EXPECT_EQ(request.directory, u"");
        EXPECT_EQ(request.show, 1);
        EXPECT_NE(run.lastBox().text.find(request.file), std::u16string::npos) << "the address that the message tells";
    }
}

TEST(ConnectTest, TheVersionsThatAreSupportedAreSilent) {
    for (const std::u16string_view version : {u"9.0.0.6627", u"10.0.0.4608", u"10.0.0.6515", u"11.0.0.5510"}) {
        TestRun run({.version = std::u16string(version)});
        EXPECT_TRUE(run.boxes().empty());
        EXPECT_TRUE(run.apartment().gOutlook);
    }
}

TEST(ConnectTest, TheStepsComeInTheirOrder) {
    TestRun run({.connected = false, .instruments = true});
    noteCommands(run);
    run.recorder().clear();
    run.connect();
    std::vector<std::string> expected = {"get Application.Version",
                                         // the sink of the host's events
                                         "get AddInInst.ProgId", "call Application.GetNamespace", "get Application.Explorers", "get Application.Inspectors",
                                         "call Application.ActiveExplorer", "get Application.Inspector",
                                         // the Explorer and its bars
                                         "get Application.Explorers", "get Explorers.Count", "call Application.ActiveExplorer", "call Explorer.Display",
                                         "get Application.Version",
                                         // the folder
                                         "call Application.GetNamespace", "call NameSpace.GetFolderFromID"};
    if (ProcessFeatureEnabled) expected.emplace_back(processFolder);
    // the windows and the session
    expected.insert(expected.end(), {std::string(wizard), std::string(tray), "call Machine.CreateObject", "call Machine.CreateObject",
                                     "get Application.Version", "get Application.Session", "get NameSpace.MAPIOBJECT", "put RDOSession.MAPIOBJECT"});
    EXPECT_EQ(headsIn(run, expected), expected);
}

TEST(ConnectTest, TheWizardShowsUnlessItIsToStayAway) {
    struct Turn {
        std::u16string_view value;
        bool shows;
    };
    for (const Turn& turn : {Turn{u"True", false}, Turn{u"true", true}, Turn{u"TRUE", true}, Turn{u"False", true}, Turn{u"", true}, Turn{u"1", true}}) {
        TestRun run({.connected = false, .instruments = true});
        noteCommands(run);
        run.setSetting(u"DonotShowStartupWiz", turn.value);
        run.connect();
        EXPECT_EQ(headsIn(run, {std::string(wizard)}).size(), turn.shows ? 1U : 0U) << toUtf8(turn.value);
    }
}

TEST(ConnectTest, TheTrayWindowIsLoadedWhereTheSettingSaysSo) {
    struct Turn {
        std::u16string_view value;
        bool shows;
    };
    for (const Turn& turn : {Turn{u"True", true}, Turn{u"true", false}, Turn{u"False", false}, Turn{u"", false}}) {
        TestRun run({.connected = false, .instruments = true});
        noteCommands(run);
        run.setSetting(u"ShowInSystemTray", turn.value);
        run.connect();
        EXPECT_EQ(headsIn(run, {std::string(tray)}).size(), turn.shows ? 1U : 0U) << toUtf8(turn.value);
    }
}

/// A use of the host that fails while the add-in is connected, and what is missing then.
struct FailingStep {
    std::u16string_view className, member;
    std::size_t nth = 1;
    bool costsWrapper = false, costsLaterExplorers = false, costsInspectors = false, costsProgId = false, costsFolder = false;
    friend void PrintTo(const FailingStep& step, std::ostream* out) { *out << toUtf8(step.className) << '.' << toUtf8(step.member) << ' ' << step.nth; }
};

class ConnectFailure : public testing::TestWithParam<FailingStep> {};

TEST_P(ConnectFailure, CostsItsOwnStepOnly) {
    const FailingStep& step = GetParam();
    TestRun run({.connected = false, .instruments = true});
    noteCommands(run);
    run.faults().failNth(step.className, step.member, step.nth, host_failure::Failed);
    run.connect();
    EXPECT_EQ(run.faults().failures(), 1U);
    EXPECT_TRUE(run.apartment().gOutlook);
    EXPECT_EQ(run.apartment().gProgId, step.costsProgId ? u"" : u"Lorvane.Connect");
    EXPECT_EQ(explorerKeys(), step.costsWrapper ? Keys() : Keys{0});
    EXPECT_EQ(static_cast<bool>(run.apartment().TemplatesFolder), !step.costsFolder);
    EXPECT_EQ(headsIn(run, {std::string(wizard), std::string(tray)}).size(), 2U);
    EXPECT_TRUE(run.apartment().gRdoSession);
    EXPECT_TRUE(run.boxes().empty());

    // Whether the host's collections are heard shows in what becomes of the next windows.
    run.driver().openExplorer();
    run.newMail();
    EXPECT_EQ(inspectorKeys(), step.costsInspectors ? Keys() : Keys{0});
    EXPECT_EQ(explorerKeys().size(), (step.costsWrapper ? 0U : 1U) + (step.costsLaterExplorers ? 0U : 1U));
}

INSTANTIATE_TEST_SUITE_P(
    Steps, ConnectFailure,
    testing::Values(FailingStep{.className = u"Application", .member = u"Version"},
                    FailingStep{.className = u"AddInInst", .member = u"ProgId", .nth = 1, .costsProgId = true},
                    FailingStep{.className = u"Application", .member = u"GetNamespace", .nth = 1, .costsLaterExplorers = true, .costsInspectors = true},
                    FailingStep{.className = u"Application", .member = u"Explorers", .nth = 1, .costsLaterExplorers = true, .costsInspectors = true},
                    FailingStep{.className = u"Application", .member = u"Inspectors", .nth = 1, .costsInspectors = true},
                    FailingStep{.className = u"Application", .member = u"ActiveExplorer"},
                    FailingStep{.className = u"Application", .member = u"Explorers", .nth = 2}, FailingStep{.className = u"Explorers", .member = u"Count"},
                    FailingStep{.className = u"Application", .member = u"ActiveExplorer", .nth = 2, .costsWrapper = true},
                    FailingStep{.className = u"Explorer", .member = u"Display"},
                    FailingStep{.className = u"NameSpace", .member = u"GetDefaultFolder", .nth = 1, .costsFolder = true},
                    FailingStep{.className = u"Machine", .member = u"CreateObject", .nth = 1},
                    FailingStep{.className = u"Machine", .member = u"CreateObject", .nth = 2}));

TEST(ConnectTest, ACommandThatFailsCostsItsOwnStepOnly) {
    TestRun run({.connected = false, .instruments = true});
    noteCommands(run);
    const auto failing = [] { throw HostError(host_failure::Failed); };
    laterCommands().createProcessFolder = laterCommands().showStartUpWizard = laterCommands().showSystemTray = failing;
    run.connect();
    EXPECT_TRUE(run.apartment().gRdoSession);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ConnectTest, ASettingThatCannotBeReadKeepsItsWindowAwayAndNothingElse) {
    TestRun run({.connected = false, .instruments = true});
    usePrivately(run, run.templatesFolder());
    noteCommands(run);
    // Behind the three settings of the folder.
    run.faults().failNth(u"Settings", u"GetSetting", 4, host_failure::Failed);
    run.connect();
    EXPECT_EQ(headsIn(run, {std::string(wizard), std::string(tray)}), std::vector<std::string>{std::string(tray)});
    EXPECT_TRUE(run.apartment().gRdoSession);
}

TEST(ConnectTest, AnExplorerThatOpensLaterIsWrappedAndNothingElse) {
    TestRun run({.explorer = false, .connected = false, .instruments = true});
    noteCommands(run);
    run.connect();
    const Object explorer = run.driver().openExplorer();
    EXPECT_EQ(explorerKeys(), Keys{0});
    EXPECT_TRUE(explorerWraps().gExplorerWraps.Item(u"0")->Explorer() == explorer);
    EXPECT_EQ(headsIn(run, {std::string(processFolder), std::string(wizard), std::string(tray)}), std::vector<std::string>());
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(SessionTest, SharesTheHostsLogonFromVersion10On) {
    TestRun run({.connected = false, .instruments = true});
    run.recorder().clear();
    run.connect();
    const std::string log = run.recorder().text();
    EXPECT_NE(log.find("put RDOSession.MAPIOBJECT"), std::string::npos);
    EXPECT_EQ(log.find("RDOSession.Logon"), std::string::npos);
}

TEST(SessionTest, LogsOnByItselfOnVersion9) {
    TestRun run({.version = u"9.0.0.6627", .connected = false, .instruments = true});
    run.recorder().clear();
    run.connect();
    const std::string log = run.recorder().text();
    EXPECT_NE(log.find("call RDOSession.Logon\n"), std::string::npos) << "without arguments";
    EXPECT_EQ(log.find("RDOSession.MAPIOBJECT"), std::string::npos);
}

TEST(SessionTest, WithoutAHostNoneIsMade) {
    TestRun run({.connected = false});
    InitializeRDOSession();
    EXPECT_FALSE(run.apartment().gRdoSession);
}

TEST(SessionTest, EachTimeANewOneIsMade) {
    TestRun run;
    const Object before = run.apartment().gRdoSession;
    InitializeRDOSession();
    EXPECT_TRUE(run.apartment().gRdoSession);
    EXPECT_FALSE(run.apartment().gRdoSession == before);
    EXPECT_EQ(RDOSession(run.apartment().gRdoSession).GetFolderFromID(run.templatesFolder().EntryID(), run.templatesFolder().StoreID()).Name(), u"Lorvane");
}

TEST(SessionTest, AFailureIsNotReported) {
    struct Turn {
        std::u16string_view version, className, member;
    };
    for (const Turn& turn :
         {Turn{u"11.0.0.5510", u"RDOSession", u"MAPIOBJECT"}, Turn{u"11.0.0.5510", u"NameSpace", u"MAPIOBJECT"},
          Turn{u"11.0.0.5510", u"Application", u"Session"}, Turn{u"11.0.0.5510", u"Machine", u"CreateObject"}, Turn{u"9.0.0.6627", u"RDOSession", u"Logon"}}) {
        TestRun run({.version = std::u16string(turn.version), .instruments = true});
        run.faults().failNth(turn.className, turn.member, 1, host_failure::Failed);
        InitializeRDOSession();
        EXPECT_EQ(run.faults().failures(), 1U) << toUtf8(turn.member);
        EXPECT_TRUE(run.boxes().empty());
        EXPECT_TRUE(run.apartment().gRdoSession) << "what cannot be made leaves the one from before";
    }
}

}  // namespace
}  // namespace lorvane::host
