#include <gtest/gtest.h>

#include "services/RegionNames.h"
#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

using host::DateTime;
using Names = std::vector<std::u16string>;

constexpr DateTime january{46762.375};  // 2028-01-10 09:00, a Monday
constexpr DateTime march{46822};        // 2028-03-10, a Friday

host::Region regionOf(std::u16string_view name) {
    ServiceOptions options;
    options.localeName = name;
    return host::Region(Services(std::move(options)).region);
}

TEST(Region, KnownRegionsHaveTheNamesOfTheSurface) {
    for (const char16_t* name : {u"en-US", u"en-GB", u"de-DE"}) {
        const host::Locale& known = host::knownLocale(name);
        const host::Region region = regionOf(name);
        EXPECT_EQ(region.LocaleName(), name);
        EXPECT_EQ(region.MonthNames(false), Names(known.months.begin(), known.months.end()));
        EXPECT_EQ(region.MonthNames(true), Names(known.monthsShort.begin(), known.monthsShort.end()));
        EXPECT_EQ(region.DayNames(false), Names(known.days.begin(), known.days.end()));
        EXPECT_EQ(region.DayNames(true), Names(known.daysShort.begin(), known.daysShort.end()));
    }
}

TEST(Region, OtherRegionsHaveTheNamesOfTheirLanguage) {
    const host::Region french = regionOf(u"fr-FR");
    EXPECT_EQ(french.MonthNames(false),
              (Names{u"janvier", u"février", u"mars", u"avril", u"mai", u"juin", u"juillet", u"août", u"septembre", u"octobre", u"novembre", u"décembre"}));
    EXPECT_EQ(french.MonthNames(true).at(1), u"févr.");
    EXPECT_EQ(french.DayNames(false), (Names{u"dimanche", u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi"}));
    EXPECT_EQ(french.DayNames(true).front(), u"dim.");
    EXPECT_EQ(regionOf(u"pl-PL").MonthNames(false).at(2), u"marzec") << "a name that stands alone";
}

TEST(Region, DatesAreWrittenInTheFormsOfTheRegion) {
    using host::DateStyle;
    using host::Format;
    using host::FormatDateTime;
    const host::Locale american = regionOf(u"en-US").locale();
    const host::Locale british = regionOf(u"en-GB").locale();
    const host::Locale german = regionOf(u"de-DE").locale();
    const DateTime moment{33996.7113773};  // 1993-01-27 17:04:23
    EXPECT_EQ(FormatDateTime(moment, DateStyle::General, american), u"1/27/1993 5:04:23 PM");
    EXPECT_EQ(FormatDateTime(moment, DateStyle::General, british), u"27/01/1993 17:04:23");
    EXPECT_EQ(FormatDateTime(moment, DateStyle::General, german), u"27.01.1993 17:04:23");
    EXPECT_EQ(Format(march, u"dd-mmm-yyyy", german), u"10-Mrz-2028");
    EXPECT_EQ(Format(march, u"dd-mmm-yyyy", american), u"10-Mar-2028");
    EXPECT_EQ(Format(january, u"hh:nn AM/PM", german), u"09:00 AM");
    EXPECT_EQ(Format(january, u"dddd mmmm", regionOf(u"fr-FR").locale()), u"lundi janvier");
}

TEST(Region, ItsNameIsReadInTheFormsThatOptionsAndTheEnvironmentHave) {
    EXPECT_EQ(regionName(u"de-DE"), u"de-DE");
    EXPECT_EQ(regionName(u"de_de.UTF-8"), u"de-DE");
    EXPECT_EQ(regionName(u"de_DE@euro"), u"de-DE");
    EXPECT_EQ(regionName(u"EN-gb"), u"en-GB");
    EXPECT_EQ(regionName(u"de"), u"de-DE");
    EXPECT_EQ(regionName(u"sr-latn-rs"), u"sr-Latn-RS");
    for (const char16_t* none : {u"", u"C", u"C.UTF-8", u"POSIX"}) EXPECT_EQ(regionName(none), u"en-US");
    for (const char16_t* wrong : {u"xx-YY", u"not a region", u"-", u"de-"}) EXPECT_EQ(regionName(wrong), std::nullopt);
}

TEST(Region, OneWithoutNamesIsAmerican) {
    EXPECT_EQ(regionOf(u"xx-YY").LocaleName(), u"en-US");
}

TEST(Region, TextGoesIntoTheRegionsCodePageUnlessTheRunSaysElse) {
    EXPECT_EQ(regionOf(u"en-US").ToAnsi(u"é€ł"), (host::Bytes{0xE9, 0x80, '?'}));
    EXPECT_EQ(regionOf(u"pl-PL").ToAnsi(u"é€ł"), (host::Bytes{0xE9, 0x80, 0xB3}));

    ServiceOptions options;
    options.localeName = u"pl-PL";
    options.codePage = "windows-1252";
    EXPECT_EQ(host::Region(Services(std::move(options)).region).ToAnsi(u"ł"), host::Bytes{'?'});
}

}  // namespace
}  // namespace lorvane::services::test
