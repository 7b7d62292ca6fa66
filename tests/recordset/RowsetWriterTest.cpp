#include "recordset/RowsetWriter.h"

#include "recordset/RowsetBuilder.h"

namespace lorvane::recordset {
namespace {

std::u16string written(const Object& recordset, RowsetEncoding encoding = RowsetEncoding::Utf8) {
    return writeRowset(host::implementation<Recordset>(recordset)->view(), encoding);
}

std::u16string rowsOf(const std::u16string& text) {
    const std::u16string_view start = u"<rs:data>\r\n";
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find(u"</rs:data>") - from);
}

std::u16string fieldsOf(const std::u16string& text) {
    const std::u16string_view start = u"rs:updatable='true'>\r\n";
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find(u"\t\t<s:extends") - from);
}

Object recordsetOf(std::u16string_view rows) {
    return openedOn(rowsetOf(nullableFields, rows));
}

void appendWith(const Object& recordset, std::u16string_view name, std::int32_t type, std::int32_t size, std::int32_t attributes) {
    recordset.getObject(Member::Fields).call(Member::Append, {name, type, size, attributes});
}

TEST(RowsetWriting, ATableMadeHereIsWrittenToTheLetter) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"Name", data_type::VarChar, 1000);
    appendField(recordset, u"Full Text", data_type::VarChar, 1000);
    appendField(recordset, u"When", data_type::Date, 0);
    recordset.call(Member::Open);
    recordset.call(Member::AddNew);
    assign(recordset, u"Name", u"Tom's & Co");
    assign(recordset, u"Full Text", u"");
    assign(recordset, u"When", host::DateTime{36925});
    recordset.call(Member::Update);
    addRow(recordset, u"Name", u"b");
    EXPECT_EQ(host::toUtf8(written(recordset)),
              host::toUtf8(rowsetOf(u"\t\t<s:AttributeType name='Name' rs:number='1' rs:write='true'>\r\n"
                                    u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='1000' rs:precision='0' rs:maybenull='false'/>\r\n"
                                    u"\t\t</s:AttributeType>\r\n"
                                    u"\t\t<s:AttributeType name='c1' rs:name='Full Text' rs:number='2' rs:write='true'>\r\n"
                                    u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='1000' rs:precision='0' rs:maybenull='false'/>\r\n"
                                    u"\t\t</s:AttributeType>\r\n"
                                    u"\t\t<s:AttributeType name='When' rs:number='3' rs:write='true'>\r\n"
                                    u"\t\t\t<s:datatype dt:type='dateTime' rs:dbtype='variantdate' dt:maxLength='16' rs:precision='0' rs:fixedlength='true'\r\n"
                                    u"\t\t\t rs:maybenull='false'/>\r\n"
                                    u"\t\t</s:AttributeType>\r\n",
                                    u"\t<rs:insert>\r\n"
                                    u"\t\t<z:row Name='Tom&#x27;s &#x26; Co' c1='' When='2001-02-03T00:00:00'/>\r\n"
                                    u"\t\t<z:row Name='b'/>\r\n"
                                    u"\t</rs:insert>\r\n")));
}

TEST(RowsetWriting, ATableWithoutRowsHasAnEmptyData) {
    const std::u16string text = written(openedWith({u"strCategory"}));
    EXPECT_EQ(text, rowsetOf(categoryField, u""));
    EXPECT_TRUE(text.ends_with(u"<rs:data>\r\n</rs:data>\r\n</xml>"));
}

TEST(RowsetWriting, EachAppendedTypeIsNamedSoThatItIsReadAgain) {
    constexpr std::int32_t types[] = {
        data_type::SmallInt, data_type::Integer,     data_type::Single,   data_type::Double,          data_type::Currency,         data_type::Date,
        data_type::Boolean,  data_type::Decimal,     data_type::TinyInt,  data_type::UnsignedTinyInt, data_type::UnsignedSmallInt, data_type::UnsignedInt,
        data_type::BigInt,   data_type::FileTime,    data_type::GUID,     data_type::UnsignedBigInt,  data_type::Binary,           data_type::Char,
        data_type::WChar,    data_type::Numeric,     data_type::DBDate,   data_type::DBTime,          data_type::DBTimeStamp,      data_type::VarNumeric,
        data_type::VarChar,  data_type::LongVarChar, data_type::VarWChar, data_type::LongVarWChar,    data_type::VarBinary,        data_type::LongVarBinary,
    };
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    for (const std::int32_t type : types) appendField(recordset, u"F" + host::decimal(type), type, 12);
    recordset.call(Member::Open);
    const auto table = readRowset(written(recordset));
    const auto& before = host::implementation<Recordset>(recordset)->view().table()->fields();
    ASSERT_EQ(table->fields().size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(table->fields()[i].type, before[i].type);
        EXPECT_EQ(table->fields()[i].definedSize, before[i].definedSize) << before[i].type;
    }
}

