#include "contract/HostFixture.h"

namespace lorvane::contract {

class InspectorWindow : public OneHost {};

TEST_F(InspectorWindow, AnItemWithTextOpensInTheEditorOfItsKind) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(hostWays().front(), {.editor = run});
        const MailItem plain = running.plainItem(u"Dear John");
        EXPECT_EQ(running.open(plain).EditorType(), editor_type::Text);
        const MailItem marked = running.htmlItem(u"Dear John");
        EXPECT_EQ(running.open(marked).EditorType(), editor_type::Html);
        const MailItem rich = running.newItem();
        put(makeSafeMailItem(rich), u"RTFBody", rtf(u"Dear John"));
        EXPECT_EQ(running.open(rich).EditorType(), editor_type::RichText);
    }
}

TEST_F(InspectorWindow, ANewItemOpensInTheRunsEditor) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(hostWays().front(), {.editor = run});
        EXPECT_EQ(running.person().newMail().EditorType(), static_cast<std::int32_t>(run));
    }
}

TEST_F(InspectorWindow, TasksAppointmentsAndContactsAreAlwaysRich) {
    for (const char16_t* messageClass : {u"IPM.Task", u"IPM.Appointment", u"IPM.Contact"}) {
        const MailItem item = host().newItem(messageClass);
        EXPECT_EQ(item.GetInspector().EditorType(), editor_type::RichText);
        item.Body(u"Dear John");
        EXPECT_EQ(host().open(item).EditorType(), editor_type::RichText);
    }
}

TEST_F(InspectorWindow, WithoutWordNoMailIsAWordMail) {
    const Inspector inspector = person().newMail();
    EXPECT_FALSE(truth(inspector, u"IsWordMail"));
    EXPECT_FALSE(inspector.WordEditor());
}

TEST_F(InspectorWindow, TheDocumentOfANewHtmlItemIsEmptyHtml) {
    const Inspector inspector = person().newMail();
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), emptyHtml);
    EXPECT_EQ(inspector.CurrentItem().Body(), u"");
}

TEST_F(InspectorWindow, CurrentItemIsTheOpenItem) {
    const MailItem item = host().savedItem(u"Offer");
    const Inspector inspector = host().open(item);
    EXPECT_EQ(inspector.CurrentItem().EntryID(), item.EntryID());
    EXPECT_EQ(inspector.CurrentItem().Subject(), u"Offer");
}

TEST_F(InspectorWindow, GetInspectorIsCreatedHidden) {
    const MailItem item = host().plainItem(u"Dear John");
    const Inspector hidden = item.GetInspector();
    EXPECT_EQ(hidden.EditorType(), editor_type::Text);
    EXPECT_FALSE(host().application().ActiveInspector());
    EXPECT_EQ(item.GetInspector(), hidden);
}

TEST_F(InspectorWindow, DisplayShowsAndBringsToTheFront) {
    const MailItem first = host().savedItem(u"First"), second = host().savedItem(u"Second");
    first.Display();
    second.Display();
    EXPECT_EQ(host().application().ActiveInspector().CurrentItem().Subject(), u"Second");
    first.GetInspector().Display();
    EXPECT_EQ(host().application().ActiveInspector().CurrentItem().Subject(), u"First");
}

TEST_F(InspectorWindow, ActivateBringsForward) {
    const Inspector first = host().open(host().savedItem(u"First"));
    host().open(host().savedItem(u"Second"));
    first.Activate();
    EXPECT_EQ(host().application().ActiveInspector(), first);
}

TEST_F(InspectorWindow, TheActiveWindowsMayBeNone) {
    EXPECT_FALSE(host().application().ActiveInspector());
    EXPECT_FALSE(host().application().ActiveExplorer());
    const Object explorer = person().openExplorer();
    EXPECT_EQ(host().application().ActiveExplorer(), explorer);
    EXPECT_FALSE(host().application().ActiveInspector());
}

