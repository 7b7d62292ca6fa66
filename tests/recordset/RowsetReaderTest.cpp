#include "recordset/RowsetReader.h"

#include <chrono>

#include "recordset/RowsetBuilder.h"
#include "recordset/RowsetTokenizer.h"

namespace lorvane::recordset {
namespace {

std::u16string field(std::u16string_view attributes, std::u16string_view dataType) {
    std::u16string text = u"<s:AttributeType ";
    text.append(attributes).append(u"><s:datatype ").append(dataType);
    return text.append(u"/></s:AttributeType>\r\n");
}

std::int32_t typeOf(std::u16string_view dataType) {
    return readRowset(rowsetOf(field(u"name='F' rs:number='1'", dataType), u""))->fields()[0].type;
}

/// The cell of one field of the given type in an unmodified row.
Variant cellOf(std::u16string_view dataType, std::u16string_view value) {
    std::u16string row = u"<z:row F='";
    row.append(value).append(u"'/>");
    return readRowset(rowsetOf(field(u"name='F' rs:number='1'", dataType), row))->value(0, 0);
}

std::shared_ptr<Table> nullable(std::u16string_view rows) {
    return readRowset(rowsetOf(nullableFields, rows));
}

bool isRefusedFor(std::u16string_view text, std::u16string_view reason) {
    const std::u16string refusal = refusalOf(text);
    EXPECT_NE(refusal.find(reason), std::u16string::npos) << host::toUtf8(refusal);
    return refusal.starts_with(u"Recordset cannot be created from the specified source. ");
}

bool isRowRefusedFor(std::u16string_view rows, std::u16string_view reason) {
    return isRefusedFor(rowsetOf(nullableFields, rows), reason);
}

std::u16string many(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) text.append(piece);
    return text;
}

std::shared_ptr<Table> oneRow(std::u16string_view row) {
    return nullable(row);
}

// ---- the tokenizer's part

TEST(RowsetText, ValuesKeepLineEndsTabsAndControlSigns) {
    const std::u16string raw(u"a\r\nb\nc\rd\te\x01\x1f\0f", 15);
    EXPECT_EQ(oneRow(u"<z:row TXT='" + raw + u"'/>")->value(0, 1), Variant(raw));
}

TEST(RowsetText, ReferencesAreNumericOrTheFiveNamedOnes) {
    EXPECT_EQ(oneRow(u"<z:row TXT='&#x22;&#38;&#x27;&lt;&gt;&amp;&quot;&apos;'/>")->value(0, 1), Variant(u"\"&'<>&\"'"));
    EXPECT_EQ(oneRow(u"<z:row TXT='&#xd;&#xA;&#10;&#x1F600;&#xd800;&amp;lt;'/>")->value(0, 1), Variant(u"\r\n\n\xD83D\xDE00\xD800&lt;"));
    for (const auto* bad : {u"&", u"a&b", u"&nbsp;", u"&#;", u"&#x;", u"&#xg;", u"&#x110000;", u"&#99999999999999999999;", u"&LT;", u"&#-1;"}) {
        EXPECT_TRUE(isRowRefusedFor(std::u16string(u"<z:row TXT='") + bad + u"'/>", u"A value holds")) << host::toUtf8(bad);
    }
}

TEST(RowsetText, SeveralValuesWithReferencesStandBesideEachOther) {
    const std::u16string longText(500, u'x');
    const auto table = oneRow(u"<z:row ID='&#x31;2' TXT='&lt;a' other='" + longText + u"&amp;" + longText + u"' third='&gt;'/>");
    EXPECT_EQ(table->value(0, 0), Variant(12));
    EXPECT_EQ(table->value(0, 1), Variant(u"<a"));
}

TEST(RowsetText, EitherQuoteMayStandAndTheOtherInside) {
    const auto table = oneRow(u"<z:row ID = \"1\"\tTXT=\"it's\"\r\n/>");
    EXPECT_EQ(table->value(0, 1), Variant(u"it's"));
    EXPECT_EQ(oneRow(u"<z:row TXT='say \"x\"'></z:row>")->value(0, 1), Variant(u"say \"x\""));
}

TEST(RowsetText, OfAnAttributeGivenTwiceTheLastCounts) {
    EXPECT_EQ(oneRow(u"<z:row TXT='a' ID='1' TXT='b'/>")->value(0, 1), Variant(u"b"));
}

TEST(RowsetText, MarksDeclarationsAndCommentsArePassedOver) {
    const std::u16string text = u"\uFEFF<?xml version='1.0' encoding='utf-16'?>\r\n<!-- <a> --> " +
                                rowsetOf(categoryField, u"<!-- b --><z:row strCategory='x'/>") + u"\r\n<!-- end -->\r\n";
    EXPECT_EQ(readRowset(text)->liveCount(), 1U);
}

TEST(RowsetText, BytesAreUtf8OrMarkedUtf16) {
    const std::u16string text = u"<xml>\u00E9\xD83D\xDE00</xml>";
    const std::string utf8 = host::toUtf8(text);
    std::vector<std::uint8_t> bytes(utf8.begin(), utf8.end());
    EXPECT_EQ(rowsetTextFrom(bytes), text);
    bytes.insert(bytes.begin(), {0xEF, 0xBB, 0xBF});
    EXPECT_EQ(rowsetTextFrom(bytes), text);
    std::vector<std::uint8_t> little{0xFF, 0xFE}, big{0xFE, 0xFF};
    for (const char16_t unit : text) {
        little.insert(little.end(), {static_cast<std::uint8_t>(unit & 0xFF), static_cast<std::uint8_t>(unit >> 8)});
        big.insert(big.end(), {static_cast<std::uint8_t>(unit >> 8), static_cast<std::uint8_t>(unit & 0xFF)});
    }
    EXPECT_EQ(rowsetTextFrom(little), text);
    EXPECT_EQ(rowsetTextFrom(big), text);
    little.pop_back();
    EXPECT_EQ(errorOf([&] { rowsetTextFrom(little); }), error::NotARowset);
    EXPECT_EQ(errorOf([] { rowsetTextFrom(std::vector<std::uint8_t>{'<', 0xE9, '>'}); }), error::NotARowset);
    EXPECT_EQ(rowsetTextFrom({}), u"");
}

TEST(RowsetText, WhatIsNoRowsetIsRefused) {
    EXPECT_TRUE(isRefusedFor(u"", u"breaks off"));
    EXPECT_TRUE(isRefusedFor(u" \r\n", u"breaks off"));
    EXPECT_TRUE(isRefusedFor(u"Work\r\nHome\r\n", u"text outside"));
    EXPECT_TRUE(isRefusedFor(u"<html><body/></html>", u"root element"));
    EXPECT_TRUE(isRefusedFor(u"<xml/>", u"no schema"));
    EXPECT_TRUE(isRefusedFor(u"<xml><data><row/></data></xml>", u"not where a rowset has it"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"", u""), u"no fields"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"") + u"<xml/>", u"more than one root"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"") + u"x", u"text outside"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"text"), u"text outside"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:other/>"), u"none"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:row strCategory=x/>"), u"quotes"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:row strCategory/>"), u"no value"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:row strCategory='x'a='y'/>"), u"blank is missing"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:row strCategory='a<b'/>"), u"not written as a reference"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<z:row></rs:row>"), u"not open here"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"</rs:insert>"), u"not open here"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"< z:row/>"), u"name is expected"));
}

