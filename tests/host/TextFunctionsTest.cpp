#include "host/TextFunctions.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace lorvane::host {
namespace {

using enum Compare;

std::int32_t numberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostError& error) {
        return error.number();
    }
    return 0;
}

TEST(InStr, FindsTheFirstAtOrBehindTheStart) {
    EXPECT_EQ(InStr(1, u"abcabc", u"bc"), 2u);
    EXPECT_EQ(InStr(2, u"abcabc", u"bc"), 2u);
    EXPECT_EQ(InStr(3, u"abcabc", u"bc"), 5u);
    EXPECT_EQ(InStr(6, u"abcabc", u"bc"), 0u);
    EXPECT_EQ(InStr(1, u"abc", u"abcd"), 0u);
    EXPECT_EQ(InStr(1, u"abc", u"B"), 0u);
    EXPECT_EQ(InStr(1, u"abc", u"B", IgnoreCase), 2u);
}

TEST(InStr, EmptyTexts) {
    EXPECT_EQ(InStr(1, u"", u"a"), 0u);
    EXPECT_EQ(InStr(1, u"", u""), 0u);
    EXPECT_EQ(InStr(1, u"abc", u""), 1u);
    EXPECT_EQ(InStr(3, u"abc", u""), 3u);
    EXPECT_EQ(InStr(4, u"abc", u""), 0u);
    EXPECT_EQ(InStr(4, u"abc", u"c"), 0u);
}

TEST(InStr, StartBelowOneIsError5) {
    EXPECT_EQ(numberOf([] { InStr(0, u"abc", u"a"); }), 5);
    EXPECT_EQ(InStr(std::u16string_view::npos, u"abc", u"a"), 0u);
}

TEST(InStr, IgnoresCaseUnitByUnit) {
    EXPECT_EQ(InStr(1, u"die GRÖSSE", u"grö", IgnoreCase), 5u);
    EXPECT_EQ(InStr(1, u"die GRÖ\u1E9EE", u"grö\u00DFe", IgnoreCase), 5u);
    EXPECT_EQ(InStr(1, u"die GRÖSSE", u"grö\u00DFe", IgnoreCase), 0u);
    EXPECT_EQ(InStr(1, u"273 \u212A", u"k", IgnoreCase), 5u);
    EXPECT_EQ(InStr(1, u"273 K", u"\u212A", IgnoreCase), 5u);
    EXPECT_EQ(InStr(1, u"\u017Fee", u"See", IgnoreCase), 1u);
    EXPECT_EQ(InStr(1, u"ΟΔΟΣ", u"οδος", IgnoreCase), 1u);
    EXPECT_EQ(InStr(1, u"xθ", u"\u03F4", IgnoreCase), 2u);
}

TEST(InStr, TakesSurrogatesAsTheyAre) {
    EXPECT_EQ(InStr(1, u"a\U0001F600b", u"\U0001F600"), 2u);
    EXPECT_EQ(InStr(1, u"a\U0001F600b", u"b", IgnoreCase), 4u);
    EXPECT_EQ(InStr(1, u"a\U0001F600b", std::u16string(1, char16_t{0xDE00}), IgnoreCase), 3u);
}

/// What InStr means, in the plainest way.
std::size_t plainInStr(std::size_t start, std::u16string_view text, std::u16string_view sought, Compare compare) {
    for (std::size_t at = start - 1; at + sought.size() <= text.size(); ++at) {
        bool same = true;
        for (std::size_t i = 0; i < sought.size() && same; ++i) {
            same = compare == Binary ? text[at + i] == sought[i] : foldUnit(text[at + i]) == foldUnit(sought[i]);
        }
        if (same) return at + 1;
    }
    return 0;
}

