#include "host/basGlobals.h"

#include <gtest/gtest.h>

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "support/TestRun.h"

/// What every module uses: version, boxes, settings, connecting on demand.
namespace lorvane::host {
namespace {

using namespace support;

TEST(OutlookVersionTest, IsTheTextUpToTheFirstPoint) {
    struct Turn {
        std::u16string_view version, major;
        std::int32_t number;
    };
    for (const Turn& turn : {Turn{u"9.0.0.6627", u"9", 9}, Turn{u"10.0.0.4608", u"10", 10}, Turn{u"11.0.0.5510", u"11", 11}, Turn{u"12", u"12", 12}}) {
        TestRun run({.version = std::u16string(turn.version), .connected = false});
        EXPECT_EQ(OutlookVersion(), turn.major);
        EXPECT_EQ(OutlookMajorVersion(), turn.number);
    }
}

TEST(OutlookVersionTest, ConnectsByItself) {
    TestRun run({.connected = false});
    ASSERT_FALSE(run.apartment().gOutlook);
    EXPECT_EQ(OutlookVersion(), u"11");
    EXPECT_TRUE(run.apartment().gOutlook);
}

TEST(OutlookVersionTest, ConnectsThroughTheRunningHostByName) {
    TestRun run({.connected = false, .instruments = true});
    run.recorder().clear();
    OutlookVersion();
    EXPECT_EQ(run.recorder().lines().front(), "call Machine.CreateObject \"Outlook.Application\", \"localhost\"");
}

TEST(GuardedVersionTest, BeginsWithBuild6515OfVersion10) {
    struct Turn {
        std::u16string_view version;
        bool guarded;
    };
    for (const Turn& turn : {Turn{u"10", false}, Turn{u"10.0.0.6514", false}, Turn{u"10.0.0.6515", true}, Turn{u"10.0.0.6820", true}, Turn{u"10.6515", true},
                             Turn{u"10.0.6515.0", false}, Turn{u"10.0.0.build", false}, Turn{u"100.0.0.6515", false}, Turn{u"11.0.0.6515", false},
                             Turn{u"9.0.0.6627", false}, Turn{u"12.0.0.6515", false}}) {
        TestRun run({.version = std::u16string(turn.version), .connected = false});
        EXPECT_EQ(IsGuardedOutlook10(), turn.guarded) << toUtf8(turn.version);
    }
}

TEST(NameSpaceTest, IsTakenOnceOnDemand) {
    TestRun run({.connected = false, .instruments = true});
    ensureNameSpace();
    EXPECT_TRUE(run.apartment().gNameSpace);
    run.recorder().clear();
    ensureNameSpace();
    EXPECT_TRUE(run.recorder().lines().empty());
}

TEST(SettingTest, IsReadAnewFromTheStore) {
    TestRun run;
    EXPECT_EQ(setting(u"Some"), u"");
    EXPECT_EQ(setting(u"Some", u"default"), u"default");
    run.setSetting(u"Some", u"value");
    EXPECT_EQ(setting(u"SOME"), u"value");
    saveSetting(u"Some", u"");
    EXPECT_EQ(setting(u"Some", u"default"), u"") << "written empty is not unwritten";
}

TEST(SettingTest, LiesUnderItsApplicationAndSection) {
    TestRun run({.instruments = true});
    run.recorder().clear();
    saveSetting(u"Key", u"value");
    EXPECT_EQ(run.recorder().lines().back(), "call Settings.SaveSetting \"kelvorn\", \"0x951592256\", \"Key\", \"value\"");
}

TEST(BoxTest, WithoutATitleShowsTheApplications) {
    TestRun run;
    MsgBox(u"Text", msgbox::Information);
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
    MsgBox(u"Text", msgbox::Information, u"Own");
    EXPECT_EQ(run.lastBox().title, u"Own");
}

TEST(BoxTest, OverAnEditorGivesTheForegroundBack) {
    TestRun run({.instruments = true});
    run.newMail();
    const std::int32_t before = apartment().machine.screen().GetForegroundWindow();
    run.user().AnswerNext({msgbox::Yes});
    run.recorder().clear();
    EXPECT_EQ(MessageBox4Word(u"Text", msgbox::Question, u"Title"), msgbox::Yes);
    std::vector<std::string> screenCalls;
    for (const std::string& line : run.recorder().lines())
        if (line.find("Screen.") != std::string::npos) screenCalls.push_back(line);
    EXPECT_EQ(screenCalls, (std::vector<std::string>{"call Screen.GetForegroundWindow", "call Screen.MsgBox \"Text\", 36, \"Title\"",
                                                     "call Screen.SetForegroundWindow " + std::to_string(before)}));
}

TEST(GuardTest, TheStandardBoxTellsNumberDescriptionAndRoutine) {
    TestRun run;
    EXPECT_FALSE(withErrorBox(u"basGlobals.GetFullName", [] { throw HostError(13); }));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.GetFullName - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 13: Type mismatch");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(GuardTest, ABoxThatCannotBeShownLetsNothingEscape) {
    TestRun run({.instruments = true});
    run.faults().failNth(u"Screen", u"MsgBox", 1, host_failure::Failed);
    EXPECT_NO_THROW(withErrorBox(u"routine", [] { throw HostError(13); }));
    EXPECT_TRUE(run.boxes().empty());
}

TEST(GuardTest, IgnoredErrorsShowNothing) {
    TestRun run;
    EXPECT_FALSE(ignoringErrors([] { throw HostError(13); }));
    EXPECT_FALSE(holdsIgnoringErrors([]() -> bool { throw HostError(13); }));
    EXPECT_TRUE(holdsIgnoringErrors([] { return true; }));
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::host
