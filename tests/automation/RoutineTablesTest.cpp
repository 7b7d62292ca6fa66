#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "AddInTables.h"
#include "host/TextFunctions.h"
#include "layering/LayeringRules.h"

/// The tables of routines against the headers of the modules.
namespace lorvane {
namespace {

/// Routines that other programs do not get by name, and why.
const std::map<std::string, std::string> leftOut = {
    {"showStandardError", "takes an error, which is no value"},
    {"templateTables", "its tables are values of Globals"},
    {"furtherWindows", "the add-in's own wiring"},
    {"explorerWraps", "the add-in's own collection of wrappers"},
    {"inspectorWraps", "the add-in's own collection of wrappers"},
    {"KillExpl", "takes a wrapper, which is no value"},
    {"KillInsp", "takes a wrapper, which is no value"},
    {"PickFolder", "the window that it opens is not there yet"},
    {"CategorizeTemplate", "the window that it opens is not there yet"},
    {"OpenManual", "the manual is not there yet"},
    {"ShowSearchTip", "the balloon is not there yet"},
    {"CloseSearchTip", "the balloon is not there yet"},
    {"oe_NewMail_UsingTempl", "not there yet"},
    {"ReplyUsingTemplate", "not there yet"},
};

std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

bool isNamePart(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) || character == '_';
}

/// The function that a declaration of a namespace declares; "" for anything else.
std::string declaredFunction(const std::string& declaration) {
    for (const char* other : {"class ", "struct ", "enum ", "using ", "template", "inline constexpr ", "namespace ", "#"})
        if (declaration.starts_with(other)) return {};
    const std::size_t open = declaration.find('(');
    if (open == std::string::npos || open == 0) return {};
    std::size_t begin = open;
    while (begin > 0 && isNamePart(declaration[begin - 1])) --begin;
    return declaration.substr(begin, open - begin);
}

/// Names of the functions that a header declares for a namespace, not inside a class.
std::set<std::string> functionsOf(const std::filesystem::path& header) {
    const std::string text = layering::withoutCommentsAndLiterals(textOf(header));
    std::set<std::string> functions;
    std::string declaration;
    int classes = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("#") || (classes == 0 && line.starts_with("namespace"))) continue;
        for (const char character : line + " ") {
            if (character == '{') ++classes;
            if (character == '}') classes = std::max(0, classes - 1);
            if (character == ';' && classes == 0) {
                declaration.erase(0, declaration.find_first_not_of(" \n}"));
                if (const std::string name = declaredFunction(declaration); !name.empty()) functions.insert(name);
                declaration.clear();
            } else if (classes == 0 || character == '{') {
                declaration += character;
            }
        }
    }
    return functions;
}

/// Those of src/host that are modules; the other headers there are the surface, or classes.
constexpr const char* hostModules[] = {"basGlobals", "basExplCol", "basOutlInsp", "modCommandBarCode", "WordTemplate", "Connect"};

/// The modules' headers: those of the logic's folders, and some of src/host.
std::vector<std::filesystem::path> moduleHeaders() {
    const std::filesystem::path source = std::filesystem::path(LORVANE_SOURCE_DIR) / "src";
    std::vector<std::filesystem::path> headers;
    for (const char* module : hostModules) headers.push_back(source / "host" / (std::string(module) + ".h"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(source))
        if (entry.path().extension() == ".h" && entry.path().filename() != "Routines.h" && entry.path().parent_path().filename() != "host")
            headers.push_back(entry.path());
    return headers;
}

std::set<std::string> tabledNames() {
    std::set<std::string> names;
    for (const host::RoutineTable table : cli::addInTables().routines)
        for (const host::Routine& routine : table) names.insert(host::toUtf8(routine.name));
    return names;
}

TEST(RoutineTables, HoldEachPublicRoutineOfTheModules) {
    const std::set<std::string> tabled = tabledNames();
    std::size_t seen = 0;
    for (const auto& header : moduleHeaders()) {
        for (const std::string& name : functionsOf(header)) {
            ++seen;
            EXPECT_TRUE(tabled.contains(name) || leftOut.contains(name)) << name << " of " << header << " is in no table of routines";
        }
    }
    EXPECT_GT(seen, 60U) << "the headers were not read";
}

TEST(RoutineTables, LeaveOutNothingThatIsThere) {
    const std::set<std::string> tabled = tabledNames();
    for (const auto& [name, reason] : leftOut) EXPECT_FALSE(tabled.contains(name)) << name << ": " << reason;
}

TEST(RoutineTables, HaveEachNameOnceInAModule) {
    std::set<std::pair<std::u16string, std::u16string>> names;
    for (const host::RoutineTable table : cli::addInTables().routines)
        for (const host::Routine& routine : table)
            EXPECT_TRUE(names.emplace(host::LCase(routine.module), host::LCase(routine.name)).second) << host::toUtf8(routine.name);
}

}  // namespace
}  // namespace lorvane