TEST(RowsetWriting, ALongTextOfTheHostIsReadAsWideText) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"F", data_type::BSTR, 0);
    recordset.call(Member::Open);
    const std::u16string text = written(recordset);
    EXPECT_NE(text.find(u"dt:type='string' dt:maxLength='4294967295' rs:precision='0' rs:long='true' rs:maybenull='false'"), std::u16string::npos);
    EXPECT_EQ(readRowset(text)->fields()[0].type, data_type::LongVarWChar);
}

TEST(RowsetWriting, FieldsSayWhetherTheyTakeNull) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendWith(recordset, u"A", data_type::VarChar, 9, field_attribute::IsNullable);
    appendWith(recordset, u"B", data_type::VarChar, 9, field_attribute::MayBeNull);
    appendWith(recordset, u"C", data_type::VarChar, 9, 0);
    recordset.call(Member::Open);
    EXPECT_EQ(fieldsOf(written(recordset)),
              u"\t\t<s:AttributeType name='A' rs:number='1' rs:nullable='true' rs:write='true'>\r\n"
              u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='9' rs:precision='0' rs:maybenull='false'/>\r\n"
              u"\t\t</s:AttributeType>\r\n"
              u"\t\t<s:AttributeType name='B' rs:number='2' rs:write='true'>\r\n"
              u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='9' rs:precision='0'/>\r\n"
              u"\t\t</s:AttributeType>\r\n"
              u"\t\t<s:AttributeType name='C' rs:number='3' rs:write='true'>\r\n"
              u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='9' rs:precision='0' rs:maybenull='false'/>\r\n"
              u"\t\t</s:AttributeType>\r\n");
}

TEST(RowsetWriting, NamesThatAreNotPlainStandUnderAnother) {
    const Object recordset = openedWith({u"Full Text", u"plain_1", u"1st", u"a-b", u"it's", u"Citt\u00E0", u"tab\there", u"c7", u"a.b"});
    recordset.call(Member::AddNew);
    assign(recordset, u"Full Text", u"x");
    assign(recordset, u"a.b", u"y");
    recordset.call(Member::Update);
    const std::u16string text = written(recordset);
    for (const auto* part : {u"name='c0' rs:name='Full Text' ", u"name='plain_1' rs:number='2' ", u"name='c2' rs:name='1st' ", u"name='c3' rs:name='a-b' ",
                             u"name='c4' rs:name='it&#x27;s' ", u"name='c5' rs:name='Citt\u00E0' ", u"name='c6' rs:name='tab\there' ",
                             u"name='c7' rs:number='8' ", u"name='c8' rs:name='a.b' ", u"<z:row c0='x' c8='y'/>"})
        EXPECT_NE(text.find(part), std::u16string::npos) << host::toUtf8(part);
    expectSameTable(*readRowset(text), *readRowset(writtenFrom(readRowset(text))));
    EXPECT_EQ(walk(openedOn(text), u"a.b"), Texts{u"y"});
}

TEST(RowsetWriting, AnotherNameIsNeverThatOfAField) {
    const Object recordset = openedWith({u"C1", u"a b", u"c2"});
    addRow(recordset, u"a b", u"x");
    const std::u16string text = written(recordset);
    EXPECT_NE(text.find(u"<z:row c3='x'/>"), std::u16string::npos);
    EXPECT_EQ(walk(openedOn(text), u"a b"), Texts{u"x"});
}

TEST(RowsetWriting, FiveSignsAreReferencesAndLineEndsAreRaw) {
    const Object recordset = openedWith({u"F"});
    addRow(recordset, u"F", u"\"&'<>\r\n\n\t\x01\u00E9\xD83D\xDE00");
    EXPECT_EQ(rowsOf(written(recordset)),
              u"\t<rs:insert>\r\n\t\t<z:row F='&#x22;&#x26;&#x27;&#x3c;&#x3e;\r\n\n\t\x01\u00E9\xD83D\xDE00'/>\r\n\t</rs:insert>\r\n");
}

TEST(RowsetWriting, ALoneSurrogateIsAReferenceOnlyWhereUtf8IsWritten) {
    const Object recordset = openedWith({u"F"});
    addRow(recordset, u"F", u"a\xD83Dz");
    EXPECT_NE(written(recordset, RowsetEncoding::Utf8).find(u"F='a&#xd83d;z'"), std::u16string::npos);
    EXPECT_NE(written(recordset, RowsetEncoding::Utf16).find(u"F='a\xD83Dz'"), std::u16string::npos);
    EXPECT_EQ(readRowset(written(recordset, RowsetEncoding::Utf8))->value(0, 0), Variant(u"a\xD83Dz"));
}

