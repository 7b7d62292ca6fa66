#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "mime/MboxSplitter.h"

/// Mailbox files taken apart: which lines part messages, what is theirs, and that it does not matter in what pieces the bytes come.
namespace lorvane::mime::test {
namespace {

using Messages = std::vector<std::string>;

/// The messages of a mailbox that is read in pieces of this size.
Messages split(std::string_view mailbox, std::size_t piece = 1 << 20) {
    MboxSplitter splitter([&](std::span<std::uint8_t> buffer) {
        const std::size_t count = std::min({piece, buffer.size(), mailbox.size()});
        std::copy_n(mailbox.begin(), count, buffer.begin());
        mailbox.remove_prefix(count);
        return count;
    });
    Messages messages;
    while (const auto message = splitter.next()) messages.emplace_back(message->begin(), message->end());
    EXPECT_FALSE(splitter.next()) << "the end stays the end";
    return messages;
}

bool begins(std::string_view text) {
    return beginsMailbox({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

/// A mailbox as its writers make it.
std::string mailboxOf(const Messages& messages, std::string_view newline = "\n") {
    std::string mailbox;
    for (const std::string& message : messages) {
        mailbox.append("From jane@example.com Mon Jan 10 09:00:00 2028").append(newline);
        for (std::size_t at = 0; at < message.size();) {
            const std::size_t end = std::min(message.find('\n', at), message.size() - 1) + 1;
            const std::string_view line = std::string_view(message).substr(at, end - at);
            const std::size_t marks = std::min(line.find_first_not_of('>'), line.size());
            if (line.substr(marks).starts_with("From ")) mailbox += '>';
            mailbox += line;
            at = end;
        }
        mailbox += newline;
    }
    return mailbox;
}

TEST(Mbox, MessagesInTheirOrderWithoutTheirMailboxLines) {
    EXPECT_EQ(split("From a Mon\nSubject: One\n\nText\n\nFrom b Tue\nSubject: Two\n\nMore\n\n"),
              (Messages{"Subject: One\n\nText\n", "Subject: Two\n\nMore\n"}));
}

TEST(Mbox, LineEndsStayAsTheyAre) {
    EXPECT_EQ(split("From a\r\nSubject: One\r\n\r\nText\r\n\r\nFrom b\r\nSubject: Two\r\n\r\nMore\r\n\r\n"),
              (Messages{"Subject: One\r\n\r\nText\r\n", "Subject: Two\r\n\r\nMore\r\n"}));
    EXPECT_EQ(split("From a\r\nA: 1\r\n\nFrom b\nB: 2\n\r\n"), (Messages{"A: 1\r\n", "B: 2\n"})) << "also mixed";
}

TEST(Mbox, OneBlankLineAtTheEndIsTheMailboxs) {
    EXPECT_EQ(split("From a\nA: 1\n\nText\n\n\n\nFrom b\nB: 2\n"), (Messages{"A: 1\n\nText\n\n\n", "B: 2\n"}));
    EXPECT_EQ(split("From a\nA: 1\n\nno end"), (Messages{"A: 1\n\nno end"}));
    EXPECT_EQ(split("From a\nA: 1\r\rFrom b\n"), (Messages{"A: 1\r\rFrom b\n"})) << "a CR alone ends no line";
}

TEST(Mbox, AMissingBlankLineDoesNotJoinMessages) {
    EXPECT_EQ(split("From a\nA: 1\n\nText\nFrom b\nB: 2\n\nText\n"), (Messages{"A: 1\n\nText\n", "B: 2\n\nText\n"}));
}

TEST(Mbox, QuotedLinesLoseOneMark) {
    EXPECT_EQ(split("From a\nA: 1\n\n>From here\n>>From there\n>>>>From far\n> From\n>from\n>Fromage\n >From in\nx >From\n\n"),
              (Messages{"A: 1\n\nFrom here\n>From there\n>>>From far\n> From\n>from\n>Fromage\n >From in\nx >From\n"}));
}

TEST(Mbox, AFieldFromWithABlankIsNoMailboxLine) {
    EXPECT_EQ(split("From a\nFrom : Jane <jane@example.com>\nFrom \t : x\nFrom:y\n\nText\n"),
              (Messages{"From : Jane <jane@example.com>\nFrom \t : x\nFrom:y\n\nText\n"}));
}

TEST(Mbox, MailboxLinesWithNothingBehindThemGiveEmptyMessages) {
    EXPECT_EQ(split("From a\nFrom b\n\nFrom c"), (Messages{"", "", ""}));
    EXPECT_EQ(split("From \n"), (Messages{""}));
}

TEST(Mbox, NothingAndBlankLinesHoldNoMessage) {
    for (const char* mailbox : {"", "\n", "\r\n\r\n\n", "\xEF\xBB\xBF", "\xEF\xBB\xBF\r\n"}) EXPECT_EQ(split(mailbox), Messages()) << mailbox;
    EXPECT_EQ(split("\xEF\xBB\xBF\r\n\nFrom a\nA: 1\n"), (Messages{"A: 1\n"}));
}

TEST(Mbox, WhatStandsInFrontOfTheFirstMailboxLineIsNotLost) {
    EXPECT_EQ(split("A: 1\n\nText\n\nFrom b\nB: 2\n"), (Messages{"A: 1\n\nText\n", "B: 2\n"}));
    EXPECT_EQ(split("A: 1\n\n>From Text\n"), (Messages{"A: 1\n\nFrom Text\n"}));
}

TEST(Mbox, AFileIsKnownByItsFirstLine) {
    for (const char* head : {"From ", "From jane@example.com Mon Jan 10 09:00:00 2028\n", "From - x\r\n", "\r\n\nFrom x",
                             "\xEF\xBB\xBF"
                             "From x",
                             "From \t"})
        EXPECT_TRUE(begins(head)) << head;
    for (const char* head : {"", "\n", "From", "From:", "From: x", "From : x", "From \t: x", " From x", ">From x", "from x", "Subject: x\nFrom y"})
        EXPECT_FALSE(begins(head)) << head;
}

TEST(Mbox, ALineLongerThanAnyPieceIsOneLine) {
    const std::string longLine(300'000, 'x');
    const std::string marks(200'000, '>');
    EXPECT_EQ(split("From a\n" + longLine + "\nFrom b\n" + marks + "From c\n"), (Messages{longLine + "\n", marks.substr(1) + "From c\n"}));
    EXPECT_EQ(split("From a\nFrom " + std::string(200'000, ' ') + ": x\n").size(), 1u);
}

TEST(Mbox, NoMoreIsReadThanAMessageNeeds) {
    const std::string mail = "From a\n" + std::string(500'000, 'x') + "\n";
    std::size_t given = 0;
    MboxSplitter splitter([&](std::span<std::uint8_t> buffer) {
        for (std::uint8_t& byte : buffer) byte = static_cast<std::uint8_t>(mail[given++ % mail.size()]);
        return buffer.size();
    });
    constexpr std::size_t readAhead = 200'000;
    for (std::size_t taken = 1; taken <= 20; ++taken) {
        ASSERT_TRUE(splitter.next());
        EXPECT_LE(given, taken * mail.size() + readAhead);
    }
}

TEST(Mbox, AFailureOfTheReadingComesThrough) {
    MboxSplitter splitter([](std::span<std::uint8_t>) -> std::size_t { throw std::runtime_error("gone"); });
    EXPECT_THROW(splitter.next(), std::runtime_error);
}

/// Texts out of the words that matter.
std::string randomText(std::mt19937& source, std::size_t words) {
    static constexpr std::string_view vocabulary[] = {"From ", "From", ">", ">>", "\n",         "\n",           "\r\n", "\r",
                                                      " ",     "\t",   ":", "x",  "Subject: a", "\xEF\xBB\xBF", "\0"};
    std::string text;
    for (std::size_t i = 0; i < words; ++i) text += vocabulary[source() % std::size(vocabulary)];
    return text;
}

TEST(Mbox, AnyBytesGiveTheSameMessagesInWhateverPiecesTheyCome) {
    std::mt19937 source(11);
    for (int round = 0; round < 3000; ++round) {
        const std::string text = randomText(source, source() % 40);
        const Messages whole = split(text);
        for (const std::size_t piece : {1u, 2u, 3u, 7u}) EXPECT_EQ(split(text, piece), whole) << text;
        std::size_t length = 0;
        for (const std::string& message : whole) length += message.size();
        EXPECT_LE(length, text.size());
    }
}

TEST(Mbox, WhatAWriterMadeComesBackAsItWas) {
    std::mt19937 source(12);
    for (int round = 0; round < 3000; ++round) {
        Messages messages;
        for (std::size_t count = source() % 4; count > 0; --count) {
            messages.push_back(randomText(source, source() % 20) + "\n");
            if (messages.back() == "\n") messages.back() = "x\n";
        }
        const std::string_view newline = source() % 2 == 0 ? "\n" : "\r\n";
        EXPECT_EQ(split(mailboxOf(messages, newline), 5), messages);
    }
}

}  // namespace
}  // namespace lorvane::mime::test
