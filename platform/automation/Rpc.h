#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/HostError.h"

/// Messages of JSON-RPC 2.0, from and to text. Pure.
namespace lorvane::automation {

using Json = nlohmann::json;

/// The error codes of the door: those of the protocol, and two of its own.
namespace rpc_code {
inline constexpr int ParseError = -32700;      ///< no JSON, or not UTF-8
inline constexpr int InvalidRequest = -32600;  ///< JSON, but no request; or beyond a limit
inline constexpr int MethodNotFound = -32601;
inline constexpr int InvalidParams = -32602;
inline constexpr int InternalError = -32603;
inline constexpr int HostFailure = -32000;  ///< a HostError; data has its number and description
inline constexpr int UnknownMember = -32001;
}  // namespace rpc_code

/// How deep arrays and objects may nest in a message.
inline constexpr std::size_t deepestNesting = 64;

/// A request that comes to nothing, as the error object of its answer. It never crosses the platform surface.
class RpcError : public std::runtime_error {
public:
    RpcError(int code, const std::string& message, Json data = nullptr) : std::runtime_error(message), code_(code), data_(std::move(data)) {}
    int code() const noexcept { return code_; }
    const Json& data() const noexcept { return data_; }  ///< null where there is none

private:
    int code_;
    Json data_;
};

/// A failure of the host, or of the add-in, as an error object.
RpcError hostFailure(const host::HostError& error);

struct Request {
    Json id;                   ///< null for a notification
    bool wantsAnswer = false;  ///< it has an id
    std::string method;
    Json params = Json::object();  ///< a table, or a list
};

/// The JSON of a line. RpcError where it is none, or nested too deep.
Json messageFrom(std::string_view line);
/// The request that a message is; RpcError (InvalidRequest) where it is none.
Request requestFrom(const Json& message);
/// The id to answer with where a message is no request: its own where it has a proper one, else null.
Json idOf(const Json& message);

Json resultMessage(const Json& id, Json result);
Json errorMessage(const Json& id, const RpcError& error);
Json notificationMessage(std::string_view method, Json params);
/// A message on one line, in UTF-8.
std::string lineOf(const Json& message);

}  // namespace lorvane::automation
