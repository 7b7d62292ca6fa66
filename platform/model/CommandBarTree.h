#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lorvane::model {

/// A control as a person sees it, with what a program knows of it.
struct ControlTree {
    std::int32_t type = 1;  ///< 1 button, 10 popup
    std::int32_t id = 1;    ///< 1 for a control that a program made
    std::u16string caption{}, tag{}, tooltip{}, parameter{}, onAction{};
    std::int32_t faceId = 0, style = 0;  ///< of a button
    std::int32_t priority = 3;           ///< 0 to 7; 1 is never dropped from a bar that is too short
    bool beginGroup = false, enabled = true, visible = true, temporary = false, builtIn = false;
    std::vector<ControlTree> controls{};  ///< what a popup opens
};

/// A bar of a window.
struct BarTree {
    std::u16string name{};
    std::int32_t position = 1;  ///< 0 left, 1 top, 2 right, 3 bottom, 4 floating, 5 popup, 6 menu bar
    bool visible = true, temporary = false, builtIn = false;
    std::vector<ControlTree> controls{};
};

}  // namespace lorvane::model
