#include "automation/Arguments.h"

#include <algorithm>

#include "automation/TableObject.h"
#include "host/Routines.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

using host::Variant;

namespace {

[[noreturn]] void refuse(const std::string& why) {
    throw RpcError(rpc_code::InvalidParams, why);
}

}  // namespace

Arguments::Arguments(const Json& params, const host::Object& object, host::Member member, bool byReference, const Values& values) {
    if (const auto args = params.find("args"); args != params.end()) {
        if (!args->is_array()) refuse("\"args\" is an array");
        for (const Json& argument : *args) variables_.push_back(values.argumentFromJson(argument));
    }
    if (const auto named = params.find("named"); named != params.end()) {
        if (!named->is_object()) refuse("\"named\" is an object");
        takeNamed(*named, object, member, values);
    }
    for (std::size_t place = 0; place < variables_.size(); ++place) {
        const auto name = std::ranges::find(names_, place, &Name::place);
        if (name != names_.end())
            arguments_.push_back(host::Argument::named(name->name, variables_[place]));
        else if (byReference)
            arguments_.push_back(host::Argument::byReference(variables_[place]));
        else
            arguments_.emplace_back(variables_[place]);
    }
}

void Arguments::takeNamed(const Json& named, const host::Object& object, host::Member member, const Values& values) {
    const auto* described = host::implementation<const TableObject>(object);
    for (const auto& [nameUtf8, value] : named.items()) {
        const std::u16string name = host::fromUtf8(nameUtf8);
        const Variant argument = values.argumentFromJson(value);
        if (!described) {
            const auto number = object.dispatch()->memberNamed(name);
            if (!number) refuse("there is no argument \"" + nameUtf8 + "\"");
            names_.push_back({*number, variables_.size()});
            variables_.push_back(argument);
            continue;
        }
        const auto place = host::parameterIndex(described->parametersOf(member), name);
        if (!place) refuse("there is no argument \"" + nameUtf8 + "\"");
        if (*place < variables_.size() && !variables_[*place].isMissing()) refuse("the argument \"" + nameUtf8 + "\" is given twice");
        variables_.resize(std::max(variables_.size(), *place + 1), Variant::missing());
        variables_[*place] = argument;
    }
}

Json Arguments::asTheyStand(const Values& values) const {
    Json items = Json::array();
    for (const Variant& variable : variables_) items.push_back(values.toJson(variable));
    return items;
}

}  // namespace lorvane::automation
