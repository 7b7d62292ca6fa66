#include "screen/MessageBox.h"

#include "host/HostError.h"
#include "host/Services.h"
#include "host/TextFunctions.h"

namespace lorvane::screen {

namespace {

constexpr std::int32_t buttonBits = 15;
constexpr std::int32_t okCancel = 1, yesNoCancel = 3, yesNo = 4;

}  // namespace

bool hasButton(std::int32_t style, std::int32_t button) noexcept {
    using namespace host::msgbox;
    switch (style & buttonBits) {
        case okCancel:
            return button == Ok || button == Cancel;
        case yesNoCancel:
            return button == Yes || button == No || button == Cancel;
        case yesNo:
            return button == Yes || button == No;
        default:
            return button == Ok;
    }
}

std::int32_t carefulAnswer(std::int32_t style) noexcept {
    using namespace host::msgbox;
    for (const std::int32_t button : {No, Cancel})
        if (hasButton(style, button)) return button;
    return Ok;
}

void requireButton(const BoxShown& box, std::int32_t button) {
    if (hasButton(box.style, button)) return;
    throw host::HostError(host::runtime_error::InvalidProcedureCall,
                          std::u16string(u"The message box \"").append(box.title).append(u"\" has no button ").append(host::decimal(button)).append(u"."));
}

}  // namespace lorvane::screen
