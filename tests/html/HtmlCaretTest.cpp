#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "html/HtmlDocument.h"

using namespace lorvane::html;

namespace {

/// The source with "|" where each position stands; `position` alone where one is named.
std::u16string withCaret(const std::u16string& source, std::size_t position) {
    std::u16string shown = source;
    shown.insert(HtmlDocument(source).sourceOffsetAt(position), 1, u'|');
    return shown;
}

}  // namespace

TEST(HtmlCaret, PositionZeroStandsInFrontOfTheFirstVisibleCharacter) {
    EXPECT_EQ(withCaret(u"<html><body> <p> <b>Hi</b></p></body></html>", 0), u"<html><body> <p> <b>|Hi</b></p></body></html>");
    EXPECT_EQ(withCaret(u"<body>&amp;x", 0), u"<body>|&amp;x");
    EXPECT_EQ(withCaret(u"<body><p><br>x", 0), u"<body><p>|<br>x");
}

TEST(HtmlCaret, PositionZeroStandsBehindTheBodysTagWhereNothingIsVisible) {
    EXPECT_EQ(withCaret(u"<HTML><BODY></BODY></HTML>", 0), u"<HTML><BODY>|</BODY></HTML>");
    EXPECT_EQ(withCaret(u"<!-- <body> --><html><head><title>t</title></head>\r\n<BODY bgcolor=\">\"> <p></p></body>", 0),
              u"<!-- <body> --><html><head><title>t</title></head>\r\n<BODY bgcolor=\">\">| <p></p></body>");
}

TEST(HtmlCaret, WithoutABodyTagPositionZeroStandsWhereABodyWouldBegin) {
    EXPECT_EQ(withCaret(u"", 0), u"|");
    EXPECT_EQ(withCaret(u"<!DOCTYPE html>\r\n<!-- x -->", 0), u"<!DOCTYPE html>|\r\n<!-- x -->");
    EXPECT_EQ(withCaret(u"<html><!-- x --></html>", 0), u"<html>|<!-- x --></html>");
    EXPECT_EQ(withCaret(u"<html><head><style>x</style></head></html>", 0), u"<html><head><style>x</style></head>|</html>");
    EXPECT_EQ(withCaret(u"<!-- never closed", 0), u"|<!-- never closed");
}

TEST(HtmlCaret, StandsBehindTheCharacterBeforeItInTheTextThatHoldsIt) {
    const std::u16string source = u"<body>a<b>b</b><i>c</i>d</body>";
    EXPECT_EQ(withCaret(source, 1), u"<body>a|<b>b</b><i>c</i>d</body>");
    EXPECT_EQ(withCaret(source, 2), u"<body>a<b>b|</b><i>c</i>d</body>");
    EXPECT_EQ(withCaret(source, 3), u"<body>a<b>b</b><i>c|</i>d</body>");
    EXPECT_EQ(withCaret(source, 4), u"<body>a<b>b</b><i>c</i>d|</body>");
    EXPECT_EQ(withCaret(source, 99), u"<body>a<b>b</b><i>c</i>d|</body>");
}

TEST(HtmlCaret, AnEntityIsOneCharacter) {
    EXPECT_EQ(withCaret(u"a&eacute;b", 1), u"a|&eacute;b");
    EXPECT_EQ(withCaret(u"a&eacute;b", 2), u"a&eacute;|b");
    EXPECT_EQ(withCaret(u"&copyx", 1), u"&copy|x");
    EXPECT_EQ(withCaret(u"&#65;&#x000042;c", 2), u"&#65;&#x000042;|c");
    EXPECT_EQ(HtmlDocument(u"a&eacute;b").sourceBefore(2), (SourceRange{1, 9}));
}