TEST(RowsetText, ARefusalNamesTheLine) {
    EXPECT_TRUE(isRefusedFor(u"<xml>\r\n\r\n</xmk>", u"(Line 3.)"));
}

TEST(RowsetText, DocumentTypesAndCdataAreRefused) {
    const std::u16string body = rowsetOf(categoryField, u"");
    EXPECT_TRUE(isRefusedFor(u"<!DOCTYPE xml [<!ENTITY a 'b'>]>" + body, u"document type"));
    EXPECT_TRUE(isRefusedFor(u"<!DOCTYPE xml SYSTEM 'file:///etc/passwd'>" + body, u"document type"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<![CDATA[x]]>"), u"CDATA"));
}

TEST(RowsetText, HostileTextIsRefusedQuickly) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(isRefusedFor(many(u"<a>", 1'000'000), u"root element"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(many(u"<a>", 1'000'000), u""), u"nested too deeply"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(many(u"<s:attribute type='a'/>", 100'000), u""), u"too many fields"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(many(u"<s:AttributeType name='a'/>", 100'000), u""), u"too many fields"));
    EXPECT_TRUE(isRowRefusedFor(u"<z:row" + many(u" a='b'", 1'000'000) + u"/>", u"too many attributes"));
    EXPECT_TRUE(isRowRefusedFor(u"<z:row " + std::u16string(1'000'000, u'a') + u"='b'/>", u"name is too long"));
    EXPECT_TRUE(isRowRefusedFor(u"<z:row TXT='" + many(u"&lt;", 1'000'000), u"breaks off"));
    EXPECT_TRUE(isRowRefusedFor(u"<z:row TXT='" + std::u16string(1'000'000, u'&') + u"'/>", u"begins no reference"));
    EXPECT_TRUE(isRowRefusedFor(u"<!--" + many(u"<!--", 1'000'000), u"breaks off"));
    EXPECT_TRUE(isRefusedFor(many(u"<xml ", 100'000), u"name is expected"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(RowsetText, RowsThatWouldTakeFarMoreRoomThanTheirTextAreRefused) {
    std::u16string fields;
    for (int i = 0; i < 4000; ++i) fields += u"<s:AttributeType name='f" + host::decimal(i) + u"'/>";
    EXPECT_TRUE(isRefusedFor(rowsetOf(fields, many(u"<z:row/>", 4000)), u"too many rows"));
}

// ---- the schema

TEST(RowsetSchemaReading, EachTypeIsKnownByItsName) {
    constexpr std::pair<std::u16string_view, std::int32_t> types[] = {
        {u"dt:type='string' rs:dbtype='str' dt:maxLength='9'", data_type::VarChar},
        {u"dt:type='string' rs:dbtype='str' dt:maxLength='9' rs:fixedlength='true'", data_type::Char},
        {u"dt:type='string' rs:dbtype='str' dt:maxLength='9' rs:long='true'", data_type::LongVarChar},
        {u"dt:type='string' dt:maxLength='9'", data_type::VarWChar},
        {u"dt:type='string' dt:maxLength='9' rs:fixedlength='true'", data_type::WChar},
        {u"dt:type='string' dt:maxLength='9' rs:long='true'", data_type::LongVarWChar},
        {u"dt:type='string'", data_type::LongVarWChar},
        {u"dt:type='i1'", data_type::TinyInt},
        {u"dt:type='i2'", data_type::SmallInt},
        {u"dt:type='int'", data_type::Integer},
        {u"dt:type='I4'", data_type::Integer},
        {u"dt:type='i8'", data_type::BigInt},
        {u"dt:type='ui1'", data_type::UnsignedTinyInt},
        {u"dt:type='ui2'", data_type::UnsignedSmallInt},
        {u"dt:type='ui4'", data_type::UnsignedInt},
        {u"dt:type='ui8'", data_type::UnsignedBigInt},
        {u"dt:type='r4'", data_type::Single},
        {u"dt:type='float'", data_type::Double},
        {u"dt:type='number' rs:dbtype='currency'", data_type::Currency},
        {u"dt:type='number' rs:dbtype='decimal'", data_type::Decimal},
        {u"dt:type='number' rs:dbtype='numeric'", data_type::Numeric},
        {u"dt:type='number' rs:dbtype='varnumeric'", data_type::VarNumeric},
        {u"dt:type='boolean'", data_type::Boolean},
        {u"dt:type='dateTime' rs:dbtype='variantdate'", data_type::Date},
        {u"dt:type='dateTime' rs:dbtype='timestamp'", data_type::DBTimeStamp},
        {u"dt:type='dateTime' rs:dbtype='filetime'", data_type::FileTime},
        {u"dt:type='date'", data_type::DBDate},
        {u"dt:type='time'", data_type::DBTime},
        {u"dt:type='uuid'", data_type::GUID},
        {u"dt:type='bin.hex' dt:maxLength='9'", data_type::VarBinary},
        {u"dt:type='bin.hex' dt:maxLength='9' rs:fixedlength='true'", data_type::Binary},
        {u"dt:type='bin.hex' dt:maxLength='9' rs:long='true'", data_type::LongVarBinary},
        {u"dt:type='no.such.type'", data_type::LongVarWChar},
    };
    for (const auto& [written, type] : types) EXPECT_EQ(typeOf(written), type) << host::toUtf8(written);
}

TEST(RowsetSchemaReading, AttributesTellWhetherNullIsTaken) {
    const auto attributes = [](std::u16string_view flags, std::u16string_view dataType) {
        return readRowset(rowsetOf(field(std::u16string(u"name='F' ").append(flags), dataType), u""))->fields()[0].attributes;
    };
    EXPECT_EQ(attributes(u"rs:write='true'", u"dt:type='int' rs:fixedlength='true' rs:maybenull='false'"), field_attribute::Updatable | field_attribute::Fixed);
    EXPECT_EQ(attributes(u"rs:nullable='true'", u"dt:type='int' rs:maybenull='false'"), field_attribute::IsNullable);
    EXPECT_EQ(attributes(u"rs:nullable='false'", u"dt:type='int' rs:maybenull='true'"), field_attribute::MayBeNull);
    EXPECT_EQ(attributes(u"", u"dt:type='int'"), field_attribute::MayBeNull);
}

TEST(RowsetSchemaReading, NamesAloneAreEnough) {
    const auto table =
        readRowset(u"<xml><s:Schema><s:ElementType name='row'><s:AttributeType name='A'/><s:AttributeType name='B'/></s:ElementType></s:Schema></xml>");
    ASSERT_EQ(table->fields().size(), 2U);
    EXPECT_EQ(table->fields()[1].type, data_type::LongVarWChar);
    EXPECT_EQ(table->rowCount(), 0U);
}

TEST(RowsetSchemaReading, FieldsMayBeListedAndDescribedBehindTheElementType) {
    const auto table = readRowset(
        u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'"
        u" xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'>"
        u"<s:Schema id='RowsetSchema'><s:ElementType name='row' content='eltOnly'><s:attribute type='NAME'/><s:attribute type='c1'/>"
        u"<s:extends type='rs:rowbase'/></s:ElementType>"
        u"<s:AttributeType name='c1' rs:name='Full Text' rs:number='2'><s:datatype dt:type='int'/></s:AttributeType>"
        u"<s:AttributeType name='NAME' rs:number='1'><s:datatype dt:type='string' dt:maxLength='9'/></s:AttributeType>"
        u"<s:AttributeType name='UNLISTED' rs:number='3'/></s:Schema>"
        u"<rs:data><z:row NAME='a' c1='7'/></rs:data></xml>");
    ASSERT_EQ(table->fields().size(), 2U);
    EXPECT_EQ(table->fields()[0].name, u"NAME");
    EXPECT_EQ(table->fields()[1].name, u"Full Text");
    EXPECT_EQ(table->value(0, 1), Variant(7));
}

TEST(RowsetSchemaReading, ATypeMayStandOnTheFieldItself) {
    EXPECT_EQ(readRowset(rowsetOf(u"<s:AttributeType name='F' dt:type='int'/>", u"<z:row F='7'/>"))->value(0, 0), Variant(7));
}

TEST(RowsetSchemaReading, PrefixesAndCaseAreFree) {
    const auto table = readRowset(
        u"<XML xmlns:q='uuid:bdc6e3f0-6da3-11d1-a2a3-00aa00c14882' xmlns:T='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'"
        u" xmlns:r='urn:schemas-microsoft-com:rowset' xmlns:rs='urn:elsewhere' xmlns:y='#RowsetSchema'>"
        u"<q:schema><q:elementtype Name='row'><q:attributetype NAME='c0' r:Name='Real Name' rs:name='ignored' r:number='1' r:nullable='true'>"
        u"<q:Datatype t:type='int'/></q:attributetype></q:elementtype></q:schema>"
        u"<r:Data><r:Insert><y:ROW C0='5'/><y:row r:ForceNull='C0'/></r:Insert></r:Data></xml>");
    EXPECT_EQ(table->fields()[0].name, u"Real Name");
    EXPECT_EQ(table->fields()[0].type, data_type::Integer);
    EXPECT_EQ(table->value(0, 0), Variant(5));
    EXPECT_TRUE(table->value(1, 0).isNull());
}

TEST(RowsetSchemaReading, RowsMayHaveAnotherElementName) {
    const auto table =
        readRowset(u"<xml><s:Schema><s:ElementType name='line'><s:AttributeType name='A'/></s:ElementType></s:Schema><rs:data><z:line A='x'/></rs:data></xml>");
    EXPECT_EQ(table->value(0, 0), Variant(u"x"));
}

TEST(RowsetSchemaReading, WhatCannotBeReadIsRefused) {
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:AttributeType rs:number='1'/>", u""), u"no name"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:AttributeType name='A' rs:number='x'/>", u""), u"number of a field"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:AttributeType name='A'/><s:AttributeType name='a'/>", u""), u"same name"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:attribute type='B'/><s:AttributeType name='A'/>", u""), u"not described"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(field(u"name='A'", u"dt:type='string' dt:maxLength='-1'"), u""), u"length"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(field(u"name='A'", u"dt:type='string' dt:maxLength=''"), u""), u"length"));
}

