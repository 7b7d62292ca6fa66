#include "automation/Session.h"

#include "host/Guards.h"
#include "screen/ControlActions.h"

namespace lorvane::automation {

namespace {

struct NamedRoot {
    RootRow row;
    host::Object (*make)(const SessionParts& parts, Person& person);
};

constexpr NamedRoot roots[] = {
    {{"Application", "the mail host"}, [](const SessionParts& parts, Person&) { return parts.application; }},
    {{"AddInInst", "the host's object for the add-in"}, [](const SessionParts& parts, Person&) { return parts.addInInst; }},
    {{"Connect", "the add-in's connection class"}, [](const SessionParts& parts, Person&) { return parts.connection; }},
    {{"Forms", "the add-in's windows by name; naming one loads it"}, [](const SessionParts&, Person&) { return makeForms(); }},
    {{"User", "the person at the machine, and the machine itself"}, [](const SessionParts&, Person& person) { return makeUser(person); }},
    {{"Globals", "the add-in's process-wide values by name, and its settings"}, [](const SessionParts& parts, Person&) { return makeGlobals(parts.tables); }},
    {{"Modules", "the add-in's routines, by module and name"}, [](const SessionParts& parts, Person&) { return makeModules(parts.tables); }},
};

std::vector<Root> rootsOf(const SessionParts& parts, Person& person) {
    std::vector<Root> result;
    for (const NamedRoot& root : roots) result.push_back({root.row.name, root.make(parts, person)});
    return result;
}

}  // namespace

std::vector<RootRow> rootRows() {
    std::vector<RootRow> rows;
    for (const NamedRoot& root : roots) rows.push_back(root.row);
    return rows;
}

Session::Session(Transport& transport, Pace& pace, const SessionParts& parts)
    : user_(parts.machine.user),
      windows_(parts.machine.windows),
      instruments_(parts.machine.instruments),
      person_(parts.machine),
      door_(transport, user_, pace, rootsOf(parts, person_)) {}

void Session::serve() {
    door_.serve([this] { leave(); });
}

void Session::leave() {
    user_.forgetAnswers();
    instruments_.clear();
    for (auto rows = windows_.rows(); !rows.empty(); rows.pop_back()) {
        host::Form* form = windows_.find(rows.back().name);
        if (form) host::ignoringErrors([&] { screen::closeByTitleBar(*form); });
    }
}

}  // namespace lorvane::automation
