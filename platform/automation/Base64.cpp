#include "automation/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace lorvane::automation {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 64;

constexpr auto digits = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i) values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return values;
}();

}  // namespace

std::string toBase64(const host::Bytes& bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? bytes[at + i] : 0U);
        for (std::size_t i = 0; i < 4; ++i) text += i <= count ? alphabet[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

std::optional<host::Bytes> fromBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::size_t padding = 0;
    while (padding < 2 && !text.empty() && text.back() == '=') {
        text.remove_suffix(1);
        ++padding;
    }
    host::Bytes bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t group = 0;
    unsigned held = 0;  // bits of `group` that are not out yet
    for (const char character : text) {
        const std::uint8_t digit = digits[static_cast<unsigned char>(character)];
        if (digit == noDigit) return std::nullopt;
        group = group << 6 | digit;
        held += 6;
        if (held < 8) continue;
        held -= 8;
        bytes.push_back(static_cast<std::uint8_t>(group >> held & 0xFF));
    }
    // Bits behind the last byte belong to nothing.
    if ((group & ((1U << held) - 1)) != 0) return std::nullopt;
    return bytes;
}

}  // namespace lorvane::automation
