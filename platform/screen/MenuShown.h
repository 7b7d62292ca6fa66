#pragma once

#include <string>
#include <vector>

namespace lorvane::screen {

/// A pop-up menu as the user sees it: the items that are shown, in their order.
struct MenuShown {
    struct Item {
        std::u16string name, caption;  ///< a separator has the caption "-"
        bool enabled = true;
        bool operator==(const Item&) const = default;
    };
    std::u16string window, name;
    std::vector<Item> items;
};

}  // namespace lorvane::screen
