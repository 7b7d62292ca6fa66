#include "screen/Hands.h"

#include "host/HostError.h"
#include "screen/ControlKeys.h"

namespace lorvane::screen {

void Hands::Click(std::u16string_view window, std::u16string_view control, Row row) {
    clickControl(reach(window, control), row);
}

void Hands::DblClick(std::u16string_view window, std::u16string_view control, Row row) {
    doubleClickControl(reach(window, control), row);
}

void Hands::RightClick(std::u16string_view window, std::u16string_view control, Row row) {
    rightClickControl(reach(window, control), row);
}

void Hands::Hover(std::u16string_view window, std::u16string_view control) {
    hoverControl(windows_.reach(window, control));
}

void Hands::Type(std::u16string_view window, std::u16string_view control, std::u16string_view text) {
    host::Control& target = reach(window, control);
    if (target.kind() != host::ControlKind::TextBox && target.kind() != host::ControlKind::ComboBox)
        throw host::HostError(host::runtime_error::InvalidProcedureCall, std::u16string(u"The control \"").append(target.name()).append(u"\" takes no text."));
    press(target, keysOfText(text));
}

void Hands::Key(std::u16string_view window, std::u16string_view control, std::u16string_view keys) {
    const std::vector<KeyStroke> strokes = parseKeys(keys);
    press(reach(window, control), strokes);
}

void Hands::Select(std::u16string_view window, std::u16string_view list, std::int32_t index) {
    chooseLine(reach(window, list), index);
}

void Hands::Check(std::u16string_view window, std::u16string_view box, bool on) {
    setChecked(reach(window, box), on);
}

void Hands::CloseWindow(std::u16string_view window) {
    closeByTitleBar(windows_.reach(window));
}

void Hands::Advance(std::int64_t milliseconds) {
    windows_.desktop().advance(milliseconds);
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
