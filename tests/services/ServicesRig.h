#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "host/HostError.h"
#include "host/Services.h"
#include "mailstore/TempFolder.h"
#include "services/Services.h"

namespace lorvane::services::test {

/// The number of the HostError that `act` raises, 0 for none.
template <class Act>
std::int32_t errorOf(Act&& act) {
    try {
        act();
    } catch (const host::HostError& error) {
        return error.number();
    }
    return 0;
}

/// Services over a folder of their own, used through the facades as the logic does.
class Rig {
public:
    explicit Rig(ServiceOptions options = {});

    mailstore::test::TempFolder folder;
    Services services;
    host::Files files{services.files};
    host::Settings settings{services.settings};
    host::Clock clock{services.clock};
    host::Environment environment{services.environment};
    host::Clipboard clipboard{services.clipboard};
    host::Region region{services.region};
    host::Shell shell{services.shell};

    /// A path of the surface inside the folder.
    std::u16string path(std::u16string_view name) const;

private:
    ServiceOptions inFolder(ServiceOptions options) const;
};

/// Everything in a file, as it lies there.
std::string contentOf(const std::filesystem::path& file);
void fill(const std::filesystem::path& file, const std::string& content);

/// A variable of the process's environment for the length of a scope.
class VariableScope {
public:
    VariableScope(const char* name, const char* value);
    ~VariableScope();
    VariableScope(const VariableScope&) = delete;
    VariableScope& operator=(const VariableScope&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

/// Whoever runs the tests has the rights of an ordinary user to files, for the length of a scope.
class OrdinaryUserScope {
public:
    OrdinaryUserScope();
    ~OrdinaryUserScope();
    OrdinaryUserScope(const OrdinaryUserScope&) = delete;
    OrdinaryUserScope& operator=(const OrdinaryUserScope&) = delete;

private:
    int before_;
};

}  // namespace lorvane::services::test
