#include "host/TextFunctions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/CaseTables.h"

namespace lorvane::host {

namespace {

using case_tables::folded;

bool sameUnits(const char16_t* a, const char16_t* b, std::size_t length, Compare compare) noexcept {
    if (compare == Compare::Binary) return std::equal(a, a + length, b);
    for (std::size_t i = 0; i < length; ++i) {
        if (a[i] != b[i] && folded(a[i]) != folded(b[i])) return false;
    }
    return true;
}

/// How often a unit is met in mail text and HTML, roughly: what is rare is looked for first.
int frequency(char16_t unit) noexcept {
    constexpr std::u16string_view fromFrequent = u" etaoinsrhldcumpfgybwvk<>=\"/-.:;,\r\n0123456789\t&'xjqz";
    const std::size_t rank = fromFrequent.find(folded(unit));
    return rank == std::u16string_view::npos ? 0 : static_cast<int>(fromFrequent.size() - rank);
}

/// The units that one unit of a sought text matches: itself, or all that fold alike.
class Forms {
public:
    Forms() noexcept = default;
    Forms(char16_t unit, Compare compare) noexcept {
        units_.fill(unit);
        if (compare == Compare::Binary) return;
        const char16_t letter = folded(unit);
        units_.fill(letter);
        units_[1] = case_tables::upper(letter);
        const auto further = std::ranges::equal_range(case_tables::furtherForms, letter, {}, &case_tables::FurtherForm::folded);
        for (std::size_t i = 0; i < further.size(); ++i) units_[2 + i] = further[i].unit;
        pair_ = further.empty();
    }

    bool hold(char16_t unit) const noexcept { return unit == units_[0] || unit == units_[1] || unit == units_[2] || unit == units_[3]; }

    /// Sets each of a block's marks to all ones where the unit is held, else to 0. Written for the compiler to make vector code of it.
    template <std::size_t Block>
    void mark(const char16_t* units, std::array<std::uint16_t, Block>& marks) const noexcept {
        const auto [a, b, c, d] = units_;
        if (pair_) {
            for (std::size_t i = 0; i < Block; ++i) marks[i] = units[i] == a || units[i] == b ? 0xFFFF : 0;
        } else {
            for (std::size_t i = 0; i < Block; ++i) {
                marks[i] = static_cast<std::uint16_t>((units[i] == a ? 0xFFFF : 0) | (units[i] == b ? 0xFFFF : 0) | (units[i] == c ? 0xFFFF : 0) |
                                                      (units[i] == d ? 0xFFFF : 0));
            }
        }
    }

private:
    std::array<char16_t, 4> units_{};
    bool pair_ = true;  ///< the last two say nothing new
};

/// Looks for one text in others: block by block for its rarest unit, then for another one at its distance, and only then for the whole.
class Searcher {
public:
    /// `sought` is not empty and outlives the searcher.
    Searcher(std::u16string_view sought, Compare compare) noexcept : sought_(sought), compare_(compare) {
        for (std::size_t i = 1; i < sought.size(); ++i) {
            if (frequency(sought[i]) < frequency(sought[first_])) first_ = i;
        }
        // A text of one letter over and over must not make every place of such a run a candidate: the second unit is another one where there is any.
        second_ = first_ == 0 ? sought.size() - 1 : 0;
        for (std::size_t i = 0; i < sought.size(); ++i) {
            if (folded(sought[i]) == folded(sought[first_])) continue;
            if (folded(sought[second_]) == folded(sought[first_]) || frequency(sought[i]) < frequency(sought[second_])) second_ = i;
        }
        firstForms_ = Forms(sought[first_], compare);
        secondForms_ = Forms(sought[second_], compare);
    }

    /// Offset of the first match at or behind offset `from`; npos where there is none.
    std::size_t find(std::u16string_view text, std::size_t from) const noexcept {
        if (text.size() < sought_.size() || from > text.size() - sought_.size()) return std::u16string_view::npos;
        const std::size_t starts = text.size() - sought_.size() + 1;
        std::size_t at = from;
        for (; at + block <= starts; at += block) {
            Marks first;
            firstForms_.mark(text.data() + at + first_, first);
            if (!any(first)) continue;
            Marks second;
            secondForms_.mark(text.data() + at + second_, second);
            for (std::size_t i = 0; i < block; ++i) second[i] &= first[i];
            if (!any(second)) continue;
            for (std::size_t i = 0; i < block; ++i) {
                if (second[i] != 0 && matches(text, at + i)) return at + i;
            }
        }
        for (; at < starts; ++at) {
            if (firstForms_.hold(text[at + first_]) && secondForms_.hold(text[at + second_]) && matches(text, at)) return at;
        }
        return std::u16string_view::npos;
    }

private:
    static constexpr std::size_t block = 32;
    using Marks = std::array<std::uint16_t, block>;

    static bool any(const Marks& marks) noexcept {
        std::uint16_t all = 0;
        for (const std::uint16_t mark : marks) all |= mark;
        return all != 0;
    }

    bool matches(std::u16string_view text, std::size_t at) const noexcept { return sameUnits(text.data() + at, sought_.data(), sought_.size(), compare_); }

