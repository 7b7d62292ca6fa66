#include <gtest/gtest.h>

#include "InsertRig.h"

/// "Insert (with format)": a marker is typed at the caret and gives way to the template's HTML.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view boldSource = u"<HTML><BODY><P><B>Dear</B> [FirstName]</P></BODY></HTML>";
constexpr std::u16string_view boldResult = u"<P><B>Dear</B> John</P>";

TEST(InsertHtmlTest, TheFragmentGoesInAsOneRunInsideNestedMarkup) {
    TestRun run;
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = openDraft(
        run, html(u"<html><head><style>p { color: red }</style></head><body lang=EN><div><p>Hello <i>dear &amp; far</i></p><!-- end --></div></body></html>"),
        10);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), u"<html><head><style>p { color: red }</style></head><body lang=EN><div><p>Hello <i>dear" + std::u16string(boldResult) +
                                       u" &amp; far</i></p><!-- end --></div></body></html>");
    EXPECT_EQ(savedSourceOf(run, mail), sourceOf(run, mail));
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(InsertHtmlTest, ANewMailTakesTheFragmentBehindItsBodyTag) {
    TestRun run;
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(boldResult));
}

TEST(InsertHtmlTest, TheCaretStandsBehindWhatWasInserted) {
    TestRun run;
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = openDraft(run, html(document(u"<P>One two</P>")), 3);
    useTemplate(run, u"Bold", insertWithFormat);
    run.type(u"!");
    EXPECT_NE(sourceOf(run, mail).find(std::u16string(boldResult) + u"! two"), std::u16string::npos);
}

TEST(InsertHtmlTest, AgainAndAgainInOneMail) {
    TestRun run;
    run.addTemplate(u"Bold", html(u"<HTML><BODY><B>x</B></BODY></HTML>"));
    const Inspector mail = openDraft(run, html(document(u"ab")), 1);
    for (int turn = 0; turn < 3; ++turn) useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(u"a<B>x</B><B>x</B><B>x</B>b"));
}

TEST(InsertHtmlTest, ATemplateWithoutHtmlGoesInAsText) {
    TestRun run({.instruments = true});
    run.addTemplate(u"Plain", plain(u"Dear [FirstName]\r\n<you>"));
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    useTemplate(run, u"Plain", insertWithFormat);
    EXPECT_EQ(run.bodyShown(mail), u"Dear John\r\n<you>");
    EXPECT_EQ(keysSent(run, u"^v"), 1U);
    EXPECT_EQ(keysSent(run, caretMarker), 0U);
}

class MarkerElsewhere : public testing::TestWithParam<model::EditorFieldName> {};

TEST_P(MarkerElsewhere, IsTakenAwayAgainAndNothingIsInserted) {
    TestRun run({.instruments = true});
    const MailItem bold = run.addTemplate(u"Bold", html(boldSource));
    run.attach(bold, "prices.txt", {1});
    bold.Save();
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    const mailstore::ItemRecord before = run.record(mail.CurrentItem());
    run.focus(mail, GetParam(), -1);
    useTemplate(run, u"Bold", insertWithFormat);
    const mailstore::ItemRecord after = run.record(mail.CurrentItem());
    EXPECT_EQ(after.head.subject, before.head.subject);
    EXPECT_EQ(after.body, before.body);
    EXPECT_EQ(run.driver().visibleText(mail, GetParam()).find(caretMarker), std::u16string::npos);
    EXPECT_EQ(keysSent(run, u"{BACKSPACE}"), 23U);
    EXPECT_EQ(attachmentNames(run, mail.CurrentItem()), Subjects{u"prices.txt"}) << "those that were copied stay";
    EXPECT_TRUE(localFiles().empty());
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Fields, MarkerElsewhere,
                         testing::Values(model::EditorFieldName::Subject, model::EditorFieldName::To, model::EditorFieldName::Cc, model::EditorFieldName::Bcc));

TEST(InsertHtmlWaitTest, WithoutADelayNothingIsPumped) {
    TestRun run;
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = openDraft(run, html(document(u"")), 0);
    openChooser(run, [](ScriptedUser& she) {
        const auto before = she.pumpCount();
        she.Click(chooserName, insertWithFormat);
        EXPECT_EQ(she.pumpCount(), before);
    });
    EXPECT_EQ(sourceOf(run, mail), document(boldResult));
}

