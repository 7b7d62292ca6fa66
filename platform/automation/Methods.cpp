#include "automation/Methods.h"

#include <algorithm>

#include "automation/Arguments.h"
#include "automation/TableObject.h"
#include "host/HostError.h"
#include "host/Routines.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

using host::Member;
using host::Object;
using host::Variant;

namespace {

constexpr std::string_view result = "result";

constexpr MethodRow rows[] = {
    {"root", "name", "an object to begin with, by name", &Methods::root},
    {"get", "obj, member, [args], [named], [byref]", "the value of a member", &Methods::get},
    {"put", "obj, member, value, [args], [named]", "gives a member another value", &Methods::put},
    {"call", "obj, member, [args], [named], [byref]", "calls a member, and gives what it answers", &Methods::call},
    {"advise", "obj", "the object's events come as notifications `event` from now on", &Methods::advise},
    {"release", "obj", "lets an object go; its number means nothing any more, and its events end", &Methods::release},
    {"batch", "requests", "several of the above, each an object of `method` and `params`, in order up to the first error; the answers of all", &Methods::batch},
};

[[noreturn]] void refuse(const std::string& why) {
    throw RpcError(rpc_code::InvalidParams, why);
}

const MethodRow& rowNamed(const std::string& name) {
    const auto row = std::ranges::find(rows, name, &MethodRow::name);
    if (row == std::end(rows)) throw RpcError(rpc_code::MethodNotFound, "there is no method \"" + name + "\"");
    return *row;
}

/// The names of a list of parameters; those in brackets may be left out.
struct Name {
    std::string_view name;
    bool isOptional;
};
std::vector<Name> namesOf(std::string_view parameters) {
    std::vector<Name> names;
    while (!parameters.empty()) {
        const std::size_t end = std::min(parameters.find(", "), parameters.size());
        const std::string_view part = parameters.substr(0, end);
        const bool isOptional = part.front() == '[';
        names.push_back({isOptional ? part.substr(1, part.size() - 2) : part, isOptional});
        parameters.remove_prefix(std::min(end + 2, parameters.size()));
    }
    return names;
}

/// Parameters by position become those by name; what is missing or too much is told.
Json byName(const Json& params, std::string_view parameters) {
    const std::vector<Name> names = namesOf(parameters);
    Json table = Json::object();
    if (params.is_object()) {
        table = params;
    } else {
        if (params.size() > names.size()) refuse("too many parameters");
        for (std::size_t place = 0; place < params.size(); ++place) table[std::string(names[place].name)] = params[place];
    }
    for (const Name& name : names)
        if (!name.isOptional && !table.contains(name.name)) refuse("\"" + std::string(name.name) + "\" is missing");
    for (const auto& [key, value] : table.items())
        if (std::ranges::find(names, key, &Name::name) == names.end()) refuse("there is no parameter \"" + key + "\"");
    return table;
}

const std::string& textAt(const Json& params, const char* name) {
    const Json& value = params[name];
    if (!value.is_string()) refuse("\"" + std::string(name) + "\" is a text");
    return value.get_ref<const std::string&>();
}

bool flagAt(const Json& params, const char* name) {
    const auto flag = params.find(name);
    if (flag == params.end()) return false;
    if (!flag->is_boolean()) refuse("\"" + std::string(name) + "\" is true or false");
    return flag->get<bool>();
}

[[noreturn]] void raiseUnknownMember(const std::string& description) {
    throw RpcError(rpc_code::UnknownMember, description, {{"number", host::runtime_error::NoSuchMember}, {"description", description}});
}

/// Whether an error says that this object does not have this very member, and not that something inside its use failed so.
bool isUnknownMember(const host::HostError& error, const host::Dispatch& object, Member member) {
    if (error.number() != host::runtime_error::NoSuchMember) return false;
    const std::u16string used = std::u16string(u": ").append(object.className()).append(u".");
    const std::size_t at = error.description().find(used);
    if (at == std::u16string::npos) return false;
    const std::u16string_view named = std::u16string_view(error.description()).substr(at + used.size());
    return named == object.memberText(member) || named.starts_with(u"?");
}

/// {"$result": k} in the parameters of an entry, at any depth, is what entry k gave.
Json withResults(const Json& value, const std::vector<Json>& given) {
    if (!value.is_structured()) return value;
    if (const auto place = value.is_object() && value.size() == 1 ? value.find("$result") : value.end(); place != value.end()) {
        if (!place->is_number_unsigned() || *place >= given.size()) refuse("\"$result\" is the number of an entry before, from 0");
        return given[place->get<std::size_t>()];
    }
    Json copy = value;
    for (Json& part : copy) part = withResults(part, given);
    return copy;
}

}  // namespace

Outcome::Outcome(Json value, Json arguments) : answer({{result, std::move(value)}, {"args", std::move(arguments)}}), withArguments(true) {}

std::span<const MethodRow> methodRows() noexcept {
    return rows;
}

/// The object and member of a request.
struct Methods::Target {
    Object object;
    Member member;

