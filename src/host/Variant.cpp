#include "host/Variant.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

constexpr int significantDigits = 15;

[[noreturn]] void raiseTypeMismatch() {
    throw HostError(runtime_error::TypeMismatch);
}

/// Error 94 for Null, else 13: what cannot be converted at all.
[[noreturn]] void raiseUnconvertible(const Variant& value) {
    throw HostError(value.isNull() ? runtime_error::InvalidUseOfNull : runtime_error::TypeMismatch);
}

template <class Integer>
Integer rounded(double value) {
    const double whole = roundHalfEven(value);
    // Negated, so that a value that is no number is out of range too.
    if (!(whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max())) throw HostError(runtime_error::Overflow);
    return static_cast<Integer>(whole);
}

/// Up to 15 significant digits; with an exponent where the number would need more than 15 places on either side of the mark.
std::u16string textOfDouble(double value) {
    if (std::isnan(value)) return u"1.#QNAN";
    if (std::isinf(value)) return value < 0 ? u"-1.#INF" : u"1.#INF";
    if (value == 0) return u"0";
    std::array<char, 40> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value), std::chars_format::scientific, significantDigits - 1).ptr;
    const std::string_view written(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t mark = written.find('e');
    const char* const exponentStart = written.data() + mark + (written[mark + 1] == '+' ? 2 : 1);
    int exponent = 0;
    std::from_chars(exponentStart, end, exponent);
    std::u16string digits(1, static_cast<char16_t>(written[0]));
    for (const char digit : written.substr(2, mark - 2)) digits += static_cast<char16_t>(digit);
    digits.erase(digits.find_last_not_of(u'0') + 1);

    std::u16string text = value < 0 ? u"-" : u"";
    const int count = static_cast<int>(digits.size());
    if (exponent >= significantDigits || count - 1 - exponent > significantDigits) {
        text += digits[0];
        if (count > 1) text.append(u".").append(digits, 1);
        text += exponent < 0 ? u"E-" : u"E+";
        if (std::abs(exponent) < 10) text += u'0';
        return text += decimal(std::abs(exponent));
    }
    if (exponent < 0) return text.append(u"0.").append(static_cast<std::size_t>(-exponent - 1), u'0').append(digits);
    if (count <= exponent + 1) return text.append(digits).append(static_cast<std::size_t>(exponent + 1 - count), u'0');
    const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    return text.append(digits, 0, whole).append(u".").append(digits, whole);
}

DateTime checkedDate(double days) {
    constexpr double firstDay = -657434;       // 0100-01-01
    constexpr double behindLastDay = 2958466;  // 10000-01-01
    if (!(days > firstDay - 1 && days < behindLastDay)) throw HostError(runtime_error::Overflow);
    return DateTime{days};
}

const Variant& missingValue() noexcept {
    static const Variant value = Variant::missing();
    return value;
}

}  // namespace

Variant::Variant(Array value) : value_(std::make_shared<const Array>(std::move(value))) {}

Variant::Variant(Bytes value) : value_(std::make_shared<const Bytes>(std::move(value))) {}

Variant Variant::null() noexcept {
    Variant value;
    value.value_ = NullTag{};
    return value;
}

Variant Variant::missing() noexcept {
    Variant value;
    value.value_ = MissingTag{};
    return value;
}

bool Variant::toBoolean() const {
    if (const bool* flag = std::get_if<bool>(&value_)) return *flag;
    if (kind() == Kind::Text) {
        if (equalsIgnoreCase(textView(), u"True")) return true;
        if (equalsIgnoreCase(textView(), u"False")) return false;
    }
    return toDouble() != 0;
}

std::int16_t Variant::toInt16() const {
    if (const auto* number = std::get_if<std::int16_t>(&value_)) return *number;
    return rounded<std::int16_t>(toDouble());
}

std::int32_t Variant::toInt32() const {
    if (const auto* number = std::get_if<std::int32_t>(&value_)) return *number;
    return rounded<std::int32_t>(toDouble());
}

