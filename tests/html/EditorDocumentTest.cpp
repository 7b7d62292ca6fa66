#include "html/EditorDocument.h"

#include <gtest/gtest.h>

#include "html/HtmlText.h"

using namespace lorvane::html;

namespace {

const std::u16string Marker = u"Asdw34r2wjkytui983jnd2m";

EditorDocument html(std::u16string source, std::size_t caret) {
    EditorDocument document(TextKind::Html, std::move(source));
    document.setCaret(caret);
    return document;
}

EditorDocument plain(std::u16string source, std::size_t caret) {
    EditorDocument document(TextKind::Plain, std::move(source));
    document.setCaret(caret);
    return document;
}

EditorDocument rich(std::u16string source, std::size_t caret) {
    EditorDocument document(TextKind::Rich, std::move(source));
    document.setCaret(caret);
    return document;
}

}  // namespace

TEST(EditorDocument, ANewHtmlDocumentTakesTextInItsBody) {
    EditorDocument document(TextKind::Html);
    EXPECT_EQ(document.source(), u"<HTML><BODY></BODY></HTML>");
    document.typeText(u"Hello");
    EXPECT_EQ(document.source(), u"<HTML><BODY>Hello</BODY></HTML>");
    EXPECT_EQ(document.visible(), u"Hello");
    EXPECT_EQ(document.caret(), 5u);
}

TEST(EditorDocument, TypedTextIsEscapedAndTheRestOfTheSourceStays) {
    EditorDocument document = html(u"<body>\r\n<p >a  &eacute;b</p ><!-- <x -->\r\n</body>", 3);
    document.typeText(u"<&>");
    EXPECT_EQ(document.source(), u"<body>\r\n<p >a  &eacute;&lt;&amp;&gt;b</p ><!-- <x -->\r\n</body>");
    EXPECT_EQ(document.visible(), u"a \u00E9<&>b");
    EXPECT_EQ(document.caret(), 6u);
}

TEST(EditorDocument, LineEndsTypedIntoHtmlAreBreaks) {
    EditorDocument document = html(u"<body>ab</body>", 1);
    document.typeText(u"x\r\ny\nz");
    document.enter();
    EXPECT_EQ(document.source(), u"<body>ax<BR>y<BR>z<BR>b</body>");
    EXPECT_EQ(document.visible(), u"ax\r\ny\r\nz\r\nb");
    EXPECT_EQ(document.caret(), 7u);
}

TEST(EditorDocument, TypingGoesOnWhereItStopped) {
    EditorDocument document(TextKind::Html);
    document.typeText(u"two ");
    document.typeText(u"words");
    EXPECT_EQ(document.visible(), u"two words");
    EXPECT_EQ(document.caret(), 9u);
}

TEST(EditorDocument, TypingTakesThePlaceOfTheSelection) {
    EditorDocument document = html(u"<p>one <b>two</b> three</p>", 0);
    document.select(2, 4);
    EXPECT_EQ(document.selectedText(), u"e tw");
    EXPECT_EQ(document.caret(), 6u);
    document.typeText(u"X");
    EXPECT_EQ(document.source(), u"<p>onX<b>o</b> three</p>");
    EXPECT_EQ(document.selectionLength(), 0u);
    EXPECT_EQ(document.caret(), 3u);
}

TEST(EditorDocument, BackspaceTakesBackWhatWasTyped) {
    const std::u16string source = u"<body><p>a &amp; b</p></body>";
    EditorDocument document = html(source, 4);
    document.typeText(u"x <\r\n\U0001F600  y");
    for (int i = 0; i < 8; ++i) document.backspace();
    EXPECT_EQ(document.source(), source);
    EXPECT_EQ(document.caret(), 4u);
}

TEST(EditorDocument, TheMarkerComesAndGoes) {
    const std::u16string source = u"<HTML><BODY><DIV>Hi</DIV><DIV>&nbsp;</DIV></BODY></HTML>";
    for (std::size_t position = 0; position <= 4; ++position) {
        EditorDocument document = html(source, position);
        for (const char16_t unit : Marker) document.typeText({&unit, 1});
        EXPECT_NE(document.source().find(Marker), std::u16string::npos);
        EXPECT_EQ(document.caret(), position + Marker.size());
        for (std::size_t i = 0; i < Marker.size(); ++i) document.backspace();
        EXPECT_EQ(document.source(), source);
        EXPECT_EQ(document.caret(), position);
    }
}

