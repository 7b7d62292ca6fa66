#include <gtest/gtest.h>

#include <random>

#include "host/TextFunctions.h"
#include "mime/HeaderText.h"
#include "mime/HeaderWriter.h"
#include "mime/MimeTree.h"

namespace lorvane::mime {
namespace {

std::u16string readBack(const std::string& field) {
    return decodeText(HeaderField{"", field}.value());
}
std::vector<Mailbox> addressesBack(const std::string& field, bool emptyGroups = false) {
    return decodeAddresses(HeaderField{"", field}.value(), emptyGroups);
}

std::size_t longestLine(std::string_view text) {
    std::size_t longest = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find("\r\n", at), text.size());
        longest = std::max(longest, end - at);
        at = end + 2;
    }
    return longest;
}

TEST(HeaderText, DecodesEncodedWords) {
    EXPECT_EQ(decodeText("plain"), u"plain");
    EXPECT_EQ(decodeText("=?iso-8859-1?Q?J=F8rn_St=F8ylen?="), u"Jørn Støylen");
    EXPECT_EQ(decodeText("a =?utf-8?B?w6Q=?= b"), u"a ä b");
    EXPECT_EQ(decodeText("=?EUC-KR?Q?=C7=D1=B1=B9?="), u"한국");
    EXPECT_EQ(decodeText("=?utf-8*en?q?x?="), u"x");
}

TEST(HeaderText, JoinsWordsThatEachHaveTheirOwnPadding) {
    EXPECT_EQ(decodeText("=?UTF-8?B?TXlTdXJ2ZXk=?= =?UTF-8?B?LmNvbTogIFk=?=\t=?UTF-8?B?b3U=?= =?UTF-8?B?\?="), u"MySurvey.com:  You");
}

TEST(HeaderText, JoinsACharacterThatIsSplitBetweenWords) {
    EXPECT_EQ(decodeText("=?utf-8?b?8J+O?= =?utf-8?b?iQ==?="), u"🎉");
}

TEST(HeaderText, KeepsWhatIsNoEncodedWord) {
    EXPECT_EQ(decodeText("=?x?= =? =?utf-8?z?a?= a  b\tc"), u"=?x?= =? =?utf-8?z?a?= a  b\tc");
}

TEST(HeaderText, BeginningsOfEncodedWordsWithoutEndTakeNoMoreThanTheirShare) {
    std::string hostile;
    for (int i = 0; i < 50000; ++i) hostile += "=?a?q?x ";
    EXPECT_EQ(decodeText(hostile).size(), hostile.size());
}

TEST(HeaderText, ReadsRawBytesAsUtf8ElseAsWindows1252) {
    EXPECT_EQ(decodeText("\xF0\x9F\x8D\xBF"), u"🍿");
    EXPECT_EQ(decodeText("caf\xE9 \x80"), u"café €");
    EXPECT_EQ(decodeText("=?no-such-set?q?caf=E9?="), u"café");
}

TEST(HeaderText, FlattensGroups) {
    const std::vector<Mailbox> expected = {{u"Chris Jones", u"c@a.test"}, {u"", u"joe@where.test"}, {u"John", u"jdoe@one.test"}};
    EXPECT_EQ(decodeAddresses("A Group:Chris Jones <c@a.test>,joe@where.test,John <jdoe@one.test>;"), expected);
    EXPECT_TRUE(decodeAddresses("Undisclosed recipients:;").empty());
    EXPECT_EQ(decodeAddresses("John:;", true), (std::vector<Mailbox>{{u"John", u""}}));
}

TEST(HeaderText, ReadsDisplayNamesInEveryForm) {
    EXPECT_EQ(decodeAddresses("\"Giant; \\\"Big\\\" Box\" <s@e.net>"), (std::vector<Mailbox>{{u"Giant; \"Big\" Box", u"s@e.net"}}));
    EXPECT_EQ(decodeAddresses("MAILER@x.com (Mail System)"), (std::vector<Mailbox>{{u"Mail System", u"MAILER@x.com"}}));
    EXPECT_EQ(decodeAddresses("=?utf-8?q?x=2C_y=22z?= <a@b>"), (std::vector<Mailbox>{{u"x, y\"z", u"a@b"}}));
    EXPECT_EQ(decodeAddresses("\"=?utf-8?q?x=2Cy?=\" <a@b>"), (std::vector<Mailbox>{{u"x,y", u"a@b"}}));
    EXPECT_EQ(decodeAddresses("caf\xE9 <a@b>, , c@d"), (std::vector<Mailbox>{{u"café", u"a@b"}, {u"", u"c@d"}}));
}

