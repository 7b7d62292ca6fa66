#include "html/Utf8Source.h"

#include <algorithm>

#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr std::size_t BytesPerMark = 256;

void appendUtf8(std::string& bytes, char32_t character) {
    const auto put = [&](char32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

}  // namespace

Utf8Source::Utf8Source(std::u16string_view source) {
    bytes_.reserve(source.size() + source.size() / 8);
    marks_.push_back({0, 0});
    for (std::size_t i = 0; i < source.size();) {
        if (bytes_.size() - marks_.back().byte >= BytesPerMark) marks_.push_back({bytes_.size(), i});
        const std::size_t units = characterLength(source, i);
        char32_t character = source[i];
        if (units == 2) {
            character = 0x10000 + ((static_cast<char32_t>(source[i]) - 0xD800) << 10) + (static_cast<char32_t>(source[i + 1]) - 0xDC00);
        } else if (isSurrogate(source[i])) {
            character = 0xFFFD;
        }
        appendUtf8(bytes_, character);
        i += units;
    }
    if (bytes_.size() == source.size()) marks_.clear();
}

std::size_t Utf8Source::unitOffset(std::size_t byteOffset) const {
    if (marks_.empty()) return byteOffset;
    const auto next = std::upper_bound(marks_.begin(), marks_.end(), byteOffset, [](std::size_t value, const Mark& mark) { return value < mark.byte; });
    const Mark mark = *(next - 1);
    std::size_t units = mark.unit;
    for (std::size_t i = mark.byte; i < byteOffset; ++i) {
        const auto byte = static_cast<unsigned char>(bytes_[i]);
        if ((byte & 0xC0) == 0x80) continue;
        units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

}  // namespace lorvane::html
