#include <cstdint>

#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

constexpr char16_t replacementUnit = 0xFFFD;

constexpr bool isHighSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool isLowSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

struct Sequence {
    int further = 0;  ///< bytes that follow the first; -1 where a character cannot begin with it
    std::uint8_t secondFrom = 0x80, secondTo = 0xBF;
    std::uint8_t firstMask = 0;
};

/// The well-formed sequences by first byte. The second byte's range keeps out longer forms than needed, surrogates, and what lies beyond the planes.
constexpr Sequence sequenceOf(std::uint8_t first) noexcept {
    if (first >= 0xC2 && first <= 0xDF) return {1, 0x80, 0xBF, 0x1F};
    if (first == 0xE0) return {2, 0xA0, 0xBF, 0x0F};
    if (first == 0xED) return {2, 0x80, 0x9F, 0x0F};
    if (first >= 0xE1 && first <= 0xEF) return {2, 0x80, 0xBF, 0x0F};
    if (first == 0xF0) return {3, 0x90, 0xBF, 0x07};
    if (first >= 0xF1 && first <= 0xF3) return {3, 0x80, 0xBF, 0x07};
    if (first == 0xF4) return {3, 0x80, 0x8F, 0x07};
    return {-1, 0, 0, 0};
}

void appendCharacter(std::u16string& text, std::uint32_t character) {
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
        return;
    }
    character -= 0x10000;
    text += static_cast<char16_t>(0xD800 + (character >> 10));
    text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

void appendUtf8(std::string& bytes, std::uint32_t character) {
    const auto further = [&bytes, character](int shift) { bytes += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        bytes += static_cast<char>(character);
    } else if (character < 0x800) {
        bytes += static_cast<char>(0xC0 | (character >> 6));
        further(0);
    } else if (character < 0x10000) {
        bytes += static_cast<char>(0xE0 | (character >> 12));
        further(6);
        further(0);
    } else {
        bytes += static_cast<char>(0xF0 | (character >> 18));
        further(12);
        further(6);
        further(0);
    }
}

}  // namespace

std::u16string fromUtf8(std::string_view utf8) {
    std::u16string text;
    text.reserve(utf8.size());
    std::size_t at = 0;
    while (at < utf8.size()) {
        const auto first = static_cast<std::uint8_t>(utf8[at++]);
        if (first < 0x80) {
            text += static_cast<char16_t>(first);
            continue;
        }
        const Sequence sequence = sequenceOf(first);
        std::uint32_t character = first & sequence.firstMask;
        int taken = 0;
        while (taken < sequence.further && at < utf8.size()) {
            const auto next = static_cast<std::uint8_t>(utf8[at]);
            const std::uint8_t from = taken == 0 ? sequence.secondFrom : 0x80;
            const std::uint8_t to = taken == 0 ? sequence.secondTo : 0xBF;
            if (next < from || next > to) break;
            character = character << 6 | (next & 0x3Fu);
            ++taken;
            ++at;
        }
        if (taken == sequence.further) {
            appendCharacter(text, character);
        } else {
            text += replacementUnit;
        }
    }
    return text;
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 8);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (isHighSurrogate(unit) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
            const std::uint32_t high = unit & 0x3FFu;
            const std::uint32_t low = text[++at] & 0x3FFu;
            appendUtf8(bytes, 0x10000 + (high << 10 | low));
        } else {
            appendUtf8(bytes, isHighSurrogate(unit) || isLowSurrogate(unit) ? replacementUnit : unit);
        }
    }
    return bytes;
}

}  // namespace lorvane::host