TEST(RowsetSchemaReading, ShapedRowsetsAreRefused) {
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:AttributeType name='A'/><s:ElementType name='Lines'/>", u""), u"Hierarchical"));
    EXPECT_TRUE(isRefusedFor(rowsetOf(u"<s:AttributeType name='A'/>", u"<z:row A='1'><Lines B='2'/></z:row>"), u"Hierarchical"));
}

// ---- the rows

TEST(RowsetRows, StatesComeFromTheGroups) {
    const auto table = nullable(
        u"<rs:update><rs:original><z:row ID='1' TXT='old'/></rs:original><z:row TXT='new'/></rs:update>"
        u"<z:row ID='3' TXT='x'/><rs:insert><z:row ID='4'/><z:row ID='5'/></rs:insert><rs:delete><z:row ID='2' TXT='gone'/></rs:delete>");
    ASSERT_EQ(table->rowCount(), 5U);
    const RowState states[] = {RowState::Modified, RowState::Unmodified, RowState::New, RowState::New, RowState::Deleted};
    for (RowId row = 0; row < 5; ++row) EXPECT_EQ(table->state(row), states[row]);
    EXPECT_EQ(table->value(0, 0), Variant(1));
    EXPECT_EQ(table->value(0, 1), Variant(u"new"));
    EXPECT_EQ(table->original(0)->values[1], Variant(u"old"));
    EXPECT_EQ(table->original(0)->assigned, (std::vector<bool>{false, true}));
    EXPECT_EQ(table->original(4)->values[1], Variant(u"gone"));
    EXPECT_EQ(table->liveCount(), 4U);
}

