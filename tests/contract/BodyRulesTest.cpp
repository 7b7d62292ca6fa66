#include "contract/HostFixture.h"

/// The kinds of an item's text: what each body property reads in each kind, and what writing one does.
namespace lorvane::contract {

class BodyReading : public OneHost {};

TEST_F(BodyReading, AnItemThatNobodyGaveTextHasNoFormat) {
    EXPECT_EQ(host().newItem().BodyFormat(), body_format::Unspecified);
}

TEST_F(BodyReading, HtmlBodyAndRtfBodyOfAPlainItemAreEmpty) {
    const MailItem item = host().plainItem(u"Dear John");
    EXPECT_EQ(item.BodyFormat(), body_format::Plain);
    EXPECT_EQ(item.Body(), u"Dear John");
    EXPECT_EQ(item.HTMLBody(), u"");
    EXPECT_EQ(text(makeSafeMailItem(item), u"RTFBody"), u"");
}

TEST_F(BodyReading, BodyOfAnHtmlItemIsItsVisibleText) {
    const MailItem item = host().htmlItem(u"<p>Dear <b>John</b></p><p>Bye</p>");
    EXPECT_EQ(item.BodyFormat(), body_format::Html);
    EXPECT_EQ(item.HTMLBody(), html(u"<p>Dear <b>John</b></p><p>Bye</p>"));
    EXPECT_EQ(item.Body(), u"Dear John\r\nBye");
    EXPECT_EQ(text(makeSafeMailItem(item), u"RTFBody"), u"");
}

TEST_F(BodyReading, BodyOfARichItemIsTheTextOfItsRtf) {
    const MailItem item = host().newItem();
    put(makeSafeMailItem(item), u"RTFBody", rtf(u"Dear {\\b John}\\par Bye"));
    EXPECT_EQ(item.BodyFormat(), body_format::RichText);
    EXPECT_EQ(text(makeSafeMailItem(item), u"RTFBody"), rtf(u"Dear {\\b John}\\par Bye"));
    EXPECT_EQ(item.Body(), u"Dear John\r\nBye");
    EXPECT_EQ(item.HTMLBody(), u"");
}

TEST_F(BodyReading, CodeUnitsAreKeptExactly) {
    const std::u16string odd = u"a\rb\nc\r\nd\te e\x0301 \xD800 \xDC00\xD83D\xDE00 \x00AD\xFEFF end  ";
    const MailItem plain = host().plainItem(odd);
    EXPECT_EQ(plain.Body(), odd);
    plain.Save();
    EXPECT_EQ(host().again(plain).Body(), odd);
    const MailItem marked = host().newItem();
    marked.HTMLBody(u"<html>\n<BODY >" + odd + u"&NotAnEntity; <b><i></b></i>");
    marked.Save();
    EXPECT_EQ(host().again(marked).HTMLBody(), u"<html>\n<BODY >" + odd + u"&NotAnEntity; <b><i></b></i>");
}

class BodyWriting : public OneHost {
protected:
    MailItem richItem(std::u16string_view run) {
        const MailItem item = host().newItem();
        put(makeSafeMailItem(item), u"RTFBody", rtf(run));
        return item;
    }
};

TEST_F(BodyWriting, HtmlBodyMakesAnyItemHtml) {
    const MailItem plain = host().plainItem(u"Dear John");
    plain.HTMLBody(html(u"<b>Dear Jane</b>"));
    EXPECT_EQ(plain.BodyFormat(), body_format::Html);
    EXPECT_EQ(plain.Body(), u"Dear Jane");
    const MailItem rich = richItem(u"Dear John");
    rich.HTMLBody(html(u"<b>Dear Jane</b>"));
    EXPECT_EQ(rich.BodyFormat(), body_format::Html);
    EXPECT_EQ(rich.Body(), u"Dear Jane");
}

TEST_F(BodyWriting, EmptyHtmlBodyMakesAnHtmlItemWithNoContent) {
    const MailItem fresh = host().newItem();
    fresh.HTMLBody(u"");
    EXPECT_EQ(fresh.BodyFormat(), body_format::Html);
    EXPECT_EQ(fresh.Body(), u"");
    const MailItem marked = host().htmlItem(u"Dear John");
    marked.HTMLBody(u"");
    EXPECT_EQ(marked.BodyFormat(), body_format::Html);
    EXPECT_EQ(marked.Body(), u"");
}

TEST_F(BodyWriting, EmptyHtmlBodyLeavesAPlainItemThatHasTextAsItIs) {
    const MailItem item = host().plainItem(u"Dear John");
    item.HTMLBody(u"");
    EXPECT_EQ(item.BodyFormat(), body_format::Plain);
    EXPECT_EQ(item.Body(), u"Dear John");
}

TEST_F(BodyWriting, EmptyHtmlBodyLeavesARichItemThatHasTextAsItIs) {
    const MailItem item = richItem(u"Dear John");
    item.HTMLBody(u"");
    EXPECT_EQ(item.BodyFormat(), body_format::RichText);
    EXPECT_EQ(item.Body(), u"Dear John");
}

TEST_F(BodyWriting, EmptyHtmlBodyMakesAPlainItemWithoutTextHtml) {
    const MailItem item = host().plainItem(u"");
    item.HTMLBody(u"");
    EXPECT_EQ(item.BodyFormat(), body_format::Html);
}

TEST_F(BodyWriting, RtfBodyMakesAnyItemRich) {
    const MailItem item = host().htmlItem(u"Dear John");
    put(makeSafeMailItem(item), u"RTFBody", rtf(u"Dear Jane"));
    EXPECT_EQ(item.BodyFormat(), body_format::RichText);
    EXPECT_EQ(item.Body(), u"Dear Jane");
    EXPECT_EQ(item.HTMLBody(), u"");
}

TEST_F(BodyWriting, BodyMakesANewItemPlain) {
    const MailItem item = host().newItem();
    item.Body(u"Dear John");
    EXPECT_EQ(item.BodyFormat(), body_format::Plain);
}

TEST_F(BodyWriting, BodyKeepsAnHtmlItemHtmlAndReplacesItsWholeContent) {
    const MailItem item = host().newItem();
    item.HTMLBody(u"<html><head><title>T</title></head><body class='x'><p>Dear John</p></body></html>");
    item.Body(u"A & B <c>\r\nBye");
    EXPECT_EQ(item.BodyFormat(), body_format::Html);
    EXPECT_EQ(item.HTMLBody(), html(u"A &amp; B &lt;c&gt;<BR>\r\nBye"));
    EXPECT_EQ(item.Body(), u"A & B <c>\r\nBye");
}

TEST_F(BodyWriting, BodyKeepsARichItemRichAndReplacesItsWholeContent) {
    const MailItem item = richItem(u"Dear {\\b John}");
    item.Body(u"A {b} \\c\r\nBye");
    EXPECT_EQ(item.BodyFormat(), body_format::RichText);
    EXPECT_EQ(item.Body(), u"A {b} \\c\r\nBye");
    EXPECT_EQ(item.HTMLBody(), u"");
}

TEST_F(BodyWriting, EveryLineEndBecomesABreakInHtml) {
    const MailItem item = host().htmlItem(u"");
    item.Body(u"a\rb\nc\r\nd\"'");
    EXPECT_EQ(item.HTMLBody(), html(u"a<BR>\r\nb<BR>\r\nc<BR>\r\nd\"'"));
}

TEST_F(BodyWriting, BodyFormatPlainTakesTheVisibleText) {
    const MailItem item = host().htmlItem(u"<p>Dear <b>John</b></p><p>A &amp; B</p>");
    item.put(Member::BodyFormat, body_format::Plain);
    EXPECT_EQ(item.BodyFormat(), body_format::Plain);
    EXPECT_EQ(item.Body(), u"Dear John\r\nA & B");
    EXPECT_EQ(item.HTMLBody(), u"");
}

TEST_F(BodyWriting, BodyFormatHtmlTakesTheTextAsHtml) {
    const MailItem item = host().plainItem(u"A & B\r\nBye");
    item.put(Member::BodyFormat, body_format::Html);
    EXPECT_EQ(item.BodyFormat(), body_format::Html);
    EXPECT_EQ(item.HTMLBody(), html(u"A &amp; B<BR>\r\nBye"));
    const MailItem rich = richItem(u"Dear {\\b John}");
    rich.put(Member::BodyFormat, body_format::Html);
    EXPECT_EQ(rich.HTMLBody(), html(u"Dear John"));
}

TEST_F(BodyWriting, BodyFormatRichTakesTheTextAsRichText) {
    const MailItem item = host().htmlItem(u"<p>Dear <b>John</b></p><p>Bye</p>");
    item.put(Member::BodyFormat, body_format::RichText);
    EXPECT_EQ(item.BodyFormat(), body_format::RichText);
    EXPECT_EQ(item.Body(), u"Dear John\r\nBye");
    EXPECT_EQ(item.HTMLBody(), u"");
}

TEST_F(BodyWriting, BodyFormatOfTheSameKindChangesNothing) {
    const MailItem item = host().htmlItem(u"<p>Dear <b>John</b></p>");
    item.put(Member::BodyFormat, body_format::Html);
    EXPECT_EQ(item.HTMLBody(), html(u"<p>Dear <b>John</b></p>"));
}

TEST_F(BodyWriting, APostFollowsTheSameRules) {
    const MailItem post = host().newItem(u"IPM.Post");
    post.HTMLBody(html(u"<p>Dear <b>John</b></p>"));
    EXPECT_EQ(post.Body(), u"Dear John");
    post.Body(u"a\r\nb");
    EXPECT_EQ(post.HTMLBody(), html(u"a<BR>\r\nb"));
}

class VisibleText : public OneHost {
protected:
    std::u16string visible(std::u16string_view body) { return host().htmlItem(body).Body(); }
};

TEST_F(VisibleText, ARunOfBlanksIsOneBlank) {
    EXPECT_EQ(visible(u"a  b\t\r\n c"), u"a b c");
    EXPECT_EQ(visible(u"a <b> b </b> c"), u"a b c");
}

TEST_F(VisibleText, NoBlankStandsAtTheStartOrEndOfALine) {
    EXPECT_EQ(visible(u"  <p> a </p> \r\n <p> b </p> "), u"a\r\nb");
    EXPECT_EQ(visible(u"a <br> b"), u"a\r\nb");
}

TEST_F(VisibleText, BlanksInsidePreStay) {
    EXPECT_EQ(visible(u"<pre>a  b\r\n c</pre>"), u"a  b\r\n c");
}

TEST_F(VisibleText, ANoBreakSpaceIsABlankThatIsNeverFolded) {
    EXPECT_EQ(visible(u"a&nbsp;&nbsp;b"), u"a  b");
    EXPECT_EQ(visible(u"<p>&nbsp;a&nbsp;</p>"), u" a ");
}

TEST_F(VisibleText, ABreakAlwaysMakesALineEnd) {
    EXPECT_EQ(visible(u"a<br>b"), u"a\r\nb");
    EXPECT_EQ(visible(u"a<br><br>b"), u"a\r\n\r\nb");
    EXPECT_EQ(visible(u"<br>a<br>"), u"\r\na\r\n");
}

TEST_F(VisibleText, AnyNumberOfBlockEdgesTogetherMakeOneLineEnd) {
    EXPECT_EQ(visible(u"<div>a</div><div>b</div>"), u"a\r\nb");
    EXPECT_EQ(visible(u"<div><p>a</p></div>\r\n<div><div><p>b</p></div></div>"), u"a\r\nb");
    EXPECT_EQ(visible(u"a<div></div><div></div>b"), u"a\r\nb");
}

TEST_F(VisibleText, BlockEdgesMakeNoneWhereNoTextStandsInFront) {
    EXPECT_EQ(visible(u"<div>a<br></div><div>b</div>"), u"a\r\nb");
}

TEST_F(VisibleText, BlockEdgesMakeNoneAtTheStartOrEnd) {
    EXPECT_EQ(visible(u"<div></div><p></p>a<div></div>"), u"a");
}

TEST_F(VisibleText, RowsOfTablesAreLinesAndCellsArePartedByATab) {
    EXPECT_EQ(visible(u"<table><tr><td>a</td><td>b</td></tr><tr><td>c</td><td>d</td></tr></table>"), u"a\tb\r\nc\td");
}

TEST_F(VisibleText, ScriptStyleCommentsAndPicturesAreNothing) {
    EXPECT_EQ(visible(u"a<script>var x;</script><style>p {}</style><!-- note --><img src='cid:1' alt='picture'>b"), u"ab");
}

TEST_F(VisibleText, EntitiesAreDecoded) {
    EXPECT_EQ(visible(u"&lt;&amp;&gt;&quot;&eacute;&#x20AC;&#8364;&#x1F600;"), u"<&>\"\x00E9\x20AC\x20AC\xD83D\xDE00");
}

TEST_F(VisibleText, OnlyTheBodyIsShown) {
    const MailItem item = host().newItem();
    item.HTMLBody(u"<html><head><title>Title</title></head><body>a</body></html>");
    EXPECT_EQ(item.Body(), u"a");
}

}  // namespace lorvane::contract
