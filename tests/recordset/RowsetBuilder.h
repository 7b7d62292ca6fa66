#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recordset/Errors.h"
#include "recordset/RecordsetBuilder.h"
#include "recordset/RowsetReader.h"
#include "recordset/RowsetWriter.h"
#include "recordset/Stream.h"
#include "recordset/Table.h"
#include "recordset/View.h"

namespace lorvane::recordset {

/// A rowset's text around its fields and rows, in the form in which it is written.
inline std::u16string rowsetOf(std::u16string_view fields, std::u16string_view rows) {
    std::u16string text =
        u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'\r\n\txmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'\r\n"
        u"\txmlns:rs='urn:schemas-microsoft-com:rowset'\r\n\txmlns:z='#RowsetSchema'>\r\n<s:Schema id='RowsetSchema'>\r\n"
        u"\t<s:ElementType name='row' content='eltOnly' rs:updatable='true'>\r\n";
    text.append(fields).append(u"\t\t<s:extends type='rs:rowbase'/>\r\n\t</s:ElementType>\r\n</s:Schema>\r\n<rs:data>\r\n");
    return text.append(rows).append(u"</rs:data>\r\n</xml>");
}

/// The field of a table of categories, as it is written.
inline constexpr std::u16string_view categoryField =
    u"\t\t<s:AttributeType name='strCategory' rs:number='1' rs:write='true'>\r\n"
    u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='1000' rs:precision='0' rs:maybenull='false'/>\r\n"
    u"\t\t</s:AttributeType>\r\n";

/// Two fields that take Null: the number ID and the text TXT.
inline constexpr std::u16string_view nullableFields =
    u"\t\t<s:AttributeType name='ID' rs:number='1' rs:nullable='true' rs:write='true'>\r\n"
    u"\t\t\t<s:datatype dt:type='int' dt:maxLength='4' rs:precision='0' rs:fixedlength='true' rs:maybenull='false'/>\r\n"
    u"\t\t</s:AttributeType>\r\n"
    u"\t\t<s:AttributeType name='TXT' rs:number='2' rs:nullable='true' rs:write='true'>\r\n"
    u"\t\t\t<s:datatype dt:type='string' rs:dbtype='str' dt:maxLength='40' rs:precision='0' rs:maybenull='false'/>\r\n"
    u"\t\t</s:AttributeType>\r\n";

inline std::u16string writtenFrom(const std::shared_ptr<Table>& table, RowsetEncoding encoding = RowsetEncoding::Utf16) {
    View view(table, Collation::of(u"en-US"));
    return writeRowset(view, encoding);
}

inline Object streamWith(std::u16string_view text) {
    Object stream = makeStream();
    stream.call(Member::Open);
    stream.call(Member::WriteText, {text});
    stream.put(Member::Position, 0);
    return stream;
}

/// What `Save` writes and `ReadText` gives.
inline std::u16string savedText(const Object& recordset) {
    const Object stream = makeStream();
    recordset.call(Member::Save, {stream, 1});
    stream.put(Member::Position, 0);
    return stream.call(Member::ReadText).toText();
}

/// A recordset that is open on the rowset.
inline Object openedOn(std::u16string_view text) {
    Object recordset = makeRecordset(Collation::of(u"en-US"));
    recordset.call(Member::Open, {streamWith(text)});
    return recordset;
}

/// The description of the error that opening the rowset raises; "" where it opens.
inline std::u16string refusalOf(std::u16string_view text) {
    try {
        readRowset(text);
    } catch (const host::HostError& failure) {
        EXPECT_EQ(failure.number(), -2147467259) << failure.what();
        return failure.description();
    }
    return {};
}

/// Whether two tables have the same fields, and rows with the same states, values and originals in the same order.
inline void expectSameTable(const Table& left, const Table& right) {
    ASSERT_EQ(left.fields().size(), right.fields().size());
    for (std::size_t field = 0; field < left.fields().size(); ++field) {
        EXPECT_EQ(left.fields()[field].name, right.fields()[field].name);
        EXPECT_EQ(left.fields()[field].type, right.fields()[field].type);
        EXPECT_EQ(left.fields()[field].definedSize, right.fields()[field].definedSize);
        EXPECT_EQ(left.fields()[field].attributes, right.fields()[field].attributes);
    }
    ASSERT_EQ(left.rowCount(), right.rowCount());
    for (RowId row = 0; row < left.rowCount(); ++row) {
        EXPECT_EQ(left.state(row), right.state(row)) << "row " << row;
        for (std::size_t field = 0; field < left.fields().size(); ++field) EXPECT_EQ(left.value(row, field), right.value(row, field)) << "row " << row;
        const Table::Original* original = left.original(row);
        const Table::Original* other = right.original(row);
        ASSERT_EQ(original != nullptr, other != nullptr) << "row " << row;
        if (original) {
            EXPECT_EQ(original->values, other->values) << "row " << row;
            EXPECT_EQ(original->assigned, other->assigned) << "row " << row;
        }
    }
}

}  // namespace lorvane::recordset