TEST(InStr, AgreesWithThePlainSearchOnTextsOfEveryLength) {
    constexpr std::u16string_view letters = u"aAbBkK\u212As\u017FiI\u00DF\u1E9E\u03B8\u03F4<> z";
    std::mt19937 random(20280110);
    const auto text = [&](std::size_t length, std::size_t variety) {
        std::u16string made;
        for (std::size_t i = 0; i < length; ++i) made += letters[random() % variety];
        return made;
    };
    for (int round = 0; round < 6000; ++round) {
        const std::size_t variety = 1 + random() % letters.size();
        const std::u16string in = text(random() % 150, variety);
        const std::u16string sought = text(1 + random() % 6, variety);
        const std::size_t start = 1 + random() % (in.size() + 1);
        for (const Compare compare : {Binary, IgnoreCase}) {
            const std::size_t expected = start > in.size() ? 0 : plainInStr(start, in, sought, compare);
            ASSERT_EQ(InStr(start, in, sought, compare), expected) << toUtf8(in) << " / " << toUtf8(sought) << " / " << start;
        }
    }
}

TEST(InStrRev, FindsTheLast) {
    EXPECT_EQ(InStrRev(u"abcabc", u"bc"), 5u);
    EXPECT_EQ(InStrRev(u"abcabc", u"a"), 4u);
    EXPECT_EQ(InStrRev(u"abc", u"x"), 0u);
    EXPECT_EQ(InStrRev(u"abc", u"abcd"), 0u);
    EXPECT_EQ(InStrRev(u"", u"a"), 0u);
    EXPECT_EQ(InStrRev(u"aBcabc", u"BC"), 0u);
    EXPECT_EQ(InStrRev(u"aBcabc", u"BC", IgnoreCase), 5u);
    EXPECT_EQ(InStrRev(u"abc", u""), 3u);
}

TEST(Replace, GoesOnceFromTheLeft) {
    EXPECT_EQ(Replace(u"aaa", u"aa", u"b"), u"ba");
    EXPECT_EQ(Replace(u"a.b.c", u".", u""), u"abc");
    EXPECT_EQ(Replace(u"aXa", u"X", u"XX"), u"aXXa");
    EXPECT_EQ(Replace(u"abab", u"ab", u"abab"), u"abababab");
    EXPECT_EQ(Replace(u"aabb", u"ab", u""), u"ab") << "what comes together is not looked at again";
}

TEST(Replace, OfNothingGivesTheText) {
    EXPECT_EQ(Replace(u"abc", u"", u"x"), u"abc");
    EXPECT_EQ(Replace(u"", u"a", u"x"), u"");
    EXPECT_EQ(Replace(u"abc", u"d", u"x"), u"abc");
}

TEST(Replace, IgnoresCaseButPutsInWhatIsGiven) {
    EXPECT_EQ(Replace(u"[DATE] [date] [Date]", u"[date]", u"D", IgnoreCase), u"D D D");
    EXPECT_EQ(Replace(u"[DATE] [date]", u"[date]", u"D"), u"[DATE] D");
    EXPECT_EQ(Replace(u"ÄäAa", u"ä", u"x", IgnoreCase), u"xxAa");
}

TEST(Replace, CrossesManyBlocks) {
    std::u16string text;
    std::u16string expected;
    for (int i = 0; i < 500; ++i) {
        text.append(static_cast<std::size_t>(i % 70), u'.').append(i % 2 ? u"</Body>" : u"</BODY>");
        expected.append(static_cast<std::size_t>(i % 70), u'.').append(u"|");
    }
    EXPECT_EQ(Replace(text, u"</body>", u"|", IgnoreCase), expected);
}

TEST(Trim, TakesBlanksOnly) {
    EXPECT_EQ(Trim(u"  a b  "), u"a b");
    EXPECT_EQ(LTrim(u"  a  "), u"a  ");
    EXPECT_EQ(RTrim(u"  a  "), u"  a");
    EXPECT_EQ(Trim(u" \ta\r\n "), u"\ta\r\n");
    EXPECT_EQ(Trim(u"\u00A0a\u00A0"), u"\u00A0a\u00A0");
    EXPECT_EQ(Trim(u"   "), u"");
    EXPECT_EQ(Trim(u""), u"");
}

