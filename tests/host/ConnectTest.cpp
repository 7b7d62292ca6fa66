#include "host/Connect.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/Redemption.h"
#include "host/basGlobals.h"
#include "store/FoldersRig.h"

/// What the add-in does when the host loads and unloads it.
namespace lorvane::host {
namespace {

using namespace support;

TEST(ConnectTest, StandsReadyWithFolderNameSpaceAndSession) {
    TestRun run;
    Apartment& here = run.apartment();
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
    TestRun run({.version = std::u16string(GetParam()), .connected = false, .samples = true});
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
    run.disconnect();
    EXPECT_EQ(run.boxes().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Versions, RefusedVersion, testing::Values(u"12.0.0.4518", u"12", u"16.0.0.1"));

TEST(RefusedVersionTest, YesOpensThePageAndNoDoesNot) {
    for (const std::int32_t answer : {msgbox::Yes, msgbox::No}) {
        TestRun run({.version = u"12.0.0.4518", .connected = false});
        run.user().AnswerNext({answer});
        run.connect();
        const auto* shell = implementation<services::Shell>(run.services().shell);
        ASSERT_NE(shell, nullptr);
        if (answer == msgbox::No) {
            EXPECT_TRUE(shell->requests().empty());
            continue;
        }
        ASSERT_EQ(shell->requests().size(), 1U);
        const services::ShellRequest& request = shell->requests()[0];
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
    run.recorder().clear();
    run.connect();
    std::vector<std::string> order;
    for (const std::string& line : run.recorder().lines()) {
        for (const std::string_view sought :
             {"Application.Version", "AddIn.ProgId", "Application.GetNamespace", "Application.Explorers", "Application.Inspectors",
              "Application.ActiveExplorer", "Explorers.Count", "NameSpace.GetFolderFromID", "qz7mRDOSession", "Session.MAPIOBJECT"})
            if (line.find(sought) != std::string::npos) order.emplace_back(sought);
    }
    const std::vector<std::string> expected = {"Application.Version",        "Application.GetNamespace", "Application.Explorers", "Application.Inspectors",
                                               "Application.ActiveExplorer", "Application.Explorers",    "Explorers.Count",       "Application.GetNamespace",
                                               "NameSpace.GetFolderFromID",  "qz7mRDOSession",           "qz7mRDOSession",        "Application.Version"};
    std::erase_if(order, [](const std::string& line) { return line == "AddIn.ProgId" || line == "Session.MAPIOBJECT"; });
    EXPECT_EQ(order, expected);
}

TEST(ConnectTest, AStepThatFailsCostsOnlyItself) {
    struct Turn {
        std::u16string_view className, member;
    };
    for (const Turn& turn : {Turn{u"Application", u"Version"}, Turn{u"Application", u"Inspectors"}, Turn{u"Application", u"ActiveExplorer"}}) {
        TestRun run({.connected = false, .instruments = true});
        run.faults().failNth(turn.className, turn.member, 1, host_failure::Failed);
        run.connect();
        EXPECT_TRUE(run.apartment().TemplatesFolder) << toUtf8(turn.member);
        EXPECT_TRUE(run.apartment().gRdoSession) << toUtf8(turn.member);
        EXPECT_EQ(run.apartment().gProgId, u"Lorvane.Connect");
        EXPECT_TRUE(run.boxes().empty());
    }
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

TEST(DisconnectTest, LetsTheReferencesGo) {
    TestRun run;
    run.disconnect();
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(run.apartment().gRdoSession);
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(run.boxes().empty());
}

TEST(DisconnectTest, ToleratesThatTheLastWindowTookTheReferencesBefore) {
    TestRun run({.connected = false});
    Connect connect;
    connect.AddinInstance_OnDisconnection(0);
    EXPECT_FALSE(run.apartment().gOutlook);
}

TEST(OutAddInTest, StopsAtItsLastStatementWithEverythingElseInPlace) {
    TestRun run({.connected = false});
    OutAddIn addIn;
    EXPECT_THROW(addIn.InitHandler(run.application(), u"Lorvane.Connect"), HostError);
    EXPECT_FALSE(addIn.isInitialised());
    EXPECT_TRUE(run.apartment().gOutlook);
    addIn.UnInitHandler();
    addIn.UnInitHandler();
    EXPECT_FALSE(run.apartment().gOutlook);
}

/// Another instance of the add-in takes and gives back the shared state by name.
class SharedStateTest : public testing::Test {
protected:
    Object byName = makeObject<Connect>();
    TestRun run;
    Variant folder, nameSpace, application;
    void get() {
        byName.call(Member::WordEditorVariablesGet, {Argument::byReference(folder), Argument::byReference(nameSpace), Argument::byReference(application)});
    }
};

TEST_F(SharedStateTest, NothingReceivesTheCurrentFolder) {
    folder = Variant(Object());
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), run.apartment().TemplatesFolder.EntryID());
    EXPECT_TRUE(nameSpace.toObject() == run.apartment().gNameSpace);
    EXPECT_TRUE(application.toObject() == run.apartment().gOutlook);
}

TEST_F(SharedStateTest, AFolderThatIsThereStays) {
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    folder = Variant(Object(other));
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), other.EntryID());
}

TEST_F(SharedStateTest, SettingTakesAllThree) {
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    byName.call(Member::WordEditorVariablesSet, {Variant(Object(other)), Variant(Object()), Variant(Object(run.application()))});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), other.EntryID());
    EXPECT_FALSE(run.apartment().gNameSpace);
    EXPECT_TRUE(run.apartment().gOutlook);
}

