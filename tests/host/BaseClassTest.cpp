#include <gtest/gtest.h>

#include "WindowRig.h"
#include "model/HostCore.h"
#include "model/ModelMembers.h"
#include "support/ErrorOf.h"

/// What hears of the host's own events, and the connection class's member `gBaseClass` over it.
namespace lorvane::host {
namespace {

using namespace support;

TEST(BaseClassTest, StopsAtItsLastStatementWithEverythingElseInPlace) {
    TestRun run({.connected = false});
    const auto baseClass = std::make_shared<OutAddIn>();
    EXPECT_EQ(errorOf([&] { baseClass->InitHandler(run.application(), u"Lorvane.Connect"); }).number(), 438);
    EXPECT_FALSE(baseClass->isInitialised());
    EXPECT_TRUE(run.apartment().gOutlook);
    run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys{0});
    baseClass->UnInitHandler();
    baseClass->UnInitHandler();
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_EQ(inspectorKeys(), Keys());
}

TEST(BaseClassTest, LettingGoReleasesWhatIsSharedAndKeepsTheNameSpace) {
    TestRun run;
    const Inspector mail = run.newMail();
    OutAddIn& baseClass = support::baseClass(run);
    baseClass.UnInitHandler();
    EXPECT_FALSE(run.apartment().gOutlook);
    EXPECT_FALSE(run.apartment().TemplatesFolder);
    EXPECT_TRUE(run.apartment().gNameSpace);
    EXPECT_TRUE(run.apartment().gRdoSession);
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_FALSE(isHeard(firstExplorer(run)));
    EXPECT_FALSE(isHeard(mail));
    const model::HostCore& core = implementation<model::HostWindow>(mail)->core();
    EXPECT_FALSE(core.applicationEvents.hasSinks());
    EXPECT_FALSE(core.explorersEvents.hasSinks());
    EXPECT_FALSE(core.inspectorsEvents.hasSinks());
    EXPECT_FALSE(baseClass.isInitialised());
    EXPECT_TRUE(baseClass.objCurMailItem()) << "it goes with what hears of the events";
}

TEST(BaseClassTest, WhatGoesOutAndTheFolderInViewAreNeitherChangedNorStopped) {
    TestRun run;
    const Object explorer = firstExplorer(run);
    model::HostCore& core = implementation<model::HostWindow>(explorer)->core();
    ASSERT_TRUE(core.applicationEvents.hasSinks());
    const MailItem mail = run.draft(u"Draft", plain(u"Text"));
    const mailstore::ItemRecord before = run.record(mail);
    for (const bool asked : {false, true}) {
        Variant cancel(asked);
        core.applicationEvents.raise(Member::ItemSend, {mail, Argument::byReference(cancel)});
        core.applicationEvents.raise(Member::Startup);
        EXPECT_EQ(cancel, Variant(asked));
    }
    EXPECT_EQ(run.record(mail).head.subject, before.head.subject);
    EXPECT_EQ(run.record(mail).body, before.body);
    const MAPIFolder drafts = run.folder(default_folder::Drafts);
    explorer.put(*explorer.dispatch()->memberNamed(u"CurrentFolder"), Variant(Object(drafts)));
    EXPECT_EQ(MAPIFolder(explorer.getObject(*explorer.dispatch()->memberNamed(u"CurrentFolder"))).EntryID(), drafts.EntryID());
}

/// By name, as another program has it.
class BaseClassByName : public testing::Test {
protected:
    TestRun run;
    Object connect = run.application().CreateObject(addInProgId);
    Object baseClass() const { return connect.getObject(Member::gBaseClass); }
};

TEST_F(BaseClassByName, IsThereWhileTheAddInIsConnected) {
    EXPECT_EQ(baseClass().dispatch()->className(), u"OutAddIn");
    EXPECT_EQ(baseClass(), baseClass());
    run.disconnect();
    EXPECT_FALSE(baseClass());
}

TEST_F(BaseClassByName, TellsTheMailThatWasOpenedLast) {
    EXPECT_FALSE(baseClass().getObject(Member::objCurMailItem));
    const Inspector mail = run.newMail();
    EXPECT_EQ(baseClass().getObject(Member::objCurMailItem), mail.CurrentItem());
    const MailItem other = run.draft(u"Other", plain(u""));
    baseClass().put(Member::objCurMailItem, Variant(Object(other)));
    EXPECT_EQ(baseClass().getObject(Member::objCurMailItem), other);
    EXPECT_EQ(support::baseClass(run).objCurMailItem(), other);
}

TEST_F(BaseClassByName, StartsAndEndsItsHearing) {
    baseClass().call(Member::UnInitHandler);
    EXPECT_FALSE(run.apartment().gOutlook);
    run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_EQ(errorOf([&] { baseClass().call(Member::InitHandler, {run.application(), u"Lorvane.Connect"}); }).number(), 438);
    EXPECT_TRUE(run.apartment().gOutlook);
    run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys{0});
}

