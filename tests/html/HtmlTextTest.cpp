#include "html/HtmlText.h"

#include <gtest/gtest.h>

#include "html/Golden.h"

using namespace lorvane::html;

TEST(HtmlText, ShowsWhatTheGoldenFilesSay) {
    const auto files = golden::inputs(golden::folder(), ".html");
    ASSERT_GE(files.size(), 18u);
    for (auto file : files) {
        const std::u16string html = golden::read(file);
        golden::expectFile(file.replace_extension(".txt"), visibleText(html));
    }
}

TEST(HtmlText, MakesTheHtmlThatTheGoldenFilesSay) {
    const auto files = golden::inputs(golden::folder() / "from-text", ".txt");
    ASSERT_GE(files.size(), 5u);
    for (auto file : files) {
        const std::u16string text = golden::read(file);
        golden::expectFile(file.replace_extension(".html"), textToHtml(text));
    }
}

TEST(HtmlText, TextWithSingleBlanksComesBackFromItsHtml) {
    const std::u16string text = u"Dear <Ann> & Bob,\r\n\r\nthe price is 5 \u20AC \U0001F600.\r\nBye";
    EXPECT_EQ(visibleText(textToHtml(text)), text);
}

TEST(HtmlText, LineEndAtTheEndOfTextComesBack) {
    EXPECT_EQ(visibleText(textToHtml(u"a\r\n\r\n")), u"a\r\n\r\n");
}

TEST(HtmlText, LoneSurrogatesAreKept) {
    const std::u16string lone =
        u"a\xD800"
        u"b\xDC00"
        u"c\U0001F600";
    EXPECT_EQ(visibleText(u"<p>" + lone + u"&amp;</p>"), lone + u"&");
    EXPECT_EQ(visibleText(textToHtml(lone)), lone);
}

TEST(HtmlText, WhatTheParserReplacesIsKeptAsInTheSource) {
    EXPECT_EQ(visibleText(u"a\x01"
                          u"b\uFFFE\uFFFDc"),
              u"a\x01"
              u"b\uFFFE\uFFFDc");
}

TEST(HtmlText, FormFeedIsNoBlank) {
    EXPECT_EQ(visibleText(u"<p>a\f b</p>"), u"a\f b");
}

TEST(HtmlText, ZeroUnitsShowNothing) {
    EXPECT_EQ(visibleText(std::u16string_view(u"a\0b", 3)), u"ab");
}

TEST(HtmlText, EmptySourceShowsNothing) {
    EXPECT_EQ(visibleText(u""), u"");
    EXPECT_EQ(visibleText(EmptyHtml), u"");
    EXPECT_EQ(visibleText(u" \r\n\t"), u"");
}

TEST(HtmlText, BlanksStandAtNeitherEndOfALine) {
    EXPECT_EQ(visibleText(u"  a  <br>  b  "), u"a\r\nb");
    EXPECT_EQ(visibleText(u"<p> a </p> <p> b </p>"), u"a\r\nb");
}

TEST(HtmlText, BlanksWrittenAsEntitiesFoldToo) {
    EXPECT_EQ(visibleText(u"a&#32;&#9;&#10;&#13; b"), u"a b");
}

TEST(HtmlText, BreakAlwaysMakesALineEnd) {
    EXPECT_EQ(visibleText(u"<br>"), u"\r\n");
    EXPECT_EQ(visibleText(u"<p><br></p>"), u"\r\n");
    EXPECT_EQ(visibleText(u"a</br>b"), u"a\r\nb");
}

TEST(HtmlText, EdgesMakeNoneAtTheStartAndTheEnd) {
    EXPECT_EQ(visibleText(u"<div><p>a</p></div><hr>"), u"a");
}

TEST(HtmlText, EdgesMakeNoneBehindALineEnd) {
    EXPECT_EQ(visibleText(u"a<br><p>b</p>"), u"a\r\nb");
}

TEST(HtmlText, PreKeepsEachLineEndAsOne) {
    EXPECT_EQ(visibleText(u"<pre>a\r\nb\rc\nd&#13;&#10;e&#13;f</pre>"), u"a\r\nb\r\nc\r\nd\r\ne\r\nf");
    EXPECT_EQ(visibleText(u"<pre>\r\na\r\n</pre>b"), u"a\r\nb");
}

TEST(HtmlText, CellsArePartedByATabWhateverStandsInThem) {
    EXPECT_EQ(visibleText(u"<table><tr><td><div>a</div> </td> <td><p>b</p><p>c</p></td></tr></table>"), u"a\tb\r\nc");
    EXPECT_EQ(visibleText(u"<table><tr><td></td><td></td></tr><tr><td>x</td></tr></table>"), u"\t\r\nx");
    EXPECT_EQ(visibleText(u"a<table><tr><td></td><td>b</td></tr></table>"), u"a\r\n\tb");
}

TEST(HtmlText, NoBreakSpaceIsTextOnItsLine) {
    EXPECT_EQ(visibleText(u"<p>&nbsp;</p><p>a</p>"), u" \r\na");
}

TEST(HtmlText, MathIsTextAndDrawingsAreNot) {
    EXPECT_EQ(visibleText(u"<math><mi>x</mi><![CDATA[<y]]></math><svg><title>no</title></svg>"), u"x<y");
}
