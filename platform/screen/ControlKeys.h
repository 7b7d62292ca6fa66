#pragma once

#include "host/Form.h"
#include "screen/KeyString.h"

namespace lorvane::screen {

/// One key for a window of the add-in: it goes to the control with the focus, in the order of events a person's key has.
///
/// A text box raises KeyDown, KeyPress, then the text changes (Change), then KeyUp; a handler that sets the key code or the character to 0 swallows the rest
/// but KeyUp. Tab moves the focus, Enter and blank press buttons and turn boxes, arrows choose lines, Alt with a letter goes by the "&" of captions; Escape and
/// Enter press the buttons that are `Cancel` and `Default`. A key that nothing takes is lost.
void pressKey(host::Form& form, const KeyStroke& stroke);

/// The focus goes to the next control that can be reached, round the window; back: to the one before. From no focus to the first, or last.
void moveFocus(host::Form& form, bool back = false);

}  // namespace lorvane::screen
