#include <gtest/gtest.h>

#include "InsertRig.h"

/// "Insert (text only)": the template's plain text lands at the caret, its tags replaced.
namespace lorvane::support {
namespace {

using namespace host;

TEST(InsertTextTest, GoesIntoAnHtmlMailAtTheCaret) {
    TestRun run;
    run.addTemplate(u"Offer", html(u"<HTML><BODY><B>Dear</B> [FirstName]<BR>&lt;5% &amp; more</BODY></HTML>"));
    const Inspector mail = openDraft(run, html(u"<HTML><BODY><P>Hello <I>there</I></P></BODY></HTML>"), 6);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(sourceOf(run, mail), u"<HTML><BODY><P>Hello Dear John<BR>\r\n&lt;5% &amp; more<I>there</I></P></BODY></HTML>");
    EXPECT_EQ(savedSourceOf(run, mail), sourceOf(run, mail));
    EXPECT_EQ(run.clipboardText(), u"Dear John\r\n<5% & more");
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
    EXPECT_TRUE(run.user().leftUp().empty());
}

TEST(InsertTextTest, GoesIntoAPlainMailAtTheCaret) {
    TestRun run({.editor = model::EditorKind::Plain});
    run.addTemplate(u"Offer", html(u"<HTML><BODY><B>Dear</B> [FullName]</BODY></HTML>"));
    for (const std::u16string_view button : {insertText, insertWithFormat}) {
        const Inspector mail = openDraft(run, plain(u"Before after"), 7);
        useTemplate(run, u"Offer", button);
        EXPECT_EQ(sourceOf(run, mail), u"Before Dear John Publicafter");
        run.driver().closeInspector(mail, false);
    }
}

TEST(InsertTextTest, GoesIntoARichMailAtTheCaret) {
    TestRun run({.editor = model::EditorKind::Rich});
    run.addTemplate(u"Plain", plain(u"Dear [FirstName]"));
    run.addTemplate(u"Formatted", html(u"<HTML><BODY><B>Dear</B> [FirstName], </BODY></HTML>"));
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Plain", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"Dear John");
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Formatted", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"Dear John,Dear John") << "spliced into the text";
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Formatted", insertWithFormat);
    EXPECT_EQ(run.bodyShown(mail), u"Dear John,Dear John,Dear John");
    EXPECT_TRUE(run.boxes().empty());
}

TEST(InsertTextTest, TheFirstResolvedToRecipientNamesTheReader) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"[FullName]|[FirstName]|[Date]"));
    const Inspector mail = run.newMail();
    run.addRecipient(mail.CurrentItem(), u"Carl Copy <carl@example.com>", 2);
    run.addRecipient(mail.CurrentItem(), u"nobody anyone knows");
    run.addRecipient(mail.CurrentItem(), u"Jane Public <jane@example.com>");
    run.addRecipient(mail.CurrentItem(), u"John Other <john@example.com>");
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"Jane Public|Jane|10-Jan-2028");
}

TEST(InsertTextTest, WithoutARecipientTheNameTagsStay) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"[fullname] [Date]"));
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"[fullname] 10-Jan-2028");
}

TEST(InsertTextTest, ANameOfTheAddressBookComesFirst) {
    TestRun run;
    run.addContact({.name = u"Smith, Anna", .address = u"anna@example.com", .given = u"Anna", .surname = u"Smith"});
    run.addTemplate(u"Offer", plain(u"Dear [FirstName]"));
    const Inspector mail = run.newMail({u"Smith, Anna"});
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"Dear Anna");
}

TEST(InsertTextTest, SubjectAndRecipientsStayAsTheyWere) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    const Inspector mail = openDraft(run, plain(u"Body"), 0, {u"John Public <john@example.com>", u"Jane Public <jane@example.com>"});
    useTemplate(run, u"Offer", insertText);
    const MailItem item = mail.CurrentItem();
    EXPECT_EQ(item.Subject(), u"About us");
    ASSERT_EQ(item.Recipients().Count(), 2);
    EXPECT_EQ(item.Recipients().Item(1).Name(), u"John Public");
    EXPECT_EQ(item.Recipients().Item(2).Name(), u"Jane Public");
}

TEST(InsertTextTest, ANewMailIsADraftAfterwards) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Offer", insertText);
    EXPECT_NE(mail.CurrentItem().EntryID(), u"");
    EXPECT_EQ(run.folder(default_folder::Drafts).Items().Count(), 1);
}

TEST(InsertTextTest, TheTemplateItselfStaysAsItWas) {
    TestRun run;
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Dear [FirstName]"));
    const mailstore::ItemRecord before = run.record(offer);
    openDraft(run, html(document(u"Text")), 0);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.record(run.templatesFolder().Items().Item(1)), before);
}

TEST(InsertTextTest, TheTextGoesWhereTheCaretIsEvenIntoTheSubject) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"One\r\nTwo"));
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    run.focus(mail, model::EditorFieldName::Subject, -1);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(run.record(mail.CurrentItem()).head.subject, u"About usOne");
    EXPECT_EQ(run.bodyShown(mail), u"Text");
}

TEST(InsertTextTest, TheUsesOfASharedTemplateAreLikeThoseOfAPrivateOne) {
    TestRun run;
    run.addTemplate(shareFolder(run), u"Ours", plain(u"Dear [FirstName]"));
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    useTemplate(run, u"Ours (Shared)", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"Dear John");
}

TEST(InsertTextTest, AttachmentsComeAlongAndLeaveNoFiles) {
    TestRun run;
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.attach(offer, "prices.txt", {1, 2, 3});
    offer.Save();
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    useTemplate(run, u"Offer", insertText);
    EXPECT_EQ(attachmentNames(run, mail.CurrentItem()), Subjects{u"prices.txt"});
    EXPECT_EQ(*run.record(mail.CurrentItem()).attachments[0].data, (Bytes{1, 2, 3}));
    EXPECT_TRUE(localFiles().empty());
}

}  // namespace
}  // namespace lorvane::support