TEST(EditorDocument, BackspaceTakesAnEntityAsOneCharacter) {
    EditorDocument document = html(u"<p>a&eacute;&#x1F600;b</p>", 4);
    document.backspace();
    EXPECT_EQ(document.source(), u"<p>a&eacute;b</p>");
    document.backspace();
    EXPECT_EQ(document.source(), u"<p>ab</p>");
    EXPECT_EQ(document.caret(), 1u);
}

TEST(EditorDocument, BackspaceAtTheStartDoesNothing) {
    EditorDocument document = html(u"<p>a</p>", 0);
    document.backspace();
    EXPECT_EQ(document.source(), u"<p>a</p>");
    EXPECT_EQ(document.revision(), 0u);
}

TEST(EditorDocument, BackspaceTakesABreak) {
    EditorDocument document = html(u"a<br>\r\nb", 2);
    document.backspace();
    EXPECT_EQ(document.visible(), u"a b");
    EXPECT_EQ(document.source(), u"a\r\nb");
}

TEST(EditorDocument, BackspaceJoinsParagraphs) {
    EditorDocument document = html(u"<body><p>a</p>\r\n<p class=x><b>b</b></p><p>c</p></body>", 2);
    document.backspace();
    EXPECT_EQ(document.source(), u"<body><p>a<b>b</b></p><p>c</p></body>");
    EXPECT_EQ(document.caret(), 1u);
}

TEST(EditorDocument, BackspaceLeavesATableWhole) {
    const std::u16string source = u"<p>a</p><table><tr><td>b</td><td>c</td></tr><tr><td>d</td></tr></table>";
    EditorDocument document = html(source, 2);
    document.backspace();
    EXPECT_EQ(document.source(), source);
    EXPECT_EQ(document.caret(), 2u);
}

TEST(EditorDocument, DeleteTakesTheCharacterBehindTheCaret) {
    EditorDocument document = html(u"<p>a&amp;b<br>c</p>", 1);
    document.del();
    document.del();
    document.del();
    EXPECT_EQ(document.source(), u"<p>ac</p>");
    EXPECT_EQ(document.caret(), 1u);
    document.del();
    document.del();
    EXPECT_EQ(document.source(), u"<p>a</p>");
}

TEST(EditorDocument, WhatIsLeftNeverTurnsIntoMarkup) {
    EditorDocument tag = html(u"1 <3b", 4);
    tag.backspace();
    EXPECT_EQ(tag.visible(), u"1 <b");
    EditorDocument entity = html(u"x& amp;", 3);
    entity.backspace();
    EXPECT_EQ(entity.visible(), u"x&amp;");
    EXPECT_EQ(entity.caret(), 2u);
}

TEST(EditorDocument, WhatIsTypedNeverTurnsIntoMarkup) {
    EditorDocument tag = html(u"a < b", 3);
    tag.typeText(u"b>");
    EXPECT_EQ(tag.visible(), u"a <b> b");
    EditorDocument entity = html(u"R&D", 3);
    entity.typeText(u"x");
    EXPECT_EQ(entity.source(), u"R&Dx");
    EditorDocument unclosed = html(u"&amp", 1);
    unclosed.typeText(u";");
    EXPECT_EQ(unclosed.visible(), u"&;");
    EditorDocument growing = html(u"&no", 3);
    growing.typeText(u"t");
    EXPECT_EQ(growing.visible(), u"&not");
}

TEST(EditorDocument, SelTextWritesInPlaceOfTheSelection) {
    EditorDocument document = html(u"<p>a</p><p>b</p>", 0);
    document.selectAll();
    EXPECT_EQ(document.selectedText(), u"a\r\nb");
    document.replaceSelection(u"x\r\n<");
    EXPECT_EQ(document.visible(), u"x\r\n<");
    EXPECT_EQ(document.caret(), 3u);
    document.select(0, 1);
    document.replaceSelection(u"");
    EXPECT_EQ(document.visible(), u"\r\n<");
}

