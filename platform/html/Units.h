#pragma once

#include <cstddef>
#include <string_view>

/// What one UTF-16 unit is.
namespace lorvane::html {

constexpr bool isHighSurrogate(char16_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char16_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool isSurrogate(char16_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDFFF;
}
/// The blanks that HTML folds: space, tab, CR and LF.
constexpr bool isBlank(char32_t unit) noexcept {
    return unit == U' ' || unit == U'\t' || unit == U'\r' || unit == U'\n';
}
constexpr bool isAsciiDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}
constexpr char16_t asciiLower(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
constexpr bool isAsciiLetter(char16_t unit) noexcept {
    return asciiLower(unit) >= u'a' && asciiLower(unit) <= u'z';
}
constexpr bool isAsciiAlnum(char16_t unit) noexcept {
    return isAsciiDigit(unit) || isAsciiLetter(unit);
}
constexpr bool isLineEnd(char16_t unit) noexcept {
    return unit == u'\r' || unit == u'\n';
}

/// How many units the line end at `offset` has: 2 for CRLF, 1 for a CR or LF alone, 0 where there is none.
constexpr std::size_t lineEndLength(std::u16string_view text, std::size_t offset) noexcept {
    if (offset >= text.size() || !isLineEnd(text[offset])) return 0;
    return text[offset] == u'\r' && offset + 1 < text.size() && text[offset + 1] == u'\n' ? 2 : 1;
}

/// How many units the character at `offset` has: 2 for a surrogate pair. `offset` lies in the text.
constexpr std::size_t characterLength(std::u16string_view text, std::size_t offset) noexcept {
    return isHighSurrogate(text[offset]) && offset + 1 < text.size() && isLowSurrogate(text[offset + 1]) ? 2 : 1;
}

}  // namespace lorvane::html