TEST(RowsetWriting, RowsStandInTheirGroups) {
    const Object recordset = recordsetOf(u"<z:row ID='1' TXT='old'/><z:row ID='2' TXT='gone'/><z:row ID='3' TXT='x'/>");
    assign(recordset, u"TXT", u"new");
    recordset.call(Member::Update);
    recordset.call(Member::MoveNext);
    recordset.call(Member::Delete);
    addRow(recordset, u"TXT", u"added");
    EXPECT_EQ(rowsOf(written(recordset)),
              u"\t<rs:update>\r\n"
              u"\t\t<rs:original>\r\n"
              u"\t\t\t<z:row ID='1' TXT='old'/>\r\n"
              u"\t\t</rs:original>\r\n"
              u"\t\t<z:row TXT='new'/>\r\n"
              u"\t</rs:update>\r\n"
              u"\t<z:row ID='3' TXT='x'/>\r\n"
              u"\t<rs:insert>\r\n"
              u"\t\t<z:row TXT='added'/>\r\n"
              u"\t</rs:insert>\r\n"
              u"\t<rs:delete>\r\n"
              u"\t\t<z:row ID='2' TXT='gone'/>\r\n"
              u"\t</rs:delete>\r\n");
}

TEST(RowsetWriting, AFieldThatWasAssignedTheSameValueIsWrittenToo) {
    const Object recordset = recordsetOf(u"<z:row ID='1' TXT='a'/>");
    assign(recordset, u"ID", 1);
    recordset.call(Member::Update);
    EXPECT_NE(written(recordset).find(u"\t\t<z:row ID='1'/>\r\n"), std::u16string::npos);
}

TEST(RowsetWriting, NewRowsStayNewAndLeaveNoTraceWhenDeleted) {
    const Object recordset = recordsetOf(u"<rs:insert><z:row TXT='a'/><z:row TXT='b'/></rs:insert>");
    assign(recordset, u"TXT", u"a2");
    recordset.call(Member::Update);
    recordset.call(Member::MoveNext);
    recordset.call(Member::Delete);
    EXPECT_EQ(rowsOf(written(recordset)), u"\t<rs:insert>\r\n\t\t<z:row TXT='a2'/>\r\n\t</rs:insert>\r\n");
}

TEST(RowsetWriting, AModifiedRowThatIsDeletedIsWrittenAsItWas) {
    const Object recordset = recordsetOf(u"<z:row ID='1' TXT='a'/>");
    assign(recordset, u"TXT", u"b");
    recordset.call(Member::Update);
    recordset.call(Member::Delete);
    EXPECT_EQ(rowsOf(written(recordset)), u"\t<rs:delete>\r\n\t\t<z:row ID='1' TXT='a'/>\r\n\t</rs:delete>\r\n");
}

TEST(RowsetWriting, AssignedNullsAreForcedAndOthersAbsent) {
    const Object recordset = recordsetOf(u"<z:row ID='1' TXT='a'/><z:row ID='2'/>");
    assign(recordset, u"ID", Variant::null());
    assign(recordset, u"TXT", Variant::null());
    recordset.call(Member::Update);
    recordset.call(Member::AddNew);
    assign(recordset, u"ID", Variant::null());
    assign(recordset, u"TXT", u"");
    recordset.call(Member::Update);
    EXPECT_EQ(
        rowsOf(written(recordset)),
        u"\t<rs:update>\r\n\t\t<rs:original>\r\n\t\t\t<z:row ID='1' TXT='a'/>\r\n\t\t</rs:original>\r\n\t\t<z:row rs:forcenull='ID TXT'/>\r\n\t</rs:update>\r\n"
        u"\t<z:row ID='2'/>\r\n"
        u"\t<rs:insert>\r\n\t\t<z:row TXT='' rs:forcenull='ID'/>\r\n\t</rs:insert>\r\n");
}

TEST(RowsetWriting, AnEmptiedFieldDoesNotComeBackWithItsOldValue) {
    const Object nulls = recordsetOf(u"<z:row TXT='a'/>");
    assign(nulls, u"TXT", Variant());
    nulls.call(Member::Update);
    EXPECT_TRUE(field(openedOn(written(nulls)), u"TXT").get(Member::Value).isNull());
    const Object texts = openedOn(rowsetOf(categoryField, u"<z:row strCategory='a'/>"));
    assign(texts, u"strCategory", Variant());
    texts.call(Member::Update);
    EXPECT_EQ(text(openedOn(written(texts)), u"strCategory"), u"");
}

