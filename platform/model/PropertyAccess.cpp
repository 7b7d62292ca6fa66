#include "model/PropertyAccess.h"

#include <algorithm>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "model/ItemState.h"

namespace lorvane::model {

using host::Variant;
using mailstore::PropertyValue;

namespace {

constexpr std::uint32_t subjectTag = 0x0037001F, normalizedSubjectTag = 0x0E1D001F, messageClassTag = 0x001A001F, bodyTag = 0x1000001F, htmlTag = 0x1013001F,
                        hasAttachmentsTag = 0x0E1B000B, displayToTag = 0x0E04001F, displayCcTag = 0x0E03001F, displayBccTag = 0x0E02001F;

constexpr std::uint32_t typeOf(std::uint32_t tag) noexcept {
    return tag & 0xFFFFu;
}

struct ToVariant {
    Variant operator()(bool value) const { return value; }
    Variant operator()(std::int32_t value) const { return value; }
    Variant operator()(double value) const { return value; }
    Variant operator()(host::DateTime value) const { return value; }
    Variant operator()(const std::u16string& value) const { return value; }
    Variant operator()(const host::Bytes& value) const { return value; }
    Variant operator()(const std::vector<std::u16string>& texts) const {
        host::Array array;
        array.items.assign(texts.begin(), texts.end());
        return array;
    }
};

std::vector<std::u16string> toTexts(const Variant& value) {
    std::vector<std::u16string> texts;
    for (const Variant& item : value.toArray().items) texts.push_back(item.toText());
    return texts;
}

/// Properties whose numbers are their identities, since items keep their members under them.
struct KnownSet {
    std::u16string_view guid;
    std::int32_t first, last;
};
constexpr KnownSet knownSets[] = {{u"{00062002-0000-0000-C000-000000000046}", 0x8200, 0x82FF}, {u"{00062008-0000-0000-C000-000000000046}", 0x8500, 0x85FF}};

bool isKnown(std::u16string_view guid, std::int32_t id) {
    return std::ranges::any_of(knownSets, [=](const KnownSet& set) { return set.guid == guid && id >= set.first && id <= set.last; });
}

/// FNV-1a.
std::uint32_t hashed(std::u16string_view text) noexcept {
    std::uint32_t hash = 2166136261u;
    for (const char16_t unit : text) hash = (hash ^ unit) * 16777619u;
    return hash;
}

}  // namespace

Variant toVariant(const PropertyValue& value) {
    return std::visit(ToVariant{}, value);
}

PropertyValue toProperty(std::uint32_t tag, const Variant& value) {
    switch (typeOf(tag)) {
        case 0x0002:
        case 0x0003:
            return value.toInt32();
        case 0x0005:
            return value.toDouble();
        case 0x000B:
            return value.toBoolean();
        case 0x001E:
        case 0x001F:
            return value.toText();
        case 0x0040:
            return value.toDate();
        case 0x0102:
            return value.toBytes();
        case 0x101E:
        case 0x101F:
            return toTexts(value);
        default:
            throw host::HostError(host::runtime_error::TypeMismatch);
    }
}

Variant itemField(ItemState& item, std::uint32_t tag) {
    switch (mailstore::canonicalTag(tag)) {
        case subjectTag:
        case normalizedSubjectTag:
            return item.head().subject;
        case messageClassTag:
            return item.head().messageClass;
        case bodyTag:
            return item.body();
        case htmlTag:
            return item.record().bodyKind == mailstore::BodyKind::Html ? Variant(item.htmlBody()) : Variant();
        case hasAttachmentsTag:
            return !item.attachments().empty();
        case displayToTag:
            return item.recipientNames(1);
        case displayCcTag:
            return item.recipientNames(2);
        case displayBccTag:
            return item.recipientNames(3);
        default:
            break;
    }
    const PropertyValue* value = item.property(tag);
    return value ? toVariant(*value) : Variant();
}

void setItemField(ItemState& item, std::uint32_t tag, const Variant& value) {
    const bool none = value.isEmpty() || value.isNull();
    switch (mailstore::canonicalTag(tag)) {
        case subjectTag:
            return item.setSubject(none ? std::u16string() : value.toText());
        case messageClassTag:
            item.changed().head.messageClass = value.toText();
            return;
        case bodyTag:
            return item.setBody(none ? std::u16string() : value.toText());
        case htmlTag:
            return item.setHtmlBody(none ? std::u16string() : value.toText());
        default:
            break;
    }
    if (none) return item.removeProperty(tag);
    item.setProperty(tag, toProperty(tag, value));
}

std::uint32_t namedPropertyTag(std::u16string_view guid, const Variant& idOrName) {
    const std::u16string set = host::UCase(guid);
    if (idOrName.kind() != Variant::Kind::Text) {
        const std::int32_t id = idOrName.toInt32();
        if (isKnown(set, id)) return static_cast<std::uint32_t>(id) << 16;
    }
    // Identities of named properties lie above 0x8000; the known ones end far below 0x9000.
    constexpr std::uint32_t first = 0x9000, count = 0xFFFE - first;
    return (first + hashed(set + u"\n" + idOrName.toText()) % count) << 16;
}

}  // namespace lorvane::model
