#pragma once

#include <string_view>

#include "host/Form.h"

namespace lorvane::screen {

/// The width of a text in twips in the one font of a screen without a display: the sum of its units, so that it never varies.
double textWidth(std::u16string_view text) noexcept;

/// Gives the window and its controls a size where they have none, as a screen does that draws them.
void publishSizes(host::Form& form);

}  // namespace lorvane::screen
