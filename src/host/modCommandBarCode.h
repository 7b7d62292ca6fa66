#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/CommandBars.h"

/// Makes the add-in's controls. Every routine runs with errors ignored and looks for an existing control first, so that running twice on one bar adds nothing;
/// what could not be made is Nothing.
namespace lorvane::host {

CommandBarControl ExplorerMenuPopUpAdd(const CommandBar& bar, std::u16string_view caption, std::u16string_view tooltip, bool beginGroup,
                                       std::optional<std::int32_t> before = {});
/// Also makes an existing button visible.
CommandBarControl ExplorerMenuControlAdd(const CommandBarControl& popup, std::u16string_view caption, bool beginGroup, std::optional<std::int32_t> before,
                                         std::int32_t face, std::int32_t style);

/// A button of the bar of an open item.
struct InspControl {
    std::u16string_view caption, tag, tooltip;
    std::int32_t face = 0;
    bool beginGroup = false;
    std::int32_t style = button_style::IconAndCaption;
    bool enabled = true;
};
CommandBarControl AddInspControl(std::u16string_view progId, const CommandBar& bar, const InspControl& wanted);
CommandBarControl AddInspPopup(const CommandBar& bar, std::u16string_view caption, std::u16string_view tooltip, bool beginGroup,
                               std::optional<std::int32_t> before = {});
/// Also makes an existing item visible.
CommandBarControl AddPopupItem(const CommandBarControl& popup, std::u16string_view caption, std::optional<std::int32_t> before = {}, bool beginGroup = false);

}  // namespace lorvane::host
