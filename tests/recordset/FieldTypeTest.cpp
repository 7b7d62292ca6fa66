#include "recordset/FieldType.h"

#include <gtest/gtest.h>

#include "RecordsetBuilder.h"
#include "host/Locale.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {
namespace {

FieldDefinition fieldOf(std::int32_t type, std::int32_t size = 0, std::int32_t attributes = field_attribute::Unspecified) {
    return completed({u"f", type, size, attributes});
}

Variant kept(std::int32_t type, const Variant& value) {
    return convertedFor(fieldOf(type, 10), value);
}

TEST(FieldType, TypesOfFixedWidthHaveTheirOwnSize) {
    EXPECT_EQ(fieldOf(data_type::Date, 1000).definedSize, 8);
    EXPECT_EQ(fieldOf(data_type::Integer).definedSize, 4);
    EXPECT_EQ(fieldOf(data_type::Boolean, 7).definedSize, 2);
    EXPECT_EQ(fieldOf(data_type::VarChar, 1000).definedSize, 1000);
}

TEST(FieldType, ValuesOfOtherKindsBecomeText) {
    EXPECT_EQ(kept(data_type::VarChar, std::int32_t{42}), Variant(u"42"));
    EXPECT_EQ(kept(data_type::VarChar, true), Variant(u"True"));
    EXPECT_EQ(kept(data_type::VarChar, u""), Variant(u""));
}

TEST(FieldType, TextIsKeptInItsExactUnits) {
    const std::u16string odd{u'\xD83D', u'\0', u'\xDE00', u'\xFFFF'};
    EXPECT_EQ(kept(data_type::VarChar, odd), Variant(odd));
}

TEST(FieldType, NumbersComeFromTextAndKeepTheirWidth) {
    EXPECT_EQ(kept(data_type::Integer, u"42"), Variant(std::int32_t{42}));
    EXPECT_EQ(kept(data_type::SmallInt, 2.5), Variant(std::int16_t{2}));
    EXPECT_EQ(kept(data_type::Double, u"0.5"), Variant(0.5));
    EXPECT_EQ(kept(data_type::Boolean, u"true"), Variant(true));
    EXPECT_EQ(kept(data_type::Boolean, std::int32_t{7}), Variant(true));
}

TEST(FieldType, WhatIsOutOfRangeIsRefused) {
    EXPECT_EQ(errorOf([] { kept(data_type::SmallInt, std::int32_t{32768}); }), error::MultipleStep);
    EXPECT_EQ(errorOf([] { kept(data_type::Integer, 2147483648.0); }), error::MultipleStep);
    EXPECT_EQ(errorOf([] { kept(data_type::UnsignedTinyInt, std::int32_t{-1}); }), error::MultipleStep);
    EXPECT_EQ(kept(data_type::SmallInt, std::int32_t{-32768}), Variant(std::int16_t{-32768}));
}

TEST(FieldType, WhatCannotBeConvertedHasTheWrongType) {
    EXPECT_EQ(errorOf([] { kept(data_type::Integer, u"many"); }), error::WrongValueType);
    EXPECT_EQ(errorOf([] { kept(data_type::Date, u"someday"); }), error::WrongValueType);
    EXPECT_EQ(errorOf([] { kept(data_type::VarChar, makeRecordset(Collation::of(u"en-US"))); }), error::WrongValueType);
    EXPECT_EQ(errorOf([] { kept(data_type::VarChar, Variant::missing()); }), error::WrongValueType);
}

TEST(FieldType, NullNeedsAFieldThatTakesIt) {
    EXPECT_EQ(errorOf([] { convertedFor(fieldOf(data_type::VarChar, 10), Variant::null()); }), error::MultipleStep);
    EXPECT_TRUE(convertedFor(fieldOf(data_type::VarChar, 10, field_attribute::IsNullable), Variant::null()).isNull());
    EXPECT_TRUE(convertedFor(fieldOf(data_type::Integer, 0, field_attribute::MayBeNull), Variant::null()).isNull());
}

TEST(FieldType, LongTextHasNoBound) {
    const std::u16string text(100000, u'x');
    EXPECT_EQ(kept(data_type::LongVarWChar, text), Variant(text));
    EXPECT_EQ(kept(data_type::BSTR, text), Variant(text));
    EXPECT_EQ(errorOf([&] { kept(data_type::VarWChar, text); }), error::MultipleStep);
}

TEST(FieldType, TypesThatAreOnlyStoredKeepTheirText) {
    EXPECT_EQ(kept(data_type::BigInt, u"9223372036854775807"), Variant(u"9223372036854775807"));
    EXPECT_EQ(kept(data_type::Numeric, u"1.2300"), Variant(u"1.2300"));
}

TEST(FieldType, NumbersThatAreNoTypeHaveNoStorage) {
    EXPECT_FALSE(storageOf(0));
    EXPECT_FALSE(storageOf(136));
    EXPECT_FALSE(storageOf(4242));
    EXPECT_EQ(storageOf(data_type::VarChar), Storage::Text);
}

TEST(FieldType, DatesAreReadMonthFirstAndIso) {
    const auto iso = [](std::u16string_view text) { return host::isoText(dateFromText(text).value()); };
    EXPECT_EQ(iso(u"8/24/95"), u"1995-08-24T00:00:00");
    EXPECT_EQ(iso(u"1/10/2028"), u"2028-01-10T00:00:00");
    EXPECT_EQ(iso(u"1/10/28 9:05 PM"), u"2028-01-10T21:05:00");
    EXPECT_EQ(iso(u" 2028-01-10 09:00 "), u"2028-01-10T09:00:00");
    EXPECT_EQ(iso(u"2028-01-10T09:00:07"), u"2028-01-10T09:00:07");
    EXPECT_EQ(iso(u"12:30 AM"), u"1899-12-30T00:30:00");
}

TEST(FieldType, WhatIsNoDateIsNone) {
    for (const std::u16string_view text :
         {u"", u"24", u"13/1/2028", u"2/30/2028", u"1/10", u"25:00", u"1/2/2028 13:00 PM", u"1/2/2028x", u"1-2/2028", u"1/2/99999999", u"now"})
        EXPECT_FALSE(dateFromText(text)) << host::toUtf8(text);
}

}  // namespace
}  // namespace lorvane::recordset
