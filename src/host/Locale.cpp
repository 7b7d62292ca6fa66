#include "host/Locale.h"

#include <algorithm>
#include <cmath>

#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

constexpr int secondsOfDay = 86400;
constexpr std::int64_t firstDay = -657434;  // 0100-01-01
constexpr std::int64_t lastDay = 2958465;   // 9999-12-31
constexpr std::int64_t unixEpoch = 25569;   // 1970-01-01

/// A moment as whole days and seconds of the day.
struct Moment {
    std::int64_t day;
    int second;
};

[[noreturn]] void raiseInvalidCall() {
    throw HostError(runtime_error::InvalidProcedureCall);
}

/// The time of day is the size of the fraction, also in front of day 0: -1.25 is a day before it at six.
Moment momentOf(DateTime value) {
    if (!(value.days > firstDay - 1.0 && value.days < lastDay + 1.0)) raiseInvalidCall();
    const double whole = std::trunc(value.days);
    Moment moment{static_cast<std::int64_t>(whole), static_cast<int>(std::lround(std::fabs(value.days - whole) * secondsOfDay))};
    if (moment.second == secondsOfDay) moment = {moment.day + 1, 0};
    if (moment.day > lastDay) raiseInvalidCall();
    return moment;
}

DateTime dateTimeOf(Moment moment) {
    if (moment.day < firstDay || moment.day > lastDay) raiseInvalidCall();
    const double time = static_cast<double>(moment.second) / secondsOfDay;
    const auto day = static_cast<double>(moment.day);
    return DateTime{day < 0 ? day - time : day + time};
}

std::int64_t floorDivide(std::int64_t value, std::int64_t by) noexcept {
    return value / by - (value % by < 0 ? 1 : 0);
}

