#include "instruments/ValueText.h"

#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::instruments {

using host::Variant;

namespace {

constexpr std::size_t longestText = 80;
constexpr std::size_t longestList = 12;

std::u16string countText(std::size_t count) {
    return u"(" + host::decimal(static_cast<std::int64_t>(count)) + u")";
}

void appendUnit(std::u16string& shown, char16_t unit) {
    constexpr std::u16string_view hexDigits = u"0123456789abcdef";
    switch (unit) {
        case u'\r':
            shown += u"\\r";
            return;
        case u'\n':
            shown += u"\\n";
            return;
        case u'\t':
            shown += u"\\t";
            return;
        case u'\\':
            shown += u"\\\\";
            return;
        case u'"':
            shown += u"\"\"";
            return;
        default:
            break;
    }
    if (unit < 0x20 || unit == 0x7F) {
        shown.append(u"\\x");
        shown += hexDigits[unit >> 4];
        shown += hexDigits[unit & 15];
    } else {
        shown += unit;
    }
}

std::u16string quoted(std::u16string_view text) {
    std::u16string shown = u"\"";
    for (const char16_t unit : text.substr(0, longestText)) appendUnit(shown, unit);
    if (text.size() <= longestText) return shown += u'"';
    return shown.append(u"…\"").append(countText(text.size()));
}

std::u16string listText(const std::vector<Variant>& items) {
    std::u16string shown = u"[";
    for (std::size_t i = 0; i < items.size() && i < longestList; ++i) shown.append(i == 0 ? u"" : u", ").append(valueText(items[i]));
    if (items.size() <= longestList) return shown += u']';
    return shown.append(u", …]").append(countText(items.size()));
}

}  // namespace

std::u16string valueText(const Variant& value) {
    switch (value.kind()) {
        case Variant::Kind::Empty:
            return u"Empty";
        case Variant::Kind::Null:
            return u"Null";
        case Variant::Kind::Missing:
            return u"Missing";
        case Variant::Kind::Date:
            return u"#" + host::isoText(value.toDate()) + u"#";
        case Variant::Kind::Text:
            return quoted(value.text());
        case Variant::Kind::Object: {
            const host::Object object = value.toObject();
            return object ? std::u16string(object.dispatch()->className()) : u"Nothing";
        }
        case Variant::Kind::Array:
            return listText(value.toArray().items);
        case Variant::Kind::Bytes:
            return u"bytes" + countText(value.toBytes().size());
        default:
            return value.toText();
    }
}

std::u16string argumentsText(host::Args args) {
    std::u16string shown;
    for (const host::Argument& argument : args) {
        if (!shown.empty()) shown += u", ";
        if (argument.name() != host::Member::None) shown.append(host::memberName(argument.name())).append(u":=");
        shown += valueText(argument.value());
    }
    return shown;
}

}  // namespace lorvane::instruments
