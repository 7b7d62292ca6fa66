#include "text/html_clip.h"

#include <gtest/gtest.h>

#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "support/TestRun.h"

namespace lorvane::text {
namespace {

using namespace host;
using support::plain;
using support::TestRun;
using Lines = std::vector<std::string>;

constexpr std::u16string_view document = u"<HTML><HEAD></HEAD><BODY bgcolor=white>Dear [FirstName], [Date]</BODY></HTML>";

/// What a reader of the block gets by its offsets.
std::u16string partAt(const std::u16string& block, std::u16string_view from, std::u16string_view to) {
    const auto offset = [&](std::u16string_view key) { return static_cast<std::size_t>(Val(Mid(block, InStr(1, block, key) + key.size(), 10))); };
    return std::u16string(Mid(block, offset(from) + 1, offset(to) - offset(from)));
}

class HtmlClipTest : public testing::Test {
protected:
    explicit HtmlClipTest(support::RunOptions options = {.connected = false}) : run(std::move(options)) {
        run.addContact({.name = u"Jane Doe", .address = u"jane@example.com", .given = u"Jane", .surname = u"Doe"});
    }

    SafeMailItem mailTo(std::initializer_list<std::u16string_view> to) { return makeSafeMailItem(run.draft(u"Subject", plain(u""), to)); }

    /// The block without its ten last bytes, which nobody writes.
    std::u16string block() {
        const std::u16string whole = run.clipboardHtml().value_or(u"");
        return std::u16string(Left(whole, whole.size() < 10 ? 0 : whole.size() - 10));
    }

    static std::u16string copied(std::u16string html, const Object& item = {}) { return CopyHTMLToClipBoard(html, item); }

    TestRun run;
};

TEST_F(HtmlClipTest, CutsOutWhatStandsBetweenTheBodyTags) {
    std::u16string html(document);
    EXPECT_EQ(CopyHTMLToClipBoard(html, {}), u"Dear [FirstName], [Date]");
    EXPECT_EQ(html, u"Dear [FirstName], [Date]") << "the same stays in the argument";
    EXPECT_EQ(copied(u"<html><body>x</body></html>"), u"x");
    EXPECT_EQ(copied(u"<BODY></BODY>"), u"");
}

TEST_F(HtmlClipTest, TheBlockHasHeaderDocumentAndFragmentComments) {
    copied(u"<HTML><BODY bgcolor=white>Dear</BODY></HTML>");
    EXPECT_EQ(block(),
              u"Version:1.0\r\nStartHTML:0000000105\r\nEndHTML:0000000188\r\nStartFragment:0000000151\r\nEndFragment:0000000155\r\n"
              u"<HTML><BODY bgcolor=white<!--StartFragment -->Dear<!--EndFragment --></BODY></HTML>");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"Dear");
    EXPECT_EQ(partAt(block(), u"StartHTML:", u"EndHTML:"), u"<HTML><BODY bgcolor=white<!--StartFragment -->Dear<!--EndFragment --></BODY></HTML>");
}

TEST_F(HtmlClipTest, WithoutBodyTagsAllOfTheTextIsTheFragment) {
    EXPECT_EQ(copied(u"just text"), u"just text");
    EXPECT_EQ(partAt(block(), u"StartHTML:", u"EndHTML:"), u"<!--StartFragment -->just text<!--EndFragment -->");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"just text");
    EXPECT_EQ(copied(u""), u"");
}

TEST_F(HtmlClipTest, WithoutAnEndTagTheBodyTagsLastUnitStays) {
    EXPECT_EQ(copied(u"<HTML><BODY>text"), u">text");
    EXPECT_EQ(partAt(block(), u"StartHTML:", u"EndHTML:"), u"<HTML><BODY<!--StartFragment -->>text<!--EndFragment -->");
}

TEST_F(HtmlClipTest, WithoutAStartTagTheFirstUnitGoesAllTheSame) {
    EXPECT_EQ(copied(u"text</BODY></HTML>"), u"ext");
    EXPECT_EQ(partAt(block(), u"StartHTML:", u"EndHTML:"), u"<!--StartFragment -->ext<!--EndFragment --></BODY></HTML>");
    EXPECT_EQ(copied(u"</BODY>"), u"");
}

TEST_F(HtmlClipTest, ABodyTagThatNothingClosesIsNone) {
    EXPECT_EQ(copied(u"text <BODY bgcolor=white"), u"text <BODY bgcolor=white");
}

