#pragma once

#include <functional>
#include <vector>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::instruments {

using ObjectMap = std::function<host::Object(const host::Object&)>;

/// The value with each object in it, also inside arrays, replaced by what `map` gives for it, and each kept text by one of its own. Nothing stays Nothing.
host::Variant mapped(const host::Variant& value, const ObjectMap& map);

/// Arguments on their way through a decorator: values are mapped by `in` before the use and, in variables passed by reference, by `out` behind it.
class PassedArguments {
public:
    PassedArguments(host::Args args, const ObjectMap& in, ObjectMap out);
    PassedArguments(const PassedArguments&) = delete;
    PassedArguments& operator=(const PassedArguments&) = delete;

    host::Args args() const noexcept { return passed_; }
    /// Gives the caller's variables what the use assigned to them. A variable that was left alone keeps its very value.
    void writeBack();

private:
    struct Variable {
        host::Variant* caller;
        host::Variant before, now;
    };
    host::Args passed_;
    std::vector<host::Argument> translated_;
    std::vector<Variable> variables_;
    ObjectMap out_;
};

}  // namespace lorvane::instruments
