#include "host/CaseTables.h"

#include <gtest/gtest.h>

#include "host/TextFunctions.h"

namespace lorvane::host {
namespace {

struct Fact {
    char16_t unit, upper, fold;
};

TEST(CaseTables, HoldWhatUnicodeSays) {
    constexpr Fact facts[] = {
        {u'a', u'A', u'a'},       {u'A', u'A', u'a'},       {u'z', u'Z', u'z'},       {u'@', u'@', u'@'},       {u'[', u'[', u'['},
        {u'`', u'`', u'`'},       {u'{', u'{', u'{'},       {u'0', u'0', u'0'},       {0x00B5, 0x039C, 0x03BC}, {0x00D6, 0x00D6, 0x00F6},
        {0x00D7, 0x00D7, 0x00D7}, {0x00DF, 0x00DF, 0x00DF}, {0x00F6, 0x00D6, 0x00F6}, {0x00F7, 0x00F7, 0x00F7}, {0x00FF, 0x0178, 0x00FF},
        {0x0130, 0x0130, 0x0130}, {0x0131, u'I', u'i'},     {0x0149, 0x0149, 0x0149}, {0x017F, u'S', u's'},     {0x01C5, 0x01C4, 0x01C6},
        {0x0178, 0x0178, 0x00FF}, {0x0345, 0x0399, 0x03B9}, {0x0390, 0x0390, 0x0390}, {0x03A3, 0x03A3, 0x03C3}, {0x03C2, 0x03A3, 0x03C3},
        {0x03D1, 0x0398, 0x03B8}, {0x03F4, 0x03F4, 0x03B8}, {0x0416, 0x0416, 0x0436}, {0x0436, 0x0416, 0x0436}, {0x0531, 0x0531, 0x0561},
        {0x10D0, 0x1C90, 0x10D0}, {0x13A0, 0x13A0, 0x13A0}, {0xAB70, 0x13A0, 0x13A0}, {0x1C80, 0x0412, 0x0432}, {0x1E9B, 0x1E60, 0x1E61},
        {0x1E9E, 0x1E9E, 0x00DF}, {0x1FB3, 0x1FBC, 0x1FB3}, {0x1FBC, 0x1FBC, 0x1FB3}, {0x2126, 0x2126, 0x03C9}, {0x212A, 0x212A, u'k'},
        {0x212B, 0x212B, 0x00E5}, {0x2170, 0x2160, 0x2170}, {0x24D0, 0x24B6, 0x24D0}, {0xFB00, 0xFB00, 0xFB00}, {0xFF41, 0xFF21, 0xFF41},
        {0xFF21, 0xFF21, 0xFF41}, {0xD800, 0xD800, 0xD800}, {0xDFFF, 0xDFFF, 0xDFFF}, {0xFFFF, 0xFFFF, 0xFFFF},
    };
    for (const Fact& fact : facts) {
        EXPECT_EQ(upperUnit(fact.unit), fact.upper) << std::hex << static_cast<unsigned>(fact.unit);
        EXPECT_EQ(foldUnit(fact.unit), fact.fold) << std::hex << static_cast<unsigned>(fact.unit);
    }
}

TEST(CaseTables, FoldOnceAndAlikeWhatIsUpperCasedAlike) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<char16_t>(code);
        ASSERT_EQ(foldUnit(foldUnit(unit)), foldUnit(unit)) << std::hex << code;
        ASSERT_EQ(foldUnit(upperUnit(unit)), foldUnit(unit)) << std::hex << code;
        ASSERT_EQ(upperUnit(upperUnit(unit)), upperUnit(unit)) << std::hex << code;
        ASSERT_EQ(case_tables::folded(unit), case_tables::fold(unit)) << std::hex << code;
        ASSERT_EQ(case_tables::lower(case_tables::lower(unit)), case_tables::lower(unit)) << std::hex << code;
    }
}

TEST(CaseTables, LeaveSurrogatesAlone) {
    for (unsigned code = 0xD800; code <= 0xDFFF; ++code) {
        const auto unit = static_cast<char16_t>(code);
        ASSERT_EQ(upperUnit(unit), unit);
        ASSERT_EQ(case_tables::lower(unit), unit);
        ASSERT_EQ(foldUnit(unit), unit);
    }
}

TEST(CaseTables, FurtherFormsAreAllThatASearchCouldMiss) {
    std::size_t known = 0;
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<char16_t>(code);
        const char16_t folded = foldUnit(unit);
        if (unit == folded || unit == upperUnit(folded)) continue;
        ++known;
        EXPECT_EQ(InStr(1, std::u16string(1, unit), std::u16string(1, folded), Compare::IgnoreCase), 1u) << std::hex << code;
    }
    EXPECT_EQ(known, case_tables::furtherForms.size());
}

TEST(CaseTables, KeepTheLengthOfTheGermanAndGreekTexts) {
    EXPECT_EQ(UCase(u"straße, καλός"), u"STRAßE, ΚΑΛΌΣ");
    EXPECT_EQ(LCase(u"ÄÖÜ ΣΊΣΥΦΟΣ"), u"äöü σίσυφοσ");
}

}  // namespace
}  // namespace lorvane::host
