#pragma once

#include <string_view>

namespace lorvane::html {

/// What stands between the tags of a document's body, as it is. A document without these tags loses those around its head and its end; a fragment is all of it.
std::u16string_view bodySource(std::u16string_view html);

}  // namespace lorvane::html
