#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Handles.h"
#include "automation/RemoteUser.h"
#include "automation/Rpc.h"
#include "automation/Values.h"

namespace lorvane::automation {

/// An object that a client begins with.
struct Root {
    std::string_view name;
    host::Object object;
};

class Methods;

/// What a request came to.
struct Outcome {
    Outcome(Json answerOfIt) : answer(std::move(answerOfIt)) {}
    Outcome(Json value, Json arguments);  ///< a use that gives its arguments back
    /// What a later entry of a batch takes for it: the value alone, without arguments.
    const Json& given() const { return withArguments ? answer["result"] : answer; }

    Json answer;
    bool withArguments = false;
};

/// A method of the door. Parameters are named as in `host::Routine::parameters`.
struct MethodRow {
    std::string_view name, parameters, doc;
    Outcome (Methods::*run)(const Json& params);
};
std::span<const MethodRow> methodRows() noexcept;

/// What the methods of the door do: they translate, and use the object.
class Methods {
public:
    using Notify = std::function<void(std::string_view method, Json params)>;

    Methods(std::vector<Root> roots, Handles& handles, RemoteUser& user, Notify notify);

    /// Runs one request. RpcError for what is wrong with it, HostError for what failed.
    Outcome run(const std::string& method, const Json& params);

    Outcome root(const Json& params);
    Outcome get(const Json& params);
    Outcome put(const Json& params);
    Outcome call(const Json& params);
    Outcome advise(const Json& params);
    Outcome release(const Json& params);
    Outcome batch(const Json& params);

private:
    struct Target;
    Target target(const Json& params) const;
    Outcome runEntry(const Json& entry, const std::vector<Json>& given);

    std::vector<Root> roots_;
    Handles& handles_;
    Values values_;
    RemoteUser& user_;
    Notify notify_;
};

}  // namespace lorvane::automation
