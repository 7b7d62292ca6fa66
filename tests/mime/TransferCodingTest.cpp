#include "mime/TransferCoding.h"

#include <gtest/gtest.h>

#include <random>

namespace lorvane::mime {
namespace {

using enum TransferEncoding;

TEST(TransferCoding, NamesOfEncodings) {
    EXPECT_EQ(transferEncodingNamed(" Quoted-Printable "), QuotedPrintable);
    EXPECT_EQ(transferEncodingNamed("BASE64; x=y"), Base64);
    EXPECT_EQ(transferEncodingNamed("x-uuencode"), UuEncode);
    EXPECT_EQ(transferEncodingNamed("7vladi.Pimenovit"), Identity);
    EXPECT_EQ(transferEncodingNamed(""), Identity);
}

TEST(TransferCoding, LineEndsOfTheTransferFormReadAsCrLf) {
    EXPECT_EQ(decodeTextBytes(Identity, "a\nb\r\nc\rd"), "a\r\nb\r\nc\rd");
    EXPECT_EQ(decodeTextBytes(QuotedPrintable, "a\nb=0Ac=0Dd=0D=0Ae=\nf"), "a\r\nb\nc\rd\r\nef");
}

TEST(TransferCoding, Base64IsTakenAsItIs) {
    EXPECT_EQ(decodeTextBytes(Base64, "YQpiDWMNCg==\r\n"), "a\nb\rc\r\n");
}

TEST(TransferCoding, AttachmentsKeepTheirBytes) {
    EXPECT_EQ(decodeBytes(Identity, "a\nb\r\nc"), "a\nb\r\nc");
}

TEST(TransferCoding, BlanksAtTheEndOfQuotedLinesArePaddingOfTransport) {
    EXPECT_EQ(decodeTextBytes(QuotedPrintable, "a  \r\nb=20 \r\nc= \r\nd"), "a\r\nb \r\ncd");
}

TEST(TransferCoding, DamagedCodesStay) {
    EXPECT_EQ(decodeTextBytes(QuotedPrintable, "a=ZZb"), "a=ZZb");
}

TEST(TransferCoding, DecodesUuencode) {
    EXPECT_EQ(decodeBytes(UuEncode, "begin 644 x\n#0V%T\n`\nend\n"), "Cat");
}

TEST(TransferCoding, QuotedPrintableOfOddText) {
    EXPECT_EQ(encodeQuotedPrintable("a\r\nb\rc\nd", "\r\n"), "a\r\nb=0Dc=0Ad");
    EXPECT_EQ(encodeQuotedPrintable("blank \r\ntab\t", "\r\n"), "blank=20\r\ntab=09");
    EXPECT_EQ(encodeQuotedPrintable("From me\r\n.\r\n--x\r\n-- \r\n--", "\r\n"), "=46rom me\r\n=2E\r\n=2D-x\r\n--=20\r\n--");
    EXPECT_EQ(encodeQuotedPrintable("1=1 \xC3\xA9", "\n"), "1=3D1 =C3=A9");
}

TEST(TransferCoding, AnyBytesSurviveBothEncodings) {
    std::mt19937 random(11);
    const std::string alphabet("ab \t\r\n.=-F\xC3\xA9\xFF\0", 14);
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        const std::size_t length = std::uniform_int_distribution<std::size_t>(0, 300)(random);
        while (bytes.size() < length)
            bytes +=
                std::uniform_int_distribution<int>(0, 3)(random) == 0 ? "\r\n" : alphabet.substr(std::uniform_int_distribution<std::size_t>(0, 13)(random), 1);
        for (const std::string_view newline : {"\r\n", "\n"}) {
            const std::string quoted = encodeQuotedPrintable(bytes, newline);
            ASSERT_EQ(decodeTextBytes(QuotedPrintable, quoted), bytes) << quoted;
            ASSERT_EQ(decodeTextBytes(QuotedPrintable, quoted + "=" + std::string(newline)), bytes) << quoted;
            std::size_t column = 0;
            for (const char c : quoted) {
                column = c == '\n' ? 0 : column + 1;
                ASSERT_LE(column, 77u);
            }
            ASSERT_EQ(decodeBytes(Base64, encodeBase64(bytes, newline)), bytes);
        }
    }
}

TEST(TransferCoding, Base64LinesAreShortAndTheLastHasNoEnd) {
    const std::string encoded = encodeBase64(std::string(100, 'x'), "\r\n");
    EXPECT_EQ(encoded.find("\r\n"), 76u);
    EXPECT_NE(encoded.back(), '\n');
    EXPECT_EQ(encodeBase64("", "\r\n"), "");
}

TEST(Charset, KnownSets) {
    EXPECT_EQ(decodeCharset("\xC3\xA9", "UTF-8"), u"é");
    EXPECT_EQ(decodeCharset("\xC3\xA9", "utf8"), u"é");
    EXPECT_EQ(decodeCharset("\xB4\xEB", "EUC-KR"), u"대");
    EXPECT_EQ(decodeCharset("\x82\xA0", "Shift_JIS"), u"あ");
    EXPECT_EQ(decodeCharset("\x1B$B$\"\x1B(B", "iso-2022-jp"), u"あ");
    EXPECT_EQ(decodeCharset("\xF0\x9F\x8E\x89", "utf-8"), u"🎉");
}

TEST(Charset, NamesOfSmallerSetsMeanTheLargerOnes) {
    EXPECT_EQ(decodeCharset("\x93x\x94 \x80", "iso-8859-1"), u"“x” €");
    EXPECT_EQ(decodeCharset("\xA1\xAD", "gb2312"), u"…");
}

TEST(Charset, UnknownAndSevenBitSetsAreUtf8ElseWindows1252) {
    EXPECT_EQ(decodeCharset("caf\xE9", "no-such-set"), u"café");
    EXPECT_EQ(decodeCharset("caf\xC3\xA9", "us-ascii"), u"café");
    EXPECT_EQ(decodeCharset("caf\xE9", ""), u"café");
}

TEST(Charset, MalformedBytesBecomeTheReplacementCharacter) {
    EXPECT_EQ(decodeCharset("a\xFFz", "utf-8"), u"a\uFFFDz");
    EXPECT_EQ(decodeCharset("a\x82", "Shift_JIS"), u"a\uFFFD");
    EXPECT_EQ(decodeCharset("\x81", "windows-1252"), u"\uFFFD");
}

TEST(Charset, LongTextsAreDecodedWhole) {
    EXPECT_EQ(decodeCharset(std::string(100000, 'x'), "windows-1252"), std::u16string(100000, u'x'));
}

}  // namespace
}  // namespace lorvane::mime
