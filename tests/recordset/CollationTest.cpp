#include "recordset/Collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "RecordsetBuilder.h"
#include "recordset/TextSort.h"

namespace lorvane::recordset {
namespace {

TEST(Collation, CaseNeverCountsAndAccentsCountBehindLetters) {
    const auto german = Collation::of(u"de-DE");
    EXPECT_EQ(german->compare(u"straße", u"STRAẞE"), 0);
    EXPECT_EQ(german->compare(u"Ab", u"aB"), 0);
    EXPECT_LT(german->compare(u"arg", u"ärger"), 0);
    EXPECT_LT(german->compare(u"ärger", u"az"), 0);
    EXPECT_LT(german->compare(u"Muller", u"Müller"), 0);
    EXPECT_LT(german->compare(u"Müller", u"Mullert"), 0);
}

TEST(Collation, FollowsTheLocale) {
    EXPECT_GT(Collation::of(u"sv-SE")->compare(u"ärlig", u"zon"), 0);
    EXPECT_LT(Collation::of(u"de-DE")->compare(u"ärlig", u"zon"), 0);
    EXPECT_GT(Collation::of(u"cs-CZ")->compare(u"chata", u"hora"), 0);
}

TEST(Collation, AnUnknownLocaleHasTheRootOrder) {
    const Collation unknown(u"no such locale!");
    EXPECT_LT(unknown.compare(u"a", u"b"), 0);
}

TEST(Collation, OrdinaryTextIsTabledWhereNoTwoLettersCountAsOne) {
    EXPECT_TRUE(Collation::of(u"en-US")->plainIsTabled());
    EXPECT_TRUE(Collation::of(u"de-DE")->plainIsTabled());
    EXPECT_TRUE(Collation::of(u"de-DE")->isTabled(u"Größe für ÄÖÜ – „Angebot“ 5 €"));
    EXPECT_FALSE(Collation::of(u"cs-CZ")->plainIsTabled());
    EXPECT_FALSE(Collation::of(u"cs-CZ")->isTabled(u"chata"));
    EXPECT_FALSE(Collation::of(u"en-US")->isTabled(u"o\u0308"));
    EXPECT_FALSE(Collation::of(u"en-US")->isTabled(u"\U0001F600"));
}

// A text of units that come together in strange ways: letters and accents, marks that join, halves of pairs, blanks and control characters.
std::u16string randomText(std::mt19937& random) {
    static constexpr std::u16string_view pool =
        u"aAbBcChHlLzZnNäÄöüßẞåæÅøéèêôñçøÆœĳŀ·-–_ .,'’„“(5109€™\u0301\u0308\u030C\u0327\u00AD\u0001\t\u200Bаяйи\u0E40\u0E01\U0001F600\u4E2D\uAC00";
    std::u16string text(random() % 10, u' ');
    const bool simple = random() % 2 == 0;
    for (char16_t& unit : text) {
        unit = pool[random() % (simple ? 45 : pool.size())];
        if (random() % 8 == 0) unit = static_cast<char16_t>(random() % 0x180);
    }
    return text;
}

class SortedBy : public testing::TestWithParam<const char16_t*> {};

TEST_P(SortedBy, WholeColumnsStandInTheOrderOfTheLibrary) {
    const auto collation = Collation::of(GetParam());
    for (unsigned seed = 0; seed < 12; ++seed) {
        std::mt19937 random(seed);
        TextColumn column;
        std::vector<RowId> rows;
        const std::size_t count = seed < 8 ? 700 : 40;
        const std::u16string common(seed % 4 == 3 ? 21 : 0, u'x');
        for (std::size_t i = 0; i < count; ++i) {
            column.append(CellState::Value, common + randomText(random));
            rows.push_back(static_cast<RowId>(i));
        }
        std::ranges::shuffle(rows, random);
        std::vector<RowId> expected = rows;
        std::ranges::stable_sort(expected, [&](RowId a, RowId b) { return collation->compare(column.text(a), column.text(b)) < 0; });
        sortByText(column, *collation, rows);
        ASSERT_EQ(rows, expected) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, SortedBy,
                         testing::Values(u"en-US", u"en-GB", u"de-DE", u"de-AT-u-co-phonebk", u"sv-SE", u"da-DK", u"cs-CZ", u"hu-HU", u"es-u-co-trad", u"fr-CA",
                                         u"th-TH", u"ja-JP", u"ru-RU", u"hr-HR", u"et-EE", u"lt-LT", u"tr-TR", u"vi-VN"));

TEST(Collation, EveryPairOfTabledUnitsComparesByItsWeights) {
    const auto collation = Collation::of(u"de-DE");
    std::vector<std::u16string> texts;
    for (unsigned unit = 0; unit < 0x2200; ++unit) {
        if (!collation->weights(static_cast<char16_t>(unit)).known) continue;
        texts.push_back({static_cast<char16_t>(unit)});
        texts.push_back({static_cast<char16_t>(unit), u'b'});
        texts.push_back({u'l', static_cast<char16_t>(unit), u'a'});
    }
    ASSERT_GT(texts.size(), 900u);
    TextColumn column;
    std::vector<RowId> rows;
    for (const auto& text : texts) {
        rows.push_back(static_cast<RowId>(column.size()));
        column.append(CellState::Value, text);
    }
    std::vector<RowId> expected = rows;
    std::ranges::stable_sort(expected, [&](RowId a, RowId b) { return collation->compare(column.text(a), column.text(b)) < 0; });
    sortByText(column, *collation, rows);
    EXPECT_EQ(rows, expected);
}

TEST(Collation, LongEqualBeginningsAndRepeatsStayInOrderOfArrival) {
    const auto collation = Collation::of(u"en-US");
    TextColumn column;
    std::vector<RowId> rows, expected;
    for (RowId i = 0; i < 3000; ++i) {
        column.append(CellState::Value, std::u16string(500, i % 2 ? u'q' : u'Q') + (i % 3 == 0 ? u"" : u"é"));
        rows.push_back(i);
    }
    for (const bool accent : {false, true}) {
        for (RowId i = 0; i < 3000; ++i) {
            if ((i % 3 != 0) == accent) expected.push_back(i);
        }
    }
    sortByText(column, *collation, rows);
    EXPECT_EQ(rows, expected);
}

TEST(Collation, TextsEachOneLetterLongerThanTheLast) {
    const auto collation = Collation::of(u"en-US");
    TextColumn column;
    std::vector<RowId> rows, expected;
    for (RowId i = 0; i < 2000; ++i) {
        column.append(CellState::Value, std::u16string(2000 - i, u'a'));
        rows.push_back(i);
        expected.push_back(1999 - i);
    }
    sortByText(column, *collation, rows);
    EXPECT_EQ(rows, expected);
}

TEST(Collation, SortKeysCompareAsTheTextsDo) {
    const auto collation = Collation::of(u"de-DE");
    std::vector<std::uint8_t> a, b;
    const std::u16string longText(4000, u'ü');
    collation->appendKey(longText, a);
    collation->appendKey(longText + u"a", b);
    ASSERT_EQ(a.back(), 0);
    EXPECT_LT(std::strcmp(reinterpret_cast<const char*>(a.data()), reinterpret_cast<const char*>(b.data())), 0);
}

}  // namespace
}  // namespace lorvane::recordset
