#include "automation/Values.h"

#include <gtest/gtest.h>

#include <limits>

#include "automation/Base64.h"
#include "automation/Records.h"
#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {
namespace {

using host::Array;
using host::Bytes;
using host::Variant;

class ValuesTest : public testing::Test {
protected:
    std::string json(const Variant& value) { return values.toJson(value).dump(); }
    Variant value(const char* text) { return values.fromJson(Json::parse(text)); }
    int codeOf(const char* text) {
        try {
            values.fromJson(Json::parse(text));
            return 0;
        } catch (const RpcError& error) {
            return error.code();
        }
    }

    Handles handles;
    Values values{handles};
};

TEST_F(ValuesTest, EachKindHasItsForm) {
    EXPECT_EQ(json({}), "null");
    EXPECT_EQ(json(host::Object()), "null");
    EXPECT_EQ(json(Variant::null()), R"({"$null":true})");
    EXPECT_EQ(json(Variant::missing()), R"({"$missing":true})");
    EXPECT_EQ(json(true), "true");
    EXPECT_EQ(json(std::int16_t{-3}), "-3");
    EXPECT_EQ(json(70000), "70000");
    EXPECT_EQ(json(0.5), "0.5");
    EXPECT_EQ(json(u"J\u00FCrgen \"J\" \u2603"), "\"J\u00FCrgen \\\"J\\\" \u2603\"");
    EXPECT_EQ(json(host::dateTimeFromIso(u"2028-01-10T09:00:00")), R"({"$date":"2028-01-10T09:00:00"})");
    EXPECT_EQ(json(Bytes{0, 255, 16}), R"({"$base64":"AP8Q"})");
    EXPECT_EQ(json(Array{1, {1, u"x"}}), R"([1,"x"])");
    EXPECT_EQ(json(Array{0, {1}}), R"({"items":[1],"lower":0})");
    EXPECT_EQ(json(record({{u"name", u"Jane"}, {u"age", 7}})), R"({"age":7,"name":"Jane"})");
}

TEST_F(ValuesTest, WhatGoesOutAndComesBackIsTheSame) {
    const Variant samples[] = {{},
                               Variant::null(),
                               true,
                               false,
                               -2147483647,
                               1.25,
                               3e9,
                               u"a\r\nb",
                               u"",
                               host::dateTimeFromIso(u"1899-12-31T23:59:59"),
                               Bytes{1, 2, 3, 4},
                               Bytes{},
                               Array{1, {1, Array{0, {Variant::null()}}}},
                               Array{-5, {}}};
    for (const Variant& sample : samples) EXPECT_EQ(values.fromJson(values.toJson(sample)), sample) << json(sample);
}

TEST_F(ValuesTest, WholeNumbersAreLongsWhileTheyFitAndDoublesUpToWhatADoubleHolds) {
    EXPECT_EQ(value("2147483647"), Variant(2147483647));
    EXPECT_EQ(value("-2147483648"), Variant(std::numeric_limits<std::int32_t>::min()));
    EXPECT_EQ(value("2147483648"), Variant(2147483648.0));
    EXPECT_EQ(value("-9007199254740992"), Variant(-9007199254740992.0));
    EXPECT_EQ(value("1.0"), Variant(1.0));
    EXPECT_EQ(codeOf("9007199254740994"), rpc_code::InvalidParams);
    EXPECT_EQ(codeOf("-9223372036854775808"), rpc_code::InvalidParams);
    EXPECT_EQ(codeOf("18446744073709551615"), rpc_code::InvalidParams);
}

TEST_F(ValuesTest, NumbersThatJsonCannotSayAreAnOverflow) {
    EXPECT_THROW(json(std::numeric_limits<double>::infinity()), host::HostError);
    EXPECT_THROW(json(std::numeric_limits<double>::quiet_NaN()), host::HostError);
}

TEST_F(ValuesTest, ALoneSurrogateIsReplacedAtTheEdge) {
    EXPECT_EQ(json(std::u16string(1, char16_t{0xD800})), "\"\uFFFD\"");
}

TEST_F(ValuesTest, ATableIsARecordWhoseFieldsAreReadInAnyCase) {
    const Variant table = value(R"({"Name": "Jane", "proxies": ["a", "b"]})");
    const auto* fields = host::implementation<host::Record>(table.toObject());
    ASSERT_TRUE(fields);
    EXPECT_EQ(*fields->find(u"name"), Variant(u"Jane"));
    EXPECT_EQ(fields->find(u"proxies")->toArray().items.size(), 2U);
    EXPECT_EQ(fields->find(u"address"), nullptr);
}

TEST_F(ValuesTest, FormsThatMeanNothingAreRefused) {
    for (const char* text : {R"({"$date": 5})", R"({"$date": "tomorrow"})", R"({"$base64": "A"})", R"({"$base64": "????"})", R"({"$null": 1})",
                             R"({"$what": true})", R"({"$date": "2028-01-10", "more": 1})", R"({"lower": "x", "items": []})",
                             R"({"lower": 99999999999, "items": []})", R"({"lower": 0, "items": 7})", R"({"$obj": "x"})", R"({"$obj": 1.5})", R"({"$obj": 3})",
                             R"({"$missing": true})", R"({"$result": 0})", R"([{"$obj": 9}])", R"({"$obj": 18446744073709551615})"})
        EXPECT_EQ(codeOf(text), rpc_code::InvalidParams) << text;
}

TEST_F(ValuesTest, AMissingArgumentIsOneOnlyAsAnArgument) {
    EXPECT_TRUE(values.argumentFromJson(Json::parse(R"({"$missing": true})")).isMissing());
    EXPECT_THROW(values.argumentFromJson(Json::parse(R"({"$missing": 1})")), RpcError);
}

TEST(Base64, IsReadAsItIsWrittenAndNotOtherwise) {
    for (std::size_t length = 0; length < 9; ++length) {
        Bytes bytes;
        for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<std::uint8_t>(250 + 3 * i));
        EXPECT_EQ(fromBase64(toBase64(bytes)), bytes) << length;
    }
    for (const char* text : {"A", "AA", "AAA", "A===", "====", "AB==", "AAB=", "AA=A", "A\nAA", "AAAA=", "AA\xC3\xA4"}) EXPECT_FALSE(fromBase64(text)) << text;
}

}  // namespace
}  // namespace lorvane::automation
