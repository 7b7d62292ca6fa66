#include "automation/Rpc.h"

#include <gtest/gtest.h>

namespace lorvane::automation {
namespace {

int codeOfMessage(std::string_view line) {
    try {
        requestFrom(messageFrom(line));
        return 0;
    } catch (const RpcError& error) {
        return error.code();
    }
}

TEST(Rpc, ARequestHasIdMethodAndParameters) {
    const Request request = requestFrom(messageFrom(R"({"jsonrpc":"2.0","id":"a","method":"get","params":{"obj":1}})"));
    EXPECT_TRUE(request.wantsAnswer);
    EXPECT_EQ(request.id, "a");
    EXPECT_EQ(request.method, "get");
    EXPECT_EQ(request.params, (Json{{"obj", 1}}));
}

TEST(Rpc, WithoutAnIdItIsANotificationAndParametersMayBeLeftOut) {
    const Request request = requestFrom(messageFrom(R"({"jsonrpc":"2.0","method":"get"})"));
    EXPECT_FALSE(request.wantsAnswer);
    EXPECT_EQ(request.params, Json::object());
    EXPECT_TRUE(requestFrom(messageFrom(R"({"jsonrpc":"2.0","id":null,"method":"get"})")).wantsAnswer) << "null is an id";
}

TEST(Rpc, WhatIsNoJsonInUtf8IsAParseError) {
    for (const char* line : {"", "{", "nonsense", "{\"a\":}", "\"\xFF\"", "\"\xC3\"", "\"\\uD800\"", "{\"jsonrpc\":\"2.0\",", "[1,]", "1e999", "{} {}"})
        EXPECT_EQ(codeOfMessage(line), rpc_code::ParseError) << line;
}

TEST(Rpc, WhatIsJsonButNoRequestIsInvalid) {
    for (const char* line : {"1", "null", "\"get\"", "{}", R"({"jsonrpc":"1.0","method":"get"})", R"({"jsonrpc":2.0,"method":"get"})", R"({"jsonrpc":"2.0"})",
                             R"({"jsonrpc":"2.0","method":1})", R"({"jsonrpc":"2.0","method":"get","params":7})",
                             R"({"jsonrpc":"2.0","id":[1],"method":"get"})", R"({"jsonrpc":"2.0","id":true,"method":"get"})"})
        EXPECT_EQ(codeOfMessage(line), rpc_code::InvalidRequest) << line;
}

TEST(Rpc, NestingBeyondTheLimitIsRefusedBeforeItIsBuilt) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_NO_THROW(messageFrom(nested(deepestNesting)));
    EXPECT_EQ(codeOfMessage(nested(deepestNesting + 1)), rpc_code::InvalidRequest);
    EXPECT_EQ(codeOfMessage(std::string(5'000'000, '[')), rpc_code::InvalidRequest);
    std::string brackets = "\"";
    for (int i = 0; i < 100; ++i) brackets += "[{\\\"";
    EXPECT_NO_THROW(messageFrom(brackets + "\"")) << "brackets in a text nest nothing";
    std::string row = "[";
    for (int i = 0; i < 100; ++i) row += "[],";
    EXPECT_NO_THROW(messageFrom(row + "[]]")) << "nor do neighbours";
}

TEST(Rpc, TheIdOfABrokenRequestIsKeptWhereItIsOne) {
    EXPECT_EQ(idOf(Json::parse(R"({"id":7})")), 7);
    EXPECT_EQ(idOf(Json::parse(R"({"id":{}})")), nullptr);
    EXPECT_EQ(idOf(Json::parse("[]")), nullptr);
}

TEST(Rpc, MessagesAreOneLineOfJson) {
    EXPECT_EQ(lineOf(resultMessage(1, "a\nb")), R"({"id":1,"jsonrpc":"2.0","result":"a\nb"})");
    EXPECT_EQ(lineOf(resultMessage(1, nullptr)), R"({"id":1,"jsonrpc":"2.0","result":null})");
    EXPECT_EQ(lineOf(notificationMessage("closed", {{"window", "frmEmail"}})), R"({"jsonrpc":"2.0","method":"closed","params":{"window":"frmEmail"}})");
    EXPECT_EQ(lineOf(errorMessage("x", RpcError(-32601, "no"))), R"({"error":{"code":-32601,"message":"no"},"id":"x","jsonrpc":"2.0"})");
    EXPECT_EQ(lineOf(errorMessage(nullptr, hostFailure(host::HostError(-5, u"gone")))),
              R"({"error":{"code":-32000,"data":{"description":"gone","number":-5},"message":"gone"},"id":null,"jsonrpc":"2.0"})");
}

}  // namespace
}  // namespace lorvane::automation
