#include "model/BarClicks.h"

#include <algorithm>
#include <string>

#include "host/HostError.h"
#include "model/CommandBarSet.h"
#include "model/HostWindow.h"

namespace lorvane::model {

namespace {

[[noreturn]] void refuse(std::u16string_view what, std::u16string_view name, std::u16string_view why) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall,
                          std::u16string(u"The ").append(what).append(u" \"").append(name).append(u"\" ").append(why));
}

/// The part in front of the next "/", which is taken away.
std::u16string_view takePart(std::u16string_view& path) noexcept {
    const std::size_t mark = path.find(u'/');
    const std::u16string_view part = path.substr(0, mark);
    path = mark == std::u16string_view::npos ? std::u16string_view() : path.substr(mark + 1);
    return part;
}

/// The control of a caption that a person can reach; of several one that can be clicked.
ControlObject& reach(const BarObject& bar, std::u16string_view caption) {
    ControlObject* refused = nullptr;
    for (const host::Object& one : bar.controls()) {
        auto& control = *host::implementation<ControlObject>(one);
        if (!isCaption(control.values().caption, caption)) continue;
        if (control.values().visible && control.values().enabled) return control;
        if (!refused) refused = &control;
    }
    if (!refused) refuse(u"control", caption, u"is not there.");
    refuse(u"control", caption, refused->values().visible ? u"is disabled." : u"is hidden.");
}

}  // namespace

void clickBar(HostWindow& window, std::u16string_view path) {
    const host::Object held(&window);
    if (!window.isDisplayed()) refuse(u"window", window.caption(), u"is not displayed.");
    const std::u16string_view name = takePart(path);
    const BarObject* bar = window.commandBars().find(name);
    if (!bar) refuse(u"bar", name, u"is not there.");
    if (!bar->isVisible()) refuse(u"bar", name, u"is hidden.");
    std::u16string_view caption = takePart(path);
    ControlObject* control = &reach(*bar, caption);
    while (!path.empty()) {
        if (!control->bar()) refuse(u"control", caption, u"opens no menu.");
        caption = takePart(path);
        control = &reach(*control->bar(), caption);
    }
    const host::Object clicked(control);
    window.show();
    control->click();
}

}  // namespace lorvane::model
