#include "automation/Values.h"

#include <cmath>
#include <limits>

#include "automation/Base64.h"
#include "host/Locale.h"
#include "host/Record.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

using host::Variant;
using Kind = Variant::Kind;

namespace {

constexpr std::int32_t usualLower = 1;
constexpr double exactWholeNumbers = 9007199254740992.0;  // 2^53

[[noreturn]] void refuse(const std::string& why) {
    throw RpcError(rpc_code::InvalidParams, why);
}

Json doubleToJson(double value) {
    if (!std::isfinite(value)) throw host::HostError(host::runtime_error::Overflow);
    return value;
}

/// The value behind a key of a form like {"$date": …}.
std::u16string textOf(const Json& value, const char* key) {
    if (!value.is_string()) refuse(std::string("\"") + key + "\" has a text");
    return host::fromUtf8(value.get_ref<const std::string&>());
}

void requireTrue(const Json& value, const char* key) {
    if (value != Json(true)) refuse(std::string("\"") + key + "\" is true");
}

std::int32_t lowerFrom(const Json& value) {
    if (!value.is_number_integer() || value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        refuse("\"lower\" is a whole number");
    return value.get<std::int32_t>();
}

Variant dateFrom(const Json& value) {
    try {
        return host::dateTimeFromIso(textOf(value, "$date"));
    } catch (const host::HostError&) {
        refuse("\"$date\" is a moment like 2028-01-10T09:00:00");
    }
}

Variant bytesFrom(const Json& value) {
    if (!value.is_string()) refuse("\"$base64\" has a text");
    auto bytes = fromBase64(value.get_ref<const std::string&>());
    if (!bytes) refuse("\"$base64\" is not well-formed");
    return std::move(*bytes);
}

}  // namespace

Json Values::toJson(const Variant& value) const {
    switch (value.kind()) {
        case Kind::Empty:
            return nullptr;
        case Kind::Null:
            return {{"$null", true}};
        case Kind::Missing:
            return {{"$missing", true}};
        case Kind::Boolean:
            return value.toBoolean();
        case Kind::Int16:
        case Kind::Int32:
            return value.toInt32();
        case Kind::Double:
            return doubleToJson(value.toDouble());
        case Kind::Date:
            return {{"$date", host::toUtf8(host::isoText(value.toDate()))}};
        case Kind::Text:
            return host::toUtf8(value.text());
        case Kind::Object:
            return objectToJson(value.toObject());
        case Kind::Bytes:
            return {{"$base64", toBase64(value.toBytes())}};
        case Kind::Array:
            break;
    }
    const host::Array& array = value.toArray();
    Json items = Json::array();
    for (const Variant& item : array.items) items.push_back(toJson(item));
    if (array.lower == usualLower) return items;
    return {{"lower", array.lower}, {"items", std::move(items)}};
}

Json Values::objectToJson(const host::Object& object) const {
    if (!object) return nullptr;
    if (const auto* record = host::implementation<host::Record>(object)) {
        Json table = Json::object();
        for (const auto& [name, value] : record->fields()) table[host::toUtf8(name)] = toJson(value);
        return table;
    }
    return {{"$obj", handles_.numberOf(object)}, {"class", host::toUtf8(object.dispatch()->className())}};
}

Variant Values::argumentFromJson(const Json& json) const {
    if (!json.is_object() || !json.contains("$missing")) return fromJson(json);
    requireTrue(json["$missing"], "$missing");
    return Variant::missing();
}

Variant Values::fromJson(const Json& json) const {
    switch (json.type()) {
        case Json::value_t::boolean:
            return json.get<bool>();
        case Json::value_t::string:
            return host::fromUtf8(json.get_ref<const std::string&>());
        case Json::value_t::number_integer:
        case Json::value_t::number_unsigned:
        case Json::value_t::number_float:
            return numberFromJson(json);
        case Json::value_t::array:
            return itemsFromJson(json, usualLower);
        case Json::value_t::object:
            return tableFromJson(json);
        default:
            return {};
    }
}

Variant Values::numberFromJson(const Json& json) const {
    const double value = json.get<double>();
    if (json.is_number_float()) return value;
    if (std::fabs(value) > exactWholeNumbers) refuse("a whole number is out of range: " + json.dump());
    const bool fits = value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max();
    return fits ? Variant(static_cast<std::int32_t>(value)) : Variant(value);
}

host::Array Values::itemsFromJson(const Json& json, std::int32_t lower) const {
    if (!json.is_array()) refuse("\"items\" is an array");
    host::Array array{lower, {}};
    for (const Json& item : json) array.items.push_back(fromJson(item));
    return array;
}

Variant Values::tableFromJson(const Json& json) const {
    if (json.contains("$obj")) return objectFromJson(json);
    if (json.size() == 2 && json.contains("lower") && json.contains("items")) return itemsFromJson(json["items"], lowerFrom(json["lower"]));
    if (!json.empty() && json.begin().key().starts_with("$")) {
        const std::string& key = json.begin().key();
        const Json& value = *json.begin();
        if (json.size() != 1) refuse("\"" + key + "\" stands alone");
        if (key == "$date") return dateFrom(value);
        if (key == "$base64") return bytesFrom(value);
        if (key != "$null") refuse("\"" + key + "\" means nothing here");
        requireTrue(value, "$null");
        return Variant::null();
    }
    std::vector<host::Record::Field> fields;
    for (const auto& [name, value] : json.items()) fields.emplace_back(host::fromUtf8(name), fromJson(value));
    return host::makeObject<host::Record>(std::move(fields));
}

host::Object Values::objectFromJson(const Json& json) const {
    const Json& number = json.is_object() && json.contains("$obj") ? json["$obj"] : json;
    if (!number.is_number_integer() || number > std::numeric_limits<Handles::Number>::max()) refuse("an object is its number, or {\"$obj\": number}");
    return handles_.at(number.get<Handles::Number>());
}

}  // namespace lorvane::automation