TEST(RowsetRows, AbsentEmptyAndNullAreToldApart) {
    const auto table = nullable(
        u"<rs:insert><z:row/><z:row TXT=''/><z:row rs:forcenull='TXT'/></rs:insert><z:row/>"
        u"<rs:update><rs:original><z:row TXT='a'/></rs:original><z:row rs:forcenull='\r\n\tTXT  ID'/></rs:update>");
    EXPECT_TRUE(table->value(0, 1).isEmpty());
    EXPECT_EQ(table->value(1, 1), Variant(u""));
    EXPECT_TRUE(table->value(2, 1).isNull());
    EXPECT_TRUE(table->value(2, 0).isEmpty());
    EXPECT_TRUE(table->value(3, 1).isNull());
    EXPECT_TRUE(table->value(4, 1).isNull());
    EXPECT_EQ(table->original(4)->assigned, (std::vector<bool>{true, true}));
}

TEST(RowsetRows, ForcedNullsYieldToAValueAndAreSplitAtBlanksOnly) {
    EXPECT_EQ(nullable(u"<rs:insert><z:row TXT='a' rs:forcenull='txt'/></rs:insert>")->value(0, 1), Variant(u"a"));
    EXPECT_TRUE(nullable(u"<rs:insert><z:row rs:forcenull='ID,TXT'/></rs:insert>")->value(0, 1).isEmpty());
    EXPECT_TRUE(isRefusedFor(rowsetOf(categoryField, u"<rs:insert><z:row rs:forcenull='strCategory'/></rs:insert>"), u"takes no Null"));
}

