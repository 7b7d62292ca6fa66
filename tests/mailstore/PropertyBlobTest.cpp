#include "mailstore/PropertyBlob.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "mailstore/Records.h"

namespace lorvane::mailstore::test {
namespace {

constexpr std::u16string_view Source = u"\"a.lorvane\"";

PropertyBag oneOfEach() {
    return {{0x0E070003, std::int32_t{-2}},
            {0x0FFF0102, Bytes{0, 255, 7}},
            {0x30070040, DateTime{46762.375}},
            {0x3712001F, std::u16string(u"a\0\xD800", 3)},
            {0x80050005, 0.1},
            {0x800F101F, std::vector<std::u16string>{u"", u"SMTP:a@b", u"x"}},
            {0x8503000B, true}};
}

TEST(PropertyBlob, EveryKindOfValueComesBack) {
    EXPECT_EQ(decodeProperties(encodeProperties(oneOfEach()), Source), oneOfEach());
    EXPECT_EQ(decodeProperties(encodeProperties({}), Source), PropertyBag());
    std::mt19937 source(3);
    for (int i = 0; i < 300; ++i) {
        const ItemRecord record = randomRecord(source);
        EXPECT_EQ(decodeProperties(encodeProperties(record.properties), Source), record.properties);
        EXPECT_EQ(decodeUserProperties(encodeUserProperties(record.userProperties), Source), record.userProperties);
        EXPECT_EQ(decodeRecipients(encodeRecipients(record.recipients), Source), record.recipients);
    }
}

TEST(PropertyBlob, FloatingNumbersKeepTheirBits) {
    const PropertyBag bag{{1, -0.0}, {2, std::numeric_limits<double>::quiet_NaN()}, {3, std::numeric_limits<double>::denorm_min()}};
    const PropertyBag read = decodeProperties(encodeProperties(bag), Source);
    EXPECT_TRUE(std::signbit(std::get<double>(read.at(1))));
    EXPECT_TRUE(std::isnan(std::get<double>(read.at(2))));
    EXPECT_EQ(std::get<double>(read.at(3)), std::numeric_limits<double>::denorm_min());
}

TEST(PropertyBlob, TheFormOnDiskNeverChanges) {
    EXPECT_EQ(encodeProperties({{0x0E070003, std::int32_t{9}}, {0x3712001F, std::u16string(u"aß")}}),
              (Bytes{1, 2, 0, 0, 0, 0x03, 0, 0x07, 0x0E, 2, 9, 0, 0, 0, 0x1F, 0, 0x12, 0x37, 5, 2, 0, 0, 0, 'a', 0, 0xDF, 0}));
    EXPECT_EQ(encodeRecipients({{u"n", u"", u"", 3, true}}), (Bytes{1, 1, 0, 0, 0, 1, 0, 0, 0, 'n', 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 1}));
    EXPECT_EQ(encodeUserProperties({{u"k", u"v"}}), (Bytes{1, 1, 0, 0, 0, 1, 0, 0, 0, 'k', 0, 1, 0, 0, 0, 'v', 0}));
}

TEST(PropertyBlob, ABlockThatBreaksOffOrGoesOnIsDamagedAndNamesTheFile) {
    Bytes block = encodeProperties(oneOfEach());
    for (std::size_t size = 0; size < block.size(); ++size) {
        const auto error = errorOf([&] { decodeProperties(std::span(block).first(size), Source); });
        ASSERT_TRUE(error) << size;
        EXPECT_EQ(error->number(), host::host_failure::Failed);
        EXPECT_NE(error->description().find(Source), std::u16string::npos);
    }
    block.push_back(0);
    EXPECT_EQ(numberOf([&] { decodeProperties(block, Source); }), host::host_failure::Failed);
}

TEST(PropertyBlob, WrongCountsAskForNoMemory) {
    const Bytes huge{1, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 5, 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(numberOf([&] { decodeProperties(huge, Source); }), host::host_failure::Failed);
    EXPECT_EQ(numberOf([&] { decodeRecipients(huge, Source); }), host::host_failure::Failed);
    EXPECT_EQ(numberOf([&] { decodeUserProperties(huge, Source); }), host::host_failure::Failed);
    const Bytes hugeText{1, 1, 0, 0, 0, 0, 0, 0, 0, 5, 0xFF, 0xFF, 0xFF, 0x7F};
    EXPECT_EQ(numberOf([&] { decodeProperties(hugeText, Source); }), host::host_failure::Failed);
}

TEST(PropertyBlob, WhatWritingNeverMakesIsDamaged) {
    const Bytes otherFormat{2, 0, 0, 0, 0};
    const Bytes unknownKind{1, 1, 0, 0, 0, 1, 0, 0, 0, 8, 0};
    const Bytes noBoolean{1, 1, 0, 0, 0, 1, 0, 0, 0, 1, 2};
    const Bytes tagTwice{1, 2, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0, 0, 0, 1, 1};
    for (const Bytes& block : {otherFormat, unknownKind, noBoolean, tagTwice}) {
        EXPECT_EQ(numberOf([&] { decodeProperties(block, Source); }), host::host_failure::Failed);
    }
}

TEST(PropertyBlob, ChangedBytesEitherReadOrAreToldAsDamaged) {
    std::mt19937 source(11);
    const Bytes sound = encodeProperties(oneOfEach());
    int refused = 0;
    for (int i = 0; i < 20000; ++i) {
        Bytes block = sound;
        for (int changes = 0; changes < 3; ++changes) block[source() % block.size()] = static_cast<std::uint8_t>(source());
        const std::int32_t number = numberOf([&] {
            const PropertyBag read = decodeProperties(block, Source);
            EXPECT_EQ(encodeProperties(read), block);
        });
        EXPECT_TRUE(number == 0 || number == host::host_failure::Failed);
        refused += number != 0;
    }
    EXPECT_GT(refused, 1000);
}

}  // namespace
}  // namespace lorvane::mailstore::test