TEST_F(SharedStateTest, WhatIsNoObjectCostsItsOwnStatementOnly) {
    folder = Variant(u"no folder");
    get();
    EXPECT_EQ(folder, Variant(u"no folder"));
    EXPECT_TRUE(nameSpace.toObject() == run.apartment().gNameSpace);
    EXPECT_TRUE(application.toObject() == run.apartment().gOutlook);

    const std::u16string before = run.apartment().TemplatesFolder.EntryID();
    byName.call(Member::WordEditorVariablesSet, {Variant(u"no folder"), Variant(Object()), Variant(Object(run.application()))});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), before);
    EXPECT_FALSE(run.apartment().gNameSpace);
    EXPECT_TRUE(run.apartment().gOutlook);
}

TEST_F(SharedStateTest, TheHostHandsOutTheSameState) {
    byName = run.application().CreateObject(u"Lorvane.Connect");
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), run.apartment().TemplatesFolder.EntryID());
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    byName.call(Member::WordEditorVariablesSet, {Variant(Object(other)), nameSpace, application});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), other.EntryID());
    Variant again, unused, unusedToo;
    byName.call(Member::WordEditorVariablesGet, {Argument::byReference(again), Argument::byReference(unused), Argument::byReference(unusedToo)});
    EXPECT_EQ(MAPIFolder(again.toObject()).EntryID(), other.EntryID()) << "the newest folder is handed out";
}

TEST_F(SharedStateTest, AFolderThatIsNothingTakesTheCurrentOneAway) {
    byName.call(Member::WordEditorVariablesSet, {Variant(Object()), Variant(Object(run.session())), Variant(Object(run.application()))});
    EXPECT_FALSE(run.apartment().TemplatesFolder);
}

/// The folder routines, by name.
class FoldersByNameTest : public testing::Test {
protected:
    TestRun run{{.connected = false, .samples = true}};
    Object byName = makeObject<Connect>();
    MAPIFolder other = run.addFolder(topFolder(run), u"Other");
};

TEST_F(FoldersByNameTest, TheDefaultFolderIsMade) {
    byName.call(Member::CreateLorvaneFolder);
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
    EXPECT_EQ(run.templatesFolder().Items().Count(), 3);
    usePrivately(run, other);
    byName.call(Member::CreateMapiFolder);
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), run.templatesFolder().EntryID());
}

TEST_F(FoldersByNameTest, SamplesGoIntoTheFolderGiven) {
    ensureNameSpace();
    byName.call(Member::ExampleTemplatesCreate, {Variant(Object(other))});
    EXPECT_EQ(other.Items().Count(), 3);
}

TEST_F(FoldersByNameTest, AnExampleIsGivenBodyFirst) {
    ensureNameSpace();
    byName.call(Member::TemplateExample, {Variant(u"The body"), Variant(u"The subject"), Variant(Object(other))});
    ASSERT_EQ(other.Items().Count(), 1);
    EXPECT_EQ(other.Items().Item(1).Subject(), u"The subject");
    EXPECT_EQ(other.Items().Item(1).Body(), u"The body");
}

TEST_F(SharedStateTest, AnUnknownMemberIsError438) {
    try {
        byName.call(Member::Subject);
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), 438);
    }
}

}  // namespace
}  // namespace lorvane::host
