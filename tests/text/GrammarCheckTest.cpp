#include "text/GrammarCheck.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>

#include "NaiveGrammarCheck.h"
#include "host/TextFunctions.h"
#include "text/TagPieces.h"

namespace lorvane::text {
namespace {

constexpr std::u16string_view startDelimiter = u"[<span", endDelimiter = u"</span>]";

std::u16string cleaned(std::u16string text, std::u16string_view start = startDelimiter, std::u16string_view end = endDelimiter) {
    RemoveGrammarCheck(text, start, end);
    return text;
}

std::u16string repeated(std::u16string_view piece, std::size_t times) {
    std::u16string text;
    while (times-- > 0) text += piece;
    return text;
}

std::u16string number(std::size_t value) {
    return host::decimal(static_cast<std::int64_t>(value));
}

std::u16string span(std::u16string_view content) {
    return std::u16string(startDelimiter).append(content).append(endDelimiter);
}

/// The clean-up of `text` is what the steps give.
void expectAsTold(const std::u16string& text, std::u16string_view start = startDelimiter, std::u16string_view end = endDelimiter) {
    EXPECT_EQ(host::toUtf8(cleaned(text, start, end)), host::toUtf8(naiveRemoveGrammarCheck(text, start, end))) << "of " << host::toUtf8(text);
}

TEST(GrammarCheckTest, TakesTheMarkupOutOfATag) {
    EXPECT_EQ(cleaned(u"Dear [<span class=SpellE>FullName</span>],"), u"Dear [FullName],");
    EXPECT_EQ(cleaned(u"Dear [<span class=SpellE>FirstName</span>],"), u"Dear [FirstName],");
    EXPECT_EQ(cleaned(u"[<span lang=EN-US>Date</span>]"), u"[Date]");
}

TEST(GrammarCheckTest, ChangesTheTextInPlaceAndGivesTheSame) {
    std::u16string text = span(u">Date");
    const std::u16string& given = RemoveGrammarCheck(text, startDelimiter, endDelimiter);
    EXPECT_EQ(&given, &text);
    EXPECT_EQ(text, u"[Date]");
}

TEST(GrammarCheckTest, ComparesInAnyCase) {
    EXPECT_EQ(cleaned(u"[<SPAN>fullname</Span>] [<span>FULLNAME</SPAN>]"), u"[FullName] [FullName]");
    EXPECT_EQ(cleaned(u"[<\u017Fpan>Fir\u017FtName</span>]"), u"[FirstName]") << "a long s is an s";
}

TEST(GrammarCheckTest, ReplacesAFragmentWhereverItStands) {
    EXPECT_EQ(cleaned(span(u"Date") + u" and " + span(u"DATE") + u" and " + span(u"date")), u"[Date] and [Date] and [Date]");
}

TEST(GrammarCheckTest, AWordIsFoundHoweverFarBehindTheStartItStands) {
    for (const std::size_t far : {4096u, 3 * 4096u}) {
        for (std::size_t before = far - 40; before < far + 10; ++before) {
            for (const TagWord& each : tagWords) {
                const std::u16string filler = std::u16string(before, u'.');
                EXPECT_EQ(host::toUtf8(cleaned(u"x" + span(filler + std::u16string(each.word)) + u"y")), host::toUtf8(u"x" + std::u16string(each.tag) + u"y"))
                    << before;
            }
        }
    }
}

TEST(GrammarCheckTest, LeavesTextWithoutBothDelimitersAlone) {
    for (const char16_t* text : {u"", u"Date", u"[<span Date", u"Date</span>]", u"[Date]", u"[<span>nothing</span>]"}) EXPECT_EQ(cleaned(text), text);
}

TEST(GrammarCheckTest, AnEndInFrontOfTheStartIsPassedOver) {
    EXPECT_EQ(cleaned(u"Date</span>] [<span"), u"Date</span>] [<span");
    EXPECT_EQ(cleaned(u"Date</span>] " + span(u"Date")), u"Date</span>] [Date]");
}

TEST(GrammarCheckTest, TheFirstWordOfTheOrderWins) {
    EXPECT_EQ(cleaned(span(u"FirstName Updated")), u"[FirstName]");
    EXPECT_EQ(cleaned(span(u"Date FirstName FullName")), u"[FullName]");
    EXPECT_EQ(cleaned(span(u"Update")), u"[Date]");
}

TEST(GrammarCheckTest, ASpanWithoutAWordMakesTheLaterFragmentsLonger) {
    EXPECT_EQ(cleaned(span(u"x") + u" then " + span(u"Date") + u" end"), u"[Date] end");
    EXPECT_EQ(cleaned(span(u"x") + u" Date then " + span(u"y") + u" end"), u"[Date] end");
}

TEST(GrammarCheckTest, AnEndDirectlyBehindAFragmentIsNotSeen) {
    EXPECT_EQ(cleaned(span(u"x") + u"</span>]</span>]Date"), span(u"x") + u"</span>]</span>]Date");
    EXPECT_EQ(cleaned(span(u"x") + u"Date</span>]"), u"[Date]");
    EXPECT_EQ(cleaned(span(u"x") + u"</span>]Date</span>]"), u"[Date]");
    expectAsTold(span(u"x") + u"</span>]Date</span>]</span>]FullName</span>]");
}

TEST(GrammarCheckTest, TheSearchGoesOnFromTheOldNumberInTheShorterText) {
    // The first replacement takes 27 units away: the end of the second span slips behind the number that the search goes on from.
    const std::u16string text = span(u" class=SpellEE>Date") + u" " + span(u"FullName") + u" " + span(u"FirstName");
    EXPECT_EQ(cleaned(text), u"[Date] [FullName]");
    expectAsTold(text);
}

TEST(GrammarCheckTest, AFragmentThatHoldsATagIsFoundAgainBehindItsReplacement) {
    const std::u16string fragment = span(u" [FullName] FirstName");
    expectAsTold(fragment + u" zzz " + startDelimiter.data() + u" " + fragment + u" FirstName" + endDelimiter.data());
    expectAsTold(fragment + u" - " + span(u" " + fragment + u" FirstName") + u" - " + fragment);
}

TEST(GrammarCheckTest, HandMadeTextsAreAsTold) {
    const std::u16string stuck = span(u"x");
    const std::u16string date = span(u"Date");
    for (const std::u16string& text : {
             date + date + date,
             stuck + date + stuck + date,
             date + stuck + date + stuck,
             stuck + u" Date " + stuck + u" Date " + stuck,  // a fragment that overlaps itself
             stuck + u" Date " + stuck + u" Date " + stuck + u" Date " + stuck + u" Date " + stuck,
             repeated(u"[<span", 3) + u"Date" + repeated(u"</span>]", 5),
             repeated(u"[<span", 3) + u"Date" + repeated(u"</span>]", 5) + repeated(u"[<spanDate", 3) + repeated(u"</span>]", 5),
             repeated(u"</span>]", 3) + repeated(u"[<span", 3),
             span(span(span(u"Date"))),
             span(span(u"FullName") + u" FirstName"),
             span(u"[Date]") + span(u"[date]") + span(u"[FULLNAME]"),
             u"[[<span[Date</span>]]" + date,
             u"[<span[<spanDate</span></span>]]" + date + u"]",
             u"[<spa[<span Date</span>" + date,
             span(u"Da") + u"te" + span(u"te"),
             u"Da" + span(u"x") + u"te" + span(u"y"),
         })
        expectAsTold(text);
}

TEST(GrammarCheckTest, OtherDelimitersAreTakenToo) {
    for (const auto& [start, end] : std::initializer_list<std::pair<std::u16string_view, std::u16string_view>>{
             {u"{", u"}"},    // one unit each
             {u"<<", u">>"},  // can overlap themselves
             {u"ab", u"bc"},  // can overlap each other
             {u"|", u"|"},    // the same
             {u"[", u"]"},    // in every tag
             {u"[D", u"e]"},  // overlap the tag's ends
             {u"x", u"te"},   // in a word
         }) {
        for (const std::u16string& text : {
                 u"Date" + std::u16string(start) + u"Date" + std::u16string(end) + u"Date",
                 repeated(start, 3) + u"Date" + repeated(end, 3) + repeated(start, 2) + u"FullName" + repeated(end, 2),
                 std::u16string(end) + std::u16string(start) + std::u16string(end) + u"Date" + std::u16string(end),
                 std::u16string(u"abcabcDatebcabDatebc<<<Date>>><<FullName>>{}{{Date}}|x|Date|FirstName|"),
                 std::u16string(u"[Date] xDatexDate [FirstName]"),
             })
            expectAsTold(text, start, end);
    }
}

TEST(GrammarCheckTest, AnEmptyDelimiterIsFoundAnywhere) {
    for (const char16_t* text : {u"", u"a</span>]", u"[<spanx</span>]", u"[Date]"}) {
        expectAsTold(text, u"", endDelimiter);
        expectAsTold(text, startDelimiter, u"");
    }
}

/// A text over a small part of an alphabet of delimiters, words, tags and letters, with chunks that come again.
class RandomTexts {
public:
    explicit RandomTexts(std::uint32_t seed) : random_(seed) {}

