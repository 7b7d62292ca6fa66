#include <gtest/gtest.h>

#include "host/TextFunctions.h"

namespace lorvane::host {
namespace {

std::u16string units(std::initializer_list<char16_t> list) {
    return std::u16string(list);
}

TEST(FromUtf8, ReadsEveryLength) {
    EXPECT_EQ(fromUtf8(""), u"");
    EXPECT_EQ(fromUtf8("a\xC3\xB6\xE2\x82\xAC\xF0\x9F\x98\x80"), u"aö€\U0001F600");
    EXPECT_EQ(fromUtf8(std::string_view("a\0b", 3)), std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(fromUtf8("\xEF\xBB\xBFx"), u"\uFEFFx") << "a byte order mark is a character like others";
}

TEST(FromUtf8, ReadsTheEdgesOfEachLength) {
    EXPECT_EQ(fromUtf8("\x7F\xC2\x80\xDF\xBF"), units({0x7F, 0x80, 0x7FF}));
    EXPECT_EQ(fromUtf8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"), units({0x800, 0xD7FF, 0xE000, 0xFFFF}));
    EXPECT_EQ(fromUtf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), units({0xD800, 0xDC00, 0xDBFF, 0xDFFF}));
}

TEST(FromUtf8, ReplacesEachMalformedSequenceOnce) {
    // Each maximal part of what could have become a character is one replacement.
    EXPECT_EQ(fromUtf8("a\x80z"), u"a\uFFFDz");
    EXPECT_EQ(fromUtf8("\x80\xBF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xC3z"), u"\uFFFDz");
    EXPECT_EQ(fromUtf8("\xE2\x82"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xE2\x82z"), u"\uFFFDz");
    EXPECT_EQ(fromUtf8("\xF0\x9F\x98"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xF0\x9F\x98\xC3\xB6"), u"\uFFFDö");
    EXPECT_EQ(fromUtf8("\xFF\xFE"), u"\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xF1\x80\x80\xE1\x80\xC2"
                       "b\x80"
                       "c\x80\xBF"
                       "d"),
              u"\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd");
}

TEST(FromUtf8, RefusesLongFormsSurrogatesAndWhatLiesBeyondThePlanes) {
    EXPECT_EQ(fromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xE0\x80\xAF"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xF0\x80\x80\xAF"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xF5\x80\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(ToUtf8, WritesEveryLength) {
    EXPECT_EQ(toUtf8(u""), "");
    EXPECT_EQ(toUtf8(u"aö€\U0001F600"), "a\xC3\xB6\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(units({0x7F, 0x80, 0x7FF, 0x800, 0xFFFF})), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
}

TEST(ToUtf8, ALoneSurrogateBecomesTheReplacement) {
    EXPECT_EQ(toUtf8(units({0xD83D})), "\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(units({u'a', 0xDE00, u'b'})),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(toUtf8(units({0xDE00, 0xD83D})), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(units({0xD83D, 0xD83D, 0xDE00})), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(Utf, EveryCharacterComesBack) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character >= 0xD800 && character <= 0xDFFF) continue;
        std::u16string text;
        if (character < 0x10000) {
            text = units({static_cast<char16_t>(character)});
        } else {
            text = units({static_cast<char16_t>(0xD7C0 + (character >> 10)), static_cast<char16_t>(0xDC00 + (character & 0x3FF))});
        }
        ASSERT_EQ(fromUtf8(toUtf8(text)), text) << std::hex << static_cast<unsigned>(character);
    }
}

}  // namespace
}  // namespace lorvane::host
