#include "mailstore/EntryIds.h"

#include <random>

namespace lorvane::mailstore {

namespace {

constexpr std::size_t PrefixDigits = 16;
constexpr std::size_t NumberDigits = 16;

void appendByte(std::u16string& text, std::uint8_t byte) {
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    text += digits[byte >> 4];
    text += digits[byte & 15];
}

int digitValue(char16_t unit) noexcept {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

}  // namespace

StoreId randomStoreId() {
    std::random_device source;
    StoreId id;
    for (std::uint8_t& byte : id) byte = static_cast<std::uint8_t>(source());
    return id;
}

std::u16string toHexadecimal(const StoreId& id) {
    std::u16string text;
    for (const std::uint8_t byte : id) appendByte(text, byte);
    return text;
}

EntryIds::EntryIds(const StoreId& store) : prefix_(toHexadecimal(store).substr(0, PrefixDigits)) {}

std::u16string EntryIds::format(std::int64_t number) const {
    std::u16string text = prefix_;
    for (int shift = 56; shift >= 0; shift -= 8) appendByte(text, static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> shift));
    return text;
}

std::optional<std::int64_t> EntryIds::parse(std::u16string_view entryId) const {
    if (entryId.size() != PrefixDigits + NumberDigits) return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < entryId.size(); ++i) {
        const int digit = digitValue(entryId[i]);
        if (digit < 0) return std::nullopt;
        if (i >= PrefixDigits) {
            number = number << 4 | static_cast<std::uint64_t>(digit);
        } else if (digit != digitValue(prefix_[i])) {
            return std::nullopt;
        }
    }
    if (number > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(number);
}

}  // namespace lorvane::mailstore