TEST(RowsetRows, AnAbsentCellOfAFieldWithoutNullIsEmpty) {
    EXPECT_TRUE(readRowset(rowsetOf(categoryField, u"<z:row/>"))->value(0, 0).isEmpty());
}

TEST(RowsetRows, UnknownAttributesAreLeftOut) {
    EXPECT_EQ(nullable(u"<z:row nothing='1' x:TXT='2' TXT='3'/>")->value(0, 1), Variant(u"3"));
}

TEST(RowsetRows, ChangedRowsNeedOneOriginalAndTheirChanges) {
    EXPECT_TRUE(isRowRefusedFor(u"<rs:update><z:row TXT='a'/></rs:update>", u"without its original"));
    EXPECT_TRUE(isRowRefusedFor(u"<rs:update><rs:original></rs:original><z:row/></rs:update>", u"without its original"));
    EXPECT_TRUE(isRowRefusedFor(u"<rs:update><rs:original><z:row/><z:row/></rs:original><z:row/></rs:update>", u"more than one original"));
    EXPECT_TRUE(isRowRefusedFor(u"<rs:update><rs:original><z:row/></rs:original></rs:update>", u"without its changes"));
    EXPECT_TRUE(isRowRefusedFor(u"<rs:insert><rs:insert/></rs:insert>", u"none"));
}

