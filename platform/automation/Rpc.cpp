#include "automation/Rpc.h"

#include "host/TextFunctions.h"

namespace lorvane::automation {

namespace {

/// Looked at before the text is parsed, so that nothing deep is ever built.
bool nestsTooDeep(std::string_view text) noexcept {
    std::size_t depth = 0;
    bool inText = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char character = text[at];
        if (inText) {
            if (character == '\\')
                ++at;
            else if (character == '"')
                inText = false;
        } else if (character == '"') {
            inText = true;
        } else if (character == '[' || character == '{') {
            if (++depth > deepestNesting) return true;
        } else if ((character == ']' || character == '}') && depth > 0) {
            --depth;
        }
    }
    return false;
}

[[noreturn]] void refuse(const std::string& why) {
    throw RpcError(rpc_code::InvalidRequest, why);
}

bool isId(const Json& value) {
    return value.is_number() || value.is_string() || value.is_null();
}

Json message(const Json& id) {
    return {{"jsonrpc", "2.0"}, {"id", id}};
}

}  // namespace

RpcError hostFailure(const host::HostError& error) {
    const std::string description = host::toUtf8(error.description());
    return {rpc_code::HostFailure, description, {{"number", error.number()}, {"description", description}}};
}

Json messageFrom(std::string_view line) {
    if (nestsTooDeep(line)) refuse("arrays and objects nest deeper than " + std::to_string(deepestNesting) + " levels");
    try {
        return Json::parse(line);
    } catch (const Json::exception& error) {
        // The library's own mark stands in front, in brackets.
        const std::string_view what = error.what();
        throw RpcError(rpc_code::ParseError, std::string(what.substr(what.find("] ") + 2)));
    }
}

Request requestFrom(const Json& message) {
    if (!message.is_object()) refuse("a request is an object");
    const auto version = message.find("jsonrpc");
    if (version == message.end() || *version != "2.0") refuse("\"jsonrpc\" must be \"2.0\"");
    Request request;
    if (const auto id = message.find("id"); id != message.end()) {
        if (!isId(*id)) refuse("\"id\" is a number, a text or null");
        request.id = *id;
        request.wantsAnswer = true;
    }
    const auto method = message.find("method");
    if (method == message.end() || !method->is_string()) refuse("\"method\" is missing, or no text");
    request.method = method->get<std::string>();
    if (const auto params = message.find("params"); params != message.end()) {
        if (!params->is_structured()) refuse("\"params\" is an object or an array");
        request.params = *params;
    }
    return request;
}

Json idOf(const Json& message) {
    if (!message.is_object()) return nullptr;
    const auto id = message.find("id");
    return id != message.end() && isId(*id) ? *id : Json();
}

Json resultMessage(const Json& id, Json result) {
    Json answer = message(id);
    answer["result"] = std::move(result);
    return answer;
}

Json errorMessage(const Json& id, const RpcError& error) {
    Json answer = message(id);
    answer["error"] = {{"code", error.code()}, {"message", error.what()}};
    if (!error.data().is_null()) answer["error"]["data"] = error.data();
    return answer;
}

Json notificationMessage(std::string_view method, Json params) {
    return {{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}};
}

std::string lineOf(const Json& message) {
    return message.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace lorvane::automation