TEST_F(BaseClassByName, CanBePutIntoAnotherInstance) {
    const Object other = makeAddIn();
    EXPECT_FALSE(other.getObject(Member::gBaseClass));
    other.put(Member::gBaseClass, Variant(baseClass()));
    EXPECT_EQ(other.getObject(Member::gBaseClass), baseClass());
    other.put(Member::gBaseClass, Variant(Object()));
    EXPECT_FALSE(other.getObject(Member::gBaseClass));
    EXPECT_EQ(errorOf([&] { other.put(Member::gBaseClass, Variant(Object(run.application()))); }).number(), 13);
}

TEST_F(BaseClassByName, HasNoOtherMembers) {
    EXPECT_EQ(errorOf([&] { baseClass().get(Member::Subject); }).number(), 438);
    EXPECT_EQ(errorOf([&] { baseClass().put(Member::Subject, u"x"); }).number(), 438);
    EXPECT_EQ(errorOf([&] { connect.put(Member::Subject, u"x"); }).number(), 438);
}

/// A host's entry for the add-in under another name.
struct OtherEntry final : Dispatch {
    std::u16string_view className() const noexcept override { return u"AddInInst"; }
    Variant get(Member member, Args) override {
        if (member != Member::ProgId) raiseNoSuchMember(className(), member);
        return u"Other.Connect";
    }
    void put(Member member, const Variant&, Args) override { raiseNoSuchMember(className(), member); }
    Variant call(Member member, Args args) override { return get(member, args); }
};

TEST(ConnectByName, ConnectsAndDisconnects) {
    TestRun run({.connected = false});
    const Object addIn = makeAddIn();
    addIn.call(Member::AddinInstance_OnConnection, {run.application(), 1, makeObject<OtherEntry>(), Array()});
    EXPECT_EQ(run.apartment().gProgId, u"Other.Connect");
    EXPECT_EQ(explorerKeys(), Keys{0});
    const Inspector mail = run.newMail();
    const auto bars = run.driver().bars(mail);
    const auto bar = std::ranges::find(bars, u"Lorvane", &model::BarTree::name);
    ASSERT_NE(bar, bars.end());
    EXPECT_EQ(bar->controls.at(0).onAction, u"<!Other.Connect>");
    addIn.call(Member::AddinInstance_OnDisconnection, {0, Array()});
    EXPECT_EQ(explorerKeys(), Keys());
    EXPECT_FALSE(run.apartment().gOutlook);
}

TEST(ConnectByName, AsksForItsArguments) {
    TestRun run({.connected = false});
    const Object addIn = makeAddIn();
    EXPECT_EQ(errorOf([&] { addIn.call(Member::AddinInstance_OnConnection, {run.application()}); }).number(), 449);
    EXPECT_EQ(errorOf([&] { addIn.call(Member::AddinInstance_OnDisconnection); }).number(), 449);
    EXPECT_FALSE(run.apartment().gOutlook);
}

}  // namespace
}  // namespace lorvane::host
