#pragma once

#include <array>
#include <string>
#include <string_view>

#include "host/Object.h"

/// Dates as text, by the patterns of a locale value. Pure: no clock, no host.
namespace lorvane::host {

struct CalendarFields {
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
    bool operator==(const CalendarFields&) const = default;
};

/// Years 100 to 9999; error 5 outside. Seconds are rounded to the nearest.
CalendarFields calendarFields(DateTime moment);
/// Months, days, hours, minutes and seconds beyond their range roll over; error 5 where the result lies outside the years.
DateTime dateTimeFrom(const CalendarFields& fields);
int weekday(DateTime moment);  ///< 1 Sunday … 7 Saturday
/// "2028-01-10T09:00", with or without seconds, or a date alone; error 13 otherwise.
DateTime dateTimeFromIso(std::u16string_view text);
std::u16string isoText(DateTime moment);  ///< "2028-01-10T09:00:00"

/// How a user's region writes dates and times, and the names of its months and days.
struct Locale {
    std::u16string name;                                      ///< "en-US"
    std::u16string shortDate, longDate, longTime, shortTime;  ///< patterns of `Format`: d dd ddd dddd M… as d/m/y/h/n/s tokens
    std::u16string dateSeparator, timeSeparator, amText, pmText;
    std::array<std::u16string, 12> months, monthsShort;
    std::array<std::u16string, 7> days, daysShort;  ///< from Sunday
    std::u16string decimalMark;
};

/// Formats by a pattern of the run-time's date formatter ("dd-mmm-yyyy", "hh:nn AM/PM"): tokens in any case, "/" and ":" by the locale, "m" behind "h" is
/// minutes, quoted and backslashed text literal.
std::u16string Format(DateTime moment, std::u16string_view pattern, const Locale& locale);

enum class DateStyle { General = 0, LongDate = 1, ShortDate = 2, LongTime = 3, ShortTime = 4 };
std::u16string FormatDateTime(DateTime moment, DateStyle style, const Locale& locale);

/// A date, a time or both as a user of the locale writes them, also in ISO form or as a count of days. Where the locale's order of day, month and year makes no
/// date, the other orders are tried; years of two digits are 1930 to 2029. Error 13 where it is none, where a weekday is named or the year is left out.
DateTime dateTimeFromText(std::u16string_view text, const Locale& locale);

/// The built-in patterns of a region, with English names for regions whose names the platform must add, in any case. Known: en-US, en-GB, de-DE; another name
/// gives en-US's.
const Locale& knownLocale(std::u16string_view name);

}  // namespace lorvane::host
