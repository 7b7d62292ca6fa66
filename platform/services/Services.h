#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/ServiceObjects.h"
#include "mailstore/MailStore.h"
#include "services/Clipboard.h"
#include "services/Clock.h"
#include "services/Files.h"
#include "services/Shell.h"

namespace lorvane::services {

/// What varies between the machines a run can have.
struct ServiceOptions {
    FilePlaces places;
    std::shared_ptr<mailstore::SettingsStore> settings;  ///< in memory where there is none
    std::function<host::DateTime()> now = &machineNow;   ///< a run with a fixed moment gives that one each time
    std::u16string localeName = u"en-US";                ///< in any form of `regionName`
    std::string codePage;                                ///< as "windows-1252"; that of the region where it is empty
    std::optional<std::u16string> userName;              ///< the login name where there is none
    std::optional<std::u16string> appPath;               ///< the add-in's own folder, with "\"; the running program's where there is none
    ShellHook shell;                                     ///< decides what becomes of requests to the shell; none starts anything
};

/// One of each service, to hand out at the machine. The temporary folder ends with the last handle on `files`.
struct Services : host::ServiceObjects {
    /// Error 5 for an unknown code page.
    explicit Services(ServiceOptions options);

    /// The clipboard and the shell as the host and the user see them.
    Clipboard& clipboardContent() const noexcept { return *host::implementation<Clipboard>(clipboard); }
    const Shell& shellRequests() const noexcept { return *host::implementation<Shell>(shell); }
};

}  // namespace lorvane::services