    std::u16string next() {
        std::vector<std::u16string_view> alphabet{startDelimiter, endDelimiter};
        for (std::size_t count = 2 + below(6); count > 0; --count) alphabet.push_back(all[below(all.size())]);
        std::vector<std::u16string> chunks;
        std::u16string text;
        for (std::size_t count = 1 + below(below(10) == 0 ? 50 : 10); count > 0; --count) {
            if (!chunks.empty() && below(5) == 0) {
                text += chunks[below(chunks.size())];
                continue;
            }
            std::u16string chunk;
            for (std::size_t pieces = 1 + below(4); pieces > 0; --pieces) chunk += alphabet[below(alphabet.size())];
            text += chunk;
            chunks.push_back(chunk);
        }
        return text;
    }

private:
    static constexpr std::array<std::u16string_view, 22> all{
        u"[<span",     u"</span>]", u"[<SPAN",      u"</sPan>]", u"Date", u"date", u"DATE", u"FullName", u"fullname", u"FirstName", u"Fir\u017FtName",
        u"[FullName]", u"[date]",   u"[FirstName]", u"a",        u"b",    u" ",    u"[",    u"]",        u"<",        u"</span>",   u"[<\u017Fpan"};

    std::size_t below(std::size_t bound) { return random_() % bound; }
    std::mt19937 random_;
};

/// LORVANE_GRAMMAR_TEXTS: how many texts, for a longer sweep than each run's.
std::size_t textsOfThisRun() {
    const char* const told = std::getenv("LORVANE_GRAMMAR_TEXTS");
    return told ? std::strtoul(told, nullptr, 10) : 200'000;
}

TEST(GrammarCheckTest, RandomTextsAreAsTold) {
    RandomTexts texts(20280110);
    std::size_t changed = 0;
    for (std::size_t count = textsOfThisRun(); count > 0; --count) {
        const std::u16string text = texts.next();
        const std::u16string expected = naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter);
        changed += expected != text;
        const std::u16string actual = cleaned(text);
        ASSERT_TRUE(actual == expected) << host::toUtf8(actual) << "\ninstead of " << host::toUtf8(expected) << "\nof " << host::toUtf8(text);
    }
    EXPECT_GT(changed, textsOfThisRun() / 3) << "the texts have become too tame";
}

/// Starts of two kinds, nested at random, with a word and an end behind each nest, and now and then an end without a word or some letters between.
std::u16string nestsOfFewPieces(std::uint32_t seed, std::size_t nests) {
    std::mt19937 random(seed);
    std::u16string text;
    const std::size_t deepest = 1 + random() % 20;
    const bool apart = random() % 2 == 0;
    for (; nests > 0; --nests) {
        for (std::size_t depth = 1 + random() % deepest; depth > 0; --depth) text += random() % 2 == 0 ? u"[<span a>" : u"[<SPAN b>";
        text += random() % 8 == 0 ? u"x" : random() % 4 == 0 ? u"FullName" : u"Date";
        text += endDelimiter;
        if (apart) text += random() % 2 == 0 ? u" and so on and so on and so on and so on " : u" ";
    }
    return text;
}

TEST(GrammarCheckTest, ManyDifferentNestsOfTheSameFewPiecesAreAsTold) {
    for (std::uint32_t seed = 0; seed < 120; ++seed) {
        const std::u16string text = nestsOfFewPieces(seed, 20 + seed * 3);
        ASSERT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter)) << seed;
    }
}