TEST_F(InspectorWindow, CollectionsCountTheLiveWindows) {
    EXPECT_EQ(host().application().Inspectors().Count(), 0);
    EXPECT_EQ(host().application().Explorers().Count(), 0);
    person().openExplorer();
    const Inspector inspector = person().newMail();
    EXPECT_EQ(host().application().Inspectors().Count(), 1);
    EXPECT_EQ(host().application().Explorers().Count(), 1);
    inspector.Close(olDiscard);
    EXPECT_EQ(host().application().Inspectors().Count(), 0);
    EXPECT_FALSE(host().application().ActiveInspector());
}

TEST_F(InspectorWindow, TheApplicationHasNoMemberInspector) {
    EXPECT_HOST_ERROR(runtime_error::NoSuchMember, host().application().get(Member::Inspector));
}

TEST_F(InspectorWindow, AnOpenItemIsOpenedOnce) {
    const MailItem item = host().savedItem(u"Offer");
    const Inspector first = host().open(item);
    const Inspector second = host().open(item);
    EXPECT_EQ(first, second);
    EXPECT_EQ(host().application().Inspectors().Count(), 1);
}

TEST_F(InspectorWindow, TheExplorersSelectionIsWhatThePersonSelected) {
    const MailItem first = host().savedItem(u"First"), second = host().savedItem(u"Second");
    const Object explorer = person().openExplorer();
    EXPECT_EQ(number(object(explorer, u"Selection"), u"Count"), 0);
    person().selectItems(explorer, {identityOf(second), identityOf(first)});
    const Object selection = object(explorer, u"Selection");
    ASSERT_EQ(number(selection, u"Count"), 2);
    EXPECT_EQ(MailItem(call(selection, u"Item", {1}).toObject()).Subject(), u"Second");
    EXPECT_EQ(MailItem(call(selection, u"Item", {2}).toObject()).Subject(), u"First");
    EXPECT_NE(errorOf([&] { call(selection, u"Item", {3}); }).number(), 0);
}

class OpenItem : public OneHost {};

TEST_F(OpenItem, TypingReachesThePropertiesOnSaveOnly) {
    const Inspector inspector = host().open(host().plainItem(u"Dear "));
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear ");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear John");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
}

TEST_F(OpenItem, NothingIsCommittedByItself) {
    const Inspector inspector = host().open(host().plainItem(u"Dear "));
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    host().pump(100);
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear ");
}

TEST_F(OpenItem, SaveOfAWrapperCommitsToo) {
    const Inspector inspector = host().open(host().plainItem(u"Dear "));
    const SafeMailItem safe = makeSafeMailItem(inspector.CurrentItem());
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    safe.Save();
    EXPECT_EQ(safe.Body(), u"Dear John");
    EXPECT_EQ(host().again(inspector.CurrentItem()).Body(), u"Dear John");
}

TEST_F(OpenItem, TheFieldsOfTheWindowCommitWithIt) {
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::To, 0);
    person().type(u"john@example.com");
    person().focus(inspector, Field::Cc, 0);
    person().type(u"jane@example.com; joe@example.com");
    person().focus(inspector, Field::Bcc, 0);
    person().type(u"secret@example.com");
    person().focus(inspector, Field::Subject, 0);
    person().type(u"Offer");
    const MailItem item = inspector.CurrentItem();
    EXPECT_EQ(item.Subject(), u"");
    EXPECT_EQ(item.To(), u"");
    item.Save();
    EXPECT_EQ(item.Subject(), u"Offer");
    EXPECT_EQ(item.To(), u"john@example.com");
    EXPECT_EQ(item.CC(), u"jane@example.com; joe@example.com");
    EXPECT_EQ(item.BCC(), u"secret@example.com");
    EXPECT_EQ(item.Recipients().Count(), 4);
}

TEST_F(OpenItem, CloseWithSaveCommitsAll) {
    const MailItem item = host().plainItem(u"Dear ");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).Body(), u"Dear John");
}

TEST_F(OpenItem, CloseWithDiscardDrops) {
    const MailItem item = host().plainItem(u"Dear ");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"John");
    inspector.Close(olDiscard);
    EXPECT_EQ(host().again(item).Body(), u"Dear ");
}

