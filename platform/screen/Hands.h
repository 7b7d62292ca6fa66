#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "screen/ControlActions.h"
#include "screen/WindowList.h"

namespace lorvane::screen {

/// What a person does to the windows of the add-in, named by text in any case; handlers run as for a real click, key or choice.
///
/// Error 5, with a sentence, where the window is not open or covered by a modal one, or the control is not there, hidden or disabled.
class Hands {
public:
    explicit Hands(WindowList& windows) noexcept : windows_(windows) {}

    void Click(std::u16string_view window, std::u16string_view control, Row row = {});
    void DblClick(std::u16string_view window, std::u16string_view control, Row row = {});
    void RightClick(std::u16string_view window, std::u16string_view control, Row row = {});
    void Hover(std::u16string_view window, std::u16string_view control = u"");  ///< without a control over the window itself
    /// Types at the caret of a text or combo box, which gets the focus; each unit is a key of its own, and a key that moves the focus takes the rest along.
    void Type(std::u16string_view window, std::u16string_view control, std::u16string_view text);
    /// Presses keys, given in the grammar of `SendKeys`, with the focus in the control.
    void Key(std::u16string_view window, std::u16string_view control, std::u16string_view keys);
    void Select(std::u16string_view window, std::u16string_view list, std::int32_t index);
    void Check(std::u16string_view window, std::u16string_view box, bool on);
    void CloseWindow(std::u16string_view window);
    std::vector<WindowList::Row> Windows() const { return windows_.rows(); }
    /// Lets virtual time pass; timers fire on the way.
    void Advance(std::int64_t milliseconds);

    WindowList& windows() const noexcept { return windows_; }

    /// Hears of each act on a control or window that is there, before its handlers run: "act Click frmEmail.cmdInsert", "act Select frmEmail.lstEmails 2".
    void onAct(std::function<void(std::u16string_view)> told) { onAct_ = std::move(told); }

private:
    host::Control& reach(std::u16string_view window, std::u16string_view control);
    void tell(std::u16string_view act, const host::Control& control, std::u16string_view detail = {}) const;
    void press(host::Control& control, const std::vector<KeyStroke>& strokes);
    WindowList& windows_;
    std::function<void(std::u16string_view)> onAct_;
};

}  // namespace lorvane::screen