class InsertHtmlDelay : public testing::TestWithParam<std::uint32_t> {};

TEST_P(InsertHtmlDelay, IsWaitedForOnceWith51Pumps) {
    TestRun run({.commitDelay = GetParam()});
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = openDraft(run, html(document(u"ab")), 1);
    openChooser(run, [](ScriptedUser& she) {
        const auto before = she.pumpCount();
        she.Click(chooserName, insertWithFormat);
        EXPECT_EQ(she.pumpCount() - before, 51U);
    });
    EXPECT_EQ(sourceOf(run, mail), document(u"a" + std::u16string(boldResult) + u"b"));
    EXPECT_EQ(savedSourceOf(run, mail), sourceOf(run, mail));
}

INSTANTIATE_TEST_SUITE_P(Pumps, InsertHtmlDelay, testing::Values(1, 7, 50, 51));

TEST(InsertHtmlWaitTest, AnEditorSlowerThanTheWaitGetsNothing) {
    TestRun run({.commitDelay = 52});
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = openDraft(run, html(document(u"ab")), 1);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(u"ab"));
    EXPECT_FALSE(isChooserOpen());
    EXPECT_TRUE(run.boxes().empty());
}

TEST(InsertRichWaitTest, AMailWithoutHtmlIsWaitedForAlways) {
    TestRun run({.editor = model::EditorKind::Rich});
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = run.newMail({u"John Public <john@example.com>"});
    run.focus(mail, model::EditorFieldName::Body);
    openChooser(run, [](ScriptedUser& she) {
        const auto before = she.pumpCount();
        she.Click(chooserName, insertWithFormat);
        EXPECT_EQ(she.pumpCount() - before, 51U);
    });
    EXPECT_EQ(run.bodyShown(mail), u"Dear John");
}

TEST(InsertRichWaitTest, AMarkerInTheSubjectIsTakenAway) {
    TestRun run({.editor = model::EditorKind::Rich, .instruments = true});
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector mail = run.newMail();
    run.focus(mail, model::EditorFieldName::Subject);
    useTemplate(run, u"Bold", insertText);
    EXPECT_EQ(keysSent(run, u"{BACKSPACE}"), 23U);
    EXPECT_EQ(run.record(mail.CurrentItem()).head.subject, u"");
    EXPECT_EQ(run.bodyShown(mail), u"");
}

TEST(InsertMarkerTest, AMarkerInTheTemplateStaysInWhatIsInserted) {
    TestRun run;
    run.addTemplate(u"Odd", html(document(u"[" + std::u16string(caretMarker) + u"]")));
    const Inspector mail = openDraft(run, html(document(u"ab")), 1);
    useTemplate(run, u"Odd", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(u"a[" + std::u16string(caretMarker) + u"]b"));
}

TEST(InsertMarkerTest, TheFirstMarkerOfTheBodyIsTheOneReplaced) {
    TestRun run;
    run.addTemplate(u"Bold", html(document(u"<B>x</B>")));
    const Inspector behind = openDraft(run, html(document(u"a" + std::u16string(caretMarker) + u"b")), -1);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, behind), document(u"a<B>x</B>b" + std::u16string(caretMarker)));
    const Inspector inFront = openDraft(run, html(document(u"a" + std::u16string(caretMarker) + u"b")), 0);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, inFront), document(u"<B>x</B>a" + std::u16string(caretMarker) + u"b"));
}

TEST(InsertMarkerTest, OnlyTheExactMarkerCounts) {
    TestRun run;
    run.addTemplate(u"Bold", html(document(u"<B>x</B>")));
    const std::u16string lower = LCase(caretMarker);
    const Inspector mail = openDraft(run, html(document(lower)), -1);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(lower + u"<B>x</B>"));
}

