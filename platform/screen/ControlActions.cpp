#include "screen/ControlActions.h"

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::screen {

using host::Control;
using host::ControlKind;

namespace {

constexpr std::int32_t leftButton = 1, rightButton = 2;
constexpr double pointerX = 120;  // twips; behind the edge, where a person points

[[noreturn]] void raiseCannot(const Control& control, std::u16string_view what) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::u16string(u"The control \"").append(control.name()).append(u"\" ").append(what));
}

void requireLine(const Control& control, std::int32_t index, std::int32_t count) {
    if (index < 0 || index >= count) raiseCannot(control, std::u16string(u"has no line ").append(host::decimal(index)).append(u"."));
}

/// Raises Click also where the value stays, as a person's act does and code does not.
template <class Chooser>
void choose(Chooser& chooser, std::int32_t index) {
    requireLine(chooser, index, chooser.ListCount());
    if (chooser.ListIndex == index)
        chooser.Click();
    else
        chooser.ListIndex = index;
}

void mouseDown(host::ListBox& list, std::int32_t button, Row row) {
    if (row) requireLine(list, *row, list.ListCount());
    const std::int32_t place = row.value_or(list.ListCount()) - list.TopIndex;
    list.MouseDown(button, pointerX, (place + 0.5) * list.RowHeight);
}

void clickList(host::ListBox& list, Row row) {
    list.SetFocus();
    mouseDown(list, leftButton, row);
    if (row && isUp(list)) choose(list, *row);
}

}  // namespace

bool takesFocus(const Control& control) noexcept {
    switch (control.kind()) {
        case ControlKind::TextBox:
        case ControlKind::Button:
        case ControlKind::Option:
        case ControlKind::CheckBox:
        case ControlKind::ComboBox:
        case ControlKind::ListBox:
            return true;
        default:
            return false;
    }
}

bool isUp(const Control& control) noexcept {
    return control.form().isVisible() && control.isReachable();
}

void clickControl(Control& control, Row row) {
    const host::Object alive(&control.form());
    hoverControl(control);
    if (!isUp(control)) return;
    if (takesFocus(control)) control.SetFocus();
    switch (control.kind()) {
        case ControlKind::Panel:
            return static_cast<host::Panel&>(control).Click();
        case ControlKind::Label:
            return static_cast<host::Label&>(control).Click();
        case ControlKind::Menu:
            return static_cast<host::Menu&>(control).Click();
        case ControlKind::Button:
            return static_cast<host::Button&>(control).Click();
        case ControlKind::Option:
            return setChecked(control, true);
        case ControlKind::CheckBox:
            return setChecked(control, static_cast<host::CheckBox&>(control).Value == 0);
        case ControlKind::ListBox:
            return clickList(static_cast<host::ListBox&>(control), row);
        case ControlKind::TextBox:
        case ControlKind::ComboBox:
            return;
        case ControlKind::Timer:
            raiseCannot(control, u"cannot be clicked.");
    }
}

void doubleClickControl(Control& control, Row row) {
    const host::Object alive(&control.form());
    clickControl(control, row);
    if (!isUp(control)) return;
    if (control.kind() == ControlKind::ListBox) return static_cast<host::ListBox&>(control).DblClick();
    if (control.kind() == ControlKind::Button) clickControl(control);
}

void rightClickControl(Control& control, Row row) {
    const host::Object alive(&control.form());
    if (control.kind() == ControlKind::ListBox) mouseDown(static_cast<host::ListBox&>(control), rightButton, row);
}

void hoverControl(Control& control) {
    const host::Object alive(&control.form());
    if (control.kind() == ControlKind::Label) static_cast<host::Label&>(control).MouseMove();
    if (control.kind() == ControlKind::Panel) static_cast<host::Panel&>(control).MouseMove();
}

void chooseLine(Control& control, std::int32_t index) {
    const host::Object alive(&control.form());
    if (control.kind() != ControlKind::ListBox && control.kind() != ControlKind::ComboBox) raiseCannot(control, u"has no lines to choose from.");
    control.SetFocus();
    if (control.kind() == ControlKind::ListBox)
        choose(static_cast<host::ListBox&>(control), index);
    else
        choose(static_cast<host::ComboBox&>(control), index);
}

void setChecked(Control& control, bool on) {
    const host::Object alive(&control.form());
    if (control.kind() == ControlKind::CheckBox) {
        control.SetFocus();
        static_cast<host::CheckBox&>(control).Value = on ? 1 : 0;
    } else if (control.kind() == ControlKind::Option) {
        if (!on) raiseCannot(control, u"is an option: choosing another one turns it off.");
        control.SetFocus();
        static_cast<host::OptionButton&>(control).Value = true;
    } else {
        raiseCannot(control, u"cannot be checked.");
    }
}

void closeByTitleBar(host::Form& form) {
    const host::Object alive(&form);
    form.unload();
}

}  // namespace lorvane::screen