    std::u16string_view sought_;
    Compare compare_;
    std::size_t first_ = 0, second_ = 0;
    Forms firstForms_, secondForms_;
};

[[noreturn]] void raiseInvalidCall() {
    throw HostError(runtime_error::InvalidProcedureCall);
}

/// What a unit is in a number: ASCII as it is, "?" for any other.
char numberCharacter(char16_t unit) noexcept {
    return unit < 0x80 ? static_cast<char>(unit) : '?';
}

/// 16 behind "&H", 8 behind "&O", else 0.
unsigned baseOfPrefix(std::string_view number) noexcept {
    if (number.size() < 2 || number[0] != '&') return 0;
    if (number[1] == 'H' || number[1] == 'h') return 16;
    return number[1] == 'O' || number[1] == 'o' ? 8 : 0;
}

/// Hexadecimal or octal digits, read as far as they go.
struct Whole {
    double value = 0;
    std::size_t length = 0;
};

Whole readWhole(std::string_view digits, unsigned base) noexcept {
    Whole read;
    for (const char character : digits) {
        unsigned digit = base;
        if (character >= '0' && character <= '9') digit = static_cast<unsigned>(character - '0');
        if (character >= 'A' && character <= 'F') digit = static_cast<unsigned>(character - 'A') + 10;
        if (character >= 'a' && character <= 'f') digit = static_cast<unsigned>(character - 'a') + 10;
        if (digit >= base) break;
        read.value = read.value * base + digit;
        ++read.length;
    }
    return read;
}

/// What fills 32 bits is a signed number of 32 bits.
double signedLong(double value) noexcept {
    return value >= 2147483648.0 && value <= 4294967295.0 ? value - 4294967296.0 : value;
}

/// A decimal number in ASCII without blanks: digits, mark, digits, exponent. Reads as far as it goes.
struct Decimal {
    double value = 0;
    std::size_t length = 0;  ///< 0 where no digit was met
};

std::size_t digitsFrom(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    return at;
}

Decimal readDecimal(std::string_view text) noexcept {
    std::size_t end = digitsFrom(text, 0);
    std::size_t digits = end;
    if (end < text.size() && text[end] == '.') {
        const std::size_t behind = digitsFrom(text, end + 1);
        digits += behind - end - 1;
        end = behind;
    }
    if (digits == 0) return {};
    double value = 0;
    if (std::from_chars(text.data(), text.data() + end, value).ec == std::errc::result_out_of_range) {
        const bool fraction = text[text.find_first_not_of('0')] == '.';
        value = fraction ? 0 : std::numeric_limits<double>::infinity();
    }
    if (end == text.size() || std::string_view("eEdD").find(text[end]) == std::string_view::npos) return {value, end};

    std::size_t exponentStart = end + 1;
    const bool negative = exponentStart < text.size() && text[exponentStart] == '-';
    if (exponentStart < text.size() && (negative || text[exponentStart] == '+')) ++exponentStart;
    const std::size_t behind = digitsFrom(text, exponentStart);
    if (behind == exponentStart) return {value, end};
    // The exponent may be marked "D", which the library does not know: it is given an exponent of its own, bounded by what a number can have.
    std::array<char, 512> written;
    if (end > written.size() - 8) return {value, end};
    int exponent = 9999;
    std::from_chars(text.data() + exponentStart, text.data() + behind, exponent);
    exponent = std::min(exponent, 9999);
    std::copy_n(text.data(), end, written.data());
    written[end] = 'e';
    char* const stop = std::to_chars(written.data() + end + 1, written.data() + written.size(), negative ? -exponent : exponent).ptr;
    if (std::from_chars(written.data(), stop, value).ec == std::errc::result_out_of_range) {
        if (negative) return {0, behind};
        return {std::numeric_limits<double>::infinity(), behind};
    }
    return {value, behind};
}

constexpr std::u16string_view blanks = u" \t\n\r\u00A0";

}  // namespace

std::size_t InStr(std::size_t start, std::u16string_view text, std::u16string_view sought, Compare compare) {
    if (start < 1) raiseInvalidCall();
    if (start > text.size()) return 0;
    if (sought.empty()) return start;
    const std::size_t found = Searcher(sought, compare).find(text, start - 1);
    return found == std::u16string_view::npos ? 0 : found + 1;
}

std::size_t InStrRev(std::u16string_view text, std::u16string_view sought, Compare compare) {
    if (sought.empty()) return text.size();
    if (sought.size() > text.size()) return 0;
    for (std::size_t position = text.size() - sought.size() + 1; position > 0; --position) {
        if (sameUnits(text.data() + position - 1, sought.data(), sought.size(), compare)) return position;
    }
    return 0;
}

std::u16string Replace(std::u16string_view text, std::u16string_view sought, std::u16string_view replacement, Compare compare) {
    if (sought.empty()) return std::u16string(text);
    const Searcher searcher(sought, compare);
    std::u16string result;
    result.reserve(text.size());
    std::size_t done = 0;
    for (std::size_t found = searcher.find(text, 0); found != std::u16string_view::npos; found = searcher.find(text, done)) {
        result.append(text, done, found - done).append(replacement);
        done = found + sought.size();
    }
    return result.append(text, done);
}

std::u16string_view Trim(std::u16string_view text) noexcept {
    return LTrim(RTrim(text));
}

std::u16string_view LTrim(std::u16string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    return text;
}

std::u16string_view RTrim(std::u16string_view text) noexcept {
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

std::u16string_view Mid(std::u16string_view text, std::size_t start, std::size_t length) {
    if (start < 1) raiseInvalidCall();
    return start > text.size() ? std::u16string_view() : text.substr(start - 1, length);
}

std::u16string_view Left(std::u16string_view text, std::size_t length) noexcept {
    return text.substr(0, length);
}

std::u16string_view Right(std::u16string_view text, std::size_t length) noexcept {
    return text.substr(text.size() - std::min(length, text.size()));
}

std::u16string Space(std::ptrdiff_t count) {
    if (count < 0) raiseInvalidCall();
    return std::u16string(static_cast<std::size_t>(count), u' ');
}

std::u16string StrReverse(std::u16string_view text) {
    return std::u16string(text.rbegin(), text.rend());
}

std::u16string UCase(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& unit : result) unit = upperUnit(unit);
    return result;
}

std::u16string LCase(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& unit : result) unit = case_tables::lower(unit);
    return result;
}

