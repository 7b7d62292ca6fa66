#pragma once

#include <string>
#include <string_view>

#include "host/Outlook.h"

namespace lorvane::host {

/// Holds the add-in's references to the host for as long as it is connected.
class OutAddIn {
public:
    /// Takes the references. Its last statement reads a member that the host does not have, on every start: the error goes to the caller, and `isInitialised`
    /// stays false.
    void InitHandler(const Application& application, std::u16string_view progId);
    /// Lets all references go, the shared ones too, so that the host can end.
    void UnInitHandler();

    bool isInitialised() const noexcept { return initialised_; }

private:
    Application objOutlook_;
    NameSpace objNS_;
    Windows colExpl_;
    Windows colInsp_;
    Object objExpl_;
    Object objInsp_;
    std::u16string progId_;
    bool initialised_ = false;
};

}  // namespace lorvane::host
