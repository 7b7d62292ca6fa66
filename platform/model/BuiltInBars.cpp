#include "model/BuiltInBars.h"

#include <initializer_list>
#include <string_view>

#include "model/CommandBarObjects.h"
#include "model/HostOptions.h"

namespace lorvane::model {

namespace {

constexpr std::int32_t topPosition = 1, menuPosition = 6;

/// A control of the host: its caption and its id.
struct Known {
    std::u16string_view caption;
    std::int32_t id;
};

BarTree builtIn(std::u16string_view name, std::int32_t position, std::int32_t type, std::initializer_list<Known> controls) {
    BarTree bar{std::u16string(name), position, true, false, true, {}};
    for (const Known& known : controls) {
        ControlTree control;
        control.type = type;
        control.id = known.id;
        control.caption = known.caption;
        control.builtIn = true;
        bar.controls.push_back(std::move(control));
    }
    return bar;
}

BarTree menuBar(std::initializer_list<Known> menus) {
    return builtIn(u"Menu Bar", menuPosition, ControlObject::Popup, menus);
}

BarTree toolbar(std::u16string_view name, std::initializer_list<Known> buttons) {
    return builtIn(name, topPosition, ControlObject::Button, buttons);
}

constexpr Known file{u"&File", 30002}, edit{u"&Edit", 30003}, view{u"&View", 30004}, insert{u"&Insert", 30005}, format{u"F&ormat", 30006};
constexpr std::int32_t toolsId = 30007, helpId = 30010;
constexpr Known save{u"&Save", 3}, print{u"&Print", 4}, copy{u"&Copy", 19}, cut{u"Cu&t", 21}, paste{u"&Paste", 22};

ControlTree ofTemplate(std::int32_t type, std::u16string_view caption) {
    ControlTree control;
    control.type = type;
    control.caption = caption;
    return control;
}

/// What the template brings is none of the host's own.
BarTree templateBar() {
    constexpr std::int32_t button = ControlObject::Button, popup = ControlObject::Popup;
    BarTree bar{u"Lorvane", topPosition, true, false, false, {}};
    bar.controls = {ofTemplate(button, u"Lo&rvane"),      ofTemplate(button, u"Save Template"), ofTemplate(button, u"Create Template"),
                    ofTemplate(popup, u"Insert m-Field"), ofTemplate(popup, u"&Respond"),       ofTemplate(button, u"Help")};
    return bar;
}

}  // namespace

std::vector<BarTree> explorerBars(const HostOptions& options) {
    return {menuBar({file, edit, view, {u"&Go", 30075}, {options.toolsCaption, toolsId}, {u"&Actions", 30131}, {options.helpCaption, helpId}}),
            toolbar(u"Standard", {{u"&New", 1757}, print, {u"&Delete", 478}, {u"&Reply", 354}, {u"Reply to A&ll", 355}, {u"For&ward", 356}})};
}

std::vector<BarTree> inspectorBars(const HostOptions& options) {
    return {menuBar({file, edit, view, insert, format, {options.toolsCaption, toolsId}, {u"&Actions", 30131}, {options.helpCaption, helpId}}),
            toolbar(u"Standard", {save, print, cut, copy, paste})};
}

std::vector<BarTree> wordBars(const HostOptions& options) {
    return {menuBar({file, edit, view, insert, format, {options.toolsCaption, toolsId}, {u"T&able", 30008}, {options.helpCaption, helpId}}),
            toolbar(u"Standard", {save, print, cut, copy, paste}), toolbar(u"Formatting", {{u"&Bold", 113}, {u"&Italic", 114}}), templateBar()};
}

}  // namespace lorvane::model
