#include "screen/Hands.h"

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "screen/ControlKeys.h"

namespace lorvane::screen {

namespace {

std::u16string rowText(Row row) {
    return row ? host::decimal(*row) : std::u16string();
}

}  // namespace

void Hands::Click(std::u16string_view window, std::u16string_view control, Row row) {
    host::Control& target = reach(window, control);
    tell(u"Click", target, rowText(row));
    clickControl(target, row);
}

void Hands::DblClick(std::u16string_view window, std::u16string_view control, Row row) {
    host::Control& target = reach(window, control);
    tell(u"DblClick", target, rowText(row));
    doubleClickControl(target, row);
}

void Hands::RightClick(std::u16string_view window, std::u16string_view control, Row row) {
    host::Control& target = reach(window, control);
    tell(u"RightClick", target, rowText(row));
    rightClickControl(target, row);
}

void Hands::Hover(std::u16string_view window, std::u16string_view control) {
    if (control.empty())
        windows_.reach(window).MouseMove();
    else
        hoverControl(windows_.reach(window, control));
}

void Hands::Type(std::u16string_view window, std::u16string_view control, std::u16string_view text) {
    host::Control& target = reach(window, control);
    if (target.kind() != host::ControlKind::TextBox && target.kind() != host::ControlKind::ComboBox)
        throw host::HostError(host::runtime_error::InvalidProcedureCall, std::u16string(u"The control \"").append(target.name()).append(u"\" takes no text."));
    tell(u"Type", target, text);
    press(target, keysOfText(text));
}

void Hands::Key(std::u16string_view window, std::u16string_view control, std::u16string_view keys) {
    const std::vector<KeyStroke> strokes = parseKeys(keys);
    host::Control& target = reach(window, control);
    tell(u"Key", target, keys);
    press(target, strokes);
}

void Hands::Select(std::u16string_view window, std::u16string_view list, std::int32_t index) {
    host::Control& target = reach(window, list);
    tell(u"Select", target, host::decimal(index));
    chooseLine(target, index);
}

void Hands::Check(std::u16string_view window, std::u16string_view box, bool on) {
    host::Control& target = reach(window, box);
    tell(u"Check", target, on ? u"on" : u"off");
    setChecked(target, on);
}

void Hands::CloseWindow(std::u16string_view window) {
    host::Form& target = windows_.reach(window);
    if (onAct_) onAct_(std::u16string(u"act CloseWindow ").append(target.name()));
    closeByTitleBar(target);
}

void Hands::Advance(std::int64_t milliseconds) {
    windows_.desktop().advance(milliseconds);
}

void Hands::tell(std::u16string_view act, const host::Control& control, std::u16string_view detail) const {
    if (!onAct_) return;
    std::u16string line(u"act ");
    line.append(act).append(u" ").append(control.form().name()).append(u".").append(control.name());
    if (!detail.empty()) line.append(u" ").append(detail);
    onAct_(line);
}

host::Control& Hands::reach(std::u16string_view window, std::u16string_view control) {
    host::Control& target = windows_.reach(window, control);
    windows_.bringToFront(target.form());
    return target;
}

void Hands::press(host::Control& control, const std::vector<KeyStroke>& strokes) {
    host::Form& form = control.form();
    const host::Object alive(&form);
    if (takesFocus(control)) control.SetFocus();
    for (const KeyStroke& stroke : strokes) {
        if (!windows_.takesInput(form)) return;
        pressKey(form, stroke);
    }
}

}  // namespace lorvane::screen
