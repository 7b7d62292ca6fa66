#include <gtest/gtest.h>

#include "InsertRig.h"

/// Insertion into posts, tasks and appointments.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view boldSource = u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>";

class OtherItemsTest : public testing::Test {
protected:
    OtherItemsTest() {
        const MailItem bold = run.addTemplate(u"Bold", html(boldSource));
        run.attach(bold, "prices.txt", {1});
        bold.Save();
        run.addTemplate(u"Plain", plain(u"Dear [FirstName], [Date]"));
    }
    Inspector openPost(const BodyText& body, std::int32_t caret = 0) { return openOther(run, postKind, body, caret); }
    void expectUsed() {
        EXPECT_FALSE(isChooserOpen());
        EXPECT_TRUE(run.boxes().empty()) << toUtf8(run.lastBox().text);
        EXPECT_TRUE(localFiles().empty());
    }
    TestRun run{{.instruments = true}};
};

TEST_F(OtherItemsTest, APostTakesTheHtmlAtTheCaret) {
    const Inspector post = openPost(html(document(u"ab")), 1);
    useTemplate(run, u"Bold", insertWithFormat);
    expectUsed();
    EXPECT_EQ(sourceOf(run, post), document(u"a<B>Dear</B> [FirstName]b")) << "a post has nobody it goes to";
    EXPECT_EQ(attachmentNames(run, post.CurrentItem()), Subjects{u"prices.txt"});
    EXPECT_EQ(keysSent(run, caretMarker), 1U);
}

TEST_F(OtherItemsTest, APostTakesTheTextAtTheCaret) {
    const Inspector post = openPost(html(document(u"ab")), 1);
    useTemplate(run, u"Plain", insertText);
    expectUsed();
    EXPECT_EQ(run.bodyShown(post), u"aDear [FirstName], 10-Jan-2028b");
}

TEST_F(OtherItemsTest, APlainPostTakesTheText) {
    const Inspector post = openPost(plain(u"ab"), 1);
    useTemplate(run, u"Bold", insertWithFormat);
    expectUsed();
    EXPECT_EQ(sourceOf(run, post), u"aDear [FirstName]b");
}

TEST_F(OtherItemsTest, AMarkerInThePostsSubjectIsTakenAwayAndTheFieldIsLeft) {
    const Inspector post = openPost(html(document(u"ab")));
    run.focus(post, model::EditorFieldName::Subject, -1);
    useTemplate(run, u"Bold", insertWithFormat);
    expectUsed();
    EXPECT_EQ(run.record(post.CurrentItem()).head.subject, u"Open");
    EXPECT_EQ(sourceOf(run, post), document(u"ab"));
    EXPECT_EQ(attachmentNames(run, post.CurrentItem()), Subjects{u"prices.txt"}) << "those that were copied stay";
    Subjects keys{std::u16string(caretMarker)};
    keys.insert(keys.end(), 23, u"{BACKSPACE}");
    keys.insert(keys.end(), {u"{ENTER}", u"+{TAB}"});
    EXPECT_EQ(allKeys(run), keys);
}

TEST_F(OtherItemsTest, ARichPostTakesTheTextByTheMarker) {
    for (const std::u16string_view button : {insertText, insertWithFormat}) {
        const Inspector post = openPost(rich(u"ab"), 1);
        run.recorder().clear();
        useTemplate(run, u"Bold", button);
        expectUsed();
        EXPECT_EQ(run.bodyShown(post), u"aDear [FirstName]b");
        EXPECT_EQ(run.record(post.CurrentItem()).bodyKind, mailstore::BodyKind::Rich);
        EXPECT_EQ(allKeys(run), Subjects{std::u16string(caretMarker)});
        run.driver().closeInspector(post, false);
    }
}

TEST_F(OtherItemsTest, AMarkerInTheSubjectOfARichPostIsTakenAwayAndTheFieldIsLeft) {
    const Inspector post = openPost(rich(u"ab"));
    run.focus(post, model::EditorFieldName::Subject, -1);
    useTemplate(run, u"Bold", insertText);
    expectUsed();
    EXPECT_EQ(run.record(post.CurrentItem()).head.subject, u"Open");
    EXPECT_EQ(run.bodyShown(post), u"ab");
    EXPECT_EQ(keysSent(run, u"{BACKSPACE}"), 23U);
    EXPECT_EQ(keysSent(run, u"{ENTER}"), 1U);
    EXPECT_EQ(keysSent(run, u"+{TAB}"), 1U);
}

TEST_F(OtherItemsTest, ARichPostTakesAPlainTemplateFromTheClipboard) {
    const Inspector post = openPost(rich(u"ab"), 1);
    useTemplate(run, u"Plain", insertWithFormat);
    expectUsed();
    EXPECT_EQ(run.bodyShown(post), u"aDear [FirstName], 10-Jan-2028b");
    EXPECT_EQ(keysSent(run, u"^v"), 1U);
}

