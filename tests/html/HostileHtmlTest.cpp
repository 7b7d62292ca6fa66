#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "html/EditorDocument.h"
#include "html/HtmlDocument.h"
#include "html/HtmlText.h"

using namespace lorvane::html;

namespace {

constexpr std::size_t Mebi = std::size_t{1} << 20;

std::u16string repeated(std::u16string_view text, std::size_t times) {
    std::u16string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) result += text;
    return result;
}

std::u16string numbered(std::u16string_view before, std::u16string_view after, std::size_t times) {
    std::u16string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += before;
        for (const char digit : std::to_string(i)) result += static_cast<char16_t>(digit);
        result += after;
    }
    return result;
}

}  // namespace

TEST(HostileHtml, DeepNestingIsReadAllTheSame) {
    EXPECT_EQ(visibleText(repeated(u"<div>", 100000) + u"x"), u"x");
    EXPECT_EQ(visibleText(repeated(u"<div>", 100000) + u"x" + repeated(u"</div>", 100000) + u"y"), u"x\r\ny");
    EXPECT_EQ(visibleText(repeated(u"<b>", 100000) + u"x &amp;<br>y"), u"x &\r\ny");
    EXPECT_EQ(visibleText(repeated(u"<table><tr><td>", 50000) + u"x"), u"x");
    EXPECT_EQ(visibleText(repeated(u"<svg>", 100000) + u"x"), u"");
}

TEST(HostileHtml, NestingThatHidesItsDepthIsReadAllTheSame) {
    EXPECT_EQ(visibleText(repeated(u"<div><table></div></table>", 20000) + u"x"), u"x");
    EXPECT_EQ(visibleText(repeated(u"<dd><li>", 50000) + u"x"), u"x");
    EXPECT_EQ(visibleText(
                  numbered(u"<b a=", u"><div><div><div><div><div><div><div><div><div></b></div></div></div></div></div></div></div></div></div>", 5000) + u"x"),
              u"x");
}

TEST(HostileHtml, FormattingThatIsNeverClosedTakesNoSquareOfMemory) {
    EXPECT_EQ(visibleText(numbered(u"<b id=", u">", 2000) + repeated(u"<p>x", 50000)).size(), 50000u + 2 * 49999u);
}

TEST(HostileHtml, AMillionBracketsAreText) {
    EXPECT_EQ(visibleText(std::u16string(Mebi, u'<')).size(), Mebi);
}

TEST(HostileHtml, AMillionAmpersandsAreText) {
    EXPECT_EQ(visibleText(std::u16string(Mebi, u'&')).size(), Mebi);
}

TEST(HostileHtml, WhatIsNeverClosedHidesTheRest) {
    const std::u16string rest(Mebi, u'-');
    EXPECT_EQ(visibleText(u"a<!--" + rest), u"a");
    EXPECT_EQ(visibleText(u"a<b title=\"" + rest), u"a");
    EXPECT_EQ(visibleText(u"a<b " + rest), u"a");
    EXPECT_EQ(visibleText(u"a<script>" + rest), u"a");
    EXPECT_EQ(visibleText(u"a<! " + rest), u"a");
}

TEST(HostileHtml, TagsWithAMillionAttributesAreTags) {
    EXPECT_EQ(visibleText(u"a<b " + numbered(u"x", u" ", 150000) + u">c</b>"), u"ac");
}

TEST(HostileHtml, EntitiesOfAnyLengthEnd) {
    EXPECT_EQ(visibleText(u"&#" + std::u16string(Mebi, u'0') + u"65;"), u"A");
    EXPECT_EQ(visibleText(u"&#" + std::u16string(1000, u'9') + u";"), u"\uFFFD");
    EXPECT_EQ(visibleText(u"&" + std::u16string(100000, u'a')).size(), 100001u);
    EXPECT_EQ(visibleText(numbered(u"&x", u"", 50000)).size(), numbered(u"&x", u"", 50000).size());
}

TEST(HostileHtml, RandomBytesOfMarkupHarmNothing) {
    const std::u16string_view pieces[] = {
        u"<",      u">",       u"&",        u";",          u"/",         u"\"",         u"'",        u"=",      u"a",         u" ",          u"<p>",
        u"</p>",   u"<table>", u"<tr>",     u"<td>",       u"</table>",  u"<select>",   u"<option>", u"<svg>",  u"</svg>",    u"<math>",     u"<textarea>",
        u"<pre>",  u"\n",      u"<b>",      u"</b>",       u"<a>",       u"<!--",       u"-->",      u"&amp",   u"&#65",      u"<template>", u"</template>",
        u"<body>", u"</body>", u"<script>", u"</script>",  u"\r",        u"<frameset>", u"<br>",     u"\xD83D", u"<![CDATA[", u"]]>",        u"<form>",
        u"<nobr>", u"</br>",   u"<li>",     u"<plaintext", u"<isindex>", u"<button>",   u"</a>",     u"<head>", u"<caption>", u"<col>",      u"<image>"};
    std::mt19937 random(20240607);
    for (int round = 0; round < 6000; ++round) {
        std::u16string source;
        for (std::size_t length = random() % 24; length > 0; --length) source += pieces[random() % std::size(pieces)];
        const HtmlDocument document(source);
        for (std::size_t position = 0; position <= document.length(); ++position) ASSERT_LE(document.sourceOffsetAt(position), source.size());
        EditorDocument editor(TextKind::Html, source);
        editor.setCaret(random() % (document.length() + 1));
        editor.typeText(u"x");
        editor.backspace();
        ASSERT_EQ(editor.source(), source);
        editor.setCaret(random() % (document.length() + 1));
        editor.del();
        editor.backspace();
        ASSERT_LE(editor.caret(), editor.length());
    }
}

TEST(HostileHtml, TypingIntoALargeBodyReadsItOnce) {
    std::u16string source = u"<HTML><BODY>";
    while (source.size() < 10 * Mebi) source += u"<p class=MsoNormal>A line of &eacute;&nbsp;text that <b>somebody</b> wrote.</p>\r\n";
    source += u"</BODY></HTML>";
    EditorDocument document(TextKind::Html, source);
    document.setCaret(1000);
    const std::u16string_view marker = u"Asdw34r2wjkytui983jnd2m";
    for (std::size_t i = 0; i < marker.size(); ++i) document.typeText(marker.substr(i, 1));
    EXPECT_EQ(document.caret(), 1000 + marker.size());
    for (std::size_t i = 0; i < marker.size(); ++i) document.backspace();
    EXPECT_EQ(document.source(), source);
}
