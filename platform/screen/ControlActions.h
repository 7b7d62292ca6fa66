#pragma once

#include <cstdint>
#include <optional>

#include "host/Form.h"

/// What a person's act does to a control: the focus it takes, the values it sets and the events it raises, in their order. Whoever brings the act
/// (a script, a socket, a widget) has seen to it that the window takes input and the control can be reached.
///
/// A handler may hide or unload the window; what would come after that does not happen.
namespace lorvane::screen {

/// A row of a list; none is the empty room below its lines.
using Row = std::optional<std::int32_t>;

/// The left button. A list takes the row; on an option or a box it sets or turns its value. Error 5 for a timer, or a row that is not there.
void clickControl(host::Control& control, Row row = {});
/// Twice the left button: a list raises DblClick behind its Click, a button is pressed twice. Without a row a list keeps its choice.
void doubleClickControl(host::Control& control, Row row = {});
/// The right button: a list raises MouseDown at the row, nothing is chosen.
void rightClickControl(host::Control& control, Row row = {});
/// The pointer over a control: MouseMove of a label or panel.
void hoverControl(host::Control& control);
/// Chooses a line of a list or combo box, counted from 0; Click comes also where it was chosen before. Error 5 for any other control or line.
void chooseLine(host::Control& control, std::int32_t index);
/// Sets a box or option. Error 5 for any other control, and for an option that would be turned off: another one does that.
void setChecked(host::Control& control, bool on);
/// The window's own close button.
void closeByTitleBar(host::Form& form);

/// Whether the keyboard can stand in the control.
bool takesFocus(const host::Control& control) noexcept;
/// The window is up and the control in it can be reached.
bool isUp(const host::Control& control) noexcept;

}  // namespace lorvane::screen