TEST(EditorDocument, ASelectionOverParagraphsGoesWithTheirEdges) {
    EditorDocument document = html(u"<body><p>one</p><p>two</p><p>three</p></body>", 0);
    document.select(2, 7);
    EXPECT_EQ(document.selectedText(), u"e\r\ntwo\r\nt");
    document.cut();
    EXPECT_EQ(document.source(), u"<body><p>onhree</p></body>");
}

TEST(EditorDocument, PasteIntoHtmlTakesTheFragmentAsItIs) {
    EditorDocument document = html(u"<body>ab</body>", 1);
    document.paste(u"<p>x &amp; </p>", u"text");
    EXPECT_EQ(document.source(), u"<body>a<p>x &amp; </p>b</body>");
    document.typeText(u"!");
    EXPECT_EQ(document.source(), u"<body>a<p>x &amp; </p>!b</body>");
}

TEST(EditorDocument, PasteIntoHtmlTakesElseTheTextEscaped) {
    EditorDocument document = html(u"<body>ab</body>", 1);
    document.paste(std::nullopt, u"1 < 2\r\n3");
    EXPECT_EQ(document.source(), u"<body>a1 &lt; 2<BR>\r\n3b</body>");
    EXPECT_EQ(document.caret(), 8u);
}

TEST(EditorDocument, PasteIntoPlainAndRichTakesTheTextElseTheVisibleTextOfTheFragment) {
    EditorDocument document = plain(u"ab", 1);
    document.paste(u"<p>x</p>", u"text");
    EXPECT_EQ(document.source(), u"atextb");
    document.paste(u"<p>x</p><p>y</p>", std::nullopt);
    EXPECT_EQ(document.source(), u"atextx\r\nyb");
    EXPECT_EQ(document.caret(), 8u);
    EditorDocument formatted = rich(textToRtf(u"ab"), 1);
    formatted.paste(u"<p>{x}</p>", std::nullopt);
    EXPECT_EQ(formatted.visible(), u"a{x}b");
}

TEST(EditorDocument, PasteOfNothingKeepsTheSelection) {
    EditorDocument document = plain(u"ab", 0);
    document.select(0, 1);
    document.paste(std::nullopt, std::nullopt);
    EXPECT_EQ(document.source(), u"ab");
    EXPECT_EQ(document.selectionLength(), 1u);
}

TEST(EditorDocument, AFieldOfOneLineTakesTextUpToTheFirstLineEnd) {
    EditorDocument subject(TextKind::Plain, EditorDocument::Lines::One);
    subject.typeText(u"one\r\ntwo");
    subject.paste(u"<p>three</p><p>four</p>", std::nullopt);
    subject.enter();
    EXPECT_EQ(subject.source(), u"onethree");
    EXPECT_EQ(subject.caret(), 8u);
}

TEST(EditorDocument, PlainTextIsKeptToTheUnit) {
    EditorDocument document = plain(u"a\nb\r\nc\rd\xD800", 4);
    EXPECT_EQ(document.length(), 8u);
    EXPECT_EQ(document.visible(), u"a\r\nb\r\nc\r\nd\xD800");
    document.typeText(u"x");
    EXPECT_EQ(document.source(), u"a\nb\r\nxc\rd\xD800");
    document.backspace();
    document.backspace();
    EXPECT_EQ(document.source(), u"a\nbc\rd\xD800");
    EXPECT_EQ(document.caret(), 3u);
}

TEST(EditorDocument, TypingIntoRichTextKeepsItsMarkup) {
    const std::u16string source = u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\b Bold\\b0\\par\r\nsecond\\par}";
    EditorDocument document = rich(source, 4);
    document.typeText(u"{x}\r\n\u20AC");
    EXPECT_EQ(document.source(), u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\b Bold\\{x\\}\\par\r\n\\u8364?\\b0\\par\r\nsecond\\par}");
    EXPECT_EQ(document.visible(), u"Bold{x}\r\n\u20AC\r\nsecond\r\n");
    EXPECT_EQ(document.caret(), 9u);
    for (int i = 0; i < 5; ++i) document.backspace();
    EXPECT_EQ(document.source(), source);
    document.setCaret(EditorDocument::End);
    document.typeText(u"end");
    EXPECT_EQ(document.visible(), u"Bold\r\nsecond\r\nend");
    document.setCaret(5);
    document.backspace();
    EXPECT_EQ(document.visible(), u"Boldsecond\r\nend");
}

