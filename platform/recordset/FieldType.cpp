#include "recordset/FieldType.h"

#include <array>
#include <limits>
#include <vector>

#include "host/Locale.h"
#include "host/TextFunctions.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

using host::DateTime;
using host::Variant;

namespace {

struct TypeRow {
    std::int32_t type;
    Storage storage;
    std::int32_t fixedSize;  // bytes; 0 where the defined size counts
    bool limited = false;    // text whose length the defined size bounds
    double lowest = std::numeric_limits<double>::lowest();
    double highest = std::numeric_limits<double>::max();
};

constexpr TypeRow types[] = {
    {data_type::SmallInt, Storage::Number, 2, false, -32768, 32767},
    {data_type::Integer, Storage::Number, 4, false, -2147483648.0, 2147483647.0},
    {data_type::Single, Storage::Number, 4, false, -3.4028235e38, 3.4028235e38},
    {data_type::Double, Storage::Number, 8},
    {data_type::Currency, Storage::Exact, 8},
    {data_type::Date, Storage::Date, 8},
    {data_type::BSTR, Storage::Text, 0},
    {data_type::Boolean, Storage::Boolean, 2},
    {data_type::Decimal, Storage::Exact, 16},
    {data_type::TinyInt, Storage::Number, 1, false, -128, 127},
    {data_type::UnsignedTinyInt, Storage::Number, 1, false, 0, 255},
    {data_type::UnsignedSmallInt, Storage::Number, 2, false, 0, 65535},
    {data_type::UnsignedInt, Storage::Exact, 4},
    {data_type::BigInt, Storage::Exact, 8},
    {data_type::UnsignedBigInt, Storage::Exact, 8},
    {data_type::FileTime, Storage::Exact, 8},
    {data_type::GUID, Storage::Exact, 16},
    {data_type::Binary, Storage::Exact, 0},
    {data_type::Char, Storage::Text, 0, true},
    {data_type::WChar, Storage::Text, 0, true},
    {data_type::Numeric, Storage::Exact, 19},
    {data_type::DBDate, Storage::Date, 6},
    {data_type::DBTime, Storage::Exact, 6},
    {data_type::DBTimeStamp, Storage::Exact, 16},
    {data_type::VarNumeric, Storage::Exact, 0},
    {data_type::VarChar, Storage::Text, 0, true},
    {data_type::LongVarChar, Storage::Text, 0},
    {data_type::VarWChar, Storage::Text, 0, true},
    {data_type::LongVarWChar, Storage::Text, 0},
    {data_type::VarBinary, Storage::Exact, 0},
    {data_type::LongVarBinary, Storage::Exact, 0},
};

// By number: one more than its place in the table, 0 for a number that is no type.
constexpr auto placeOfType = [] {
    std::array<std::uint8_t, 256> places{};
    for (std::size_t i = 0; i < std::size(types); ++i) places[static_cast<std::size_t>(types[i].type)] = static_cast<std::uint8_t>(i + 1);
    return places;
}();

const TypeRow* rowOf(std::int32_t type) noexcept {
    if (type < 0 || static_cast<std::size_t>(type) >= placeOfType.size()) return nullptr;
    const std::uint8_t place = placeOfType[static_cast<std::size_t>(type)];
    return place == 0 ? nullptr : &types[place - 1];
}

Variant convertedNumber(const TypeRow& type, const Variant& value) {
    const double number = value.toDouble();
    if (type.type == data_type::Double || type.type == data_type::Single) {
        if (number < type.lowest || number > type.highest) raise(error::MultipleStep);
        return type.type == data_type::Single ? static_cast<double>(static_cast<float>(number)) : number;
    }
    const double rounded = host::roundHalfEven(number);
    if (!(rounded >= type.lowest && rounded <= type.highest)) raise(error::MultipleStep);
    if (type.type == data_type::SmallInt) return static_cast<std::int16_t>(rounded);
    return static_cast<std::int32_t>(rounded);
}

Variant convertedDate(const Variant& value) {
    if (value.kind() != Variant::Kind::Text) return value.toDate();
    const auto moment = dateFromText(value.text());
    if (!moment) raise(error::WrongValueType);
    return *moment;
}

Variant convertedText(const TypeRow& type, std::int32_t definedSize, const Variant& value) {
    if (value.kind() == Variant::Kind::Text) {
        if (type.limited && value.textView().size() > static_cast<std::size_t>(std::max(definedSize, 0))) raise(error::MultipleStep);
        return value;
    }
    return convertedText(type, definedSize, Variant(value.toText()));
}

// A moment in the text of the types that keep theirs as text.
std::u16string exactDate(std::int32_t type, DateTime moment) {
    std::u16string text = host::isoText(moment);
    return type == data_type::DBTime ? text.substr(text.find(u'T') + 1) : text;
}

// The numbers of a date text, in order, with what stands between them; empty where a word other than AM or PM is in it.
struct DateParts {
    std::vector<int> numbers;
    std::u16string marks;  // the separator behind each number
    std::u16string half;   // "AM", "PM" or ""
};

std::optional<DateParts> dateParts(std::u16string_view text) {
    DateParts parts;
    std::size_t i = 0;
    while (i < text.size()) {
        if (text[i] >= u'0' && text[i] <= u'9') {
            int number = 0;
            for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
                if (number > 99999) return std::nullopt;
                number = number * 10 + (text[i] - u'0');
            }
            parts.numbers.push_back(number);
            parts.marks += i < text.size() ? text[i] : u'.';
            if (i < text.size() && (text[i] == u'/' || text[i] == u'-' || text[i] == u':')) ++i;
        } else if (text[i] == u' ' && !parts.numbers.empty()) {
            ++i;
        } else {
            parts.half = host::UCase(host::Trim(text.substr(i)));
            if (parts.half != u"AM" && parts.half != u"PM") return std::nullopt;
            break;
        }
    }
    return parts;
}

