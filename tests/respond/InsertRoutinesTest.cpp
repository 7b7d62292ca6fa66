#include <gtest/gtest.h>

#include "InsertRig.h"
#include "host/Redemption.h"
#include "respond/TextInsert.h"

/// The routines that insertion is made of, called by themselves.
namespace lorvane::support {
namespace {

using namespace host;
using respond::InsertionRoute;

TEST(InsertFunctionTest, ReplacesTheFirstMarkerOnly) {
    EXPECT_EQ(respond::Insert(u"a#b#c", u"#", u"XY"), u"aXYb#c");
    EXPECT_EQ(respond::Insert(u"#", u"#", u""), u"");
    EXPECT_EQ(respond::Insert(u"end#", u"#", u"!"), u"end!");
}

TEST(InsertFunctionTest, ComparesExactlyAndGivesTheMarkerWhereThereIsNone) {
    EXPECT_EQ(respond::Insert(u"abc", u"B", u"x"), u"B");
    EXPECT_EQ(respond::Insert(u"", u"marker", u"x"), u"marker");
}

TEST(RemoveSpecialStringTest, SendsThatManyBackspaces) {
    TestRun run({.instruments = true});
    const Inspector mail = openDraft(run, plain(u"abcdef"), 4);
    run.recorder().clear();
    respond::removeSpecialString(3);
    EXPECT_EQ(run.bodyShown(mail), u"aef");
    EXPECT_EQ(keysSent(run, u"{BACKSPACE}"), 3U);
    for (const auto& call : run.recorder().calls()) {
        if (call.member == u"SendKeys") {
            EXPECT_TRUE(call.arguments[1].toBoolean()) << "each waits";
        }
    }
    respond::removeSpecialString(0);
    EXPECT_EQ(run.bodyShown(mail), u"aef");
}

TEST(PlainTextInWordTest, IsFalseWhereAnotherEditorIsUsed) {
    TestRun run;
    EXPECT_FALSE(respond::PlainTextInWord(openDraft(run, plain(u"Text"), 0).CurrentItem()));
    EXPECT_FALSE(respond::PlainTextInWord(run.addTemplate(u"Offer", html(document(u"x")))));
}

TEST(TaskInsertTest, NothingGivenDoesNothing) {
    TestRun run({.instruments = true});
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.recorder().clear();
    respond::InsertMail_TaskAppnt(MailItem(), offer);
    respond::InsertMail_TaskAppnt(offer, MailItem());
    EXPECT_EQ(keysSent(run, u"^v"), 0U);
    EXPECT_FALSE(run.clipboardText());
}

/// The chooser of these tests stands open, "with format" set or not, while its routines are called.
class CopyTextTest : public testing::Test {
protected:
    CopiedText copy(const MailItem& item, std::int32_t format, bool withFormat, const Object& target) {
        return copyText(run, makeSafeMailItem(item), format, withFormat, target);
    }
    Object target() { return makeSafeMailItem(run.draft(u"Draft", plain(u""), {u"John Public <john@example.com>"})); }

    TestRun run;
    MailItem bold = run.addTemplate(u"Bold", html(u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>"));
    MailItem text = run.addTemplate(u"Text", plain(u"Dear [FirstName]"));
};

TEST_F(CopyTextTest, AnythingForAPlainEditorIsText) {
    for (const MailItem& item : {bold, text}) {
        for (const bool withFormat : {false, true}) {
            const CopiedText outcome = copy(item, 1, withFormat, target());
            EXPECT_EQ(outcome.route, InsertionRoute::ClipboardText);
            EXPECT_EQ(outcome.html, u"");
            EXPECT_EQ(run.clipboardText(), u"Dear John");
        }
    }
}

TEST_F(CopyTextTest, ForAnHtmlEditorTheFormatGoesAlongWhereItIsAskedForAndThere) {
    EXPECT_EQ(copy(bold, 2, false, target()).route, InsertionRoute::ClipboardText);
    EXPECT_EQ(run.clipboardText(), u"Dear John");
    EXPECT_EQ(copy(text, 2, true, target()).route, InsertionRoute::ClipboardText);
    EXPECT_EQ(run.clipboardText(), u"Dear John");
    const CopiedText outcome = copy(bold, 2, true, target());
    EXPECT_EQ(outcome.route, InsertionRoute::HtmlReady);
    EXPECT_EQ(outcome.html, u"<B>Dear</B> John");
    EXPECT_TRUE(run.clipboardHtml());
    EXPECT_FALSE(run.clipboardText());
}

TEST_F(CopyTextTest, ForARichEditorFormattedTemplatesAreSplicedAsText) {
    EXPECT_EQ(copy(text, 3, true, target()).route, InsertionRoute::ClipboardText);
    EXPECT_EQ(run.clipboardText(), u"Dear John");
    for (const bool withFormat : {false, true}) {
        const CopiedText outcome = copy(bold, 3, withFormat, target());
        EXPECT_EQ(outcome.route, InsertionRoute::PlainSplice);
        EXPECT_EQ(outcome.html, u"<B>Dear</B> John");
    }
}

TEST_F(CopyTextTest, AnyOtherFormatCopiesNothing) {
    for (const std::int32_t format : {0, 4, 7}) {
        EXPECT_EQ(copy(bold, format, true, target()).route, InsertionRoute::ClipboardText);
        EXPECT_FALSE(run.clipboardText());
        EXPECT_FALSE(run.clipboardHtml());
    }
}

TEST_F(CopyTextTest, WithoutATargetNothingIsReplaced) {
    copy(text, 1, false, Object());
    EXPECT_EQ(run.clipboardText(), u"Dear [FirstName]");
    EXPECT_EQ(copy(bold, 2, true, Object()).html, u"<B>Dear</B> [FirstName]");
}

}  // namespace
}  // namespace lorvane::support
