#include "services/Environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/TextFunctions.h"
#include "services/SurfacePath.h"

namespace lorvane::services {

using host::Variant;

std::u16string loginName() {
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    int failure = 0;
    while ((failure = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE) buffer.resize(buffer.size() * 2);
    if (failure == 0 && found) return host::fromUtf8(found->pw_name);
    // A container may run under a number that has no name.
    const char* told = std::getenv("LOGNAME");
    return told ? host::fromUtf8(told) : std::u16string();
}

std::u16string programFolder() {
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? std::u16string() : surfacePath(program.parent_path()).value_or(std::u16string());
}

std::span<const Environment::Row> Environment::rows() noexcept {
    static constexpr Row table[] = {{host::Member::AppPath, &Environment::AppPath}, {host::Member::Variable, &Environment::Variable}};
    return table;
}

Variant Environment::AppPath(host::Args) {
    return appPath_ ? *appPath_ : programFolder();
}

Variant Environment::Variable(host::Args args) {
    const std::u16string name = textAt(args, 0);
    if (host::equalsIgnoreCase(name, u"username")) return userName_ ? *userName_ : loginName();
    std::optional<std::u16string> value;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view line(*entry);
        const std::size_t mark = line.find('=');
        if (mark == std::string_view::npos) continue;
        const std::u16string candidate = host::fromUtf8(line.substr(0, mark));
        if (candidate == name) return host::fromUtf8(line.substr(mark + 1));
        if (!value && host::equalsIgnoreCase(candidate, name)) value = host::fromUtf8(line.substr(mark + 1));
    }
    return value.value_or(std::u16string());
}

}  // namespace lorvane::services
