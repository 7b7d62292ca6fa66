#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <utility>

#include "WindowRig.h"
#include "host/TextFunctions.h"
#include "model/ItemObject.h"

/// The wrappers of the host's Inspectors, from the window's first display to its close event, and what is remembered of the mail that was opened last.
namespace lorvane::host {
namespace {

using namespace support;

class InspectorWrappers : public testing::Test {
protected:
    static WrapperCollection<clsInspWrap>& wraps() { return inspectorWraps().gInspectorWraps; }
    static std::shared_ptr<clsInspWrap> wrapper(std::u16string_view key) { return wraps().Item(key); }
    bool isNewMailPending() const { return baseClass(run).isNewMailPending(); }
    TestRun run{{.instruments = true}};
};

struct KindRow {
    ItemKind kind;
    bool isWrapped;
    std::u16string_view identity;
    friend void PrintTo(const KindRow& row, std::ostream* out) { *out << toUtf8(row.kind.messageClass); }
};

class EachKind : public testing::TestWithParam<KindRow> {};

TEST_P(EachKind, IsWrappedWhereItHasAToolbar) {
    const KindRow& row = GetParam();
    TestRun run;
    const Inspector inspector = openItem(run, row.kind);
    EXPECT_EQ(inspector.CurrentItem().Class(), row.kind.itemClass);
    EXPECT_EQ(inspectorKeys(), row.isWrapped ? Keys{0} : Keys());
    if (row.isWrapped) {
        EXPECT_EQ(inspectorWraps().gInspectorWraps.Item(u"0")->identityText(), row.identity);
        EXPECT_EQ(inspectorWraps().gInspectorWraps.Item(u"0")->Inspector(), inspector);
    }
    const auto bars = run.driver().bars(inspector);
    EXPECT_EQ(std::ranges::count(bars, u"Lorvane", &model::BarTree::name), row.isWrapped ? 1 : 0);
    closeWindow(inspector);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_EQ(inspectorWraps().gInspectorKey, row.isWrapped ? 1 : 0);
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, EachKind,
                         testing::Values(KindRow{postKind, true, u"45"}, KindRow{appointmentKind, true, u"26"}, KindRow{taskKind, true, u"48"},
                                         KindRow{contactKind, false, u""}, KindRow{listKind, false, u""}, KindRow{journalKind, false, u""},
                                         KindRow{documentKind, false, u""}, KindRow{noteKind, false, u""}));

TEST_F(InspectorWrappers, AMailIsKnownByItsEntryId) {
    const MailItem saved = run.draft(u"Draft", plain(u"Text"));
    run.openMail(saved);
    run.newMail();
    EXPECT_EQ(wrapper(u"0")->identityText(), saved.EntryID());
    EXPECT_EQ(wrapper(u"1")->identityText(), u"") << "it was not saved yet";
}

TEST_F(InspectorWrappers, AContactThatIsWrappedByHandIsKnownByItsClass) {
    const Inspector contact = openItem(run, contactKind);
    EXPECT_EQ(AddInsp(contact), u"0");
    EXPECT_EQ(wrapper(u"0")->identityText(), u"40");
    contact.CurrentItem().Display();
    closeWindow(contact);
    EXPECT_EQ(inspectorKeys(), Keys());
}

TEST_F(InspectorWrappers, AWindowThatIsNotDisplayedIsNotWrapped) {
    const Inspector hidden = run.draft(u"Draft", plain(u"Text")).GetInspector();
    EXPECT_EQ(inspectorKeys(), Keys());
    hidden.Display();
    EXPECT_EQ(inspectorKeys(), Keys{0});
    hidden.Display();
    EXPECT_EQ(inspectorKeys(), Keys{0});
}

TEST_F(InspectorWrappers, TwoWindowsOnOneMailHaveTheirOwn) {
    const std::u16string entryId = run.draft(u"Draft", plain(u"Text")).EntryID();
    // Two objects of the mail, each asked for its window before the other is shown.
    const Inspector first = run.session().GetItemFromID(entryId, u"").GetInspector(), second = run.session().GetItemFromID(entryId, u"").GetInspector();
    first.Display();
    second.Display();
    ASSERT_FALSE(first == second);
    EXPECT_EQ(inspectorKeys(), (Keys{0, 1}));
    EXPECT_EQ(wrapper(u"0")->identityText(), entryId);
    EXPECT_EQ(wrapper(u"1")->identityText(), entryId);

    int clicks = 0;
    laterCommands().openTutorialPage = [&] { ++clicks; };
    closeWindow(first);
    EXPECT_EQ(inspectorKeys(), Keys{1});
    run.driver().clickBar(second, u"Lorvane/Help");
    EXPECT_EQ(clicks, 1);
}

TEST_F(InspectorWrappers, KeysAreNotUsedAgain) {
    for (int turn = 0; turn < 2; ++turn) closeWindow(run.newMail());
    run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys{2});
}

TEST_F(InspectorWrappers, OneEndsInsideItsOwnCloseEvent) {
    const Inspector first = run.newMail(), second = run.newMail();
    const std::weak_ptr<clsInspWrap> watched = wrapper(u"0");
    EXPECT_EQ(watched.use_count(), 1) << "the collection alone keeps it";
    closeWindow(first);
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(isHeard(first));
    EXPECT_TRUE(isHeard(second));
    EXPECT_EQ(inspectorKeys(), Keys{1});
}

TEST_F(InspectorWrappers, AClickMayCloseItsOwnWindow) {
    const Inspector mail = run.newMail();
    const std::weak_ptr<clsInspWrap> watched = wrapper(u"0");
    laterCommands().openTutorialPage = [&] { closeWindow(mail); };
    run.driver().clickBar(mail, u"Lorvane/Help");
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(inspectorKeys(), Keys());
}

TEST_F(InspectorWrappers, KillingTakesTheRightOneOnly) {
    run.newMail();
    auto other = std::make_shared<clsInspWrap>();
    KillInsp(0, other);
    EXPECT_TRUE(other);
    EXPECT_EQ(inspectorKeys(), Keys{0});
    KillInsp(7, other);
    EXPECT_TRUE(other);
    auto mine = wrapper(u"0");
    KillInsp(0, mine);
    EXPECT_FALSE(mine);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(InspectorWrappers, AWindowClosesThoughAnotherWrapperStandsUnderItsKey) {
    const Inspector mail = run.newMail();
    const auto other = std::make_shared<clsInspWrap>();
    wraps().Remove(u"0");
    wraps().Add(other, u"0");
    closeWindow(mail);
    EXPECT_EQ(wrapper(u"0"), other) << "the stale entry stays";
    EXPECT_EQ(run.application().Inspectors().Count(), 0);
}

TEST_F(InspectorWrappers, TheLastKeyIsKept) {
    constexpr std::int16_t last = std::numeric_limits<std::int16_t>::max();
    inspectorWraps().gInspectorKey = last;
    const Inspector first = run.newMail(), second = run.newMail();
    EXPECT_EQ(inspectorKeys(), Keys{last});
    EXPECT_EQ(inspectorWraps().gInspectorKey, last);
    EXPECT_EQ(wrapper(u"32767")->Inspector(), first) << "the key is in use, so the second window has no wrapper";
    closeWindow(second);
    EXPECT_EQ(inspectorKeys(), Keys{last});
    closeWindow(first);
    EXPECT_EQ(AddInsp(run.newMail()), u"32767");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(InspectorWrappers, TellTheKeyOfTheOneJustAdded) {
    const Inspector contact = openItem(run, contactKind);
    EXPECT_EQ(AddInsp(contact), u"0");
    EXPECT_EQ(AddInsp(contact), u"1");
    EXPECT_EQ(inspectorKeys(), (Keys{0, 1}));
}

TEST_F(InspectorWrappers, AFailureInTheMiddleTakesNothingBack) {
    run.faults().failNth(u"MailItem", u"EntryID", 1, host_failure::Failed);
    const Inspector mail = run.newMail();
    EXPECT_EQ(run.faults().failures(), 1U);
    EXPECT_EQ(inspectorKeys(), Keys{0});
    EXPECT_EQ(wrapper(u"0")->identityText(), u"");
    closeWindow(mail);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(InspectorWrappers, TheSubjectOpenedLastIsThatOfAMail) {
    EXPECT_EQ(inspectorWraps().lastOpenedSubject, u"");
    run.openMail(run.draft(u"First", plain(u"")));
    EXPECT_EQ(inspectorWraps().lastOpenedSubject, u"First");
    openItem(run, postKind, u"A post");
    openItem(run, contactKind, u"A contact");
    EXPECT_EQ(inspectorWraps().lastOpenedSubject, u"First");
    closeWindow(run.openMail(run.receivedMail(u"Second", plain(u""))));
    EXPECT_EQ(inspectorWraps().lastOpenedSubject, u"Second");
}

TEST_F(InspectorWrappers, TheMailOpenedLastIsRemembered) {
    const Inspector mail = run.newMail();
    EXPECT_EQ(baseClass(run).objCurMailItem(), mail.CurrentItem());
    openItem(run, taskKind);
    EXPECT_EQ(baseClass(run).objCurMailItem(), mail.CurrentItem()) << "other items do not take its place";
    const Inspector received = run.openMail(run.receivedMail(u"Question", plain(u"")));
    EXPECT_EQ(baseClass(run).objCurMailItem(), received.CurrentItem());
}

TEST_F(InspectorWrappers, EveryMailCountsAsNew) {
    EXPECT_FALSE(isNewMailPending());
    run.newMail();
    EXPECT_TRUE(isNewMailPending());
    openItem(run, appointmentKind);
    EXPECT_FALSE(isNewMailPending());
    run.openMail(run.receivedMail(u"Question", plain(u"")));
    EXPECT_TRUE(isNewMailPending()) << "a received one too";
    openItem(run, noteKind);
    EXPECT_TRUE(isNewMailPending()) << "a sticky note is ignored altogether";
    openItem(run, contactKind);
    EXPECT_FALSE(isNewMailPending());
    EXPECT_FALSE(baseClass(run).isReplyPending());
}

TEST_F(InspectorWrappers, AnAnswerIsNeverPending) {
    const Inspector received = run.openMail(run.receivedMail(u"Question", plain(u"Text")));
    implementation<model::ItemObject>(received.CurrentItem())->state()->events.raise(Member::Reply);
    EXPECT_FALSE(baseClass(run).isReplyPending());
}

/// What is shown where the helper or the item is not there, exactly.
class NewInspectorBox : public InspectorWrappers {};

TEST_F(NewInspectorBox, TellsThatTheHelperIsMissing) {
    run.faults().failNth(u"Machine", u"CreateObject", 1, runtime_error::CannotCreateObject, u"ActiveX component can't create object");
    openItem(run, contactKind);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Error Number: 429Error Description(redemption): ActiveX component can't create object");
    EXPECT_EQ(run.lastBox().style, 0);
    EXPECT_EQ(run.lastBox().title, u"Lorvane");
}

TEST_F(NewInspectorBox, TellsThatTheItemIsGoneAndTheFlagStays) {
    run.newMail();
    ASSERT_TRUE(isNewMailPending());
    run.faults().failNth(u"ContactItem", u"Class", 3, host_failure::NotFound, u"The item is gone.");
    openItem(run, contactKind);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Error Number: -2147221233Error Description(redemption): The item is gone.");
    EXPECT_TRUE(isNewMailPending());
}

TEST_F(NewInspectorBox, ComesForAWrappedItemBehindItsWrapper) {
    // What the bar asks of a mail goes through the helper as well; a task's does not.
    run.faults().failNth(u"Machine", u"CreateObject", 1, runtime_error::CannotCreateObject);
    openItem(run, taskKind);
    EXPECT_EQ(inspectorKeys(), Keys{0});
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_TRUE(run.lastBox().text.starts_with(u"Error Number: 429Error Description(redemption): ")) << toUtf8(run.lastBox().text);
}

TEST_F(NewInspectorBox, StaysAwayFromStickyNotes) {
    run.faults().failNth(u"Machine", u"CreateObject", 1, runtime_error::CannotCreateObject);
    openItem(run, noteKind);
    EXPECT_EQ(run.faults().failures(), 0U);
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(NewInspectorBox, AnotherWindowMayOpenBehindIt) {
    run.faults().failNth(u"Machine", u"CreateObject", 1, runtime_error::CannotCreateObject);
    bool opened = false;
    run.user().onBox([&](const auto&) {
        if (!std::exchange(opened, true)) run.newMail();
    });
    openItem(run, taskKind);
    EXPECT_EQ(inspectorKeys(), (Keys{0, 1}));
    EXPECT_EQ(run.boxes().size(), 1U);
}

TEST_F(NewInspectorBox, AllWindowsMayCloseBehindIt) {
    run.faults().failNth(u"Machine", u"CreateObject", 1, runtime_error::CannotCreateObject);
    run.user().onBox([&](const auto&) {
        closeWindow(firstExplorer(run));
        closeWindow(ownApplication(run).ActiveInspector());
    });
    openItem(run, taskKind);
    EXPECT_EQ(run.application().Inspectors().Count(), 0);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_FALSE(run.apartment().gOutlook);
}

TEST_F(InspectorWrappers, AClassThatCannotBeReadCostsTheWrapper) {
    run.faults().failNth(u"MailItem", u"Class", 2, host_failure::Failed);
    const Inspector mail = run.newMail();
    EXPECT_EQ(run.faults().failures(), 1U);
    EXPECT_EQ(inspectorKeys(), Keys());
    EXPECT_TRUE(isNewMailPending());
    EXPECT_TRUE(isHeard(mail)) << "the newest Inspector is known all the same";
}

}  // namespace
}  // namespace lorvane::host