TEST_F(OpenItem, ThePersonClosesEitherWay) {
    const MailItem item = host().plainItem(u"Dear ");
    const Inspector first = host().open(item);
    person().focus(first, Field::Body, -1);
    person().type(u"John");
    person().closeInspector(first, true);
    EXPECT_EQ(host().again(item).Body(), u"Dear John");
    const Inspector second = host().open(host().again(item));
    person().focus(second, Field::Body, -1);
    person().type(u"!");
    person().closeInspector(second, false);
    EXPECT_EQ(host().again(item).Body(), u"Dear John");
}

TEST_F(OpenItem, CommittingKeepsTheKind) {
    const Inspector plain = host().open(host().plainItem(u"a"));
    person().focus(plain, Field::Body, -1);
    person().type(u"<b>");
    plain.CurrentItem().Save();
    EXPECT_EQ(plain.CurrentItem().BodyFormat(), body_format::Plain);
    EXPECT_EQ(plain.CurrentItem().Body(), u"a<b>");
    const Inspector marked = host().open(host().htmlItem(u"a"));
    person().focus(marked, Field::Body, -1);
    person().type(u"<b>");
    marked.CurrentItem().Save();
    EXPECT_EQ(marked.CurrentItem().HTMLBody(), html(u"a&lt;b&gt;"));
}

TEST_F(OpenItem, TypingIntoARichItemKeepsItRich) {
    const MailItem item = host().newItem();
    put(makeSafeMailItem(item), u"RTFBody", rtf(u"Dear {\\b John}"));
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u" {x}");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().BodyFormat(), body_format::RichText);
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John {x}");
    EXPECT_NE(text(makeSafeMailItem(inspector.CurrentItem()), u"RTFBody").find(u"{\\b John"), std::u16string::npos);
}

TEST_F(OpenItem, ASaveWithNothingTypedLeavesTheSourceAsItIs) {
    const std::u16string source = u"<html>\n<BODY  bgcolor = red >a\n<P>b</html>";
    const MailItem item = host().newItem();
    item.HTMLBody(source);
    const Inspector inspector = host().open(item);
    inspector.CurrentItem().Save();
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).HTMLBody(), source);
}

TEST_F(OpenItem, WritingTheSubjectShowsInTheWindow) {
    const Inspector inspector = person().newMail();
    inspector.CurrentItem().Subject(u"Offer");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Subject(), u"Offer");
}

TEST_F(OpenItem, AddedRecipientsShowInTheWindow) {
    const Inspector inspector = person().newMail();
    addRecipient(inspector.CurrentItem(), u"john@example.com");
    EXPECT_EQ(person().shown(inspector, Field::To), u"john@example.com");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().To(), u"john@example.com");
}

TEST_F(OpenItem, DeletingTheItemClosesItsWindow) {
    const MailItem item = host().savedItem(u"Offer");
    host().open(item).CurrentItem().Delete();
    EXPECT_EQ(host().application().Inspectors().Count(), 0);
}

TEST_F(OpenItem, ANewItemGetsTheKindOfTheEditorItIsTypedIn) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(hostWays().front(), {.editor = run});
        const Inspector inspector = running.person().newMail();
        running.person().focus(inspector, Field::Body, 0);
        running.person().type(u"Dear John");
        inspector.CurrentItem().Save();
        EXPECT_EQ(inspector.CurrentItem().BodyFormat(), static_cast<std::int32_t>(run));
        EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
    }
}

TEST_F(OpenItem, APostOpensInTheRunsEditorAndShiftTabLeavesItsBody) {
    const Inspector inspector = host().newItem(u"IPM.Post").GetInspector();
    inspector.Display();
    EXPECT_EQ(inspector.EditorType(), editor_type::Html);
    person().focus(inspector, Field::Body, 0);
    host().sendKeys(u"+{TAB}");
    EXPECT_EQ(person().focusedField(inspector), Field::Subject);
}

TEST_F(OpenItem, TypingIntoATaskReachesItsBodyOnSave) {
    const MailItem task = host().newItem(u"IPM.Task");
    const Inspector inspector = host().open(task);
    person().focus(inspector, Field::Body, 0);
    person().type(u"Dear John");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear John");
}

}  // namespace lorvane::contract
