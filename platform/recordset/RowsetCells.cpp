#include "recordset/RowsetCells.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

bool isBlank(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

std::u16string_view withoutBlanks(std::u16string_view text) noexcept {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<double> numberFrom(std::u16string_view text) {
    constexpr std::size_t longest = 400;
    if (text.empty() || text.size() > longest) return std::nullopt;
    if (text.front() == u'+') text.remove_prefix(1);
    std::string narrow;
    for (const char16_t unit : text) {
        // Words such as "inf" are numbers elsewhere.
        if (!isDigit(unit) && std::u16string_view(u"+-.eE").find(unit) == std::u16string_view::npos) return std::nullopt;
        narrow += static_cast<char>(unit);
    }
    double number = 0;
    const auto read = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
    if (read.ec != std::errc() || read.ptr != narrow.data() + narrow.size()) return std::nullopt;
    return number;
}

std::optional<bool> booleanFrom(std::u16string_view text) {
    if (host::equalsIgnoreCase(text, u"true") || text == u"1" || text == u"-1") return true;
    if (host::equalsIgnoreCase(text, u"false") || text == u"0") return false;
    return std::nullopt;
}

// The digits of a text by a pattern in which "0" stands for one digit; empty where the text does not begin so. Takes what it read off the text.
template <std::size_t Count>
std::optional<std::array<int, Count>> readPattern(std::u16string_view& text, std::u16string_view pattern) {
    if (text.size() < pattern.size()) return std::nullopt;
    std::array<int, Count> numbers{};
    std::size_t number = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != u'0') {
            if (text[i] != pattern[i]) return std::nullopt;
            ++number;
        } else if (isDigit(text[i])) {
            numbers[number] = numbers[number] * 10 + (text[i] - u'0');
        } else {
            return std::nullopt;
        }
    }
    text.remove_prefix(pattern.size());
    return numbers;
}

// A fraction of one to nine digits, rounded to whole seconds; empty for anything else.
std::optional<int> readFraction(std::u16string_view text) {
    if (text.empty()) return 0;
    if (text.front() != u'.' || text.size() < 2 || text.size() > 10) return std::nullopt;
    text.remove_prefix(1);
    if (!std::ranges::all_of(text, isDigit)) return std::nullopt;
    return text.front() >= u'5' ? 1 : 0;
}

// "2028-01-10", "2028-01-10T09:00:00", "09:00:00", the last two with a fraction or without. No zone.
std::optional<host::DateTime> momentFrom(std::u16string_view text) {
    host::CalendarFields fields;
    const auto day = readPattern<3>(text, u"0000-00-00");
    if (day) {
        fields = {(*day)[0], (*day)[1], (*day)[2], 0, 0, 0};
        if (fields.year < 100 || fields.month < 1 || fields.month > 12 || fields.day < 1 || fields.day > 31) return std::nullopt;
        if (host::calendarFields(host::dateTimeFrom(fields)) != fields) return std::nullopt;
        if (text.empty()) return host::dateTimeFrom(fields);
        if (text.front() != u'T') return std::nullopt;
        text.remove_prefix(1);
    }
    const auto clock = readPattern<3>(text, u"00:00:00");
    const auto roundedUp = readFraction(text);
    if (!clock || !roundedUp || (*clock)[0] > 23 || (*clock)[1] > 59 || (*clock)[2] > 59) return std::nullopt;
    fields.hour = (*clock)[0];
    fields.minute = (*clock)[1];
    fields.second = (*clock)[2];
    constexpr host::CalendarFields last{9999, 12, 31, 23, 59, 59};
    if (fields != last) fields.second += *roundedUp;
    return host::dateTimeFrom(fields);
}

std::u16string_view cut(std::u16string_view text, std::size_t longest) noexcept {
    if (text.size() <= longest) return text;
    const bool splitsPair = longest > 0 && (text[longest - 1] & 0xFC00) == 0xD800 && (text[longest] & 0xFC00) == 0xDC00;
    return text.substr(0, splitsPair ? longest - 1 : longest);
}

Variant exactFrom(const FieldDefinition& field, std::u16string_view text) {
    if (!holdsBytes(field)) return text;
    std::u16string digits(text);
    std::erase_if(digits, isBlank);
    return isHexText(digits) ? Variant(std::move(digits)) : Variant(text);
}

std::optional<Variant> checked(const FieldDefinition& field, const Variant& value) {
    try {
        return convertedFor(field, value);
    } catch (const host::HostError&) {
        return std::nullopt;
    }
}

std::u16string numberText(double number, int digits) {
    char buffer[64];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, digits);
    return std::u16string(buffer, written.ptr);
}

// Eight digits, which the format has for them, tell most numbers of single precision apart; the others take one more.
std::u16string singleText(double number) {
    const std::u16string text = numberText(number, 8);
    const auto again = numberFrom(text);
    return again && static_cast<float>(*again) == static_cast<float>(number) ? text : numberText(number, 9);
}

}  // namespace

bool holdsBytes(const FieldDefinition& field) noexcept {
    return field.type == data_type::Binary || field.type == data_type::VarBinary || field.type == data_type::LongVarBinary;
}

bool isHexText(std::u16string_view text) noexcept {
    const auto isHex = [](char16_t unit) { return isDigit(unit) || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F'); };
    return text.size() % 2 == 0 && std::ranges::all_of(text, isHex);
}

std::optional<Variant> valueFromRowset(const FieldDefinition& field, std::u16string_view text) {
    switch (storageOf(field.type).value_or(Storage::Exact)) {
        case Storage::Text:
            return Variant(isLimited(field.type) ? cut(text, static_cast<std::size_t>(std::max(field.definedSize, 0))) : text);
        case Storage::Number:
            if (const auto number = numberFrom(withoutBlanks(text))) return checked(field, *number);
            return std::nullopt;
        case Storage::Boolean:
            if (const auto truth = booleanFrom(withoutBlanks(text))) return Variant(*truth);
            return std::nullopt;
        case Storage::Date:
            if (const auto moment = momentFrom(withoutBlanks(text))) return Variant(*moment);
            return std::nullopt;
        case Storage::Exact:
            break;
    }
    return exactFrom(field, text);
}

std::u16string rowsetTextOf(const FieldDefinition& field, const Variant& value) {
    switch (value.kind()) {
        case Variant::Kind::Text:
            return value.text();
        case Variant::Kind::Boolean:
            return value.toBoolean() ? u"True" : u"False";
        case Variant::Kind::Double:
            return field.type == data_type::Single ? singleText(value.toDouble()) : numberText(value.toDouble(), 17);
        case Variant::Kind::Date: {
            std::u16string text = host::isoText(value.toDate());
            return field.type == data_type::DBDate ? text.substr(0, text.find(u'T')) : text;
        }
        default:
            return value.toText();
    }
}

}  // namespace lorvane::recordset
