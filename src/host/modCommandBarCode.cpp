#include "host/modCommandBarCode.h"

#include <string>

#include "host/Guards.h"

namespace lorvane::host {

namespace {

/// A control by its caption; Nothing where there is none, or no look-up is possible.
template <class Parent>
CommandBarControl existing(const Parent& parent, std::u16string_view caption) {
    CommandBarControl found;
    ignoringErrors([&] { found = parent.Controls().Item(caption); });
    return found;
}

template <class Parent>
CommandBarControl added(const Parent& parent, const CommandBarControls::NewControl& wanted) {
    CommandBarControl control;
    ignoringErrors([&] { control = parent.Controls().Add(wanted); });
    return control;
}

CommandBarControl addPopup(const CommandBar& bar, std::u16string_view caption, std::u16string_view tooltip, bool beginGroup,
                           std::optional<std::int32_t> before) {
    if (const CommandBarControl found = existing(bar, caption)) return found;
    const CommandBarControl popup = added(bar, {.type = msoControlPopup, .before = before});
    ignoringErrors([&] { popup.Caption(caption); });
    ignoringErrors([&] { popup.TooltipText(tooltip); });
    ignoringErrors([&] { popup.BeginGroup(beginGroup); });
    ignoringErrors([&] { popup.Priority(1); });
    ignoringErrors([&] { popup.Visible(true); });
    return popup;
}

}  // namespace

CommandBarControl ExplorerMenuPopUpAdd(const CommandBar& bar, std::u16string_view caption, std::u16string_view tooltip, bool beginGroup,
                                       std::optional<std::int32_t> before) {
    return addPopup(bar, caption, tooltip, beginGroup, before);
}

CommandBarControl AddInspPopup(const CommandBar& bar, std::u16string_view caption, std::u16string_view tooltip, bool beginGroup,
                               std::optional<std::int32_t> before) {
    return addPopup(bar, caption, tooltip, beginGroup, before);
}

CommandBarControl ExplorerMenuControlAdd(const CommandBarControl& popup, std::u16string_view caption, bool beginGroup, std::optional<std::int32_t> before,
                                         std::int32_t face, std::int32_t style) {
    CommandBarControl button = existing(popup, caption);
    if (!button) {
        button = added(popup, {.before = before});
        ignoringErrors([&] { button.Caption(caption); });
        ignoringErrors([&] { button.Style(style); });
        ignoringErrors([&] { button.FaceId(face); });
        ignoringErrors([&] { button.BeginGroup(beginGroup); });
    }
    ignoringErrors([&] { button.Visible(true); });
    return button;
}

CommandBarControl AddInspControl(std::u16string_view progId, const CommandBar& bar, const InspControl& wanted) {
    if (const CommandBarControl found = existing(bar, wanted.caption)) return found;
    const CommandBarControl button = added(bar, {.parameter = std::u16string(wanted.tag)});
    ignoringErrors([&] { button.Caption(wanted.caption); });
    ignoringErrors([&] { button.Tag(wanted.tag); });
    ignoringErrors([&] { button.Style(wanted.style); });
    if (wanted.style != button_style::Caption) ignoringErrors([&] { button.FaceId(wanted.face); });
    ignoringErrors([&] { button.Enabled(wanted.enabled); });
    ignoringErrors([&] { button.TooltipText(wanted.tooltip); });
    ignoringErrors([&] { button.BeginGroup(wanted.beginGroup); });
    ignoringErrors([&] { button.OnAction(u"<!" + std::u16string(progId) + u">"); });
    return button;
}

CommandBarControl AddPopupItem(const CommandBarControl& popup, std::u16string_view caption, std::optional<std::int32_t> before, bool beginGroup) {
    CommandBarControl button = existing(popup, caption);
    if (!button) {
        button = added(popup, {.before = before});
        ignoringErrors([&] { button.BeginGroup(beginGroup); });
        ignoringErrors([&] { button.Caption(caption); });
    }
    ignoringErrors([&] { button.Visible(true); });
    return button;
}

}  // namespace lorvane::host
