#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/PaddedText.h"
#include "host/Property.h"

/// The control objects of the add-in's windows. They hold state and raise events; a screen draws them and passes on what the user does.
///
/// Sizes are twips. Assigning `Text`, `ListIndex` or an option's value raises the control's event as the user's own act would, when the value changes.
namespace lorvane::host {

class Form;

enum class ControlKind { Panel, Label, TextBox, Button, Option, CheckBox, ComboBox, ListBox, Timer, Menu };

class Control : public PropertyOwner {
public:
    Control(Form& form, ControlKind kind, std::u16string_view name, std::u16string_view caption = u"", Control* container = nullptr);

    Form& form() const noexcept { return form_; }
    ControlKind kind() const noexcept { return kind_; }
    std::u16string_view name() const noexcept { return name_; }
    Control* container() const noexcept { return container_; }  ///< the panel or menu it stands in; null for the window itself
    std::u16string_view className() const noexcept;             ///< "TextBox", "ListBox" …
    /// Visible and enabled, and so is every panel around it.
    bool isReachable() const noexcept;
    /// A handle for by-name access, which keeps the window's object alive.
    Object handle();
    /// The control behind such a handle; null for any other object and for Nothing.
    static Control* behind(const Object& handle) noexcept;

    Property<std::u16string> Caption, Tag, ToolTipText;
    Property<bool> Enabled, Visible;
    Property<std::int32_t> Left, Top, Width, Height, ForeColor;

    void SetFocus();  ///< error 5 where the control is hidden or disabled
    void Refresh() {}

private:
    Form& form_;
    ControlKind kind_;
    std::u16string_view name_;
    Control* container_;
};

class Panel final : public Control {
public:
    Panel(Form& form, std::u16string_view name, std::u16string_view caption = u"", Control* container = nullptr)
        : Control(form, ControlKind::Panel, name, caption, container) {}
    Event<> Click, MouseMove;
};

class Label final : public Control {
public:
    Label(Form& form, std::u16string_view name, std::u16string_view caption = u"", Control* container = nullptr)
        : Control(form, ControlKind::Label, name, caption, container) {}
    Event<> Click, MouseMove;
};

class Button final : public Control {
public:
    Button(Form& form, std::u16string_view name, std::u16string_view caption, Control* container = nullptr);
    Property<bool> Default, Cancel;  ///< the button that Enter, or Escape, presses wherever the focus stands
    Event<> Click;
};

/// A control that holds a text of its own, with a selection in it.
class TextEntry : public Control {
public:
    Property<std::u16string> Text;
    Property<std::int32_t> SelStart, SelLength;  ///< UTF-16 units, always inside the text; a new Text puts the caret to its start
    Event<> Change;

protected:
    TextEntry(Form& form, ControlKind kind, std::u16string_view name, std::u16string_view caption, std::u16string_view text, Control* container);
    void propertyChanged(PropertyBase& property) override;
    void putCaretToStart();
};

class TextBox final : public TextEntry {
public:
    TextBox(Form& form, std::u16string_view name, std::u16string_view text = u"", Control* container = nullptr);
    Event<std::int32_t&, std::int32_t> KeyDown;  ///< key code (0 swallows the key) and shift state
    Event<std::int32_t&> KeyPress;               ///< character (0 swallows it)
    Event<std::int32_t&, std::int32_t> KeyUp;
};

/// One of the options of a container, of which one is on at a time.
class OptionButton final : public Control {
public:
    OptionButton(Form& form, std::u16string_view name, std::u16string_view caption, Control* container = nullptr);
    Property<bool> Value;
    Event<> Click;

protected:
    void propertyChanged(PropertyBase& property) override;
};

class CheckBox final : public Control {
public:
    CheckBox(Form& form, std::u16string_view name, std::u16string_view caption, Control* container = nullptr);
    Property<std::int32_t> Value;  ///< 0 off, 1 on
    Event<> Click;

protected:
    void propertyChanged(PropertyBase& property) override;
};

/// A drop-down with a text of its own. Choosing a line puts it into `Text` and raises Click; another `Text` raises Change.
class ComboBox final : public TextEntry {
public:
    ComboBox(Form& form, std::u16string_view name, std::u16string_view caption = u"", Control* container = nullptr);
    Property<std::int32_t> ListIndex;
    Event<> Click;

    void AddItem(std::u16string line);
    void Clear();  ///< no lines, no text
    std::int32_t ListCount() const noexcept { return static_cast<std::int32_t>(lines_.size()); }
    std::u16string List(std::int32_t index) const;  ///< error 381 out of range

protected:
    void propertyChanged(PropertyBase& property) override;

private:
    std::vector<std::u16string> lines_;
};

/// A list whose lines may hold long runs of blanks, which are not stored.
class ListBox final : public Control {
public:
    ListBox(Form& form, std::u16string_view name, std::u16string_view caption = u"", Control* container = nullptr);
    Property<std::int32_t> ListIndex;         ///< -1 where no line is chosen
    Property<std::int32_t> HorizontalExtent;  ///< twips that can be scrolled to
    Property<std::int32_t> TopIndex;          ///< the first line in view; a screen that scrolls keeps it
    Property<std::int32_t> RowHeight;         ///< twips of a line, as the screen draws it
    Event<> Click, DblClick;
    Event<std::int32_t, double, double> MouseDown;  ///< button (1 left, 2 right) and place in twips

    void AddItem(PaddedText line);
    void AddItem(std::u16string_view line) { AddItem(PaddedText(line)); }
    void Clear();
    std::int32_t ListCount() const noexcept { return static_cast<std::int32_t>(lines_.size()); }
    std::u16string List(std::int32_t index) const;     ///< the whole line, blanks and all; error 381 out of range
    const PaddedText& line(std::int32_t index) const;  ///< the same, as it is kept
    std::u16string Text() const;                       ///< the chosen line, "" where there is none
    std::int32_t rowAt(double y) const noexcept;       ///< the line at a place of MouseDown, -1 where there is none

protected:
    void propertyChanged(PropertyBase& property) override;

private:
    std::vector<PaddedText> lines_;
};

/// Raises Timer each `Interval` milliseconds while it is enabled and the window is loaded.
class Timer final : public Control {
public:
    Timer(Form& form, std::u16string_view name);
    Property<std::int32_t> Interval;
    Event<> Tick;  ///< the control's "Timer" event

protected:
    void propertyChanged(PropertyBase& property) override;
};

/// A pop-up menu, or (with a container) one of its items; a caption "-" is a separator.
class Menu final : public Control {
public:
    Menu(Form& form, std::u16string_view name, std::u16string_view caption, Control* container = nullptr)
        : Control(form, ControlKind::Menu, name, caption, container) {}
    Event<> Click;
};

}  // namespace lorvane::host
