#include "automation/LineReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace lorvane::automation {
namespace {

using Event = Transport::Event;

std::vector<std::string> linesOf(LineReader& reader) {
    std::vector<std::string> lines;
    while (const auto received = reader.next()) lines.push_back(received->event == Event::TooLong ? "(too long)" : received->line);
    return lines;
}

using Lines = std::vector<std::string>;

TEST(LineReader, ALineIsWholeWithItsEndHoweverTheBytesCome) {
    LineReader reader;
    reader.feed("on");
    EXPECT_EQ(linesOf(reader), Lines{});
    reader.feed("e\ntwo\r\nth");
    EXPECT_EQ(linesOf(reader), (Lines{"one", "two"}));
    reader.feed("ree\n");
    EXPECT_EQ(linesOf(reader), Lines{"three"});
}

TEST(LineReader, TheEndOfTheInputEndsTheLastLine) {
    LineReader reader;
    reader.feed("begun");
    reader.finish();
    reader.finish();
    EXPECT_EQ(linesOf(reader), Lines{"begun"});
}

TEST(LineReader, ALineBeyondTheLimitIsToldOnceAndSkippedAsAWhole) {
    LineReader reader(4);
    reader.feed("1234\n12345\n");
    EXPECT_EQ(linesOf(reader), (Lines{"1234", "(too long)"}));
    reader.feed("123");
    reader.feed("45");
    reader.feed("67890\nok\n");
    EXPECT_EQ(linesOf(reader), (Lines{"(too long)", "ok"}));
}

TEST(LineReader, ALineTooLongThatNeverEndedIsToldWithTheEnd) {
    LineReader reader(2);
    reader.feed("123");
    EXPECT_EQ(linesOf(reader), Lines{});
    reader.finish();
    EXPECT_EQ(linesOf(reader), Lines{"(too long)"});
}

TEST(LineReader, EmptyLinesAreLines) {
    LineReader reader;
    reader.feed("\n\r\n");
    EXPECT_EQ(linesOf(reader), (Lines{"", ""}));
}

}  // namespace
}  // namespace lorvane::automation