TEST_F(HtmlClipTest, ABodyTagMayHoldAnything) {
    EXPECT_EQ(copied(u"<BODY\r\n title='a'>x</BODY>"), u"x");
    EXPECT_EQ(copied(u"<BODY title='a>b'>x</BODY>"), u"b'>x") << "the first closing bracket counts";
    EXPECT_EQ(copied(u"<bodyguard>x</BODY>"), u"x") << "as does the first tag that begins so";
}

TEST_F(HtmlClipTest, LettersOfThePlaceholdersInTheTextStay) {
    EXPECT_EQ(copied(u"<BODY>aaaaaaaaaa bbbbbbbbbb cccccccccc dddddddddd</BODY>"), u"aaaaaaaaaa bbbbbbbbbb cccccccccc dddddddddd");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"aaaaaaaaaa bbbbbbbbbb cccccccccc dddddddddd");
}

TEST_F(HtmlClipTest, WithoutAnItemNothingIsReplaced) {
    EXPECT_EQ(copied(u"[Date] [FullName] [<span>Date</span>]"), u"[Date] [FullName] [<span>Date</span>]");
}

TEST_F(HtmlClipTest, SourceRecipientTakesTheNamesFromTheItem) {
    std::u16string html(document);
    EXPECT_EQ(CopyHTMLToClipBoard(html, mailTo({u"Jane Doe"}), u"Recipient"), u"Dear Jane, 10-Jan-2028");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"Dear Jane, 10-Jan-2028") << "replaced before it is copied";
}

TEST_F(HtmlClipTest, SourceIsComparedExactly) {
    std::u16string html(document);
    const MailItem received = run.receivedMail(u"Question", plain(u""), u"Richard Roe");
    EXPECT_EQ(CopyHTMLToClipBoard(html, received, u"recipient", false, mailTo({u"unknown@example.org"})), u"Dear Richard, 10-Jan-2028");
}

TEST_F(HtmlClipTest, WithRecipientsTheOtherItemsCount) {
    const MailItem received = run.receivedMail(u"Question", plain(u""), u"Richard Roe");
    std::u16string html(document);
    EXPECT_EQ(CopyHTMLToClipBoard(html, received, u"", true, mailTo({u"Jane Doe"})), u"Dear Jane, 10-Jan-2028");
    html = document;
    EXPECT_EQ(CopyHTMLToClipBoard(html, received, u"", true, mailTo({})), u"Dear [FirstName], 10-Jan-2028");
}

TEST_F(HtmlClipTest, WithoutRecipientsTheItemIsTheOneBeingAnswered) {
    const MailItem received = run.receivedMail(u"Question", plain(u""), u"Richard Roe");
    std::u16string html(document);
    EXPECT_EQ(CopyHTMLToClipBoard(html, received, u"", false, mailTo({u"unknown@example.org"})), u"Dear Richard, 10-Jan-2028");
}

TEST_F(HtmlClipTest, TheBlockReplacesEverythingOnTheClipboard) {
    run.apartment().machine.clipboard().SetText(u"before");
    copied(u"x");
    EXPECT_EQ(run.clipboardText(), std::nullopt);
    EXPECT_EQ(run.clipboard().formats().size(), 1U);
}

TEST_F(HtmlClipTest, TextIsInTheSystemsCodePageWithOneByteAUnit) {
    copied(u"<BODY>Gr\u00FC\u00DFe \u20AC \u4E2D!</BODY>");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"Gr\u00FC\u00DFe \u0080 ?!");
}

TEST_F(HtmlClipTest, TheBlockIsTenBytesLongerThanTheText) {
    copied(u"x");
    ASSERT_TRUE(run.clipboardHtml());
    EXPECT_EQ(run.clipboardHtml()->size(), 105U + 21U + 1U + 19U + 10U);
}

TEST_F(HtmlClipTest, BeforeAndAfterGainTheComments) {
    std::u16string before = u"<BODY";
    std::u16string after = u"</BODY>";
    PutHTMLClipboard(u"x", before, after);
    EXPECT_EQ(before, u"<BODY<!--StartFragment -->");
    EXPECT_EQ(after, u"<!--EndFragment --></BODY>");
}

