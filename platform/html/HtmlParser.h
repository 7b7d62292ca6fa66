#pragma once

#include <string_view>

#include "html/TextMap.h"

namespace lorvane::html {

/// Reads HTML source into its visible text.
///
/// The tree is the parser library's. Where a source is beyond it (thousands of elements open at once, thousands of attributes on a tag), the tags are taken in
/// the order in which they stand, with the same rules for text but without the repair of misplaced tags.
TextMap mapHtml(std::u16string_view source);

}  // namespace lorvane::html