TEST(HeaderText, ReadsDatesWithCommentsAndObsoleteForms) {
    EXPECT_EQ(decodeDate("Fri, 21 Nov 1997 09:55:06 -0600"), 880127706);
    EXPECT_EQ(decodeDate("Fri, 21 Nov 1997 09(comment):   55  :  06 -0600"), 880127706);
    EXPECT_EQ(decodeDate("21 Nov 97 09:55:06 GMT"), 880106106);
    EXPECT_EQ(decodeDate("Thu,  13  Feb  1969  23:32  -0330 (Newfoundland Time)"), -27723480);
    EXPECT_EQ(decodeDate("Wed, 15 Dec 2010    59:10 -0500"), std::nullopt);
    EXPECT_EQ(decodeDate("garbage"), std::nullopt);
    EXPECT_EQ(decodeDate(""), std::nullopt);
}

TEST(HeaderText, ReadsParametersInEveryForm) {
    const auto name = [](std::string_view value) { return decodeContentType(value).parameter("name"); };
    EXPECT_EQ(name("text/plain; name=This is a test.txt"), u"This is a test.txt");
    EXPECT_EQ(name("text/plain; name=\"=?UTF-8?B?44Gm44GZ44GoLnR4dA==?=\""), u"てすと.txt");
    EXPECT_EQ(name("a/b; NAME=\"=?utf-8?b?YQ==?= =?utf-8?b?Yi50eHQ=?=\""), u"ab.txt");
    EXPECT_EQ(name("a/b; name*0*=utf-8''%E4%BD; name*1*=%A0.txt"), u"\u4F60.txt");
    EXPECT_EQ(name("a/b; name*=iso-2022-jp'ja'Dij%8aat"), u"Dij\uFFFDat");
    EXPECT_EQ(decodeContentType("Text/HTML;;charset=us-ascii;").value, "text/html");
    EXPECT_EQ(decodeContentType("text").value, "text/plain");
    EXPECT_EQ(decodeDisposition("").value, "");
}

TEST(HeaderWriter, FoldsPlainTextAtBlanks) {
    const std::string field = textField("Subject", u"one two three four five six seven eight nine ten eleven twelve thirteen fourteen fifteen", "\r\n");
    EXPECT_EQ(field, "Subject: one two three four five six seven eight nine ten eleven twelve\r\n thirteen fourteen fifteen\r\n");
}

TEST(HeaderWriter, ChoosesTheShorterEncoding) {
    EXPECT_EQ(textField("Subject", u"Grüße an alle zusammen heute", "\r\n"), "Subject: =?utf-8?q?Gr=C3=BC=C3=9Fe_an_alle_zusammen_heute?=\r\n");
    EXPECT_EQ(textField("Subject", u"한국말로", "\r\n"), "Subject: =?utf-8?b?7ZWc6rWt66eQ66Gc?=\r\n");
}

TEST(HeaderWriter, AnyTextReadsBackTheSame) {
    std::mt19937 random(7);
    const std::u16string alphabet = u"ab  \t=?_é한\r\n\"\\(),<@;:\u0001\u007F\uFEFF";
    for (int round = 0; round < 3000; ++round) {
        std::u16string text;
        const std::size_t length = std::uniform_int_distribution<std::size_t>(0, 120)(random);
        while (text.size() < length) {
            const std::size_t pick = std::uniform_int_distribution<std::size_t>(0, alphabet.size())(random);
            text += pick == alphabet.size() ? u"🎉" : alphabet.substr(pick, 1);
        }
        const std::string field = textField("Subject", text, "\r\n");
        ASSERT_EQ(readBack(field), text) << field;
        ASSERT_LE(longestLine(field), 320u);
        ASSERT_EQ(parseMessage(field + "\r\n")->fields.size(), 1u) << field;
    }
}

