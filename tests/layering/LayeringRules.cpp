#include "layering/LayeringRules.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <sstream>

namespace lorvane::layering {

namespace {

constexpr std::string_view standardHeaders[] = {
    "algorithm",
    "any",
    "array",
    "atomic",
    "barrier",
    "bit",
    "bitset",
    "cassert",
    "cctype",
    "cerrno",
    "cfenv",
    "cfloat",
    "charconv",
    "chrono",
    "cinttypes",
    "climits",
    "clocale",
    "cmath",
    "codecvt",
    "compare",
    "complex",
    "concepts",
    "condition_variable",
    "coroutine",
    "csetjmp",
    "csignal",
    "cstdarg",
    "cstddef",
    "cstdint",
    "cstdio",
    "cstdlib",
    "cstring",
    "ctime",
    "cuchar",
    "cwchar",
    "cwctype",
    "deque",
    "exception",
    "execution",
    "filesystem",
    "format",
    "forward_list",
    "fstream",
    "functional",
    "future",
    "initializer_list",
    "iomanip",
    "ios",
    "iosfwd",
    "iostream",
    "istream",
    "iterator",
    "latch",
    "limits",
    "list",
    "locale",
    "map",
    "memory",
    "memory_resource",
    "mutex",
    "new",
    "numbers",
    "numeric",
    "optional",
    "ostream",
    "queue",
    "random",
    "ranges",
    "ratio",
    "regex",
    "scoped_allocator",
    "semaphore",
    "set",
    "shared_mutex",
    "source_location",
    "span",
    "sstream",
    "stack",
    "stdexcept",
    "stop_token",
    "streambuf",
    "string",
    "string_view",
    "strstream",
    "syncstream",
    "system_error",
    "thread",
    "tuple",
    "type_traits",
    "typeindex",
    "typeinfo",
    "unordered_map",
    "unordered_set",
    "utility",
    "valarray",
    "variant",
    "vector",
    "version",
};

bool isWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool listsWord(std::string_view list, std::string_view word) {
    std::istringstream words{std::string(list)};
    return std::find(std::istream_iterator<std::string>(words), {}, word) != std::istream_iterator<std::string>();
}

template <class Rows>
const FolderRule* ruleFor(const Rows& rules, std::string_view folder) {
    const auto* row = std::find_if(std::begin(rules), std::end(rules), [&](const FolderRule& rule) { return rule.folder == folder; });
    return row == std::end(rules) ? nullptr : row;
}

/// The next place behind `from` where `word` stands by itself.
std::size_t findWord(std::string_view text, std::string_view word, std::size_t from) {
    for (std::size_t at = text.find(word, from); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if ((at == 0 || !isWord(text[at - 1])) && (end == text.size() || !isWord(text[end]))) return at;
    }
    return std::string_view::npos;
}

std::string_view wordAt(std::string_view text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && isWord(text[end])) ++end;
    return text.substr(at, end - at);
}

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
    return at;
}

struct Place {
    std::string_view area;    // "src" or "platform"
    std::string_view folder;  // "text"
    std::string_view stem;    // "Tags"
};

std::optional<Place> placeOf(std::string_view path) {
    const std::size_t first = path.find('/');
    if (first == std::string_view::npos) return std::nullopt;
    const std::string_view area = path.substr(0, first);
    if (area != "src" && area != "platform") return std::nullopt;
    const std::string_view rest = path.substr(first + 1);
    const std::size_t second = rest.find('/');
    const std::string_view folder = second == std::string_view::npos ? std::string_view() : rest.substr(0, second);
    const std::string_view name = rest.substr(rest.rfind('/') + 1);
    return Place{area, folder, name.substr(0, name.find('.'))};
}

struct Include {
    bool quoted = false;
    std::string name;  // empty where a macro stands for it
};

/// The include that a line of code is, if it is one. `masked` tells code from comments and literals, `line` has the name.
std::optional<Include> includeOn(std::string_view masked, std::string_view line) {
    std::size_t at = skipBlanks(masked, 0);
    if (at == masked.size() || masked[at] != '#') return std::nullopt;
    at = skipBlanks(masked, at + 1);
    const std::string_view directive = wordAt(masked, at);
    if (directive != "include" && directive != "import" && directive != "include_next") return std::nullopt;
    at = skipBlanks(masked, at + directive.size());
    if (at == masked.size() || (masked[at] != '"' && masked[at] != '<')) return Include{};
    const bool quoted = masked[at] == '"';
    const std::size_t end = line.find(quoted ? '"' : '>', at + 1);
    if (end == std::string_view::npos) return Include{};
    return Include{quoted, std::string(line.substr(at + 1, end - at - 1))};
}

std::string checkOurHeader(const Place& place, const FolderRule& own, const std::string& header) {
    const std::string folder = header.substr(0, header.find('/'));
    if (header.find('/') == std::string::npos || header.starts_with('.') || header.find("/../") != std::string::npos) {
        return "\"" + header + "\" is not named from the top, as \"" + std::string(place.folder) + "/…\"";
    }
    const bool inSource = place.area == "src";
    if (folder == place.folder || listsWord(own.mayInclude, folder) || (!inSource && folder == "host")) return {};
    if (inSource && place.folder == "host" && ruleFor(sourceRules, folder) != nullptr &&
        std::find(std::begin(lifecycleFiles), std::end(lifecycleFiles), place.stem) != std::end(lifecycleFiles)) {
        return {};
    }
    return std::string(place.area) + "/" + std::string(place.folder) + " may not include \"" + header + "\"";
}

