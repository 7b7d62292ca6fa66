#include "host/Locale.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/TextFunctions.h"

namespace lorvane::host {
namespace {

std::int32_t numberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostError& error) {
        return error.number();
    }
    return 0;
}

DateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return dateTimeFrom({year, month, day, hour, minute, second});
}

const Locale& american() {
    return knownLocale(u"en-US");
}
const Locale& british() {
    return knownLocale(u"en-GB");
}
const Locale& german() {
    return knownLocale(u"de-DE");
}

const DateTime moment = at(1993, 1, 27, 17, 4, 23);

TEST(CalendarFields, CountFromTheLastButOneDayOf1899) {
    EXPECT_EQ(calendarFields(DateTime{0}), (CalendarFields{1899, 12, 30, 0, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{2}), (CalendarFields{1900, 1, 1, 0, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{25569}), (CalendarFields{1970, 1, 1, 0, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{36585.5}), (CalendarFields{2000, 2, 29, 12, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{2958465}), (CalendarFields{9999, 12, 31, 0, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{-657434}), (CalendarFields{100, 1, 1, 0, 0, 0}));
}

TEST(CalendarFields, TheFractionIsTheTimeAlsoInFrontOfTheFirstDay) {
    EXPECT_EQ(calendarFields(DateTime{-1.25}), (CalendarFields{1899, 12, 29, 6, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{-0.25}), (CalendarFields{1899, 12, 30, 6, 0, 0}));
    EXPECT_EQ(dateTimeFrom({1899, 12, 29, 6, 0, 0}), DateTime{-1.25});
    EXPECT_EQ(dateTimeFrom({1899, 12, 30, 6, 0, 0}), DateTime{0.25});
}

TEST(CalendarFields, SecondsAreRounded) {
    EXPECT_EQ(calendarFields(DateTime{1.0 + 59.6 / 86400}).minute, 1);
    EXPECT_EQ(calendarFields(DateTime{33996.9999999}), (CalendarFields{1993, 1, 28, 0, 0, 0}));
    EXPECT_EQ(calendarFields(DateTime{-1.9999999}), (CalendarFields{1899, 12, 30, 0, 0, 0}));
}

TEST(CalendarFields, OtherYearsAreError5) {
    EXPECT_EQ(numberOf([] { calendarFields(DateTime{2958466}); }), 5);
    EXPECT_EQ(numberOf([] { calendarFields(DateTime{2958465.9999999}); }), 5);
    EXPECT_EQ(numberOf([] { calendarFields(DateTime{-657435}); }), 5);
    EXPECT_EQ(numberOf([] { calendarFields(DateTime{1e300}); }), 5);
    EXPECT_EQ(numberOf([] { calendarFields(DateTime{0.0 / 0.0}); }), 5);
    EXPECT_EQ(numberOf([] { at(10000, 1, 1); }), 5);
    EXPECT_EQ(numberOf([] { at(99, 12, 31); }), 5);
}

TEST(CalendarFields, EveryDayComesBack) {
    for (int day = -657434; day <= 2958465; day += 13) {
        const DateTime date{static_cast<double>(day)};
        ASSERT_EQ(dateTimeFrom(calendarFields(date)), date);
    }
}

TEST(DateTimeFrom, RollsOver) {
    EXPECT_EQ(at(2028, 13, 1), at(2029, 1, 1));
    EXPECT_EQ(at(2028, 0, 1), at(2027, 12, 1));
    EXPECT_EQ(at(2028, -1, 1), at(2027, 11, 1));
    EXPECT_EQ(at(2028, 2, 30), at(2028, 3, 1));
    EXPECT_EQ(at(2028, 3, 0), at(2028, 2, 29));
    EXPECT_EQ(at(2028, 1, 1, 24, 60, 60), at(2028, 1, 2, 1, 1, 0));
    EXPECT_EQ(at(2028, 1, 1, 0, 0, -1), at(2027, 12, 31, 23, 59, 59));
}

TEST(Weekday, CountsFromSunday) {
    EXPECT_EQ(weekday(at(1899, 12, 30)), 7);
    EXPECT_EQ(weekday(at(2028, 1, 9)), 1);
    EXPECT_EQ(weekday(at(2028, 1, 10, 23, 59)), 2);
    EXPECT_EQ(weekday(at(1993, 1, 27)), 4);
    EXPECT_EQ(weekday(at(1800, 1, 1, 12)), 4);
}

TEST(Iso, IsReadAndWritten) {
    EXPECT_EQ(dateTimeFromIso(u"2028-01-10T09:00"), at(2028, 1, 10, 9));
    EXPECT_EQ(dateTimeFromIso(u"2028-01-10T09:00:07"), at(2028, 1, 10, 9, 0, 7));
    EXPECT_EQ(dateTimeFromIso(u"2028-02-29"), at(2028, 2, 29));
    EXPECT_EQ(isoText(at(2028, 1, 10, 9)), u"2028-01-10T09:00:00");
    EXPECT_EQ(isoText(at(101, 2, 3, 4, 5, 6)), u"0101-02-03T04:05:06");
    EXPECT_EQ(isoText(DateTime{0}), u"1899-12-30T00:00:00");
}

TEST(Iso, AnythingElseIsError13) {
    for (const std::u16string_view text : {u"", u"2028", u"2028-1-10", u"2028-01-10 09:00", u"2028-01-10T9:00", u"2028-01-10T09", u"2028-13-01", u"2027-02-29",
                                           u"2028-00-10", u"2028-01-10T24:00", u"2028-01-10T09:60", u"2028-01-10T09:00:60", u"2028-01-10T09:00:00Z",
                                           u"2028-01-10T09:00:00.5", u"0099-01-01", u"2028/01/10", u"x028-01-10"}) {
        EXPECT_EQ(numberOf([&] { dateTimeFromIso(text); }), 13) << toUtf8(text);
    }
}

TEST(FormatDateTime, WritesTheFormsOfTheRegion) {
    using enum DateStyle;
    EXPECT_EQ(FormatDateTime(moment, General, american()), u"1/27/1993 5:04:23 PM");
    EXPECT_EQ(FormatDateTime(moment, LongDate, american()), u"Wednesday, January 27, 1993");
    EXPECT_EQ(FormatDateTime(moment, ShortDate, american()), u"1/27/1993");
    EXPECT_EQ(FormatDateTime(moment, LongTime, american()), u"5:04:23 PM");
    EXPECT_EQ(FormatDateTime(moment, ShortTime, american()), u"17:04");

    EXPECT_EQ(FormatDateTime(moment, General, british()), u"27/01/1993 17:04:23");
    EXPECT_EQ(FormatDateTime(moment, LongDate, british()), u"Wednesday, 27 January 1993");
    EXPECT_EQ(FormatDateTime(moment, ShortDate, british()), u"27/01/1993");
    EXPECT_EQ(FormatDateTime(moment, LongTime, british()), u"17:04:23");
    EXPECT_EQ(FormatDateTime(moment, ShortTime, british()), u"17:04");

    EXPECT_EQ(FormatDateTime(moment, General, german()), u"27.01.1993 17:04:23");
    EXPECT_EQ(FormatDateTime(moment, LongDate, german()), u"Mittwoch, 27. Januar 1993");
    EXPECT_EQ(FormatDateTime(moment, ShortDate, german()), u"27.01.1993");
    EXPECT_EQ(FormatDateTime(moment, ShortTime, german()), u"17:04");
}

TEST(FormatDateTime, GeneralLeavesOutMidnightAndTheFirstDay) {
    EXPECT_EQ(FormatDateTime(at(1993, 1, 27), DateStyle::General, american()), u"1/27/1993");
    EXPECT_EQ(FormatDateTime(DateTime{0.75}, DateStyle::General, american()), u"6:00:00 PM");
    EXPECT_EQ(FormatDateTime(DateTime{0}, DateStyle::General, american()), u"12:00:00 AM");
    EXPECT_EQ(FormatDateTime(at(1993, 1, 27), DateStyle::General, german()), u"27.01.1993");
    EXPECT_EQ(FormatDateTime(moment, DateStyle::ShortTime, german()), u"17:04");
}

TEST(Format, WritesTheProgramsOwnForms) {
    EXPECT_EQ(Format(moment, u"dd-mmm-yyyy", american()), u"27-Jan-1993");
    EXPECT_EQ(Format(at(2028, 3, 5), u"dd-mmm-yyyy", german()), u"05-Mrz-2028");
    EXPECT_EQ(Format(moment, u"mmmm", german()), u"Januar");
    EXPECT_EQ(Format(moment, u"hh:nn AM/PM", american()), u"05:04 PM");
    EXPECT_EQ(Format(moment, u"hh:nn AM/PM", german()), u"05:04 PM");
    EXPECT_EQ(Format(at(2028, 1, 1, 0, 5), u"hh:nn AM/PM", british()), u"12:05 AM");
    EXPECT_EQ(Format(at(2028, 1, 1, 12, 5), u"h:nn am/pm", british()), u"12:05 pm");
    EXPECT_EQ(Format(moment, u"yyyy-mm-dd Hh:Nn", german()), u"1993-01-27 17:04");
}

TEST(Format, KnowsItsTokens) {
    EXPECT_EQ(Format(moment, u"d dd ddd dddd", american()), u"27 27 Wed Wednesday");
    EXPECT_EQ(Format(moment, u"ddddd", american()), u"1/27/1993");
    EXPECT_EQ(Format(moment, u"dddddd", british()), u"Wednesday, 27 January 1993");
    EXPECT_EQ(Format(moment, u"m mm mmm mmmm", american()), u"1 01 Jan January");
    EXPECT_EQ(Format(moment, u"y yy yyyy", american()), u"27 93 1993");
    EXPECT_EQ(Format(moment, u"h hh n nn s ss", american()), u"17 17 4 04 23 23");
    EXPECT_EQ(Format(moment, u"q w ww", american()), u"1 4 5");
    EXPECT_EQ(Format(moment, u"ttttt", american()), u"5:04:23 PM");
    EXPECT_EQ(Format(moment, u"c", german()), u"27.01.1993 17:04:23");
    EXPECT_EQ(Format(moment, u"h a/p", american()), u"5 p");
    EXPECT_EQ(Format(moment, u"h AMPM", american()), u"5 PM");
    EXPECT_EQ(Format(moment, u"DD/MM/YYYY", american()), u"27/01/1993");
    EXPECT_EQ(Format(moment, u"dd/mm/yyyy", german()), u"27.01.1993");
}

TEST(Format, MBehindHoursIsMinutes) {
    EXPECT_EQ(Format(moment, u"hh:mm", american()), u"17:04");
    EXPECT_EQ(Format(moment, u"h.m", american()), u"17.4");
    EXPECT_EQ(Format(moment, u"hh:mm:ss mm", american()), u"17:04:23 01");
    EXPECT_EQ(Format(moment, u"hh mmm", american()), u"17 Jan");
    EXPECT_EQ(Format(moment, u"mm:hh", american()), u"01:17");
}

TEST(Format, LeavesTheRestAsItStands) {
    EXPECT_EQ(Format(moment, u"", american()), u"");
    EXPECT_EQ(Format(moment, u"\"day\" d", american()), u"day 27");
    EXPECT_EQ(Format(moment, u"\\d\\\\ d", american()), u"d\\ 27");
    EXPECT_EQ(Format(moment, u"d \"open", american()), u"27 open");
    EXPECT_EQ(Format(moment, u"\"\"d\\", american()), u"27");
    EXPECT_EQ(Format(moment, u"yyyy-mm-ddThh:nn", american()), u"1993-01-27T17:04");
    EXPECT_EQ(Format(moment, u"\"AM/PM\" hh", american()), u"AM/PM 17");
    EXPECT_EQ(Format(moment, u"d. ö", german()), u"27. ö");
}

TEST(DateTimeFromText, ReadsTheRegionsOwnForms) {
    for (const Locale* locale : {&american(), &british(), &german()}) {
        for (const DateStyle style : {DateStyle::General, DateStyle::ShortDate}) {
            const std::u16string text = FormatDateTime(moment, style, *locale);
            const DateTime expected = style == DateStyle::General ? moment : at(1993, 1, 27);
            EXPECT_EQ(isoText(dateTimeFromText(text, *locale)), isoText(expected)) << toUtf8(text);
        }
    }
    EXPECT_EQ(dateTimeFromText(u"2/3/2028", american()), at(2028, 2, 3));
    EXPECT_EQ(dateTimeFromText(u"2/3/2028", british()), at(2028, 3, 2));
    EXPECT_EQ(dateTimeFromText(u" 2.3.2028 ", german()), at(2028, 3, 2));
}

TEST(DateTimeFromText, TriesOtherOrders) {
    EXPECT_EQ(dateTimeFromText(u"13/1/2020", american()), at(2020, 1, 13));
    EXPECT_EQ(dateTimeFromText(u"1/13/2020", british()), at(2020, 1, 13));
    EXPECT_EQ(dateTimeFromText(u"2020-03-04", german()), at(2020, 3, 4));
    EXPECT_EQ(dateTimeFromText(u"29-FEB-01", american()), at(2029, 2, 1));
}

TEST(DateTimeFromText, ReadsNamesOfMonthsAndShortYears) {
    EXPECT_EQ(dateTimeFromText(u"27-Jan-1993", american()), at(1993, 1, 27));
    EXPECT_EQ(dateTimeFromText(u"January 27, 1993", american()), at(1993, 1, 27));
    EXPECT_EQ(dateTimeFromText(u"27. März 1993", german()), at(1993, 3, 27));
    EXPECT_EQ(dateTimeFromText(u"1/2/29", american()), at(2029, 1, 2));
    EXPECT_EQ(dateTimeFromText(u"1/2/30", american()), at(1930, 1, 2));
}

TEST(DateTimeFromText, ReadsTimes) {
    EXPECT_EQ(dateTimeFromText(u"17:04", german()), at(1899, 12, 30, 17, 4));
    EXPECT_EQ(dateTimeFromText(u"5:04 PM", american()), at(1899, 12, 30, 17, 4));
    EXPECT_EQ(dateTimeFromText(u"12:05 am", american()), at(1899, 12, 30, 0, 5));
    EXPECT_EQ(dateTimeFromText(u"5pm", american()), at(1899, 12, 30, 17));
    EXPECT_EQ(dateTimeFromText(u"2028-01-10T09:00:05", british()), at(2028, 1, 10, 9, 0, 5));
    EXPECT_EQ(dateTimeFromText(u"36526.5", american()), at(2000, 1, 1, 12));
}

TEST(DateTimeFromText, AnythingElseIsError13) {
    for (const std::u16string_view text : {u"",          u" ",          u"tomorrow",     u"Wednesday, January 27, 1993",
                                           u"1/2",       u"31/31/2020", u"2/30/2028",    u"1//2/2020",
                                           u"1/2/2020/", u"/1/2/2020",  u"25:00",        u"13:00 PM",
                                           u"5:60",      u"1/2/2020 5", u"Jan Feb 2020", u"1/2/99999",
                                           u"9999999",   u"-",          u"5:",           u":5",
                                           u"1:2:3:4"}) {
        EXPECT_EQ(numberOf([&] { dateTimeFromText(text, american()); }), 13) << toUtf8(text);
    }
}

TEST(KnownLocale, IsFoundInAnyCaseAndElseAmerican) {
    EXPECT_EQ(knownLocale(u"DE-de").name, u"de-DE");
    EXPECT_EQ(knownLocale(u"en-gb").name, u"en-GB");
    EXPECT_EQ(knownLocale(u"fr-FR").name, u"en-US");
    EXPECT_EQ(knownLocale(u"").name, u"en-US");
    EXPECT_EQ(german().decimalMark, u",");
}

}  // namespace
}  // namespace lorvane::host