TEST(InsertHtmlVersionTest, OlderHostsTakeTheSameWay) {
    for (const std::u16string_view version : {u"9.0.0.6627", u"10.0.0.4608"}) {
        TestRun run({.version = std::u16string(version)});
        run.addTemplate(u"Bold", html(boldSource));
        const Inspector mail = openDraft(run, html(document(u"ab")), 1);
        useTemplate(run, u"Bold", insertWithFormat);
        EXPECT_EQ(sourceOf(run, mail), document(u"a" + std::u16string(boldResult) + u"b")) << toUtf8(version);
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST(InsertReplyTest, AnAnswerThatIsBeingWrittenTakesItAboveTheQuotedText) {
    TestRun run;
    run.addTemplate(u"Bold", html(boldSource));
    const Inspector answer = openAnyDraft(run, html(document(u"<DIV></DIV><BLOCKQUOTE>Jane wrote: Dear [FirstName]</BLOCKQUOTE>")), 0);
    useTemplate(run, u"Bold", insertWithFormat);
    EXPECT_EQ(sourceOf(run, answer), document(u"<DIV></DIV><BLOCKQUOTE>" + std::u16string(boldResult) + u"Jane wrote: Dear [FirstName]</BLOCKQUOTE>"));
    EXPECT_TRUE(run.boxes().empty());
}

/// A template whose HTML shows an attached picture.
class InsertPictureTest : public testing::TestWithParam<std::u16string_view> {
protected:
    InsertPictureTest() {
        usePrivately(run, run.templatesFolder());
        const MailItem offer = run.addTemplate(u"Picture", html(document(u"<IMG src=\"cid:logo@01C6\"> [FirstName]")));
        run.attach(offer, "logo.png", {1, 2, 3});
        giveContentId(offer, u"logo@01C6");
        offer.Save();
    }
    bool belowTwelve() const { return Val(GetParam()) < 12; }
    mailstore::AttachmentRecord copied(const Inspector& mail) const { return run.record(mail.CurrentItem()).attachments.back(); }
    TestRun run{atVersion(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Versions, InsertPictureTest, testing::Values(u"9.0.0.6627", u"10.0.0.4608", u"11.0.0.5510", u"12.0.0.4518"));

TEST_P(InsertPictureTest, TheHtmlStillNamesTheAttachment) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    useTemplate(run, u"Picture", insertWithFormat);
    const std::u16string contentId = belowTwelve() ? u"logo@01C6" : u"logo.png";
    EXPECT_EQ(sourceOf(run, mail), document(u"a<IMG src=\"cid:" + contentId + u"\"> Johnb"));
    EXPECT_EQ(copied(mail).contentId, contentId);
    EXPECT_EQ(copied(mail).fileName, u"logo.png");
    EXPECT_EQ(copied(mail).properties.contains(mailstore::tags::AttachHidden), !belowTwelve());
}

TEST_P(InsertPictureTest, UnderAnotherNameWhereTheMailHasOneOfThatName) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    run.attach(mail.CurrentItem(), "logo.png", {9});
    useTemplate(run, u"Picture", insertWithFormat);
    const std::u16string contentId = belowTwelve() ? u"logo@01C6" : u"logo_1.png";
    EXPECT_EQ(sourceOf(run, mail), document(u"a<IMG src=\"cid:" + contentId + u"\"> Johnb"));
    EXPECT_EQ(attachmentNames(run, mail.CurrentItem()), (Subjects{u"logo.png", u"logo_1.png"}));
    EXPECT_EQ(copied(mail).contentId, contentId);
}

TEST_P(InsertPictureTest, ATextInsertionLeavesThePictureAnAttachment) {
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    useTemplate(run, u"Picture", insertText);
    EXPECT_EQ(run.bodyShown(mail), u"aJohnb");
    EXPECT_EQ(attachmentNames(run, mail.CurrentItem()), Subjects{u"logo.png"});
}

TEST(InsertEmptiedTest, AnUnmentionedPictureEmptiesTheHtmlFromTwelveOn) {
    TestRun run(atVersion(u"12.0.0.4518"));
    usePrivately(run, run.templatesFolder());
    const MailItem offer = run.addTemplate(u"Picture", html(document(u"Text")));
    run.attach(offer, "logo.png", {1});
    giveContentId(offer, u"logo@01C6");
    offer.Save();
    const Inspector mail = openAnyDraft(run, html(document(u"ab")), 1);
    useTemplate(run, u"Picture", insertWithFormat);
    EXPECT_EQ(sourceOf(run, mail), document(u"ab")) << "the marker gave way to nothing";
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::support