double Variant::toDouble() const {
    switch (kind()) {
        case Kind::Empty:
            return 0;
        case Kind::Boolean:
            return std::get<bool>(value_) ? -1 : 0;
        case Kind::Int16:
            return std::get<std::int16_t>(value_);
        case Kind::Int32:
            return std::get<std::int32_t>(value_);
        case Kind::Double:
            return std::get<double>(value_);
        case Kind::Date:
            return std::get<DateTime>(value_).days;
        case Kind::Text:
            return numberFromText(textView());
        default:
            raiseUnconvertible(*this);
    }
}

DateTime Variant::toDate() const {
    if (const auto* date = std::get_if<DateTime>(&value_)) return *date;
    if (kind() == Kind::Text) return dateTimeFromText(textView(), knownLocale(u"en-US"));
    return checkedDate(toDouble());
}

std::u16string Variant::toText() const {
    switch (kind()) {
        case Kind::Empty:
            return {};
        case Kind::Boolean:
            return std::get<bool>(value_) ? u"True" : u"False";
        case Kind::Int16:
            return decimal(std::get<std::int16_t>(value_));
        case Kind::Int32:
            return decimal(std::get<std::int32_t>(value_));
        case Kind::Double:
            return textOfDouble(std::get<double>(value_));
        case Kind::Date:
            return FormatDateTime(std::get<DateTime>(value_), DateStyle::General, knownLocale(u"en-US"));
        case Kind::Text:
            return std::u16string(textView());
        default:
            raiseUnconvertible(*this);
    }
}

Object Variant::toObject() const {
    if (isEmpty()) return nullptr;
    if (const Object* object = std::get_if<Object>(&value_)) return *object;
    raiseTypeMismatch();
}

const Array& Variant::toArray() const {
    if (const auto* array = std::get_if<std::shared_ptr<const Array>>(&value_)) return **array;
    raiseTypeMismatch();
}

const Bytes& Variant::toBytes() const {
    if (const auto* bytes = std::get_if<std::shared_ptr<const Bytes>>(&value_)) return **bytes;
    raiseTypeMismatch();
}

const std::u16string& Variant::text() const {
    if (const KeptText* kept = keptText()) value_ = std::u16string(kept->view());
    if (const auto* own = std::get_if<std::u16string>(&value_)) return *own;
    raiseTypeMismatch();
}

std::u16string_view Variant::textView() const {
    if (const KeptText* kept = keptText()) return kept->view();
    return text();
}

bool operator==(const Variant& a, const Variant& b) {
    if (a.kind() != b.kind()) return false;
    // Texts, arrays and bytes are equal by what is in them, wherever they are kept.
    if (a.kind() == Variant::Kind::Text) return a.textView() == b.textView();
    if (a.kind() == Variant::Kind::Array) return a.toArray() == b.toArray();
    if (a.kind() == Variant::Kind::Bytes) return a.toBytes() == b.toBytes();
    return a.value_ == b.value_;
}

std::u16string fieldText(const Variant& field) {
    return field.isNull() ? std::u16string() : field.toText();
}

Argument Argument::byReference(Variant& variable) {
    Argument argument{Variant()};
    argument.reference_ = &variable;
    return argument;
}

Argument Argument::named(Member name, Variant value) {
    Argument argument(std::move(value));
    argument.name_ = name;
    return argument;
}

void Argument::assign(Variant value) const {
    if (reference_) *reference_ = std::move(value);
}

const Variant& argumentAt(Args args, std::size_t index) noexcept {
    return index < args.size() && args[index].name() == Member::None ? args[index].value() : missingValue();
}

const Variant& argumentNamed(Args args, Member name, std::size_t index) noexcept {
    for (const Argument& argument : args) {
        if (argument.name() == name) return argument.value();
    }
    return argumentAt(args, index);
}

const Variant& requiredArgument(Args args, std::size_t index) {
    const Variant& value = argumentAt(args, index);
    if (value.isMissing()) throw HostError(runtime_error::ArgumentNotOptional);
    return value;
}

}  // namespace lorvane::host
