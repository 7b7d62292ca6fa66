#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

/// Facades over the bars, menus and buttons of a window of the host.
///
/// Look-ups by caption are the host's: a control that is not there is an error.
namespace lorvane::host {

/// Types of controls.
inline constexpr std::int32_t msoControlButton = 1, msoControlPopup = 10;
/// Positions of a bar.
inline constexpr std::int32_t msoBarTop = 1;
namespace button_style {
inline constexpr std::int32_t Automatic = 0, Caption = 2, IconAndCaption = 3;
}

class CommandBar;
class CommandBarControls;

/// A button or a popup.
class CommandBarControl : public Object {
public:
    CommandBarControl() = default;
    explicit CommandBarControl(Object object) : Object(std::move(object)) {}
    std::u16string Caption() const { return getText(Member::Caption); }
    void Caption(std::u16string_view value) const { put(Member::Caption, value); }
    void BeginGroup(bool value) const { put(Member::BeginGroup, value); }
    void Enabled(bool value) const { put(Member::Enabled, value); }
    void FaceId(std::int32_t value) const { put(Member::FaceId, value); }
    std::int32_t Index() const { return getNumber(Member::Index); }  ///< its place among its bar's controls, from 1
    void OnAction(std::u16string_view value) const { put(Member::OnAction, value); }
    void Priority(std::int32_t value) const { put(Member::Priority, value); }
    void Style(std::int32_t value) const { put(Member::Style, value); }
    void Tag(std::u16string_view value) const { put(Member::Tag, value); }
    void TooltipText(std::u16string_view value) const { put(Member::TooltipText, value); }
    void Visible(bool value) const { put(Member::Visible, value); }
    void Delete() const { call(Member::Delete); }
    host::CommandBar CommandBar() const;  ///< what a popup opens
    CommandBarControls Controls() const;  ///< of a popup
};

class CommandBarControls : public Object {
public:
    explicit CommandBarControls(Object object) : Object(std::move(object)) {}
    std::int32_t Count() const { return getNumber(Member::Count); }
    CommandBarControl Item(std::u16string_view caption) const { return CommandBarControl(call(Member::Item, {caption}).toObject()); }

    /// What a new control may be told beside its type.
    struct NewControl {
        std::int32_t type = msoControlButton;
        std::optional<std::u16string> parameter = {};
        std::optional<std::int32_t> before = {};  ///< the place it takes, from 1; at the end where there is none
    };
    /// A temporary one: the host forgets it at the end of its run.
    CommandBarControl Add(const NewControl& wanted) const;
};

class CommandBar : public Object {
public:
    CommandBar() = default;
    explicit CommandBar(Object object) : Object(std::move(object)) {}
    CommandBarControls Controls() const { return CommandBarControls(getObject(Member::Controls)); }
    void Visible(bool value) const { put(Member::Visible, value); }
};

/// The bars of one window.
class CommandBars : public Object {
public:
    CommandBars() = default;
    explicit CommandBars(Object object) : Object(std::move(object)) {}
    CommandBar Item(std::u16string_view name) const { return CommandBar(call(Member::Item, {name}).toObject()); }
    CommandBar addTemporary(std::u16string_view name, std::int32_t position) const;
    CommandBarControl FindControl(std::u16string_view tag, bool onlyVisible) const;  ///< Nothing where there is none
};

/// The bars of an Explorer, an Inspector or a Word document.
inline CommandBars commandBarsOf(const Object& window) {
    return CommandBars(window.getObject(Member::CommandBars));
}

}  // namespace lorvane::host
