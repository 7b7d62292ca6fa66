#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which way the arrows between folders point, and what the logic must not reach for. Pure: text in, violations out.
namespace lorvane::layering {

/// One folder and the other folders, divided by blanks, whose headers it may include. A folder without a row may not stand there at all.
struct FolderRule {
    std::string_view folder;
    std::string_view mayInclude;
};

/// The add-in's logic. Beside these it has the C++ standard library, without what `forbiddenHeaders` lists.
inline constexpr FolderRule sourceRules[] = {
    {"host", ""},
    {"text", "host"},
    {"store", "host text"},
    {"respond", "host text store"},
};

/// What stands behind the surface. Beside these a platform folder has `host` and any library.
inline constexpr FolderRule platformRules[] = {
    {"html", ""},
    {"recordset", ""},
    {"mailstore", ""},
    {"mime", "mailstore html"},
    {"screen", ""},
    {"services", "mailstore screen"},
    {"instruments", ""},
    {"model", "screen mailstore mime html recordset"},
    {"automation", "screen mailstore mime services instruments model"},
};

/// Files of src/host that are the add-in's own lifecycle: they tie its parts together, so they may include any folder of src/.
inline constexpr std::string_view lifecycleFiles[] = {"Connect",     "ConnectByName",  "OutAddIn",         "ExplorerWrap",
                                                      "clsInspWrap", "WindowCommands", "LifecycleRoutines"};

/// Something that the logic must not reach for, and what it has instead.
struct Forbidden {
    std::string_view name;
    std::string_view instead;
};

/// Standard headers that go round the platform: the fault injector and the virtual clock would not see it.
inline constexpr Forbidden forbiddenHeaders[] = {
    {"chrono", "the surface's clock"},
    {"condition_variable", "nothing: the logic has no threads"},
    {"csetjmp", "host::HostError"},
    {"csignal", "nothing: signals belong to the program"},
    {"ctime", "the surface's clock and host/Locale.h"},
    {"filesystem", "the surface's files"},
    {"fstream", "the surface's files"},
    {"future", "nothing: the logic has no threads"},
    {"iostream", "the surface's screen"},
    {"mutex", "nothing: the logic has no locks"},
    {"shared_mutex", "nothing: the logic has no locks"},
    {"thread", "nothing: the logic has no threads"},
};

/// Names that go round the platform through headers that are otherwise welcome, or that ask which platform it is.
inline constexpr Forbidden forbiddenNames[] = {
    {"getenv", "the surface's environment"},
    {"secure_getenv", "the surface's environment"},
    {"setenv", "the surface's environment"},
    {"putenv", "the surface's environment"},
    {"std::system", "the surface's shell"},
    {"popen", "the surface's shell"},
    {"std::exit", "host::HostError"},
    {"std::abort", "host::HostError"},
    {"fopen", "the surface's files"},
    {"freopen", "the surface's files"},
    {"tmpfile", "the surface's files"},
    {"std::time", "the surface's clock"},
    {"clock_gettime", "the surface's clock"},
    {"gettimeofday", "the surface's clock"},
    {"random_device", "a seed that the platform gives"},
    {"_WIN32", "a member of the surface"},
    {"__linux__", "a member of the surface"},
    {"__unix__", "a member of the surface"},
    {"__APPLE__", "a member of the surface"},
};

/// A place that breaks a rule.
struct Violation {
    int line = 0;  ///< from 1
    std::string what;
    bool operator==(const Violation&) const = default;
};

/// Everything in one file that breaks a rule, in the order of its lines.
///
/// `path` is the file's place from the top of the tree, as "src/text/Tags.h": it decides which rules hold. Files outside src/ and platform/ have none.
std::vector<Violation> violations(std::string_view path, std::string_view text);

/// The text with comments and the insides of literals turned to blanks; offsets and line ends stay.
std::string withoutCommentsAndLiterals(std::string_view text);

/// The ids of the rows of a member table, in their order.
std::vector<std::string> memberRows(std::string_view table);

/// The ids that code names as `Member::Id`; comments and literals do not count.
std::vector<std::string> membersNamed(std::string_view code);

}  // namespace lorvane::layering