TEST(HtmlCaret, ASurrogatePairHasNoMiddle) {
    EXPECT_EQ(withCaret(u"a\U0001F600b", 2), u"a\U0001F600|b");
    EXPECT_EQ(withCaret(u"a\U0001F600b", 3), u"a\U0001F600|b");
    EXPECT_EQ(withCaret(u"a&#x1F600;b", 2), u"a&#x1F600;|b");
    EXPECT_EQ(HtmlDocument(u"a\U0001F600b").characterRangeBefore(3).from, 1u);
    EXPECT_EQ(HtmlDocument(u"a&#x1F600;b").characterRangeBefore(3).from, 1u);
}

TEST(HtmlCaret, LoneSurrogatesMoveNoOffset) {
    EXPECT_EQ(withCaret(u"<p>\u20AC\xD800<b>x</b>", 3), u"<p>\u20AC\xD800<b>x|</b>");
    EXPECT_EQ(withCaret(u"<p>\u20AC\xD800<b>x</b>", 2), u"<p>\u20AC\xD800|<b>x</b>");
}

TEST(HtmlCaret, BehindABreakItStandsInFrontOfTheNextCharacter) {
    EXPECT_EQ(withCaret(u"a<br>\r\n <b>x</b>", 2), u"a<br>\r\n <b>|x</b>");
    EXPECT_EQ(withCaret(u"a<br>\r\n <b>x</b>", 1), u"a|<br>\r\n <b>x</b>");
}

TEST(HtmlCaret, OnAnEmptyLineItStandsDirectlyBehindTheBreakThatMadeIt) {
    EXPECT_EQ(withCaret(u"a<br>\r\n<br>b", 2), u"a<br>|\r\n<br>b");
    EXPECT_EQ(withCaret(u"a<br>\r\n<br>b", 3), u"a<br>\r\n<br>|b");
    EXPECT_EQ(withCaret(u"a<br> </body>", 2), u"a<br>| </body>");
}

TEST(HtmlCaret, OnAnEmptyLineItStandsDirectlyBehindTheStartTagThatMadeIt) {
    EXPECT_EQ(withCaret(u"<p>a</p>\n<p><b><br></b></p>\n<p>c</p>", 2), u"<p>a</p>\n<p>|<b><br></b></p>\n<p>c</p>");
    EXPECT_EQ(withCaret(u"<p>a</p><br>b", 2), u"<p>a</p>|<br>b");
}

TEST(HtmlCaret, BehindABlockEdgeItStandsInFrontOfTheNextCharacter) {
    EXPECT_EQ(withCaret(u"<p>a</p>\r\n<p><b>b</b></p>", 1), u"<p>a|</p>\r\n<p><b>b</b></p>");
    EXPECT_EQ(withCaret(u"<p>a</p>\r\n<p><b>b</b></p>", 2), u"<p>a</p>\r\n<p><b>|b</b></p>");
}

TEST(HtmlCaret, BehindATabBetweenCellsItStandsInFrontOfTheNextCharacter) {
    EXPECT_EQ(withCaret(u"<table><tr><td>a</td> <td> <b>b</b></td></tr></table>", 2), u"<table><tr><td>a</td> <td> <b>|b</b></td></tr></table>");
}

TEST(HtmlCaret, InAnEmptyCellItStandsDirectlyBehindItsStartTag) {
    const std::u16string source = u"<table><tr><td></td><td></td><td></td></tr><tr><td>x</td></tr></table>";
    EXPECT_EQ(withCaret(source, 0), u"<table><tr><td>|</td><td></td><td></td></tr><tr><td>x</td></tr></table>");
    EXPECT_EQ(withCaret(source, 1), u"<table><tr><td></td><td>|</td><td></td></tr><tr><td>x</td></tr></table>");
    EXPECT_EQ(withCaret(source, 2), u"<table><tr><td></td><td></td><td>|</td></tr><tr><td>x</td></tr></table>");
    EXPECT_EQ(withCaret(source, 3), u"<table><tr><td></td><td></td><td></td></tr><tr><td>|x</td></tr></table>");
}

