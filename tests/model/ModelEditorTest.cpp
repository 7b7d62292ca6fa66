#include "model/ModelHostRig.h"

/// What is typed into an open item.
namespace lorvane::model {
namespace {

class ModelEditorTest : public ModelHostTest {};

TEST_F(ModelEditorTest, TypedTextReachesTheItemWithSaveOnly) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    EXPECT_EQ(inspector.EditorType(), 2);
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"Hello{ENTER}you");
    EXPECT_EQ(mail.HTMLBody(), u"");
    wrapped(mail).Save();
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>Hello<BR>you</BODY></HTML>");
    EXPECT_EQ(mail.Body(), u"Hello\r\nyou");
    EXPECT_EQ(mail.BodyFormat(), 2);
}

TEST_F(ModelEditorTest, CommitIsDelayedByTheRunsPumps) {
    driver().setCommitDelay(2);
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"x");
    mail.Save();
    EXPECT_EQ(mail.Body(), u"");
    desktop.pump();
    mail.Save();
    EXPECT_EQ(mail.Body(), u"");
    desktop.pump();
    mail.Save();
    EXPECT_EQ(mail.Body(), u"x");
}

TEST_F(ModelEditorTest, WrittenBodyReloadsTheEditorAndKeepsTheCaretBehindIt) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"beforeMARKafter");
    driver().focus(inspector, EditorFieldName::Body, 10);
    mail.Save();
    mail.HTMLBody(host::Replace(mail.HTMLBody(), u"MARK", u"<b>inserted</b>"));
    type(u"!");
    mail.Save();
    EXPECT_EQ(mail.HTMLBody(), u"<HTML><BODY>before<b>inserted</b>!after</BODY></HTML>");
}

TEST_F(ModelEditorTest, CaretGoesBackThroughTheFields) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    EXPECT_EQ(driver().focusedField(inspector), EditorFieldName::To);
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"+{TAB}subject+{TAB}b@x.org+{TAB}+{TAB}John Public <john@example.com>; a@x.org");
    mail.Save();
    EXPECT_EQ(mail.Subject(), u"subject");
    EXPECT_EQ(mail.BCC(), u"b@x.org");
    EXPECT_EQ(mail.To(), u"John Public; a@x.org");
    EXPECT_TRUE(mail.Recipients().ResolveAll());
    EXPECT_EQ(mail.Recipients().Item(1).AddressEntry().Address(), u"john@example.com");
}

TEST_F(ModelEditorTest, EditTakenBackGivesTheRecipientBack) {
    host::MailItem mail = application().CreateItem(0);
    mail.Recipients().call(Member::Add, {u"John Public <john@example.com>"});
    EXPECT_TRUE(mail.Recipients().ResolveAll());
    mail.Display();
    host::Inspector inspector = application().ActiveInspector();
    driver().focus(inspector, EditorFieldName::To, 4);
    type(u"zz");
    mail.Save();
    EXPECT_FALSE(mail.Recipients().Item(1).Resolved());
    type(u"{BACKSPACE 2}");
    mail.Save();
    EXPECT_TRUE(mail.Recipients().Item(1).Resolved());
}

TEST_F(ModelEditorTest, SaveOfAnOpenMailLeavesRecipientsAloneWhateverTheirNames) {
    mailstore::ItemRecord record;
    record.recipients = {{u"Public; John \"Q\"", u"john@example.com", u"SMTP", 1, true}, {u"", u"a@x.org", u"SMTP", 1, true}};
    host::MailItem mail(driver().import(record, session().GetDefaultFolder(16)));
    mail.Display();
    mail.Save();
    EXPECT_TRUE(mail.get(member::Saved).toBoolean());
    EXPECT_EQ(mail.Recipients().Count(), 2);
    driver().focus(application().ActiveInspector(), EditorFieldName::To, Driver::AtEnd);
    type(u"; b@x.org");
    mail.Save();
    EXPECT_EQ(mail.To(), u"Public; John \"Q\"; a@x.org; b@x.org");
    EXPECT_EQ(mail.Recipients().Count(), 3);
    EXPECT_TRUE(mail.Recipients().Item(2).Resolved());
}

TEST_F(ModelEditorTest, PasteTakesTheFragmentAsItIs) {
    clipboard.text = u"<plain>";
    host::Inspector inspector(driver().newMail());
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"^v");
    const std::string block =
        "Version:1.0\r\nStartHTML:0000000105\r\nEndHTML:0000000152\r\nStartFragment:0000000123\r\nEndFragment:0000000132\r\n"
        "<BODY>............<b>\xE4</b>x</BODY>";
    ASSERT_EQ(block.find("<b>"), 123u);
    clipboard.htmlFormat = host::Bytes(block.begin(), block.end());
    type(u"^v");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), u"<HTML><BODY>&lt;plain&gt;<b>ä</b>x</BODY></HTML>");
}

TEST_F(ModelEditorTest, SelectionOfTheEditorIsReadAndReplaced) {
    host::Inspector inspector(driver().newMail());
    driver().focus(inspector, EditorFieldName::Body, 0);
    type(u"one two");
    driver().select(inspector, 4, 3);
    const host::Object safe = model->machine().call(Member::CreateObject, {u"qz7mRedemption.qz7mSafeInspector"}).toObject();
    safe.put(Member::Item, inspector);
    EXPECT_EQ(safe.getText(member::SelText), u"two");
    safe.put(member::SelText, u"2");
    EXPECT_EQ(safe.getText(Member::Text), u"one 2");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Body(), u"one 2");
}

}  // namespace
}  // namespace lorvane::model
