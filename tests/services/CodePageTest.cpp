#include "services/CodePage.h"

#include <gtest/gtest.h>

#include <numeric>

#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

using host::Bytes;

TEST(CodePage, EachUnitIsOneByte) {
    const CodePage western("windows-1252");
    EXPECT_EQ(western.encode(u"aÄ€ž"), (Bytes{'a', 0xC4, 0x80, 0x9E}));
    EXPECT_EQ(western.decode({'a', 0xC4, 0x80, 0x9E}), u"aÄ€ž");
    EXPECT_EQ(western.encode(u"\u0142x\U0001F600y\xD800z"), (Bytes{'?', 'x', '?', '?', 'y', '?', 'z'}));
}

TEST(CodePage, EveryByteOfTheWesternPageComesBack) {
    const CodePage western("windows-1252");
    Bytes all(256);
    std::iota(all.begin(), all.end(), std::uint8_t{0});
    EXPECT_EQ(western.encode(western.decode(all)), all);
}

TEST(CodePage, AByteThatMeansNothingIsAReplacementCharacter) {
    EXPECT_EQ(CodePage("windows-1253").decode({'a', 0xD2}), u"a\uFFFD");
    EXPECT_EQ(CodePage("windows-1253").encode(u"\uFFFD"), Bytes{'?'});
}

TEST(CodePage, AnUnknownOneAndOneOfSeveralBytesAreRefused) {
    EXPECT_EQ(errorOf([] { CodePage("no-such-page"); }), 5);
    EXPECT_EQ(errorOf([] { CodePage("utf-8"); }), 5);
    EXPECT_EQ(errorOf([] { CodePage("windows-932"); }), 5);
}

TEST(CodePage, ARegionHasItsOwn) {
    EXPECT_EQ(codePageOfRegion(u"en-US"), "windows-1252");
    EXPECT_EQ(codePageOfRegion(u"de-DE"), "windows-1252");
    EXPECT_EQ(codePageOfRegion(u"pl-PL"), "windows-1250");
    EXPECT_EQ(codePageOfRegion(u"RU-ru"), "windows-1251");
    EXPECT_EQ(codePageOfRegion(u"sr-RS"), "windows-1251");
    EXPECT_EQ(codePageOfRegion(u"sr-Latn-RS"), "windows-1250");
    EXPECT_EQ(codePageOfRegion(u"el"), "windows-1253");
    EXPECT_EQ(codePageOfRegion(u"plx"), "windows-1252");
    EXPECT_EQ(codePageOfRegion(u"ja-JP"), "windows-1252");
}

TEST(CodePage, EveryPageOfARegionIsThere) {
    for (const char16_t* region : {u"en", u"ar", u"az", u"bg", u"cs", u"el", u"et", u"he", u"ru", u"th", u"tr", u"vi"})
        EXPECT_EQ(errorOf([&] { CodePage{codePageOfRegion(region)}; }), 0) << codePageOfRegion(region);
}

}  // namespace
}  // namespace lorvane::services::test