TEST(EditorDocument, ANewRichDocumentTakesText) {
    EditorDocument document(TextKind::Rich);
    document.typeText(Marker);
    EXPECT_EQ(document.visible(), Marker);
    EXPECT_NE(document.source().find(Marker), std::u16string::npos);
}

TEST(EditorDocument, KeysMoveTheCaret) {
    EditorDocument document = html(u"<p>ab\U0001F600</p><p>c</p>", 2);
    document.right();
    EXPECT_EQ(document.caret(), 4u);
    document.left();
    EXPECT_EQ(document.caret(), 2u);
    document.home();
    EXPECT_EQ(document.caret(), 0u);
    document.left();
    EXPECT_EQ(document.caret(), 0u);
    document.end();
    EXPECT_EQ(document.caret(), 4u);
    document.right();
    document.right();
    document.right();
    EXPECT_EQ(document.caret(), 6u);
    document.home();
    EXPECT_EQ(document.caret(), 5u);
    document.select(1, 2);
    document.left();
    EXPECT_EQ(document.caret(), 1u);
    document.select(1, 1);
    document.right();
    EXPECT_EQ(document.caret(), 2u);
}

TEST(EditorDocument, ACaretBehindTheEndIsTheEnd) {
    EditorDocument document = html(u"<p>abc</p>", 99);
    EXPECT_EQ(document.caret(), 3u);
    document.select(2, 99);
    EXPECT_EQ(document.selectionLength(), 1u);
}

TEST(EditorDocument, AReloadKeepsTheSourceBehindTheCaret) {
    EditorDocument document = html(u"<BODY>Hi <P>bye</P></BODY>", 2);
    document.typeText(Marker);
    std::u16string spliced = document.source();
    spliced.replace(spliced.find(Marker), Marker.size(), u"<P>template</P>");
    document.setSource(spliced);
    document.typeText(u"!");
    EXPECT_EQ(document.source(), u"<BODY>Hi<P>template</P>! <P>bye</P></BODY>");
}

TEST(EditorDocument, AReloadWithAnotherEndKeepsTheVisiblePosition) {
    EditorDocument document = html(u"<p>abcdef</p>", 4);
    document.setSource(u"<div>uvw<b>xyz</b></div>");
    EXPECT_EQ(document.caret(), 4u);
    document.setSource(u"<div>u</div>!");
    EXPECT_EQ(document.caret(), 3u);
}

TEST(EditorDocument, AReloadPutsNoCaretIntoATagOrAnEntity) {
    EditorDocument tag = html(u"ab>c", 1);
    tag.setSource(u"<ab>c");
    EXPECT_EQ(tag.caret(), 1u);
    EditorDocument entity = html(u"xamp;c", 1);
    entity.setSource(u"&amp;c");
    EXPECT_EQ(entity.caret(), 1u);
    entity.typeText(u"y");
    EXPECT_EQ(entity.source(), u"&amp;yc");
}

TEST(EditorDocument, AReloadInAnotherKindKeepsTheVisiblePosition) {
    EditorDocument document = html(u"<p>abc</p>", 2);
    document.setSource(TextKind::Plain, u"abc");
    EXPECT_EQ(document.kind(), TextKind::Plain);
    EXPECT_EQ(document.caret(), 2u);
}

TEST(EditorDocument, EachChangeIsANewRevision) {
    EditorDocument document(TextKind::Plain);
    document.typeText(u"a");
    document.setCaret(0);
    EXPECT_EQ(document.revision(), 1u);
    document.backspace();
    EXPECT_EQ(document.revision(), 1u);
    document.del();
    EXPECT_EQ(document.revision(), 2u);
}

TEST(EditorDocument, KindsConvertTheirText) {
    EXPECT_EQ(sourceOfText(TextKind::Html, u"<"), u"<HTML><BODY>&lt;</BODY></HTML>");
    EXPECT_EQ(textOfSource(TextKind::Rich, sourceOfText(TextKind::Rich, u"a\r\nb")), u"a\r\nb");
    EXPECT_EQ(textOfSource(TextKind::Plain, u"a\nb"), u"a\nb");
    EXPECT_EQ(emptySource(TextKind::Plain), u"");
}