char16_t upperUnit(char16_t unit) noexcept {
    return case_tables::upper(unit);
}

char16_t foldUnit(char16_t unit) noexcept {
    return folded(unit);
}

int StrComp(std::u16string_view a, std::u16string_view b, Compare compare) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] == b[i]) continue;
        const char16_t left = compare == Compare::Binary ? a[i] : folded(a[i]);
        const char16_t right = compare == Compare::Binary ? b[i] : folded(b[i]);
        if (left != right) return left < right ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && sameUnits(a.data(), b.data(), a.size(), Compare::IgnoreCase);
}

std::vector<std::u16string> Split(std::u16string_view text, std::u16string_view delimiter) {
    std::vector<std::u16string> pieces;
    if (text.empty()) return pieces;
    std::size_t from = 0;
    if (!delimiter.empty()) {
        const Searcher searcher(delimiter, Compare::Binary);
        for (std::size_t at = searcher.find(text, 0); at != std::u16string_view::npos; at = searcher.find(text, from)) {
            pieces.emplace_back(text.substr(from, at - from));
            from = at + delimiter.size();
        }
    }
    pieces.emplace_back(text.substr(from));
    return pieces;
}

double Val(std::u16string_view text) noexcept {
    // A number of more characters than this is no number anybody wrote; what follows is left away.
    std::array<char, 400> kept;
    std::size_t length = 0;
    for (const char16_t unit : text) {
        if (unit == u' ' || unit == u'\t' || unit == u'\n') continue;
        if (length == kept.size()) break;
        kept[length++] = numberCharacter(unit);
    }
    std::string_view number(kept.data(), length);
    if (const unsigned base = baseOfPrefix(number); base != 0) {
        const Whole read = readWhole(number.substr(2), base);
        return read.value >= 0x8000 && read.value <= 0xFFFF && (base == 8 || read.length <= 4) ? read.value - 0x10000 : signedLong(read.value);
    }
    const bool negative = number.starts_with('-');
    if (negative || number.starts_with('+')) number.remove_prefix(1);
    const double value = std::min(readDecimal(number).value, std::numeric_limits<double>::max());
    return negative ? -value : value;
}

double numberFromText(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) throw HostError(runtime_error::TypeMismatch);
    text = text.substr(first, text.find_last_not_of(blanks) + 1 - first);
    const bool negative = text[0] == u'-';
    if (negative || text[0] == u'+') text = LTrim(text.substr(1));
    std::string number;
    bool whole = true;
    for (const char16_t unit : text) {
        // A group mark may stand anywhere behind the first digit and in front of the decimal mark.
        if (unit == u',' && whole && !number.empty()) continue;
        number += numberCharacter(unit);
        whole = whole && unit >= u'0' && unit <= u'9';
    }
    if (const unsigned base = baseOfPrefix(number); base != 0 && text[0] == u'&' && !negative) {
        const Whole read = readWhole(std::string_view(number).substr(2), base);
        if (read.length == 0 || read.length + 2 != number.size()) throw HostError(runtime_error::TypeMismatch);
        return signedLong(read.value);
    }
    const Decimal read = readDecimal(number);
    if (read.length == 0 || read.length != number.size()) throw HostError(runtime_error::TypeMismatch);
    if (std::isinf(read.value)) throw HostError(runtime_error::Overflow);
    return negative ? -read.value : read.value;
}

double roundHalfEven(double value) noexcept {
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest < 0.5) return below;
    if (rest > 0.5) return below + 1;
    // Only a finite number with a half gets here, or one that is no number.
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::u16string decimal(std::int64_t value) {
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return std::u16string(buffer.data(), end);
}

}  // namespace lorvane::host