TEST_F(OtherItemsTest, APostIsSavedBeforeItsAttachmentsComeAndBehindTheText) {
    const Inspector post = openPost(html(document(u"ab")), 1);
    run.type(u"-");
    useTemplate(run, u"Plain", insertText);
    expectUsed();
    EXPECT_EQ(savedSourceOf(run, post), document(u"a-Dear [FirstName], 10-Jan-2028b"));
}

TEST_F(OtherItemsTest, APostIsNotWaitedFor) {
    run.driver().setCommitDelay(5);
    openPost(html(document(u"ab")), 1);
    openChooser(run, [](ScriptedUser& she) {
        selectSubject(she, u"Bold");
        const auto before = she.pumpCount();
        she.Click(chooserName, insertWithFormat);
        EXPECT_EQ(she.pumpCount(), before);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(OtherItemsTest, AReceivedPostIsNoReceivedMail) {
    mailstore::ItemRecord record;
    record.head.itemClass = item_class::Post;
    record.head.messageClass = u"IPM.Post";
    record.bodyKind = mailstore::BodyKind::Html;
    record.body = document(u"ab");
    record.properties[mailstore::tags::ReceivedByName] = std::u16string(u"Me");
    record.properties[mailstore::tags::SenderName] = std::u16string(u"Jane");
    record.properties[mailstore::tags::SenderAddress] = std::u16string(u"jane@example.com");
    record.properties[mailstore::tags::SenderAddressType] = std::u16string(u"SMTP");
    const Inspector post = run.openMail(MailItem(run.driver().import(std::move(record), run.folder(default_folder::Inbox))));
    run.focus(post, model::EditorFieldName::Body, 1);
    useTemplate(run, u"Plain", insertText);
    expectUsed();
    EXPECT_EQ(run.bodyShown(post), u"aDear [FirstName], 10-Jan-2028b");
}

class TasksTest : public OtherItemsTest, public testing::WithParamInterface<OtherKind> {
protected:
    Inspector openOne(std::u16string_view text, std::int32_t caret) { return openOther(run, GetParam(), plain(text), caret); }
};
INSTANTIATE_TEST_SUITE_P(Kinds, TasksTest, testing::Values(taskKind, appointmentKind));

TEST_P(TasksTest, TheTextGoesThroughTheClipboardWhateverTheTemplatesFormat) {
    const Inspector task = openOne(u"ab", 1);
    useTemplate(run, u"Bold", insertText);
    expectUsed();
    EXPECT_EQ(run.bodyShown(task), u"aDear [FirstName]b");
    EXPECT_EQ(keysSent(run, u"^v"), 1U);
    EXPECT_EQ(keysSent(run, caretMarker), 0U);
    EXPECT_TRUE(attachmentNames(run, task.CurrentItem()).empty()) << "attachments do not come along";
}

TEST_P(TasksTest, WithFormatTheHtmlGoesOnTheClipboardAndIsPasted) {
    const Inspector task = openOne(u"ab", 1);
    useTemplate(run, u"Bold", insertWithFormat);
    expectUsed();
    EXPECT_EQ(run.bodyShown(task), u"aDear [FirstName]b");
    ASSERT_TRUE(run.clipboardHtml());
    EXPECT_NE(run.clipboardHtml()->find(u"<B>Dear</B>"), std::u16string::npos);
    EXPECT_TRUE(attachmentNames(run, task.CurrentItem()).empty());
}

TEST_P(TasksTest, WhatWasInsertedIsSaved) {
    for (const std::u16string_view button : {insertText, insertWithFormat}) {
        const Inspector task = openOne(u"ab", 1);
        useTemplate(run, u"Bold", button);
        EXPECT_EQ(savedSourceOf(run, task), sourceOf(run, task));
        EXPECT_NE(run.bodyShown(task).find(u"Dear"), std::u16string::npos);
        run.driver().closeInspector(task, false);
    }
}

TEST_F(OtherItemsTest, AnAppointmentsFirstInvitedPersonNamesTheReader) {
    for (const std::u16string_view button : {insertText, insertWithFormat}) {
        const Inspector appointment = openOther(run, appointmentKind, plain(u"ab"), 1, {johnPublic(2), johnPublic()});
        useTemplate(run, u"Bold", button);
        expectUsed();
        EXPECT_EQ(run.bodyShown(appointment), u"aDear Johnb");
        run.driver().closeInspector(appointment, false);
    }
}

TEST_P(TasksTest, WithFormatATemplateWithoutHtmlGoesAsText) {
    const Inspector task = openOne(u"ab", 1);
    useTemplate(run, u"Plain", insertWithFormat);
    expectUsed();
    EXPECT_EQ(run.bodyShown(task), u"aDear [FirstName], 10-Jan-2028b");
    EXPECT_FALSE(run.clipboardHtml());
}

}  // namespace
}  // namespace lorvane::support
