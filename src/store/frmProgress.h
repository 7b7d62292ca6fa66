#pragma once

#include "host/Form.h"
#include "host/Outlook.h"

namespace lorvane::store {

/// Shows how far the loading of the template folders has come. A caller sets the folders to load, shows the window modally, and finds it gone on return.
class frmProgress final : public host::Form {
public:
    static constexpr std::u16string_view formName = u"frmProgress";
    frmProgress();

    host::MAPIFolder PrivateFolder;  ///< Nothing: not loaded
    host::MAPIFolder SharedFolder;   ///< Nothing: not loaded

    host::Panel fra1progress;
    host::Label lbl1bar, lbl1progressbar, lblStatus;

    void showStep(std::int32_t counter, std::int32_t total);
    void finish();  ///< lets the folders go, hides and unloads

protected:
    void Form_Activate() override;
};

}  // namespace lorvane::store
