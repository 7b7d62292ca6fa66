#include "recordset/TextScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "host/TextFunctions.h"

namespace lorvane::recordset {
namespace {

// Some rows of few letters, so that near misses and repeated letters are common, searched for a text of the same letters.
template <class Unit>
void findsWhatAPlainSearchFinds(unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        const auto randomText = [&random](std::size_t length) {
            std::basic_string<Unit> text(length, Unit{});
            for (Unit& unit : text) unit = static_cast<Unit>('a' + random() % 3);
            return text;
        };
        const auto sought = randomText(1 + random() % 6);
        const std::size_t longest = 1 + random() % 90;
        std::vector<Unit> text;
        std::vector<std::uint32_t> ends;
        RowBits expected(100), found(100);
        for (RowId row = 20; row < 20 + random() % 60; ++row) {
            const auto own = randomText(random() % longest);
            if (own.find(sought) != own.npos) expected.set(row);
            text.insert(text.end(), own.begin(), own.end());
            ends.push_back(static_cast<std::uint32_t>(text.size()));
            text.push_back(static_cast<Unit>(rowSeparator));
        }
        Needle<Unit> needle;
        needle.units.assign(sought.begin(), sought.end());
        needle.choose(text);
        // What stands behind the end must not be found.
        for (std::size_t i = 0; i < scanSlack; ++i) text.push_back(needle.units[i % needle.units.size()]);
        findRows(FoldedRows<Unit>{text.data(), ends, 20}, needle, found);
        ASSERT_EQ(found.words(), expected.words());
    }
}

TEST(TextScan, FindsTheRowsOfBytesThatAPlainSearchFinds) {
    findsWhatAPlainSearchFinds<std::uint8_t>(1);
}

TEST(TextScan, FindsTheRowsOfUnitsThatAPlainSearchFinds) {
    findsWhatAPlainSearchFinds<char16_t>(2);
}

TEST(TextScan, FarRowsAreFoundToo) {
    std::vector<std::uint8_t> text;
    std::vector<std::uint32_t> ends;
    for (RowId row = 0; row < 1000; ++row) {
        const std::string own = row % 333 == 7 ? "needle" : "hay and more hay";
        text.insert(text.end(), own.begin(), own.end());
        ends.push_back(static_cast<std::uint32_t>(text.size()));
        text.push_back(static_cast<std::uint8_t>(rowSeparator));
    }
    text.resize(text.size() + scanSlack);
    Needle<std::uint8_t> needle;
    needle.units.assign({'n', 'e', 'e', 'd', 'l', 'e'});
    needle.choose(text);
    RowBits found(1000);
    findRows(FoldedRows<std::uint8_t>{text.data(), ends, 0}, needle, found);
    std::vector<RowId> rows;
    found.forEach([&rows](RowId row) { rows.push_back(row); });
    EXPECT_EQ(rows, (std::vector<RowId>{7, 340, 673}));
}

TEST(TextScan, PlainIsWhatLiesBelow80AtAnyPlace) {
    for (std::size_t length = 0; length < 40; ++length) {
        std::u16string text(length, u'\x7F');
        EXPECT_TRUE(isPlain(text));
        for (std::size_t place = 0; place < length; ++place) {
            for (const char16_t unit : {u'\x80', u'\x100', u'\xFFFF'}) {
                std::u16string other = text;
                other[place] = unit;
                EXPECT_FALSE(isPlain(other));
            }
        }
    }
}

TEST(TextScan, PlainTextFoldsAsTheHostFolds) {
    std::u16string text;
    for (char16_t unit = 0; unit < 0x80; ++unit) text += unit;
    std::vector<std::uint8_t> bytes(text.size() + scanSlack);
    std::vector<char16_t> units(text.size() + scanSlack);
    foldPlain(text, bytes.data());
    foldPlain(text, units.data());
    for (std::size_t i = 0; i < text.size(); ++i) {
        EXPECT_EQ(bytes[i], host::foldUnit(text[i]));
        EXPECT_EQ(units[i], host::foldUnit(text[i]));
    }
}

TEST(TextScan, NoUnitFoldsToTheRowSeparator) {
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) ASSERT_NE(host::foldUnit(static_cast<char16_t>(unit)), rowSeparator);
}

}  // namespace
}  // namespace lorvane::recordset