TEST(GrammarCheckTest, NestsThatComeAgainBehindUnfinishedStartsAreAsTold) {
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        const std::u16string nests = nestsOfFewPieces(seed, 60);
        const std::u16string text = nests + repeated(u"[<span a>[<span b>", 50) + nests + nests;
        ASSERT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter)) << seed;
    }
}

/// Large texts of which the outcome is known, or soon found step by step.
class LargeText : public testing::Test {
protected:
    static constexpr std::size_t size = std::size_t{1} << 20;

    static std::u16string filledWith(std::u16string_view piece) { return repeated(piece, size / piece.size()); }
};

TEST_F(LargeText, OfDelimitersAloneStays) {
    for (const std::u16string& text : {filledWith(startDelimiter), filledWith(endDelimiter), filledWith(std::u16string(startDelimiter).append(endDelimiter)),
                                       filledWith(std::u16string(endDelimiter).append(startDelimiter)), filledWith(span(u" i=1>x") + u" ")})
        EXPECT_TRUE(cleaned(text) == text);
}

TEST_F(LargeText, OfNestedStartsIsOneFragment) {
    EXPECT_EQ(cleaned(filledWith(startDelimiter) + u"Date</span>]."), u"[Date].");
    EXPECT_EQ(cleaned(u"Date" + filledWith(startDelimiter) + u"x" + filledWith(std::u16string(endDelimiter).append(u" ")) + u"Date</span>]."), u"Date[Date].");
}