    /// Runs a use of it. A member that the object does not have is told apart from other failures.
    template <class Use>
    auto use(Use&& use) const {
        try {
            return use(*object.dispatch());
        } catch (const host::HostError& error) {
            if (isUnknownMember(error, *object.dispatch(), member)) raiseUnknownMember(host::toUtf8(error.description()));
            throw;
        }
    }
    bool givesArgumentsBack() const {
        const auto* described = host::implementation<const TableObject>(object);
        return described && described->givesArgumentsBack(member);
    }
};

Methods::Methods(std::vector<Root> roots, Handles& handles, RemoteUser& user, Notify notify)
    : roots_(std::move(roots)), handles_(handles), values_(handles), user_(user), notify_(std::move(notify)) {}

Outcome Methods::run(const std::string& method, const Json& params) {
    const MethodRow& row = rowNamed(method);
    if (row.run == &Methods::batch) return batch(params);
    return (this->*row.run)(byName(params, row.parameters));
}

Methods::Target Methods::target(const Json& params) const {
    const Object object = values_.objectFromJson(params["obj"]);
    const std::string& name = textAt(params, "member");
    const auto member = object.dispatch()->memberNamed(host::fromUtf8(name));
    if (!member) raiseUnknownMember("Object doesn't support this property or method: " + host::toUtf8(object.dispatch()->className()) + "." + name);
    return {object, *member};
}

Outcome Methods::root(const Json& params) {
    const std::string& name = textAt(params, "name");
    const auto found = std::ranges::find(roots_, name, &Root::name);
    if (found != roots_.end()) return values_.toJson(found->object);
    std::string names;
    for (const Root& root : roots_) names.append(names.empty() ? "" : ", ").append(root.name);
    refuse("there is no root object \"" + name + "\"; there are " + names);
}

Outcome Methods::get(const Json& params) {
    const Target used = target(params);
    const Arguments arguments(params, used.object, used.member, flagAt(params, "byref"), values_);
    const Variant value = used.use([&](host::Dispatch& object) { return object.get(used.member, arguments.args()); });
    if (!flagAt(params, "byref")) return values_.toJson(value);
    return {values_.toJson(value), arguments.asTheyStand(values_)};
}

Outcome Methods::put(const Json& params) {
    const Target used = target(params);
    const Arguments arguments(params, used.object, used.member, false, values_);
    const Variant value = values_.fromJson(params["value"]);
    used.use([&](host::Dispatch& object) { object.put(used.member, value, arguments.args()); });
    return Json();
}

Outcome Methods::call(const Json& params) {
    const Target used = target(params);
    const bool byReference = used.givesArgumentsBack() || flagAt(params, "byref");
    const Arguments arguments(params, used.object, used.member, byReference, values_);
    const Variant value = used.use([&](host::Dispatch& object) { return object.call(used.member, arguments.args()); });
    if (!byReference) return values_.toJson(value);
    return {values_.toJson(value), arguments.asTheyStand(values_)};
}

Outcome Methods::advise(const Json& params) {
    const Object object = values_.objectFromJson(params["obj"]);
    handles_.advise(handles_.numberOf(object), [this](Handles::Number number, std::u16string_view event, host::Args args) {
        Json values = Json::array();
        for (const host::Argument& argument : args) values.push_back(values_.toJson(argument.value()));
        notify_("event", {{"obj", number}, {"name", host::toUtf8(event)}, {"args", std::move(values)}});
    });
    return Json();
}

Outcome Methods::release(const Json& params) {
    const Object object = values_.objectFromJson(params["obj"]);
    handles_.release(handles_.numberOf(object));
    return Json();
}

Outcome Methods::runEntry(const Json& entry, const std::vector<Json>& given) {
    const auto method = entry.is_object() ? entry.find("method") : entry.end();
    if (!entry.is_object() || method == entry.end() || !method->is_string() || *method == "batch")
        refuse("an entry is an object with a \"method\" other than batch");
    const Json params = entry.contains("params") ? withResults(entry["params"], given) : Json::object();
    if (!params.is_structured()) refuse("\"params\" is an object or an array");
    try {
        Outcome outcome = run(method->get<std::string>(), params);
        if (const auto refused = user_.takeRefusal()) throw host::HostError(*refused);
        return outcome;
    } catch (const host::HostError&) {
        // What failed in the end may have failed of the refusal.
        if (const auto refused = user_.takeRefusal()) throw host::HostError(*refused);
        throw;
    }
}

Outcome Methods::batch(const Json& params) {
    const Json& entries = params.is_object() && params.contains("requests") ? params["requests"] : params;
    if (!entries.is_array()) refuse("the parameters of a batch are an array of requests");
    Json answers = Json::array();
    std::vector<Json> given;
    const auto failure = [&](const RpcError& error) {
        Json data = error.data().is_object() ? error.data() : Json::object();
        data["entry"] = answers.size();
        data["results"] = answers;
        return RpcError(error.code(), error.what(), std::move(data));
    };
    user_.takeRefusal();
    for (const Json& entry : entries) {
        try {
            Outcome outcome = runEntry(entry, given);
            given.push_back(outcome.given());
            answers.push_back(std::move(outcome.answer));
        } catch (const RpcError& error) {
            throw failure(error);
        } catch (const host::HostError& error) {
            throw failure(hostFailure(error));
        }
    }
    return answers;
}

}  // namespace lorvane::automation
