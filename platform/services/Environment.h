#pragma once

#include <optional>
#include <span>
#include <string>

#include "services/ServiceObject.h"

namespace lorvane::services {

/// The name that the user of this process logs in with; "" where the system has none.
std::u16string loginName();

/// The folder of the running program, as a path of the surface without a "\" at its end; "" where the system does not tell it.
std::u16string programFolder();

/// The environment behind the surface (`host::Environment`): `username` is the login name, other variables are the process's own. Names in any case; where
/// several differ only in case, the one spelled as asked for is taken. `AppPath` is the add-in's own folder: the program's, unless told.
class Environment final : public ServiceObject<Environment> {
public:
    explicit Environment(std::optional<std::u16string> userName = std::nullopt, std::optional<std::u16string> appPath = std::nullopt)
        : userName_(std::move(userName)), appPath_(std::move(appPath)) {}

    std::u16string_view className() const noexcept override { return u"Environment"; }
    static std::span<const Row> rows() noexcept;

private:
    host::Variant AppPath(host::Args args);
    host::Variant Variable(host::Args args);

    std::optional<std::u16string> userName_, appPath_;
};

}  // namespace lorvane::services