TEST(RowsetWriting, OfAFilteredViewTheRowsInSightAreWrittenInItsOrder) {
    const Object recordset = subjects({u"b", u"x", u"a"});
    recordset.put(Member::Sort, u"strSubject DESC");
    EXPECT_EQ(walk(openedOn(written(recordset))), (Texts{u"x", u"b", u"a"}));
    recordset.put(Member::Filter, u"strSubject < 'c'");
    EXPECT_EQ(walk(openedOn(written(recordset))), (Texts{u"b", u"a"}));
    const Object deleted = recordsetOf(u"<z:row TXT='a'/><rs:delete><z:row TXT='b'/></rs:delete>");
    deleted.put(Member::Filter, u"TXT = 'a'");
    EXPECT_EQ(rowsOf(written(deleted)), u"\t<z:row TXT='a'/>\r\n");
}

TEST(RowsetWriting, ARowInEditIsCommittedFirst) {
    const Object recordset = openedWith({u"F"});
    recordset.call(Member::AddNew);
    assign(recordset, u"F", u"x");
    EXPECT_NE(written(recordset).find(u"<z:row F='x'/>"), std::u16string::npos);
    EXPECT_EQ(getNamed(recordset, u"EditMode"), Variant(0));
}

TEST(RowsetWriting, NumbersAreWrittenWithAllTheirDigits) {
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"D", data_type::Double, 0);
    appendField(recordset, u"S", data_type::Single, 0);
    appendField(recordset, u"B", data_type::Boolean, 0);
    appendField(recordset, u"T", data_type::DBTimeStamp, 0);
    recordset.call(Member::Open);
    recordset.call(Member::AddNew);
    assign(recordset, u"D", 3.14159);
    assign(recordset, u"S", 5.325);
    assign(recordset, u"B", true);
    assign(recordset, u"T", host::DateTime{46762.5});
    recordset.call(Member::Update);
    EXPECT_NE(written(recordset).find(u"<z:row D='3.1415899999999999' S='5.3249998' B='True' T='2028-01-10T12:00:00'/>"), std::u16string::npos);
}

// ---- lines

TEST(RowsetLines, AFullLineBreaksInFrontOfTheNextAttribute) {
    // The line holds two tabs, "<z:row", and " A='…'": 108 bytes with 95 signs in the value.
    const auto linesWith = [](std::size_t length, char16_t sign, RowsetEncoding encoding) {
        const Object recordset = openedWith({u"A", u"B"});
        recordset.call(Member::AddNew);
        assign(recordset, u"A", std::u16string(length, sign));
        assign(recordset, u"B", u"b");
        recordset.call(Member::Update);
        return written(recordset, encoding).find(u"'\r\n\t\t\t B='b'/>") != std::u16string::npos;
    };
    EXPECT_FALSE(linesWith(94, u'a', RowsetEncoding::Utf8));
    EXPECT_TRUE(linesWith(95, u'a', RowsetEncoding::Utf8));
    EXPECT_FALSE(linesWith(47, u'\u00E9', RowsetEncoding::Utf8));
    EXPECT_TRUE(linesWith(48, u'\u00E9', RowsetEncoding::Utf8));
    EXPECT_TRUE(linesWith(32, u'\uD55C', RowsetEncoding::Utf8));
    EXPECT_FALSE(linesWith(40, u'a', RowsetEncoding::Utf16));
    EXPECT_TRUE(linesWith(41, u'a', RowsetEncoding::Utf16));
}

TEST(RowsetLines, DigitsOfBytesAreBrokenOverLines) {
    const std::u16string digits = [] {
        std::u16string made;
        for (int i = 0; i < 150; ++i) made += u"0a";
        return made;
    }();
    const Object recordset = makeRecordset(Collation::of(u"en-US"));
    appendField(recordset, u"F", data_type::LongVarBinary, 0);
    recordset.call(Member::Open);
    addRow(recordset, u"F", digits);
    const std::u16string text = written(recordset);
    EXPECT_NE(text.find(u"\t\t<z:row F='" + digits.substr(0, 96) + u"\r\n\t\t\t" + digits.substr(96, 110) + u"\r\n\t\t\t" + digits.substr(206) + u"'/>"),
              std::u16string::npos)
        << host::toUtf8(rowsOf(text));
    EXPECT_EQ(readRowset(text)->value(0, 0), Variant(digits));
}

}  // namespace
}  // namespace lorvane::recordset
