#include "recordset/RowsetSchema.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "host/TextFunctions.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

namespace {

// How long a type's values are said to be: by the definition, by the type, or without end.
enum class Length { Defined, Own, Endless };

struct SchemaRow {
    std::int32_t type;
    std::u16string_view name;    // dt:type
    std::u16string_view dbName;  // rs:dbtype
    Length length;
    int ownLength = 0;
    bool fixed = false;
    bool isLong = false;
    bool scaled = false;
};

constexpr std::u16string_view endless = u"4294967295";

// The first row of a name and its marks is what a rowset's field is read as; those behind it are only written.
constexpr SchemaRow rows[] = {
    {data_type::VarWChar, u"string", u"", Length::Defined},
    {data_type::WChar, u"string", u"", Length::Defined, 0, true},
    {data_type::LongVarWChar, u"string", u"", Length::Defined, 0, false, true},
    {data_type::BSTR, u"string", u"", Length::Endless, 0, false, true},
    {data_type::VarChar, u"string", u"str", Length::Defined},
    {data_type::Char, u"string", u"str", Length::Defined, 0, true},
    {data_type::LongVarChar, u"string", u"str", Length::Defined, 0, false, true},
    {data_type::TinyInt, u"i1", u"", Length::Own, 1, true},
    {data_type::SmallInt, u"i2", u"", Length::Own, 2, true},
    {data_type::Integer, u"int", u"", Length::Own, 4, true},
    {data_type::Integer, u"i4", u"", Length::Own, 4, true},
    {data_type::BigInt, u"i8", u"", Length::Own, 8, true},
    {data_type::UnsignedTinyInt, u"ui1", u"", Length::Own, 1, true},
    {data_type::UnsignedSmallInt, u"ui2", u"", Length::Own, 2, true},
    {data_type::UnsignedInt, u"ui4", u"", Length::Own, 4, true},
    {data_type::UnsignedBigInt, u"ui8", u"", Length::Own, 8, true},
    {data_type::Single, u"r4", u"", Length::Own, 4, true},
    {data_type::Double, u"float", u"", Length::Own, 8, true},
    {data_type::Double, u"r8", u"", Length::Own, 8, true},
    {data_type::Currency, u"number", u"currency", Length::Own, 8, true},
    {data_type::Decimal, u"number", u"decimal", Length::Own, 16, true, false, true},
    {data_type::Numeric, u"number", u"numeric", Length::Own, 19, true, false, true},
    {data_type::VarNumeric, u"number", u"varnumeric", Length::Defined, 0, false, false, true},
    {data_type::Numeric, u"number", u"", Length::Own, 19, true, false, true},
    {data_type::Currency, u"fixed.14.4", u"", Length::Own, 8, true},
    {data_type::Boolean, u"boolean", u"", Length::Own, 2, true},
    {data_type::Date, u"dateTime", u"variantdate", Length::Own, 16, true},
    {data_type::FileTime, u"dateTime", u"filetime", Length::Own, 16, true},
    {data_type::DBTimeStamp, u"dateTime", u"timestamp", Length::Own, 16, true, false, true},
    {data_type::DBTimeStamp, u"dateTime", u"", Length::Own, 16, true, false, true},
    {data_type::DBDate, u"date", u"", Length::Own, 6, true},
    {data_type::DBTime, u"time", u"", Length::Own, 6, true},
    {data_type::GUID, u"uuid", u"", Length::Own, 16, true},
    {data_type::VarBinary, u"bin.hex", u"", Length::Defined},
    {data_type::Binary, u"bin.hex", u"", Length::Defined, 0, true},
    {data_type::LongVarBinary, u"bin.hex", u"", Length::Defined, 0, false, true},
};

const std::u16string* find(const SchemaAttributes& attributes, std::u16string_view name) noexcept {
    const auto found = std::ranges::find(attributes, name, &SchemaAttributes::value_type::first);
    return found == attributes.end() ? nullptr : &found->second;
}

std::u16string_view valueOf(const SchemaAttributes& attributes, std::u16string_view name) noexcept {
    const std::u16string* value = find(attributes, name);
    return value ? std::u16string_view(*value) : std::u16string_view();
}

bool isSet(const SchemaAttributes& attributes, std::u16string_view name) noexcept {
    return host::equalsIgnoreCase(valueOf(attributes, name), u"true");
}

SchemaAttributes dataTypeOf(const SchemaRow& row, const FieldDefinition& field) {
    SchemaAttributes made;
    made.emplace_back(u"dt:type", row.name);
    if (!row.dbName.empty()) made.emplace_back(u"rs:dbtype", row.dbName);
    const bool isEndless = row.length == Length::Endless || (row.isLong && field.definedSize <= 0);
    const std::int32_t length = row.length == Length::Own ? row.ownLength : field.definedSize;
    made.emplace_back(u"dt:maxLength", isEndless ? std::u16string(endless) : host::decimal(length));
    if (row.scaled) made.emplace_back(u"rs:scale", u"0");
    made.emplace_back(u"rs:precision", u"0");
    if (row.fixed) made.emplace_back(u"rs:fixedlength", u"true");
    if (row.isLong) made.emplace_back(u"rs:long", u"true");
    return made;
}

// Whether the field is long text or bytes, fixed ones, or neither: what tells types of one name apart.
const SchemaRow* rowFor(const SchemaAttributes& dataType) noexcept {
    const std::u16string_view name = valueOf(dataType, u"dt:type");
    const std::u16string_view dbName = valueOf(dataType, u"rs:dbtype");
    const bool fixed = isSet(dataType, u"rs:fixedlength");
    const bool isLong = isSet(dataType, u"rs:long") || !find(dataType, u"dt:maxLength");
    const SchemaRow* anyOfName = nullptr;
    for (const SchemaRow& row : rows) {
        if (!host::equalsIgnoreCase(row.name, name) || !host::equalsIgnoreCase(row.dbName, dbName)) continue;
        if (row.length == Length::Own || (isLong ? row.isLong : (!row.isLong && row.fixed == fixed))) return &row;
        if (!anyOfName) anyOfName = &row;
    }
    return anyOfName;
}

std::int32_t lengthFrom(const std::u16string* text) {
    if (!text) return 0;
    if (text->empty()) raiseNotARowset(u"The length of a field is no number.");
    constexpr std::int64_t greatest = std::numeric_limits<std::int32_t>::max();
    std::int64_t length = 0;
    for (const char16_t unit : *text) {
        if (unit < u'0' || unit > u'9') raiseNotARowset(u"The length of a field is no number.");
        length = std::min(length * 10 + (unit - u'0'), greatest);
    }
    return static_cast<std::int32_t>(length);
}

std::int32_t attributesFrom(const FieldSchema& schema) noexcept {
    constexpr std::pair<std::u16string_view, std::int32_t> flags[] = {
        {u"rs:maydefer", field_attribute::MayDefer},
        {u"rs:write", field_attribute::Updatable},
        {u"rs:writeunknown", field_attribute::UnknownUpdatable},
        {u"rs:nullable", field_attribute::IsNullable},
    };
    std::int32_t attributes = 0;
    for (const auto& [name, bit] : flags) {
        if (isSet(schema.field, name)) attributes |= bit;
    }
    if (isSet(schema.dataType, u"rs:fixedlength")) attributes |= field_attribute::Fixed;
    if (isSet(schema.dataType, u"rs:long")) attributes |= field_attribute::Long;
    if (!find(schema.dataType, u"rs:maybenull")) attributes |= field_attribute::MayBeNull;
    return attributes;
}

// Flags that say what goes without saying are not written: of "rs:maybenull" that is the true one, of the others the false one.
void dropIdleFlags(SchemaAttributes& attributes) {
    std::erase_if(attributes, [](const auto& attribute) {
        if (attribute.first == u"rs:maybenull") return !host::equalsIgnoreCase(attribute.second, u"false");
        return attribute.first.starts_with(u"rs:") && host::equalsIgnoreCase(attribute.second, u"false");
    });
}

bool isPlainName(std::u16string_view name) noexcept {
    const auto isLetter = [](char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_'; };
    const auto isInside = [&](char16_t unit) { return isLetter(unit) || (unit >= u'0' && unit <= u'9'); };
    return !name.empty() && isLetter(name.front()) && std::ranges::all_of(name, isInside);
}

}  // namespace

FieldSchema schemaOf(const FieldDefinition& field) {
    if (field.schema) return *field.schema;
    FieldSchema made;
    const bool isSpecified = field.attributes != field_attribute::Unspecified;
    if (isSpecified && (field.attributes & field_attribute::IsNullable) != 0) made.field.emplace_back(u"rs:nullable", u"true");
    made.field.emplace_back(u"rs:write", u"true");
    for (const SchemaRow& row : rows) {
        if (row.type != field.type) continue;
        made.dataType = dataTypeOf(row, field);
        break;
    }
    if (!isSpecified || (field.attributes & field_attribute::MayBeNull) == 0) made.dataType.emplace_back(u"rs:maybenull", u"false");
    return made;
}

FieldDefinition fieldFrom(std::u16string name, FieldSchema schema) {
    FieldDefinition field;
    field.name = std::move(name);
    dropIdleFlags(schema.field);
    dropIdleFlags(schema.dataType);
    if (!find(schema.dataType, u"dt:type")) {
        SchemaAttributes longText{{u"dt:type", u"string"}, {u"dt:maxLength", std::u16string(endless)}, {u"rs:long", u"true"}};
        if (const std::u16string* maybeNull = find(schema.dataType, u"rs:maybenull")) longText.emplace_back(u"rs:maybenull", *maybeNull);
        schema.dataType = std::move(longText);
    }
    const SchemaRow* row = rowFor(schema.dataType);
    // A type that is not known is kept as text.
    field.type = row ? row->type : data_type::LongVarWChar;
    field.definedSize = lengthFrom(find(schema.dataType, u"dt:maxLength"));
    field.attributes = attributesFrom(schema);
    field.schema = std::make_shared<const FieldSchema>(std::move(schema));
    return completed(std::move(field));
}

std::vector<std::u16string> rowsetNames(const std::vector<FieldDefinition>& fields) {
    const auto folded = [](std::u16string text) {
        std::ranges::transform(text, text.begin(), host::foldUnit);
        return text;
    };
    std::vector<std::u16string> names(fields.size());
    std::unordered_set<std::u16string> taken;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (isPlainName(fields[i].name) && taken.insert(folded(fields[i].name)).second) names[i] = fields[i].name;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        for (std::size_t number = i; names[i].empty(); ++number) {
            std::u16string alias = u"c" + host::decimal(static_cast<std::int64_t>(number));
            if (taken.insert(alias).second) names[i] = std::move(alias);
        }
    }
    return names;
}

}  // namespace lorvane::recordset
