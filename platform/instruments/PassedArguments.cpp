#include "instruments/PassedArguments.h"

#include <algorithm>
#include <utility>

namespace lorvane::instruments {

using host::Argument;
using host::Variant;

namespace {

/// A text's keeper is no more for the other side than an object is: it may live on another thread.
bool isOfItsSide(const Variant& value) {
    if (value.kind() == Variant::Kind::Object || value.keptText()) return true;
    return value.kind() == Variant::Kind::Array && std::ranges::any_of(value.toArray().items, isOfItsSide);
}

}  // namespace

Variant mapped(const Variant& value, const ObjectMap& map) {
    if (!isOfItsSide(value)) return value;
    if (value.kind() == Variant::Kind::Text) return std::u16string(value.textView());
    if (value.kind() == Variant::Kind::Object) {
        const host::Object object = value.toObject();
        return object ? map(object) : object;
    }
    host::Array array = value.toArray();
    for (Variant& item : array.items) item = mapped(item, map);
    return array;
}

PassedArguments::PassedArguments(host::Args args, const ObjectMap& in, ObjectMap out) : passed_(args), out_(std::move(out)) {
    if (std::ranges::none_of(args, [](const Argument& argument) { return argument.isByReference() || isOfItsSide(argument.value()); })) return;
    translated_.reserve(args.size());
    variables_.reserve(args.size());  // the arguments point into it
    for (const Argument& argument : args) {
        Variant value = mapped(argument.value(), in);
        if (argument.isByReference()) {
            variables_.push_back({argument.reference(), value, std::move(value)});
            translated_.push_back(Argument::byReference(variables_.back().now));
        } else {
            translated_.push_back(Argument::named(argument.name(), std::move(value)));
        }
    }
    passed_ = translated_;
}

void PassedArguments::writeBack() {
    for (const Variable& variable : variables_) {
        if (variable.now != variable.before) *variable.caller = mapped(variable.now, out_);
    }
}

}  // namespace lorvane::instruments
