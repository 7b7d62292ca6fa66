#include "mailstore/PropertyBlob.h"

#include <bit>
#include <concepts>

#include "mailstore/StoreErrors.h"

namespace lorvane::mailstore {

namespace {

constexpr std::uint8_t FormatNumber = 1;

/// The kinds of value as they stand in a block; the numbers never change.
enum class ValueKind : std::uint8_t { Boolean = 1, Integer = 2, Double = 3, Date = 4, Text = 5, Binary = 6, TextList = 7 };

class BlockWriter {
public:
    explicit BlockWriter(std::size_t count) {
        number(FormatNumber);
        size(count);
    }

    template <std::unsigned_integral T>
    void number(T value) {
        for (std::size_t i = 0; i < sizeof(T); ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i) & 0xFFu));
    }
    void size(std::size_t value) { number(static_cast<std::uint32_t>(value)); }
    void boolean(bool value) { number(static_cast<std::uint8_t>(value)); }
    void integer(std::int32_t value) { number(static_cast<std::uint32_t>(value)); }
    void floating(double value) { number(std::bit_cast<std::uint64_t>(value)); }
    void text(std::u16string_view value) {
        size(value.size());
        for (const char16_t unit : value) number(static_cast<std::uint16_t>(unit));
    }
    void binary(const Bytes& value) {
        size(value.size());
        bytes_.insert(bytes_.end(), value.begin(), value.end());
    }
    Bytes take() { return std::move(bytes_); }

private:
    Bytes bytes_;
};

class BlockReader {
public:
    BlockReader(std::span<const std::uint8_t> block, std::u16string_view source) : rest_(block), source_(source) {
        if (number<std::uint8_t>() != FormatNumber) damaged();
    }

    template <std::unsigned_integral T>
    T number() {
        const std::span<const std::uint8_t> bytes = take(sizeof(T));
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) value |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
        return static_cast<T>(value);
    }
    /// A count of entries of at least `least` bytes each, so that a wrong count never asks for memory that the block could not fill.
    std::size_t count(std::size_t least) {
        const std::size_t value = number<std::uint32_t>();
        if (value > rest_.size() / least) damaged();
        return value;
    }
    bool boolean() {
        const auto value = number<std::uint8_t>();
        if (value > 1) damaged();
        return value == 1;
    }
    std::int32_t integer() { return static_cast<std::int32_t>(number<std::uint32_t>()); }
    double floating() { return std::bit_cast<double>(number<std::uint64_t>()); }
    std::u16string text() {
        std::u16string value(count(2), u'\0');
        for (char16_t& unit : value) unit = static_cast<char16_t>(number<std::uint16_t>());
        return value;
    }
    Bytes binary() {
        const std::span<const std::uint8_t> bytes = take(count(1));
        return Bytes(bytes.begin(), bytes.end());
    }
    void finish() const {
        if (!rest_.empty()) damaged();
    }
    [[noreturn]] void damaged() const { throw storeDamaged(source_, u"properties of an item cannot be read."); }

private:
    std::span<const std::uint8_t> take(std::size_t size) {
        if (size > rest_.size()) damaged();
        const std::span<const std::uint8_t> taken = rest_.first(size);
        rest_ = rest_.subspan(size);
        return taken;
    }

    std::span<const std::uint8_t> rest_;
    std::u16string_view source_;
};

struct ValueWriter {
    BlockWriter& out;

    void kind(ValueKind value) const { out.number(static_cast<std::uint8_t>(value)); }
    void operator()(bool value) const {
        kind(ValueKind::Boolean);
        out.boolean(value);
    }
    void operator()(std::int32_t value) const {
        kind(ValueKind::Integer);
        out.integer(value);
    }
    void operator()(double value) const {
        kind(ValueKind::Double);
        out.floating(value);
    }
    void operator()(DateTime value) const {
        kind(ValueKind::Date);
        out.floating(value.days);
    }
    void operator()(const std::u16string& value) const {
        kind(ValueKind::Text);
        out.text(value);
    }
    void operator()(const Bytes& value) const {
        kind(ValueKind::Binary);
        out.binary(value);
    }
    void operator()(const std::vector<std::u16string>& value) const {
        kind(ValueKind::TextList);
        out.size(value.size());
        for (const std::u16string& text : value) out.text(text);
    }
};

PropertyValue readValue(BlockReader& in) {
    switch (static_cast<ValueKind>(in.number<std::uint8_t>())) {
        case ValueKind::Boolean:
            return in.boolean();
        case ValueKind::Integer:
            return in.integer();
        case ValueKind::Double:
            return in.floating();
        case ValueKind::Date:
            return DateTime{in.floating()};
        case ValueKind::Text:
            return in.text();
        case ValueKind::Binary:
            return in.binary();
        case ValueKind::TextList: {
            std::vector<std::u16string> list(in.count(4));
            for (std::u16string& text : list) text = in.text();
            return list;
        }
    }
    in.damaged();
}

}  // namespace

Bytes encodeProperties(const PropertyBag& properties) {
    BlockWriter out(properties.size());
    for (const auto& [tag, value] : properties) {
        out.number(tag);
        std::visit(ValueWriter{out}, value);
    }
    return out.take();
}

PropertyBag decodeProperties(std::span<const std::uint8_t> block, std::u16string_view source) {
    BlockReader in(block, source);
    PropertyBag properties;
    for (std::size_t left = in.count(6); left > 0; --left) {
        const auto tag = in.number<std::uint32_t>();
        if (!properties.empty() && tag <= properties.rbegin()->first) in.damaged();
        properties.emplace_hint(properties.end(), tag, readValue(in));
    }
    in.finish();
    return properties;
}

Bytes encodeUserProperties(const std::map<std::u16string, std::u16string>& properties) {
    BlockWriter out(properties.size());
    for (const auto& [name, value] : properties) {
        out.text(name);
        out.text(value);
    }
    return out.take();
}

std::map<std::u16string, std::u16string> decodeUserProperties(std::span<const std::uint8_t> block, std::u16string_view source) {
    BlockReader in(block, source);
    std::map<std::u16string, std::u16string> properties;
    for (std::size_t left = in.count(8); left > 0; --left) {
        std::u16string name = in.text();
        if (!properties.empty() && name <= properties.rbegin()->first) in.damaged();
        std::u16string value = in.text();
        properties.emplace_hint(properties.end(), std::move(name), std::move(value));
    }
    in.finish();
    return properties;
}

Bytes encodeRecipients(const std::vector<RecipientRecord>& recipients) {
    BlockWriter out(recipients.size());
    for (const RecipientRecord& recipient : recipients) {
        out.text(recipient.name);
        out.text(recipient.address);
        out.text(recipient.addressType);
        out.integer(recipient.type);
        out.boolean(recipient.resolved);
    }
    return out.take();
}

std::vector<RecipientRecord> decodeRecipients(std::span<const std::uint8_t> block, std::u16string_view source) {
    BlockReader in(block, source);
    std::vector<RecipientRecord> recipients(in.count(17));
    for (RecipientRecord& recipient : recipients) {
        recipient.name = in.text();
        recipient.address = in.text();
        recipient.addressType = in.text();
        recipient.type = in.integer();
        recipient.resolved = in.boolean();
    }
    in.finish();
    return recipients;
}

}  // namespace lorvane::mailstore
