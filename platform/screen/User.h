#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/Form.h"
#include "screen/MenuShown.h"
#include "screen/MessageBox.h"
#include "screen/WindowList.h"

namespace lorvane::screen {

/// One modal showing that waits for the user.
class ModalTurn {
public:
    ModalTurn(const WindowList& windows, host::Form& form, std::int32_t handle) noexcept : windows_(windows), form_(form), handle_(handle) {}
    host::Form& form() const noexcept { return form_; }
    bool isOver() const noexcept { return !windows_.isOpen(handle_); }  ///< the window was hidden or unloaded meanwhile

private:
    const WindowList& windows_;
    host::Form& form_;
    std::int32_t handle_;
};

/// Who sits before the screen: a script, or whoever is at the other end of a line. The screen asks; what the user does goes through `Hands`.
///
/// Calls nest: what a user does in one may open the next window, box or pump. An error raised here goes to the code that opened the window, box or pump.
class User {
public:
    virtual ~User() = default;

    /// A modal window is up. Acts, or waits for somebody to act; it is asked again until the window is gone. False where nobody will act any more: the screen
    /// then closes the window by its title bar, so that no run hangs.
    virtual bool attend(ModalTurn& turn) = 0;
    /// A message box is up: the button pressed, one of the box's own (`hasButton`).
    virtual std::int32_t answer(const BoxShown& box) = 0;

    /// A menu is up: the caption or name of the item chosen; nothing closes it.
    virtual std::optional<std::u16string> choose(const MenuShown&) { return std::nullopt; }

    /// A window is about to come up; raising an error here keeps it from that.
    virtual void opening(host::Form&, bool /*modal*/) {}
    virtual void pumped() {}                            ///< the code lets pending events run (DoEvents): what a person does in the middle of it
    virtual void shown(host::Form&, bool /*modal*/) {}  ///< a window came up
    virtual void closed(host::Form&) {}                 ///< a window went
    virtual void leftUp(host::Form&) {}                 ///< nobody attends to a modal window any more; the screen closes it next
};

}  // namespace lorvane::screen
