#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Variant.h"

/// Pure text functions with the meaning of the platform's run-time library.
///
/// Positions count UTF-16 code units from 1; 0 means "not there". Case-insensitive comparison folds code unit by code unit over the basic plane with fixed
/// one-to-one tables, so offsets never move.
namespace lorvane::host {

enum class Compare { Binary, IgnoreCase };

inline constexpr std::u16string_view CrLf = u"\r\n";

/// Position of the first `sought` at or behind `start`. Empty `sought` gives `start` (0 where `start` lies behind the end). `start` below 1 is error 5.
std::size_t InStr(std::size_t start, std::u16string_view text, std::u16string_view sought, Compare compare = Compare::Binary);
/// Position of the last `sought`, 0 where there is none.
std::size_t InStrRev(std::u16string_view text, std::u16string_view sought, Compare compare = Compare::Binary);
/// Every `sought` replaced in one pass from the left; what was put in is not looked at again. Empty `sought` gives the text. Linear in the text.
std::u16string Replace(std::u16string_view text, std::u16string_view sought, std::u16string_view replacement, Compare compare = Compare::Binary);
/// Without blanks (U+0020 only) at both ends.
std::u16string_view Trim(std::u16string_view text) noexcept;
std::u16string_view LTrim(std::u16string_view text) noexcept;
std::u16string_view RTrim(std::u16string_view text) noexcept;
/// The part from position `start` (from 1) of at most `length` units. `start` below 1 is error 5; behind the end gives "".
std::u16string_view Mid(std::u16string_view text, std::size_t start, std::size_t length = std::u16string_view::npos);
std::u16string_view Left(std::u16string_view text, std::size_t length) noexcept;
std::u16string_view Right(std::u16string_view text, std::size_t length) noexcept;
/// `count` blanks; a negative count is error 5.
std::u16string Space(std::ptrdiff_t count);
std::u16string StrReverse(std::u16string_view text);
std::u16string UCase(std::u16string_view text);
std::u16string LCase(std::u16string_view text);
char16_t upperUnit(char16_t unit) noexcept;  ///< one-to-one simple upper-case mapping
/// The fold that `IgnoreCase` compares by: one-to-one simple case folding (ẞ folds to ß, ß stays itself).
char16_t foldUnit(char16_t unit) noexcept;
/// -1, 0 or 1; code units as numbers, after folding with IgnoreCase.
int StrComp(std::u16string_view a, std::u16string_view b, Compare compare = Compare::Binary) noexcept;
bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;
/// The pieces between delimiters; an empty text gives no piece.
std::vector<std::u16string> Split(std::u16string_view text, std::u16string_view delimiter);
/// The number at the start of a text: blanks skipped, "." as decimal mark, stops at the first other character; "" is 0.
double Val(std::u16string_view text) noexcept;
/// A text read as a number by the rules of conversion (`CInt`, `CLng`); error 13 where it is none.
double numberFromText(std::u16string_view text);
/// Half to even.
double roundHalfEven(double value) noexcept;

/// UTF-8 to UTF-16; each malformed sequence becomes U+FFFD.
std::u16string fromUtf8(std::string_view utf8);
/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view text);
std::u16string decimal(std::int64_t value);

}  // namespace lorvane::host