TEST_F(LargeText, OfIdenticalSpansIsReplacedAtOnce) {
    const std::u16string text = filledWith(span(u" class=SpellE>Date"));
    EXPECT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter));
}

TEST_F(LargeText, OfWhichOneStartSwallowsAll) {
    const std::u16string text = span(u" i=0>x") + filledWith(u" </span>]") + u"FullName</span>] end";
    EXPECT_EQ(cleaned(text), u"[FullName] end");
}

TEST_F(LargeText, OfAFewHundredFragmentsThatComeAgain) {
    std::u16string text;
    for (std::size_t i = 0; text.size() < size; ++i) text += span(u" i=" + number(i % 211) + (i % 5 == 0 ? u">Fu" : u">FullName")) + u"<p>words</p>\r\n";
    EXPECT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter));
}

TEST_F(LargeText, OfDistinctSpansSideBySide) {
    std::u16string text;
    for (std::size_t i = 0; text.size() < size; ++i) text += span(u" i=" + number(i) + u">Date");
    EXPECT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter));
}

TEST_F(LargeText, OfDistinctSpansFarApartHasATagForEach) {
    // Each replacement moves the text up by less than the dots between: no end slips behind the number that the search goes on from.
    std::u16string text;
    std::u16string expected;
    for (std::size_t i = 100'000; text.size() < size; ++i) {
        text += span(u" i=" + number(i) + u">Date") + repeated(u".", 40);
        expected += u"[Date]" + repeated(u".", 40);
    }
    EXPECT_TRUE(cleaned(text) == expected);
}

TEST_F(LargeText, WithoutAnyIsNotTouched) {
    const std::u16string text = filledWith(u"<p class=MsoNormal>Dear <span>you</span>, [FullName], see the page of [Date].</p>\r\n");
    EXPECT_TRUE(cleaned(text) == text);
}

TEST_F(LargeText, OfPeriodsInOneFragment) {
    // A first fragment so long that the search goes on far behind: the next one holds hundreds of spans, and nearly stands again behind it.
    const std::u16string period = span(u"Date");
    const std::u16string text = span(repeated(u"x", size / 3) + u"FullName") + repeated(period, 2000) + repeated(period, 1999) + u"x" + repeated(period, 1999);
    EXPECT_TRUE(cleaned(text) == naiveRemoveGrammarCheck(text, startDelimiter, endDelimiter));
}

}  // namespace
}  // namespace lorvane::text