bool readClock(const DateParts& parts, std::size_t first, host::CalendarFields& fields) {
    const std::size_t count = parts.numbers.size() - first;
    if (count == 0) return parts.half.empty();
    if (count == 1 || count > 3 || parts.marks[first] != u':' || (count == 3 && parts.marks[first + 1] != u':')) return false;
    fields.hour = parts.numbers[first];
    fields.minute = parts.numbers[first + 1];
    fields.second = count == 3 ? parts.numbers[first + 2] : 0;
    if (!parts.half.empty()) {
        if (fields.hour < 1 || fields.hour > 12) return false;
        fields.hour = fields.hour % 12 + (parts.half == u"PM" ? 12 : 0);
    }
    return fields.hour < 24 && fields.minute < 60 && fields.second < 60;
}

bool readDay(const DateParts& parts, host::CalendarFields& fields) {
    const auto& numbers = parts.numbers;
    if (parts.marks[0] == u'-' && parts.marks[1] == u'-' && numbers[0] >= 100) {
        fields.year = numbers[0];
        fields.month = numbers[1];
        fields.day = numbers[2];
    } else if (parts.marks[0] == parts.marks[1] && (parts.marks[0] == u'/' || parts.marks[0] == u'-')) {
        fields.month = numbers[0];
        fields.day = numbers[1];
        fields.year = numbers[2] >= 100 ? numbers[2] : numbers[2] + (numbers[2] < 30 ? 2000 : 1900);
    } else {
        return false;
    }
    if (fields.year < 100 || fields.year > 9999 || fields.month < 1 || fields.month > 12 || fields.day < 1 || fields.day > 31) return false;
    return host::calendarFields(host::dateTimeFrom(fields)) == fields;
}

}  // namespace

std::optional<Storage> storageOf(std::int32_t type) noexcept {
    const TypeRow* row = rowOf(type);
    return row ? std::optional(row->storage) : std::nullopt;
}

bool takesNull(const FieldDefinition& definition) noexcept {
    return definition.attributes != field_attribute::Unspecified && (definition.attributes & (field_attribute::IsNullable | field_attribute::MayBeNull)) != 0;
}

bool isLimited(std::int32_t type) noexcept {
    const TypeRow* row = rowOf(type);
    return row && row->limited;
}

FieldDefinition completed(FieldDefinition definition) {
    const TypeRow* row = rowOf(definition.type);
    if (row && row->fixedSize != 0) definition.definedSize = row->fixedSize;
    return definition;
}

Variant convertedFor(const FieldDefinition& definition, const Variant& value) {
    const TypeRow* row = rowOf(definition.type);
    if (!row || value.isMissing()) raise(error::WrongValueType);
    if (value.isEmpty()) return value;
    if (value.isNull()) {
        if (!takesNull(definition)) raise(error::MultipleStep);
        return value;
    }
    try {
        switch (row->storage) {
            case Storage::Text:
                return convertedText(*row, definition.definedSize, value);
            case Storage::Number:
                return convertedNumber(*row, value);
            case Storage::Boolean:
                return value.toBoolean();
            case Storage::Date:
                return convertedDate(value);
            case Storage::Exact:
                return value.kind() == Variant::Kind::Date ? exactDate(definition.type, value.toDate()) : value.toText();
        }
    } catch (const host::HostError& failure) {
        if (failure.number() == host::runtime_error::TypeMismatch) raise(error::WrongValueType);
        if (failure.number() == host::runtime_error::Overflow) raise(error::MultipleStep);
        throw;
    }
    raise(error::WrongValueType);
}

bool isTextFor(const FieldDefinition& definition, const Variant& value) noexcept {
    const TypeRow* row = rowOf(definition.type);
    if (!row || row->storage != Storage::Text || value.kind() != Variant::Kind::Text) return false;
    return !row->limited || value.textView().size() <= static_cast<std::size_t>(std::max(definition.definedSize, 0));
}

std::optional<DateTime> dateFromText(std::u16string_view text) {
    text = host::Trim(text);
    std::u16string plain(text);
    if (text.size() > 10 && text[10] == u'T') plain[10] = u' ';
    const auto parts = dateParts(plain);
    if (!parts || parts->numbers.size() < 2) return std::nullopt;
    host::CalendarFields fields;
    if (parts->marks[0] == u':') {
        if (!readClock(*parts, 0, fields)) return std::nullopt;
        return host::dateTimeFrom(fields);
    }
    if (parts->numbers.size() < 3 || !readDay(*parts, fields) || !readClock(*parts, 3, fields)) return std::nullopt;
    return host::dateTimeFrom(fields);
}

}  // namespace lorvane::recordset
