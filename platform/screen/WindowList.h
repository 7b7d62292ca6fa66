#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Form.h"
#include "screen/Desktop.h"

namespace lorvane::screen {

/// The windows of the add-in that are up on a desktop, the message boxes over them, and which windows take input.
///
/// Each window that is up is a window of the desktop of its own, whose keys go to its focused control. A modal window, or a box, takes the input of every
/// window that was opened before it, those of the host included.
class WindowList {
public:
    explicit WindowList(Desktop& desktop);
    ~WindowList();
    WindowList(const WindowList&) = delete;
    WindowList& operator=(const WindowList&) = delete;

    Desktop& desktop() const noexcept { return desktop_; }

    struct Row {
        std::u16string name;  ///< empty for a window of the host that has none
        std::u16string caption;
        bool modal = false;
        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows() const;  ///< from back to front, windows of the host and message boxes too

    host::Form* find(std::u16string_view name) const noexcept;  ///< a window that is up, any case; null where there is none
    bool isOpen(const host::Form& form) const noexcept;
    bool isOpen(std::int32_t handle) const noexcept { return desktop_.windowOf(handle) != nullptr; }
    bool takesInput(const DesktopWindow& window) const noexcept;  ///< open and not covered
    bool takesInput(const host::Form& form) const noexcept;

    /// The window and control that a person's act names. Error 5, with a sentence, where the window is not open or is covered, or the control is not there,
    /// hidden or disabled.
    host::Control& reach(std::u16string_view window, std::u16string_view control) const;
    host::Form& reach(std::u16string_view window) const;
    /// Error 5 where a modal window or a box covers it: for what a person does to windows of the host.
    void requireInput(const DesktopWindow& window) const;

    // For a screen. A window is kept alive while it is open.
    std::int32_t open(host::Form& form, bool modal);  ///< the desktop's number of this showing
    bool close(host::Form& form);                     ///< false where it was not open
    void bringToFront(host::Form& form);
    void openBox(DesktopWindow& box);
    void closeBox(DesktopWindow& box) noexcept;

private:
    class FormWindow;
    struct OpenForm {
        std::unique_ptr<FormWindow> window;
        bool modal;
    };

    const OpenForm* entryOf(const host::Form& form) const noexcept;
    bool isModal(const DesktopWindow& window) const noexcept;
    const DesktopWindow* coverOf(const DesktopWindow& window) const noexcept;  // what takes its input; null where nothing does

    Desktop& desktop_;
    std::vector<OpenForm> forms_;
    std::vector<DesktopWindow*> boxes_;
};

}  // namespace lorvane::screen
