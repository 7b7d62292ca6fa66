#pragma once

#include <vector>

#include "automation/Rpc.h"
#include "automation/Values.h"
#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::automation {

/// The arguments of one use as a client gave them: in order, and behind them those by name. Each is a variable of its own, so that what a call changes in place
/// can be given back.
class Arguments {
public:
    /// `args` is an array or missing, `named` an object or missing. RpcError for anything else, and for a name that the member does not have.
    Arguments(const Json& params, const host::Object& object, host::Member member, bool byReference, const Values& values);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    host::Args args() const noexcept { return arguments_; }
    Json asTheyStand(const Values& values) const;

private:
    void takeNamed(const Json& named, const host::Object& object, host::Member member, const Values& values);

    struct Name {
        host::Member name;
        std::size_t place;
    };
    std::vector<host::Variant> variables_;
    std::vector<Name> names_;  // of those that the object takes by name
    std::vector<host::Argument> arguments_;
};

}  // namespace lorvane::automation