TEST(HtmlCaret, InPreEachLineEndOfTheSourceIsACharacter) {
    EXPECT_EQ(withCaret(u"<pre>\r\na\r\n\r\nb</pre>", 0), u"<pre>\r\n|a\r\n\r\nb</pre>");
    EXPECT_EQ(withCaret(u"<pre>\r\na\r\n\r\nb</pre>", 2), u"<pre>\r\na\r\n|\r\nb</pre>");
    EXPECT_EQ(withCaret(u"<pre>\r\na\r\n\r\nb</pre>", 3), u"<pre>\r\na\r\n\r\n|b</pre>");
}

TEST(HtmlCaret, AFoldedRunOfBlanksIsOneCharacter) {
    EXPECT_EQ(withCaret(u"a \r\n\t b", 1), u"a| \r\n\t b");
    EXPECT_EQ(withCaret(u"a \r\n\t b", 2), u"a \r\n\t |b");
    EXPECT_EQ(withCaret(u"a <b> b</b>", 2), u"a <b> |b</b>");
}

TEST(HtmlCaret, NoBreakSpacesAreCharactersEach) {
    EXPECT_EQ(withCaret(u"a&nbsp;&nbsp;b", 2), u"a&nbsp;|&nbsp;b");
    EXPECT_EQ(withCaret(u"<p>&nbsp;</p><p>b</p>", 1), u"<p>&nbsp;|</p><p>b</p>");
}

TEST(HtmlCaret, BlanksThatDoNotShowStandBehindTheCaret) {
    EXPECT_EQ(withCaret(u"<p>ab  </p>", 2), u"<p>ab|  </p>");
}

TEST(HtmlCaret, TagsThatTheParserPassesOverHideNothing) {
    EXPECT_EQ(withCaret(u"<p>a</foo>b</p>", 1), u"<p>a|</foo>b</p>");
    EXPECT_EQ(withCaret(u"<p>a</foo>b</p>", 2), u"<p>a</foo>b|</p>");
    EXPECT_EQ(withCaret(u"a</body></html>b", 2), u"a</body></html>b|");
}

TEST(HtmlCaret, MisplacedTextIsFoundWhereItStands) {
    const HtmlDocument document(u"<table>x<tr><td>y</td></tr></table>z");
    EXPECT_EQ(document.visible(), u"x\r\ny\r\nz");
    EXPECT_EQ(document.sourceOffsetAt(1), 8u);
    EXPECT_EQ(document.sourceOffsetAt(3), 17u);
}

TEST(HtmlCaret, UpperCaseTagsAreTags) {
    EXPECT_EQ(withCaret(u"<BODY><P>A<BR>B</P></BODY>", 2), u"<BODY><P>A<BR>|B</P></BODY>");
}

TEST(HtmlCaret, EachPlaceInTheSourceHasAPosition) {
    const HtmlDocument document(u"<body>ab<br><p>c&amp;</p></body>");
    EXPECT_EQ(document.positionAt(0), 0u);
    EXPECT_EQ(document.positionAt(7), 1u);
    EXPECT_EQ(document.positionAt(8), 2u);
    EXPECT_EQ(document.positionAt(12), 2u);
    EXPECT_EQ(document.positionAt(15), 3u);
    EXPECT_EQ(document.positionAt(16), 4u);
    EXPECT_EQ(document.positionAt(18), 4u);
    EXPECT_EQ(document.positionAt(21), 5u);
    EXPECT_EQ(document.positionAt(999), 5u);
}

TEST(HtmlCaret, PositionsComeBackFromTheirPlaces) {
    const std::vector<std::u16string> sources = {u"<p>a</p><p>b<br>&amp;<b>c d</b></p>", u"<table><tr><td>a<td>b<tr><td><td>c</table>",
                                                 u"<pre>a\r\n\r\nb</pre>c", u"<ul><li>a<li>b</ul>c&nbsp;d<br><br>e"};
    for (const std::u16string& source : sources) {
        const HtmlDocument document(source);
        for (std::size_t position = 0; position <= document.length(); ++position) {
            EXPECT_EQ(document.positionAt(document.sourceOffsetAt(position)), position) << position;
        }
    }
}