/// Days of the Gregorian calendar, counted in eras of 400 years that begin on a first of March.
std::int64_t dayOf(std::int64_t year, int month, std::int64_t day) noexcept {
    if (month <= 2) --year;
    const std::int64_t era = floorDivide(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468 + unixEpoch;
}

void setDate(CalendarFields& fields, std::int64_t day) noexcept {
    const std::int64_t count = day - unixEpoch + 719468;
    const std::int64_t era = floorDivide(count, 146097);
    const std::int64_t dayOfEra = count - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    fields.day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    fields.month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    fields.year = static_cast<int>(yearOfEra + era * 400 + (fields.month <= 2 ? 1 : 0));
}

int weekdayOfDay(std::int64_t day) noexcept {
    return static_cast<int>((day + 6) - floorDivide(day + 6, 7) * 7) + 1;
}

void appendPadded(std::u16string& text, int value, std::size_t width) {
    const std::u16string digits = decimal(value);
    if (digits.size() < width) text.append(width - digits.size(), u'0');
    text += digits;
}

char16_t lowered(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

bool startsWith(std::u16string_view text, std::u16string_view lowerCase) noexcept {
    return text.size() >= lowerCase.size() && equalsIgnoreCase(text.substr(0, lowerCase.size()), lowerCase);
}

/// The marks of forenoon and afternoon that a pattern may hold, the longest first.
constexpr std::u16string_view halfDayTokens[] = {u"am/pm", u"ampm", u"a/p"};

/// The half-day mark at the start of `pattern`; empty where there is none.
std::u16string_view halfDayToken(std::u16string_view pattern) noexcept {
    for (const std::u16string_view token : halfDayTokens) {
        if (startsWith(pattern, token)) return pattern.substr(0, token.size());
    }
    return {};
}

/// Text in quotes and behind a backslash is passed over.
std::size_t behindLiteral(std::u16string_view pattern, std::size_t at) noexcept {
    if (pattern[at] == u'\\') return std::min(at + 2, pattern.size());
    const std::size_t end = pattern.find(u'"', at + 1);
    return end == std::u16string_view::npos ? pattern.size() : end + 1;
}

bool showsHalfDay(std::u16string_view pattern) noexcept {
    for (std::size_t at = 0; at < pattern.size();) {
        if (pattern[at] == u'"' || pattern[at] == u'\\') {
            at = behindLiteral(pattern, at);
        } else if (!halfDayToken(pattern.substr(at)).empty()) {
            return true;
        } else {
            ++at;
        }
    }
    return false;
}

/// One run of `Format`: the pattern is read from the left, a token at a time.
class Formatter {
public:
    Formatter(DateTime moment, const Locale& locale) : value_(moment), locale_(locale), moment_(momentOf(moment)), fields_(calendarFields(moment)) {}

    std::u16string format(std::u16string_view pattern) {
        const bool twelveHours = showsHalfDay(pattern);
        for (std::size_t at = 0; at < pattern.size();) {
            if (pattern[at] == u'"' || pattern[at] == u'\\') {
                const std::size_t end = behindLiteral(pattern, at);
                const std::size_t closing = pattern[at] == u'"' && end > at + 1 && pattern[end - 1] == u'"' ? 1 : 0;
                text_.append(pattern.substr(at + 1, end - at - 1 - closing));
                at = end;
                continue;
            }
            if (const std::u16string_view token = halfDayToken(pattern.substr(at)); !token.empty()) {
                appendHalfDay(token);
                at += token.size();
                continue;
            }
            const std::size_t count =
                std::min(pattern.find_first_not_of(std::u16string{lowered(pattern[at]), upperUnit(pattern[at])}, at), pattern.size()) - at;
            at += appendToken(pattern[at], count, twelveHours);
        }
        return std::move(text_);
    }

private:
    /// Gives the number of units used up.
    std::size_t appendToken(char16_t letter, std::size_t count, bool twelveHours) {
        const char16_t kind = lowered(letter);
        const bool minutes = kind == u'm' && behindHour_ && count <= 2;
        if (std::u16string_view(u"dmyhnswqct").find(kind) != std::u16string_view::npos) behindHour_ = kind == u'h';
        if (minutes) return appendNumber(fields_.minute, count);
        switch (kind) {
            case u'd':
                return appendDay(count);
            case u'm':
                return appendMonth(count);
            case u'y':
                return appendYear(count);
            case u'h':
                return appendNumber(twelveHours ? (fields_.hour + 11) % 12 + 1 : fields_.hour, count);
            case u'n':
                return appendNumber(fields_.minute, count);
            case u's':
                return appendNumber(fields_.second, count);
            case u'w':
                return appendWeek(count);
            case u'q':
                text_ += decimal((fields_.month + 2) / 3);
                return 1;
            case u'c':
                text_ += FormatDateTime(value_, DateStyle::General, locale_);
                return 1;
            case u't':
                if (count < 5) break;
                text_ += Formatter(value_, locale_).format(locale_.longTime);
                return 5;
            case u'/':
                text_ += locale_.dateSeparator;
                return 1;
            case u':':
                text_ += locale_.timeSeparator;
                return 1;
            default:
                break;
        }
        text_ += letter;
        return 1;
    }

    std::size_t appendNumber(int value, std::size_t count) {
        const std::size_t width = std::min<std::size_t>(count, 2);
        appendPadded(text_, value, width);
        return width;
    }

    std::size_t appendDay(std::size_t count) {
        if (count <= 2) return appendNumber(fields_.day, count);
        const auto index = static_cast<std::size_t>(weekdayOfDay(moment_.day) - 1);
        if (count == 3) text_ += locale_.daysShort[index];
        if (count == 4) text_ += locale_.days[index];
        if (count == 5) text_ += Formatter(value_, locale_).format(locale_.shortDate);
        if (count >= 6) text_ += Formatter(value_, locale_).format(locale_.longDate);
        return std::min<std::size_t>(count, 6);
    }

    std::size_t appendMonth(std::size_t count) {
        if (count <= 2) return appendNumber(fields_.month, count);
        const auto index = static_cast<std::size_t>(fields_.month - 1);
        text_ += count == 3 ? locale_.monthsShort[index] : locale_.months[index];
        return std::min<std::size_t>(count, 4);
    }

    std::size_t appendYear(std::size_t count) {
        if (count == 1) {
            text_ += decimal(dayOfYear());
            return 1;
        }
        if (count == 2) {
            appendPadded(text_, fields_.year % 100, 2);
            return 2;
        }
        appendPadded(text_, fields_.year, 4);
        return std::min<std::size_t>(count, 4);
    }

    std::size_t appendWeek(std::size_t count) {
        if (count == 1) {
            text_ += decimal(weekdayOfDay(moment_.day));
            return 1;
        }
        // Weeks begin on Sunday, and the first holds the first of January.
        const int firstWeekday = weekdayOfDay(dayOf(fields_.year, 1, 1));
        text_ += decimal((dayOfYear() + firstWeekday - 2) / 7 + 1);
        return 2;
    }

    int dayOfYear() const { return static_cast<int>(moment_.day - dayOf(fields_.year, 1, 1)) + 1; }

    /// "AM/PM" is written as it stands, whatever the locale; "AMPM" is the locale's.
    void appendHalfDay(std::u16string_view token) {
        const bool afternoon = fields_.hour >= 12;
        if (token.size() == 4) {
            text_ += afternoon ? locale_.pmText : locale_.amText;
        } else {
            const std::size_t half = token.size() / 2;
            text_ += afternoon ? token.substr(half + 1) : token.substr(0, half);
        }
    }

    DateTime value_;
    const Locale& locale_;
    Moment moment_;
    CalendarFields fields_;
    std::u16string text_;
    bool behindHour_ = false;
};

}  // namespace

CalendarFields calendarFields(DateTime moment) {
    const Moment parts = momentOf(moment);
    CalendarFields fields;
    setDate(fields, parts.day);
    fields.hour = parts.second / 3600;
    fields.minute = parts.second / 60 % 60;
    fields.second = parts.second % 60;
    return fields;
}

DateTime dateTimeFrom(const CalendarFields& fields) {
    const std::int64_t months = std::int64_t{fields.year} * 12 + fields.month - 1;
    const std::int64_t year = floorDivide(months, 12);
    const std::int64_t day = dayOf(year, static_cast<int>(months - year * 12) + 1, fields.day);
    const std::int64_t seconds = std::int64_t{fields.hour} * 3600 + std::int64_t{fields.minute} * 60 + fields.second;
    const std::int64_t days = floorDivide(seconds, secondsOfDay);
    return dateTimeOf({day + days, static_cast<int>(seconds - days * secondsOfDay)});
}

int weekday(DateTime moment) {
    return weekdayOfDay(momentOf(moment).day);
}

std::u16string isoText(DateTime moment) {
    return Format(moment, u"yyyy-mm-dd\\Thh\\:nn\\:ss", knownLocale(u"en-US"));
}

std::u16string Format(DateTime moment, std::u16string_view pattern, const Locale& locale) {
    return Formatter(moment, locale).format(pattern);
}

std::u16string FormatDateTime(DateTime moment, DateStyle style, const Locale& locale) {
    switch (style) {
        case DateStyle::LongDate:
            return Format(moment, locale.longDate, locale);
        case DateStyle::ShortDate:
            return Format(moment, locale.shortDate, locale);
        case DateStyle::LongTime:
            return Format(moment, locale.longTime, locale);
        case DateStyle::ShortTime:
            return Format(moment, u"hh:nn", locale);
        case DateStyle::General:
            break;
        default:
            raiseInvalidCall();
    }
    const Moment parts = momentOf(moment);
    if (parts.day == 0) return Format(moment, locale.longTime, locale);
    std::u16string text = Format(moment, locale.shortDate, locale);
    if (parts.second != 0) text.append(u" ").append(Format(moment, locale.longTime, locale));
    return text;
}

const Locale& knownLocale(std::u16string_view name) {
    static const Locale american{
        .name = u"en-US",
        .shortDate = u"m/d/yyyy",
        .longDate = u"dddd, mmmm d, yyyy",
        .longTime = u"h:nn:ss AMPM",
        .shortTime = u"h:nn AMPM",
        .dateSeparator = u"/",
        .timeSeparator = u":",
        .amText = u"AM",
        .pmText = u"PM",
        .months = {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August", u"September", u"October", u"November", u"December"},
        .monthsShort = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"},
        .days = {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"},
        .daysShort = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"},
        .decimalMark = u".",
    };
    static const Locale british = [] {
        Locale locale = american;
        locale.name = u"en-GB";
        locale.shortDate = u"dd/mm/yyyy";
        // With the day's name: dates are shown with its first letters.
        locale.longDate = u"dddd, d mmmm yyyy";
        locale.longTime = u"hh:nn:ss";
        locale.shortTime = u"hh:nn";
        return locale;
    }();
    static const Locale german{
        .name = u"de-DE",
        .shortDate = u"dd/mm/yyyy",
        .longDate = u"dddd, d. mmmm yyyy",
        .longTime = u"hh:nn:ss",
        .shortTime = u"hh:nn",
        .dateSeparator = u".",
        .timeSeparator = u":",
        .amText = u"",
        .pmText = u"",
        .months = {u"Januar", u"Februar", u"März", u"April", u"Mai", u"Juni", u"Juli", u"August", u"September", u"Oktober", u"November", u"Dezember"},
        .monthsShort = {u"Jan", u"Feb", u"Mrz", u"Apr", u"Mai", u"Jun", u"Jul", u"Aug", u"Sep", u"Okt", u"Nov", u"Dez"},
        .days = {u"Sonntag", u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag"},
        .daysShort = {u"So", u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa"},
        .decimalMark = u",",
    };
    if (equalsIgnoreCase(name, german.name)) return german;
    return equalsIgnoreCase(name, british.name) ? british : american;
}

}  // namespace lorvane::host