TEST(MidLeftRight, CutByPosition) {
    EXPECT_EQ(Mid(u"abcd", 2), u"bcd");
    EXPECT_EQ(Mid(u"abcd", 2, 2), u"bc");
    EXPECT_EQ(Mid(u"abcd", 4, 9), u"d");
    EXPECT_EQ(Mid(u"abcd", 5), u"");
    EXPECT_EQ(Mid(u"abcd", 99, 1), u"");
    EXPECT_EQ(Mid(u"abcd", 1, 0), u"");
    EXPECT_EQ(numberOf([] { Mid(u"abcd", 0); }), 5);
    EXPECT_EQ(Left(u"abcd", 2), u"ab");
    EXPECT_EQ(Left(u"abcd", 9), u"abcd");
    EXPECT_EQ(Left(u"abcd", 0), u"");
    EXPECT_EQ(Right(u"abcd", 2), u"cd");
    EXPECT_EQ(Right(u"abcd", 9), u"abcd");
    EXPECT_EQ(Right(u"abcd", 0), u"");
}

TEST(Space, MakesBlanks) {
    EXPECT_EQ(Space(3), u"   ");
    EXPECT_EQ(Space(0), u"");
    EXPECT_EQ(numberOf([] { Space(-1); }), 5);
}

TEST(StrReverse, TurnsUnitsRound) {
    EXPECT_EQ(StrReverse(u"(E-MAIL)"), u")LIAM-E(");
    EXPECT_EQ(StrReverse(u""), u"");
}

TEST(Case, NeverMovesOffsets) {
    EXPECT_EQ(UCase(u"größe ij ﬁ"), u"GRÖßE IJ ﬁ");
    EXPECT_EQ(LCase(u"GRÖSSE \u1E9E"), u"grösse ß");
    EXPECT_EQ(LCase(u"\u0130"), u"\u0130");
    EXPECT_EQ(UCase(u"\U00010428"), u"\U00010428") << "beyond the basic plane nothing is mapped";
}

TEST(StrComp, ComparesUnitsAsNumbers) {
    EXPECT_EQ(StrComp(u"a", u"b"), -1);
    EXPECT_EQ(StrComp(u"b", u"a"), 1);
    EXPECT_EQ(StrComp(u"a", u"a"), 0);
    EXPECT_EQ(StrComp(u"a", u"ab"), -1);
    EXPECT_EQ(StrComp(u"", u""), 0);
    EXPECT_EQ(StrComp(u"Z", u"a"), -1);
    EXPECT_EQ(StrComp(u"Z", u"a", IgnoreCase), 1);
    EXPECT_EQ(StrComp(u"ÄB", u"äb", IgnoreCase), 0);
    EXPECT_EQ(StrComp(u"_", u"A", IgnoreCase), -1) << "folding goes to the small letters";
}

TEST(EqualsIgnoreCase, NeedsTheSameLength) {
    EXPECT_TRUE(equalsIgnoreCase(u"Grö\u00DFe", u"GRÖ\u1E9EE"));
    EXPECT_FALSE(equalsIgnoreCase(u"größe", u"GRÖSSE"));
    EXPECT_FALSE(equalsIgnoreCase(u"a", u"ab"));
    EXPECT_TRUE(equalsIgnoreCase(u"", u""));
}

TEST(Split, GivesThePieces) {
    using Pieces = std::vector<std::u16string>;
    EXPECT_EQ(Split(u"a, b,c", u","), (Pieces{u"a", u" b", u"c"}));
    EXPECT_EQ(Split(u",a,", u","), (Pieces{u"", u"a", u""}));
    EXPECT_EQ(Split(u"a--b", u"--"), (Pieces{u"a", u"b"}));
    EXPECT_EQ(Split(u"abc", u","), (Pieces{u"abc"}));
    EXPECT_EQ(Split(u"abc", u""), (Pieces{u"abc"}));
    EXPECT_EQ(Split(u"", u","), Pieces{});
}

