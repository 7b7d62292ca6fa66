// The readings of dates that Locale.h declares; its writings are in Locale.cpp.

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

[[noreturn]] void raiseTypeMismatch() {
    throw HostError(runtime_error::TypeMismatch);
}

constexpr bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

int daysIn(int year, int month) noexcept {
    constexpr std::array lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return lengths[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
}

bool isDate(int year, int month, int day) noexcept {
    return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= daysIn(year, month);
}

/// A piece of a date's text: a number, a word, or a single mark.
struct Piece {
    enum class Kind { Number, Word, Mark };
    Kind kind;
    std::u16string_view text;
    int value = 0;
    bool isMark(char16_t mark) const noexcept { return kind == Kind::Mark && text[0] == mark; }
};

std::vector<Piece> piecesOf(std::u16string_view text) {
    std::vector<Piece> pieces;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (text[at] == u' ') {
            ++at;
        } else if (isDigit(text[at])) {
            int value = 0;
            for (; at < text.size() && isDigit(text[at]); ++at) value = std::min(value * 10 + (text[at] - u'0'), 100000);
            pieces.push_back({Piece::Kind::Number, text.substr(start, at - start), value});
        } else if (std::u16string_view(u"/-.,:").find(text[at]) != std::u16string_view::npos) {
            pieces.push_back({Piece::Kind::Mark, text.substr(at++, 1)});
        } else {
            while (at < text.size() && !isDigit(text[at]) && std::u16string_view(u" /-.,:").find(text[at]) == std::u16string_view::npos) ++at;
            pieces.push_back({Piece::Kind::Word, text.substr(start, at - start)});
        }
    }
    return pieces;
}

class Reader {
public:
    Reader(std::u16string_view text, const Locale& locale) : locale_(locale), pieces_(piecesOf(text)) {}

    DateTime read() {
        const bool timed = takeTime();
        if (pieces_.empty()) {
            if (!timed) raiseTypeMismatch();
        } else {
            readDate();
        }
        return dateTimeFrom(fields_);
    }

private:
    using Kind = Piece::Kind;

    bool numberAt(std::size_t at) const noexcept { return at < pieces_.size() && pieces_[at].kind == Kind::Number; }

    /// 0 in the forenoon, 12 in the afternoon; empty where the piece says neither.
    std::optional<int> halfDayAt(std::size_t at) const noexcept {
        if (at >= pieces_.size() || pieces_[at].kind != Kind::Word) return std::nullopt;
        const auto says = [word = pieces_[at].text](std::u16string_view mark) { return !mark.empty() && equalsIgnoreCase(word, mark); };
        if (says(u"AM") || says(u"A") || says(locale_.amText)) return 0;
        if (says(u"PM") || says(u"P") || says(locale_.pmText)) return 12;
        return std::nullopt;
    }

