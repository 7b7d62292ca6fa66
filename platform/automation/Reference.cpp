#include "automation/Reference.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "automation/Methods.h"
#include "automation/Person.h"
#include "automation/Session.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

namespace {

/// "|" divides cells.
std::string cell(std::string text) {
    for (std::size_t at = text.find('|'); at != std::string::npos; at = text.find('|', at + 2)) text.insert(at, "\\");
    return text;
}

std::string row(const std::string& first, const std::string& second) {
    return "| " + cell(first) + " | " + cell(second) + " |\n";
}

std::string heading(const std::string& first, const std::string& second) {
    return row(first, second) + "|---|---|\n";
}

std::string signature(std::u16string_view name, std::u16string_view parameters) {
    return "`" + host::toUtf8(name) + "(" + host::toUtf8(parameters) + ")`";
}

std::string methodTable(const AddInTables&) {
    std::string text = "| method | parameters | does |\n|---|---|---|\n";
    for (const MethodRow& method : methodRows())
        text += "| `" + std::string(method.name) + "` | " + std::string(method.parameters) + " | " + cell(std::string(method.doc)) + " |\n";
    return text;
}

std::string rootTable(const AddInTables&) {
    std::string text = heading("name", "object");
    for (const RootRow& root : rootRows()) text += row("`" + std::string(root.name) + "`", std::string(root.doc));
    return text;
}

std::string userTable(const AddInTables&) {
    std::string text = heading("member", "does");
    for (const PersonRow& member : personRows()) text += row(signature(member.name, member.parameters), std::string(member.doc));
    return text;
}

std::string globalTable(const AddInTables& tables) {
    std::string names;
    for (const host::GlobalTable table : tables.globals)
        for (const host::GlobalValue& value : table) names += (names.empty() ? "`" : ", `") + host::toUtf8(value.name) + "`";
    std::string text = "Values: " + names + ".\n\nRoutines: ";
    for (const host::Routine& routine : settingsRoutines())
        text += (&routine == settingsRoutines().data() ? "" : ", ") + signature(routine.name, routine.parameters);
    return text + ".\n";
}

std::string moduleTable(const AddInTables& tables) {
    std::vector<const host::Routine*> routines;
    for (const host::RoutineTable table : tables.routines)
        for (const host::Routine& routine : table) routines.push_back(&routine);
    std::ranges::stable_sort(routines, {}, &host::Routine::module);
    std::string text = heading("module", "routine");
    for (const host::Routine* routine : routines) text += row("`" + host::toUtf8(routine->module) + "`", signature(routine->name, routine->parameters));
    text += "\nClasses that `New` makes: ";
    for (const host::NamedClass& made : tables.classes) text += (&made == tables.classes.data() ? "`" : ", `") + host::toUtf8(made.name) + "`";
    return text + ".\n";
}

struct NamedTable {
    std::string_view name;
    std::string (*make)(const AddInTables& tables);
};
constexpr NamedTable namedTables[] = {
    {"methods", methodTable}, {"roots", rootTable}, {"user", userTable}, {"globals", globalTable}, {"modules", moduleTable},
};

}  // namespace

std::string withTables(std::string_view page, const AddInTables& tables) {
    constexpr std::string_view opening = "<!-- table: ", closing = " -->\n", end = "<!-- end -->\n";
    std::string result;
    for (std::size_t at = page.find(opening); at != std::string_view::npos; at = page.find(opening)) {
        const std::size_t nameEnd = page.find(closing, at);
        const std::size_t tableEnd = page.find(end, at);
        if (nameEnd == std::string_view::npos || tableEnd == std::string_view::npos) throw std::runtime_error("a table of the page has no end");
        const std::string_view name = page.substr(at + opening.size(), nameEnd - at - opening.size());
        const auto table = std::ranges::find(namedTables, name, &NamedTable::name);
        if (table == std::end(namedTables)) throw std::runtime_error("there is no table " + std::string(name));
        result.append(page.substr(0, nameEnd + closing.size())).append(table->make(tables)).append(end);
        page.remove_prefix(tableEnd + end.size());
    }
    return result.append(page);
}

}  // namespace lorvane::automation