TEST(Val, ReadsWhatStandsInFront) {
    const std::pair<std::u16string_view, double> cases[] = {
        {u"", 0},
        {u"abc", 0},
        {u"12abc", 12},
        {u"1,000", 1},
        {u"  12", 12},
        {u"1 615 198th", 1615198},
        {u"-3.5x", -3.5},
        {u"- 3", -3},
        {u"+4", 4},
        {u".5", 0.5},
        {u"5.", 5},
        {u"1E3", 1000},
        {u"1D3", 1000},
        {u"1e", 1},
        {u"1e-2z", 0.01},
        {u"&HFF", 255},
        {u"&HFFFF", -1},
        {u"&H10000", 65536},
        {u"&HFFFFFFFF", -1},
        {u"&O17", 15},
        {u"&Hxyz", 0},
        {u"5&H1", 5},
        {u"--5", 0},
        {u"1.2.3", 1.2},
        {u"\t\n7", 7},
        {u"12\u00A03", 12},
        {u"inf", 0},
        {u"nan", 0},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << toUtf8(text);
}

TEST(Val, NeverFails) {
    EXPECT_GT(Val(u"1e999"), 1e308);
    EXPECT_EQ(Val(u"1e-999"), 0);
    EXPECT_EQ(Val(std::u16string(300, u'0') + u"7"), 7);
    EXPECT_GT(Val(std::u16string(5000, u'9')), 1e308);
}

TEST(NumberFromText, ReadsTheWholeText) {
    EXPECT_EQ(numberFromText(u"12"), 12);
    EXPECT_EQ(numberFromText(u" -12.5 "), -12.5);
    EXPECT_EQ(numberFromText(u"+3"), 3);
    EXPECT_EQ(numberFromText(u"1,234,567.5"), 1234567.5);
    EXPECT_EQ(numberFromText(u"1E3"), 1000);
    EXPECT_EQ(numberFromText(u"1d-2"), 0.01);
    EXPECT_EQ(numberFromText(u".5"), 0.5);
    EXPECT_EQ(numberFromText(u"5."), 5);
    EXPECT_EQ(numberFromText(u"&HFF"), 255);
    EXPECT_EQ(numberFromText(u"&o17"), 15);
    EXPECT_EQ(numberFromText(u"\u00A012"), 12);
}

TEST(NumberFromText, AnythingElseIsError13) {
    for (const std::u16string_view text :
         {u"", u" ", u"a", u"12a", u"1 2", u"1.2.3", u"--1", u"-", u".", u",5", u"1.5,0", u"1e", u"&H", u"&HG", u"-&H1", u"inf", u"nan", u"0x10", u"١"}) {
        EXPECT_EQ(numberOf([&] { numberFromText(text); }), 13) << toUtf8(text);
    }
}

TEST(NumberFromText, TooLargeIsError6) {
    EXPECT_EQ(numberOf([] { numberFromText(u"1e400"); }), 6);
    EXPECT_EQ(numberOf([] { numberFromText(std::u16string(400, u'9')); }), 6);
    EXPECT_EQ(numberFromText(u"1e-400"), 0);
}

TEST(RoundHalfEven, GoesToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfEven(0.5), 0);
    EXPECT_EQ(roundHalfEven(1.5), 2);
    EXPECT_EQ(roundHalfEven(2.5), 2);
    EXPECT_EQ(roundHalfEven(-0.5), 0);
    EXPECT_EQ(roundHalfEven(-1.5), -2);
    EXPECT_EQ(roundHalfEven(-2.5), -2);
    EXPECT_EQ(roundHalfEven(2.4999), 2);
    EXPECT_EQ(roundHalfEven(-2.6), -3);
    EXPECT_EQ(roundHalfEven(4503599627370497.0), 4503599627370497.0);
    EXPECT_EQ(roundHalfEven(1e300), 1e300);
}

TEST(Decimal, WritesWholeNumbers) {
    EXPECT_EQ(decimal(0), u"0");
    EXPECT_EQ(decimal(-42), u"-42");
    EXPECT_EQ(decimal(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

}  // namespace
}  // namespace lorvane::host