std::string checkSystemHeader(const Place& place, const std::string& header) {
    const std::string folder = header.substr(0, header.find('/'));
    if (folder != header && (ruleFor(sourceRules, folder) != nullptr || ruleFor(platformRules, folder) != nullptr)) {
        return "<" + header + "> is a header of ours: it is named in quotes";
    }
    if (place.area != "src") return {};
    const auto* forbidden = std::find_if(std::begin(forbiddenHeaders), std::end(forbiddenHeaders), [&](const Forbidden& row) { return row.name == header; });
    if (forbidden != std::end(forbiddenHeaders)) return "<" + header + "> goes round the platform; use " + std::string(forbidden->instead);
    if (std::find(std::begin(standardHeaders), std::end(standardHeaders), header) != std::end(standardHeaders)) return {};
    return "<" + header + "> is not of the C++ standard library";
}

std::string checkInclude(const Place& place, const FolderRule& own, const Include& include) {
    if (include.name.empty()) return "an include whose name a macro gives cannot be checked";
    return include.quoted ? checkOurHeader(place, own, include.name) : checkSystemHeader(place, include.name);
}

/// The end of the literal that begins with the quote at `at`: the place behind its closing quote, or the line's end where it is not closed.
std::size_t literalEnd(std::string_view text, std::size_t at) {
    const char quote = text[at];
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == quote) {
            return i + 1;
        } else if (text[i] == '\n') {
            return i;
        }
    }
    return text.size();
}

std::size_t rawLiteralEnd(std::string_view text, std::size_t quote) {
    const std::size_t open = text.find('(', quote);
    if (open == std::string_view::npos) return text.size();
    const std::string close = ")" + std::string(text.substr(quote + 1, open - quote - 1)) + "\"";
    const std::size_t end = text.find(close, open);
    return end == std::string_view::npos ? text.size() : end + close.size();
}

bool isRawPrefix(std::string_view text, std::size_t quote) {
    std::size_t begin = quote;
    while (begin > 0 && isWord(text[begin - 1])) --begin;
    const std::string_view prefix = text.substr(begin, quote - begin);
    return prefix == "R" || prefix == "u8R" || prefix == "uR" || prefix == "UR" || prefix == "LR";
}

bool isDigitSeparator(std::string_view text, std::size_t quote) {
    std::size_t begin = quote;
    while (begin > 0 && (isWord(text[begin - 1]) || text[begin - 1] == '\'')) --begin;
    return begin < quote && std::isdigit(static_cast<unsigned char>(text[begin])) != 0;
}

}  // namespace

std::string withoutCommentsAndLiterals(std::string_view text) {
    std::string masked(text);
    const auto blank = [&masked](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to && i < masked.size(); ++i) {
            if (masked[i] != '\n') masked[i] = ' ';
        }
    };
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i + 1;
        if (text.substr(i, 2) == "//") {
            end = std::min(text.find('\n', i), text.size());
            blank(i, end);
        } else if (text.substr(i, 2) == "/*") {
            const std::size_t close = text.find("*/", i + 2);
            end = close == std::string_view::npos ? text.size() : close + 2;
            blank(i, end);
        } else if (text[i] == '"') {
            end = isRawPrefix(text, i) ? rawLiteralEnd(text, i) : literalEnd(text, i);
            blank(i + 1, end > i + 1 ? end - 1 : end);
        } else if (text[i] == '\'' && !isDigitSeparator(text, i)) {
            end = literalEnd(text, i);
            blank(i + 1, end > i + 1 ? end - 1 : end);
        }
        i = end;
    }
    return masked;
}

std::vector<Violation> violations(std::string_view path, std::string_view text) {
    const std::optional<Place> place = placeOf(path);
    if (!place) return {};
    const FolderRule* own = place->area == "src" ? ruleFor(sourceRules, place->folder) : ruleFor(platformRules, place->folder);
    if (own == nullptr) return {{1, std::string(place->area) + "/" + std::string(place->folder) + " has no row in the table of folders"}};

    std::vector<Violation> found;
    const std::string masked = withoutCommentsAndLiterals(text);
    int number = 1;
    for (std::size_t begin = 0; begin < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        const std::string_view code = std::string_view(masked).substr(begin, end - begin);
        if (const auto include = includeOn(code, line)) {
            if (std::string what = checkInclude(*place, *own, *include); !what.empty()) found.push_back({number, std::move(what)});
        } else if (place->area == "src") {
            for (const Forbidden& row : forbiddenNames) {
                if (findWord(code, row.name, 0) == std::string_view::npos) continue;
                found.push_back({number, std::string(row.name) + " goes round the platform; use " + std::string(row.instead)});
            }
        }
        begin = end + 1;
    }
    return found;
}

std::vector<std::string> memberRows(std::string_view table) {
    const std::string masked = withoutCommentsAndLiterals(table);
    std::vector<std::string> rows;
    std::istringstream lines(masked);
    for (std::string line; std::getline(lines, line);) {
        for (const std::string_view macro : {"LORVANE_MEMBER(", "LORVANE_MEMBER_AS("}) {
            if (line.starts_with(macro)) rows.emplace_back(wordAt(line, skipBlanks(line, macro.size())));
        }
    }
    return rows;
}

std::vector<std::string> membersNamed(std::string_view code) {
    constexpr std::string_view qualifier = "Member::";
    const std::string masked = withoutCommentsAndLiterals(code);
    const std::string_view text = masked;
    std::vector<std::string> named;
    for (std::size_t at = text.find(qualifier); at != std::string_view::npos; at = text.find(qualifier, at + 1)) {
        if (at > 0 && isWord(text[at - 1])) continue;
        if (const std::string_view id = wordAt(text, at + qualifier.size()); !id.empty()) named.emplace_back(id);
    }
    return named;
}

}  // namespace lorvane::layering
