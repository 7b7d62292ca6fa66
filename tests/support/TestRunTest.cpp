#include "support/TestRun.h"

#include <gtest/gtest.h>

#include "host/basGlobals.h"
#include "mailstore/MemoryStore.h"

namespace lorvane::support {
namespace {

using namespace host;

TEST(TestRunTest, ConnectsTheAddInOverAnEmptyPrivateFolder) {
    TestRun run;
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
    EXPECT_EQ(run.templatesFolder().Items().Count(), 0);
    EXPECT_EQ(run.setting(u"LastFolderName"), u"\\Personal Folders\\Meravix Settings\\Lorvane");
    EXPECT_EQ(OutlookVersion(), u"11");
    EXPECT_TRUE(run.boxes().empty());
}

TEST(TestRunTest, FirstRunMakesTheSamples) {
    TestRun run({.samples = true});
    EXPECT_EQ(run.templatesFolder().Items().Count(), 3);
}

TEST(TestRunTest, WithoutAConnectionRoutinesFindTheRunningHost) {
    TestRun run({.version = u"12.0.0.4518", .connected = false});
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_EQ(OutlookMajorVersion(), 12);
}

TEST(TestRunTest, MakesTemplatesWithTheirKindsAndCategories) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Dear [FirstName]"), u"Sales, Letters");
    run.addTemplate(u"News", html(u"<HTML><BODY>News</BODY></HTML>"));
    const Items items = run.templatesFolder().Items();
    ASSERT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Item(1).Body(), u"Dear [FirstName]");
    EXPECT_EQ(items.Item(1).Categories(), u"Sales, Letters");
    EXPECT_EQ(items.Item(2).HTMLBody(), u"<HTML><BODY>News</BODY></HTML>");
}

TEST(TestRunTest, KeysReachTheCaretOfANewMail) {
    TestRun run;
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    run.type(u"Dear John");
    EXPECT_EQ(run.bodyShown(mail), u"Dear John");
    EXPECT_EQ(run.record(mail.CurrentItem()).body, u"<HTML><BODY>Dear John</BODY></HTML>");
    EXPECT_EQ(mail.CurrentItem().Recipients().Count(), 1);
}

TEST(TestRunTest, InstrumentsSeeTheAddInAndNotTheSetUp) {
    TestRun run({.instruments = true});
    run.recorder().clear();
    const MailItem item = run.addTemplate(u"Offer", plain(u"Text"));
    EXPECT_TRUE(run.recorder().lines().empty());
    EXPECT_EQ(item.Subject(), u"Offer");
    EXPECT_EQ(run.recorder().lines(), (std::vector<std::string>{"get MailItem.Subject"}));

    run.faults().failNth(u"MailItem", u"Body", 1, host_failure::AccessDenied);
    EXPECT_THROW(item.Body(), HostError);
}

TEST(TestRunTest, TwoRunsShareAStore) {
    const std::shared_ptr<mailstore::SettingsStore> settings = mailstore::makeMemorySettings();
    const std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(u"Personal Folders", 2);
    { TestRun({.store = store, .settings = settings}).addTemplate(u"Offer", plain(u"Text")); }
    TestRun run({.store = store, .settings = settings});
    EXPECT_EQ(run.templatesFolder().Items().Count(), 1);
}

TEST(TestRunTest, BoxesClipboardAndSettingsAreAtHand) {
    TestRun run;
    EXPECT_EQ(run.lastBox().text, u"");
    run.user().AnswerNext({msgbox::Yes});
    EXPECT_EQ(MsgBox(u"Really?", msgbox::Question, u""), msgbox::Yes);
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
    run.setSetting(u"SharedTemplates", u"True");
    EXPECT_EQ(setting(u"SharedTemplates"), u"True");
    EXPECT_EQ(run.clipboardText(), std::nullopt);
    run.apartment().machine.clipboard().SetText(u"copied");
    EXPECT_EQ(run.clipboardText(), u"copied");
}

}  // namespace
}  // namespace lorvane::support
