#include "html/RtfText.h"

#include <gtest/gtest.h>

#include "host/TextFunctions.h"

using namespace lorvane::html;

TEST(RtfText, TextComesBackFromItsRtf) {
    const std::u16string text = u"a {b} \\c\r\n\ttab \u20AC\U0001F600\u00E9 -1\r\n\r\nend  two blanks \x01";
    EXPECT_EQ(rtfToText(textToRtf(text)), text);
    EXPECT_EQ(rtfToText(textToRtf(u"")), u"");
}

TEST(RtfText, LineEndsOfAnyFormBecomeParagraphs) {
    EXPECT_EQ(rtfToText(textToRtf(u"a\nb\rc\r\nd")), u"a\r\nb\r\nc\r\nd");
}

TEST(RtfText, TablesStylesAndUnknownGroupsShowNothing) {
    EXPECT_EQ(rtfToText(u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0;}{\\stylesheet{\\s0 Normal;}}{\\info{\\author A}}"
                        u"{\\*\\generator X {y};}\\pard\\b Bold\\b0  text{\\pict abcdef}{\\*\\x z}.\\par\r\n}"),
              u"Bold text.\r\n");
}

TEST(RtfText, ControlWordsThatAreCharacters) {
    EXPECT_EQ(rtfToText(u"{\\rtf1 a\\line b\\tab c\\emdash d\\~e\\_f\\-g\\lquote h\\rquote\\bullet}"), u"a\r\nb\tc\u2014d\u00A0e\u2011fg\u2018h\u2019\u2022");
}

TEST(RtfText, BytesAreWindows1252WithoutADecoder) {
    EXPECT_EQ(rtfToText(u"{\\rtf1\\ansi\\ansicpg1252 \\'80\\'e9\\'93}"), u"\u20AC\u00E9\u201C");
}

TEST(RtfText, BytesOfAnotherCodePageGoToTheDecoder) {
    const ByteDecoder decoder = [](std::string_view bytes, int codePage) -> std::u16string {
        EXPECT_EQ(codePage, 932);
        if (bytes == "\x82\xA0") return u"\u3042";
        return {};
    };
    EXPECT_EQ(rtfToText(u"{\\rtf1\\ansi\\ansicpg932 a\\'82\\'a0b}", decoder), u"a\u3042b");
}

TEST(RtfText, UnicodeCharactersSwallowTheirFallback) {
    EXPECT_EQ(rtfToText(u"{\\rtf1 \\u8364?x\\uc2\\u8364\\'80\\'80y\\uc0\\u8364 z{\\uc1\\u-10179?\\u-8704?}}"), u"\u20ACx\u20ACy\u20ACz\U0001F600");
}

TEST(RtfText, EachCharacterKnowsItsPlace) {
    const std::u16string rtf = u"{\\rtf1 a\\'e9\\par\r\nb}";
    const TextMap map = mapRtf(rtf);
    EXPECT_EQ(map.units(), u"a\u00E9\nb");
    EXPECT_EQ(map.sourceOffsetAt(0), 7u);
    EXPECT_EQ(map.sourceOffsetAt(1), 8u);
    EXPECT_EQ(map.sourceOffsetAt(2), 12u);
    EXPECT_EQ(map.sourceOffsetAt(3), 16u);
    EXPECT_EQ(map.sourceOffsetAt(4), 19u);
}

TEST(RtfText, AnEmptyDocumentTakesTextInFrontOfItsEnd) {
    EXPECT_EQ(mapRtf(u"{\\rtf1{\\fonttbl x}\\pard}\r\n").sourceOffsetAt(0), 23u);
}

TEST(RtfText, ControlWordsNeedADelimiterAndEscapesDoNot) {
    EXPECT_TRUE(rtfNeedsDelimiter(u"\\par", 4));
    EXPECT_TRUE(rtfNeedsDelimiter(u"\\fs20", 5));
    EXPECT_TRUE(rtfNeedsDelimiter(u"\\li-20", 6));
    EXPECT_FALSE(rtfNeedsDelimiter(u"\\par ", 5));
    EXPECT_FALSE(rtfNeedsDelimiter(u"\\\\par", 5));
    EXPECT_FALSE(rtfNeedsDelimiter(u"\\'e9", 4));
    EXPECT_FALSE(rtfNeedsDelimiter(u"abc", 3));
    EXPECT_FALSE(rtfNeedsDelimiter(u"", 0));
}

TEST(RtfText, BrokenRtfIsReadAsFarAsItGoes) {
    EXPECT_EQ(rtfToText(u"}}}a{{{b\\"), u"ab");
    EXPECT_EQ(rtfToText(u"{\\rtf1 a\\'"), u"a");
    EXPECT_EQ(rtfToText(u"{\\rtf1 a\\bin99999 b"), u"a");
    EXPECT_EQ(rtfToText(u"{\\rtf1 " + std::u16string(200000, u'{') + u"x").size(), 1u);
    EXPECT_EQ(rtfToText(u"plain"), u"plain");
}
