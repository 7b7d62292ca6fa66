#include "html/ClipboardHtml.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "host/TextFunctions.h"

using namespace lorvane::html;

namespace {

std::u16string block(std::size_t start, std::size_t end, const std::u16string& html) {
    char header[160];
    std::snprintf(header, sizeof header, "Version:1.0\r\nStartHTML:0000000105\r\nEndHTML:%010zu\r\nStartFragment:%010zu\r\nEndFragment:%010zu\r\n", end, start,
                  end);
    return lorvane::host::fromUtf8(header) + html;
}

constexpr std::size_t Header = 105;
const std::u16string Open = u"<BODY<!--StartFragment -->";
const std::u16string Close = u"<!--EndFragment --></BODY>";

}  // namespace

TEST(ClipboardHtml, FragmentLiesWhereTheOffsetsSay) {
    const std::u16string fragment = u"<p>caf\u00E9</p>";
    EXPECT_EQ(clipboardFragment(block(Header + Open.size(), Header + Open.size() + fragment.size(), Open + fragment + Close)), fragment);
}

TEST(ClipboardHtml, EmptyFragmentIsAFragment) {
    EXPECT_EQ(clipboardFragment(block(Header + Open.size(), Header + Open.size(), Open + Close)), u"");
}

TEST(ClipboardHtml, AnEndBehindTheBlockIsTheBlocksEnd) {
    EXPECT_EQ(clipboardFragment(block(Header + Open.size(), 9999999999, Open + u"cut of")), u"cut of");
}

TEST(ClipboardHtml, CommentsServeWhereTheOffsetsDoNot) {
    EXPECT_EQ(clipboardFragment(block(9999999999, 9999999999, Open + u"x" + Close)), u"x");
    EXPECT_EQ(clipboardFragment(block(Header + 9, Header, Open + u"x" + Close)), u"x");
    EXPECT_EQ(clipboardFragment(u"Version:0.9\r\n<html><!--StartFragment-->y<!--EndFragment--></html>"), u"y");
    EXPECT_EQ(clipboardFragment(u"StartFragment:-1\r\nEndFragment:-1\r\n<!--StartFragment-->z"), u"z");
}

TEST(ClipboardHtml, ABlockWithNeitherHasNone) {
    EXPECT_EQ(clipboardFragment(u""), std::nullopt);
    EXPECT_EQ(clipboardFragment(u"<b>x</b>"), std::nullopt);
    EXPECT_EQ(clipboardFragment(u"<!--StartFragment never closed"), std::nullopt);
}

TEST(ClipboardHtml, OffsetsOfBytesAreDecodedByTheCodePageGiven) {
    const std::string fragment = "caf\xC3\xA9";
    const std::string bytes =
        lorvane::host::toUtf8(block(Header + 3, Header + 3 + fragment.size(), u"<i>")) + fragment + "</i>" + std::string(4, '\0') + "junk";
    EXPECT_EQ(clipboardFragment(bytes, [](std::string_view part) { return lorvane::host::fromUtf8(part); }), u"caf\u00E9");
}

TEST(ClipboardHtml, NumbersOfAnyLengthAreRead) {
    EXPECT_EQ(clipboardFragment(u"StartFragment:" + std::u16string(500, u'9') + u"\r\nEndFragment:" + std::u16string(500, u'9') + u"\r\n<x>"), std::nullopt);
}

TEST(ClipboardHtml, ABlockHasAHeaderOfFixedWidthWhoseNumbersCountBytes) {
    EXPECT_EQ(clipboardBlock(u"<b>\u00E9</b>"),
              "Version:0.9\r\nStartHTML:0000000105\r\nEndHTML:0000000178\r\nStartFragment:0000000137\r\nEndFragment:0000000146\r\n"
              "<html><body><!--StartFragment--><b>\xC3\xA9</b><!--EndFragment--></body></html>");
}

TEST(ClipboardHtml, TheFragmentOfAWrittenBlockIsTheOneWritten) {
    for (const std::u16string_view fragment : {u"", u"<p>a</p>", u"\r\n\u20AC \xD83D\xDE00", u"<!--EndFragment-->", u"StartFragment:0000000001"}) {
        EXPECT_EQ(clipboardFragment(clipboardBlock(fragment), lorvane::host::fromUtf8), fragment);
    }
}