TEST(RowsetRows, TextIsCutAtTheSizeOfItsField) {
    EXPECT_EQ(cellOf(u"dt:type='string' dt:maxLength='3'", u"abcdef"), Variant(u"abc"));
    EXPECT_EQ(cellOf(u"dt:type='string' dt:maxLength='3' rs:long='true'", u"abcdef"), Variant(u"abcdef"));
    EXPECT_EQ(cellOf(u"dt:type='string' dt:maxLength='3'", u"ab\xD83D\xDE00"), Variant(u"ab"));
    EXPECT_EQ(cellOf(u"dt:type='string' rs:fixedlength='true'", u"abcdef"), Variant(u"abcdef"));
}

TEST(RowsetRows, NumbersAndTruthsHaveTheirType) {
    EXPECT_EQ(cellOf(u"dt:type='int'", u" -7 "), Variant(-7));
    EXPECT_EQ(cellOf(u"dt:type='i2'", u"7"), Variant(std::int16_t{7}));
    EXPECT_EQ(cellOf(u"dt:type='float'", u"3.1415899999999999"), Variant(3.14159));
    EXPECT_EQ(cellOf(u"dt:type='float'", u"+.5E1"), Variant(5.0));
    EXPECT_EQ(cellOf(u"dt:type='r4'", u"5.3249998"), Variant(static_cast<double>(5.325F)));
    EXPECT_EQ(cellOf(u"dt:type='boolean'", u"True"), Variant(true));
    EXPECT_EQ(cellOf(u"dt:type='boolean'", u"0"), Variant(false));
    for (const auto* bad : {u"", u"x", u"1,5", u"inf", u"nan", u"0x10", u"3000000000", u"1e999"})
        EXPECT_EQ(errorOf([&] { cellOf(u"dt:type='int'", bad); }), error::NotARowset) << host::toUtf8(bad);
    EXPECT_EQ(errorOf([] { cellOf(u"dt:type='boolean'", u"yes"); }), error::NotARowset);
}

TEST(RowsetRows, DatesAreReadInTheFormsOfTheFormat) {
    const auto date = [](std::u16string_view text) { return cellOf(u"dt:type='dateTime' rs:dbtype='variantdate'", text); };
    EXPECT_EQ(date(u"2028-01-10T09:30:00"), Variant(host::DateTime{46762 + 9.5 / 24}));
    EXPECT_EQ(date(u"2028-01-10"), Variant(host::DateTime{46762}));
    EXPECT_EQ(date(u"06:00:00"), Variant(host::DateTime{0.25}));
    EXPECT_EQ(date(u"1899-12-29T12:00:00"), Variant(host::DateTime{-1.5}));
    EXPECT_EQ(date(u"2028-01-10T09:30:00.499999999"), date(u"2028-01-10T09:30:00"));
    EXPECT_EQ(date(u"2028-01-10T09:30:00.5"), date(u"2028-01-10T09:30:01"));
    for (const auto* bad : {u"2028-01-10 09:30:00", u"2028-01-10T09:30:00Z", u"2028-01-10T09:30:00+01:00", u"2028-02-30", u"9999-12-32", u"0099-01-01",
                            u"2028-13-01", u"24:00:00", u"09:30", u"2028-01-10T", u"2028-01-10T09:30:00.", u"2028-01-10T09:30:00.1234567890", u"1/10/2028"})
        EXPECT_EQ(errorOf([&] { date(bad); }), error::NotARowset) << host::toUtf8(bad);
}

TEST(RowsetRows, TypesThatAreOnlyKeptHoldTheExactText) {
    EXPECT_EQ(cellOf(u"dt:type='number' rs:dbtype='currency'", u"922337203685477.5807"), Variant(u"922337203685477.5807"));
    EXPECT_EQ(cellOf(u"dt:type='ui8'", u"18446744073709551615"), Variant(u"18446744073709551615"));
    EXPECT_EQ(cellOf(u"dt:type='dateTime' rs:dbtype='timestamp'", u"2028-01-10T09:30:00.123456789"), Variant(u"2028-01-10T09:30:00.123456789"));
    EXPECT_EQ(cellOf(u"dt:type='uuid'", u"{00000000-0000-0000-0000-00000000000A}"), Variant(u"{00000000-0000-0000-0000-00000000000A}"));
    EXPECT_EQ(cellOf(u"dt:type='bin.hex' dt:maxLength='9'", u"de\r\n\t\tad"), Variant(u"dead"));
}

}  // namespace
}  // namespace lorvane::recordset