    /// Takes the time of day out of the pieces: "17:04", "5:04:23 PM", "5 PM".
    bool takeTime() {
        std::size_t first = 0;
        while (first < pieces_.size() && !(numberAt(first) && ((first + 1 < pieces_.size() && pieces_[first + 1].isMark(u':')) || halfDayAt(first + 1))))
            ++first;
        if (first == pieces_.size()) return false;
        std::size_t end = first + 1;
        int* const parts[] = {&fields_.hour, &fields_.minute, &fields_.second};
        fields_.hour = pieces_[first].value;
        for (std::size_t part = 1; part < 3 && end < pieces_.size() && pieces_[end].isMark(u':'); ++part) {
            if (!numberAt(end + 1) || pieces_[end + 1].value > 59) raiseTypeMismatch();
            *parts[part] = pieces_[end + 1].value;
            end += 2;
        }
        if (const std::optional<int> half = halfDayAt(end)) {
            if (fields_.hour > 12) raiseTypeMismatch();
            fields_.hour = fields_.hour % 12 + *half;
            ++end;
        }
        if (fields_.hour > 23) raiseTypeMismatch();
        pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(first), pieces_.begin() + static_cast<std::ptrdiff_t>(end));
        return true;
    }

    std::optional<int> monthNamed(std::u16string_view word) const noexcept {
        for (int month = 1; month <= 12; ++month) {
            const auto index = static_cast<std::size_t>(month - 1);
            if (equalsIgnoreCase(word, locale_.months[index]) || equalsIgnoreCase(word, locale_.monthsShort[index])) return month;
        }
        return std::nullopt;
    }

    /// Numbers in their order, parted by single marks or blanks; the month's name is kept apart.
    void readDate() {
        std::vector<Piece> numbers;
        std::optional<int> month;
        bool behindMark = true;
        for (const Piece& piece : pieces_) {
            if (piece.kind == Kind::Mark) {
                // "27. January": a mark never stands first, nor behind another.
                if (behindMark || piece.isMark(u':')) raiseTypeMismatch();
                behindMark = true;
                continue;
            }
            behindMark = false;
            if (piece.kind == Kind::Number) {
                numbers.push_back(piece);
                continue;
            }
            if (month || !(month = monthNamed(piece.text))) raiseTypeMismatch();
        }
        if (behindMark || numbers.size() != (month ? 2u : 3u)) raiseTypeMismatch();
        if (month) {
            if (!setDate(numbers[1], *month, numbers[0]) && !setDate(numbers[0], *month, numbers[1])) raiseTypeMismatch();
            return;
        }
        if (setDateInOrder(numbers, orderOfLocale())) return;
        for (const std::u16string_view order : {u"mdy", u"dmy", u"ymd", u"ydm"}) {
            if (setDateInOrder(numbers, order)) return;
        }
        raiseTypeMismatch();
    }

    /// "mdy", "dmy" or "ymd", as the short date writes them.
    std::u16string orderOfLocale() const {
        std::u16string order;
        for (const char16_t unit : locale_.shortDate) {
            const char16_t letter = foldUnit(unit);
            if ((letter == u'd' || letter == u'm' || letter == u'y') && order.find(letter) == std::u16string::npos) order += letter;
        }
        return order.size() == 3 ? order : u"mdy";
    }

    bool setDateInOrder(const std::vector<Piece>& numbers, std::u16string_view order) {
        const Piece& month = numbers[order.find(u'm')];
        return month.text.size() <= 2 && setDate(numbers[order.find(u'y')], month.value, numbers[order.find(u'd')]);
    }

    bool setDate(const Piece& yearPiece, int month, const Piece& day) {
        int year = yearPiece.value;
        if (yearPiece.text.size() <= 2) year += year < 30 ? 2000 : 1900;
        if (day.text.size() > 2 || !isDate(year, month, day.value)) return false;
        fields_.year = year;
        fields_.month = month;
        fields_.day = day.value;
        return true;
    }

    const Locale& locale_;
    std::vector<Piece> pieces_;
    CalendarFields fields_;
};

/// Whether the whole text is a count of days; a decimal mark that also parts dates makes none.
bool isCount(std::u16string_view text, const Locale& locale) noexcept {
    std::size_t at = !text.empty() && text[0] == u'-' ? 1 : 0;
    if (at == text.size()) return false;
    bool marked = locale.dateSeparator == u".";
    for (; at < text.size(); ++at) {
        if (text[at] == u'.' && !marked) {
            marked = true;
        } else if (!isDigit(text[at])) {
            return false;
        }
    }
    return true;
}

}  // namespace

DateTime dateTimeFromIso(std::u16string_view text) {
    constexpr std::u16string_view shape = u"0000-00-00T00:00:00";
    if (text.size() != 10 && text.size() != 16 && text.size() != 19) raiseTypeMismatch();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (shape[at] == u'0' ? !isDigit(text[at]) : text[at] != shape[at]) raiseTypeMismatch();
    }
    const auto number = [text](std::size_t at, std::size_t length) {
        int value = 0;
        for (const char16_t digit : at < text.size() ? text.substr(at, length) : std::u16string_view()) value = value * 10 + (digit - u'0');
        return value;
    };
    const CalendarFields fields{number(0, 4), number(5, 2), number(8, 2), number(11, 2), number(14, 2), number(17, 2)};
    if (!isDate(fields.year, fields.month, fields.day) || fields.hour > 23 || fields.minute > 59 || fields.second > 59) raiseTypeMismatch();
    return dateTimeFrom(fields);
}

DateTime dateTimeFromText(std::u16string_view text, const Locale& locale) {
    text = Trim(text);
    if (isCount(text, locale)) {
        const double days = numberFromText(text);
        if (!(days > -657435 && days < 2958466)) raiseTypeMismatch();
        return DateTime{days};
    }
    std::u16string plain(text);
    // The ISO form's "T" would be a word.
    if (plain.size() > 11 && plain[4] == u'-' && plain[10] == u'T') plain[10] = u' ';
    if (locale.timeSeparator != u":" && !locale.timeSeparator.empty() && locale.timeSeparator != locale.dateSeparator) {
        plain = Replace(plain, locale.timeSeparator, u":");
    }
    return Reader(plain, locale).read();
}

}  // namespace lorvane::host