TEST(HeaderWriter, LongWordsStayBelowTheLimit) {
    const std::u16string text(5000, u'x');
    const std::string field = textField("Subject", text, "\r\n");
    EXPECT_LE(longestLine(field), 76u + 9u);
    EXPECT_EQ(readBack(field), text);
}

TEST(HeaderWriter, ALoneSurrogateBecomesTheReplacementCharacter) {
    EXPECT_EQ(readBack(textField("Subject", u"a\xD83Cz", "\r\n")), u"a\uFFFDz");
}

TEST(HeaderWriter, DisplayNamesReadBackTheSame) {
    for (const std::u16string_view name : {u"John Public", u"Public, John", u"O'Neil \"Ace\" \\o/", u"Jürgen (Büro)", u"=?utf-8?q?fake?=", u"a@b.example",
                                           u"한국말로 하는 것 한국말로 하는 것 한국말로 하는 것"}) {
        const std::vector<Mailbox> list = {{std::u16string(name), u"x@y.example"}, {u"", u"z@y.example"}};
        EXPECT_EQ(addressesBack(addressField("To", list, "\r\n")), list) << host::toUtf8(name);
    }
}

TEST(HeaderWriter, LineEndsInNamesBecomeBlanks) {
    const std::string field = addressField("To", {{u"John\r\nBcc: evil@x.example", u"j@y.example"}}, "\r\n");
    EXPECT_EQ(field, "To: \"John  Bcc: evil@x.example\" <j@y.example>\r\n");
}

TEST(HeaderWriter, WhatIsNoPlainAddressIsWrittenAsAName) {
    EXPECT_EQ(addressField("To", {{u"John", u""}, {u"", u"a@b>, <evil@c"}, {u"Ann", u"a@b\r\nBcc: x@y"}, {u"", u"ok@y.example"}}, "\r\n"),
              "To: John:;, \"a@b>, <evil@c\":;, Ann:;, ok@y.example\r\n");
    EXPECT_EQ(addressesBack("To: John:;, ok@y.example\r\n", true), (std::vector<Mailbox>{{u"John", u""}, {u"", u"ok@y.example"}}));
}

TEST(HeaderWriter, LongListsAreFolded) {
    std::vector<Mailbox> list;
    for (int i = 0; i < 40; ++i) list.push_back({u"Some Body", u"body" + host::decimal(i) + u"@mail.example"});
    const std::string field = addressField("To", list, "\r\n");
    EXPECT_LE(longestLine(field), 76u);
    EXPECT_EQ(addressesBack(field), list);
}

TEST(HeaderWriter, FileNamesReadBackTheSame) {
    for (const std::u16string_view name : {u"a.txt", u"with blank.txt", u"ciële.txt", u"てすと てすと てすと てすと てすと.txt", u"a\"b\\c;d.txt",
                                           u"x\r\ny: z.txt", u"=?utf-8?q?x?=.txt", u"100%.txt", u"🎉.png", u" lead and trail "}) {
        const std::string field = parameterField("Content-Disposition", "attachment", {{"filename", std::u16string(name)}}, "\r\n");
        EXPECT_EQ(decodeDisposition(HeaderField{"", field}.value()).parameter("filename"), name) << field;
        EXPECT_EQ(parseMessage("From: a\r\n" + field + "\r\n")->fields.size(), 2u) << field;
        EXPECT_LE(longestLine(field), 90u);
    }
}

TEST(HeaderWriter, WritesDates) {
    EXPECT_EQ(dateText({46762.375}, 60), "Mon, 10 Jan 2028 09:00:00 +0100");
    EXPECT_EQ(dateText({0.0}, -210), "Sat, 30 Dec 1899 00:00:00 -0330");
    EXPECT_EQ(dateText({36585.99999}, 0), "Tue, 29 Feb 2000 23:59:59 +0000");
    EXPECT_EQ(dateText({-1.25}, 0), "Fri, 29 Dec 1899 06:00:00 +0000");
}

}  // namespace
}  // namespace lorvane::mime
