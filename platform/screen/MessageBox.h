#pragma once

#include <cstdint>
#include <string>

namespace lorvane::screen {

/// A message box as the user sees it.
struct BoxShown {
    std::int32_t id = 0;  ///< counts from 1 over a run
    std::u16string text;
    std::int32_t style = 0;
    std::u16string title;
};

/// Whether a box of this style has the button (1 OK, 2 Cancel, 6 Yes, 7 No). The low four bits tell: 1 OK and Cancel, 3 Yes, No and Cancel, 4 Yes and No;
/// any other has OK alone.
bool hasButton(std::int32_t style, std::int32_t button) noexcept;

/// The button that does least: No where the box has one, else Cancel, else OK.
std::int32_t carefulAnswer(std::int32_t style) noexcept;

/// Error 5 with a sentence where the box does not have the button.
void requireButton(const BoxShown& box, std::int32_t button);

}  // namespace lorvane::screen
