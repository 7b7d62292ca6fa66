#pragma once

#include <memory>
#include <string_view>

#include "host/Object.h"
#include "host/OutAddIn.h"

namespace lorvane::host {

/// The add-in's connection class: the host calls it when it loads and unloads the add-in. One for each apartment.
class Connect {
public:
    /// Runs with errors ignored: a failing statement is skipped and the next one runs. On a host of version 12 or more only a message is shown, and the add-in stays
    /// passive. `addInInst` is the host's object for the add-in.
    void AddinInstance_OnConnection(const Object& application, std::int32_t connectMode, const Object& addInInst);
    void AddinInstance_OnDisconnection(std::int32_t removeMode);

private:
    std::unique_ptr<OutAddIn> baseClass_;
};

/// Opens a page or file with the program the user has for it.
void OpenInBrowser(std::u16string_view target);

}  // namespace lorvane::host