TEST_F(HtmlClipTest, AClipboardThatRefusesKeepsWhatItHolds) {
    services::Clipboard& clipboard = run.clipboard();
    const auto refused = [&](void (services::Clipboard::*refuse)(bool) noexcept) {
        clipboard.replaceText(u"before");
        (clipboard.*refuse)(true);
        EXPECT_EQ(copied(u"<BODY>x</BODY>"), u"x") << "the fragment is given all the same";
        (clipboard.*refuse)(false);
        EXPECT_EQ(run.clipboardText(), u"before");
    };
    refused(&services::Clipboard::refuseRegistration);
    refused(&services::Clipboard::refuseOpen);
    refused(&services::Clipboard::refuseAlloc);
    refused(&services::Clipboard::refuseLock);
    EXPECT_TRUE(run.boxes().empty());
    copied(u"x");
    EXPECT_EQ(run.clipboardText(), std::nullopt) << "and it was closed each time";
}

class MergeTest : public HtmlClipTest {
protected:
    std::u16string merged(std::u16string_view templateHtml, std::u16string_view bodyHtml) { return MergeHTMLIntoBody(templateHtml, bodyHtml, {}, false, {}); }
};

TEST_F(MergeTest, PutsTheTemplateBehindTheBodysStartTag) {
    EXPECT_EQ(merged(document, u"<html><body lang=EN-US>Hello</body></html>"), u"<html><body lang=EN-US>Dear [FirstName], [Date]Hello</body></html>");
}

TEST_F(MergeTest, PutsItInFrontOfABodyWithoutTags) {
    EXPECT_EQ(merged(u"<BODY>x</BODY>", u"Hello"), u"xHello");
    EXPECT_EQ(merged(u"<BODY>x</BODY>", u"Hello <BODY"), u"xHello <BODY");
    EXPECT_EQ(merged(u"<BODY>x</BODY>", u""), u"x");
}

TEST_F(MergeTest, PairsOfBreaksBecomeParagraphs) {
    EXPECT_EQ(merged(u"a<BR>\r\n<BR>b<BR>\r\n<br>c<BR>d", u""), u"a<p class=Msonormal>b<BR>\r\n<br>c<BR>d") << "in this case only";
    EXPECT_EQ(merged(u"x", u"<BODY>a<BR>\r\n<BR>b"), u"<BODY>xa<BR>\r\n<BR>b") << "the body's own stay";
}

TEST_F(MergeTest, ReplacesTheTagsByTheAnswer) {
    const MailItem received = run.receivedMail(u"Question", plain(u""), u"Richard Roe");
    EXPECT_EQ(MergeHTMLIntoBody(document, u"<BODY>[Date]", received, false, mailTo({u"unknown@example.org"})), u"<BODY>Dear Richard, 10-Jan-2028[Date]");
    EXPECT_EQ(MergeHTMLIntoBody(document, u"", received, true, mailTo({u"Jane Doe"})), u"Dear Jane, 10-Jan-2028");
}

TEST_F(MergeTest, LeavesTheTemplateOnTheClipboard) {
    merged(document, u"<BODY>Hello");
    EXPECT_EQ(partAt(block(), u"StartFragment:", u"EndFragment:"), u"Dear [FirstName], [Date]");
}

class ClipboardCallsTest : public HtmlClipTest {
protected:
    ClipboardCallsTest() : HtmlClipTest({.connected = false, .instruments = true}) {}

    Lines calls() {
        Lines lines;
        for (const instruments::RecordedCall& call : run.recorder().calls()) {
            if (call.className == u"Clipboard") lines.push_back(toUtf8(call.member));
        }
        return lines;
    }
};

TEST_F(ClipboardCallsTest, TheStepsComeInThisOrderAndTheFormatIsRegisteredOnce) {
    run.recorder().clear();
    copied(u"x");
    const Lines steps{"OpenClipboard", "GlobalAlloc", "GlobalLock", "RtlMoveMemory", "GlobalUnlock", "EmptyClipboard", "SetClipboardData", "CloseClipboard"};
    Lines first{"RegisterClipboardFormat"};
    first.insert(first.end(), steps.begin(), steps.end());
    EXPECT_EQ(calls(), first);
    run.recorder().clear();
    copied(u"y");
    EXPECT_EQ(calls(), steps);
}

TEST_F(ClipboardCallsTest, AFormatThatWasNotGivenIsAskedForAgain) {
    run.clipboard().refuseRegistration(true);
    run.recorder().clear();
    copied(u"x");
    EXPECT_EQ(calls(), (Lines{"RegisterClipboardFormat"}));
    run.clipboard().refuseRegistration(false);
    copied(u"x");
    EXPECT_EQ(calls().size(), 10U);
}

}  // namespace
}  // namespace lorvane::text
