#pragma once

#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"

/// An item's text by its one source.
namespace lorvane::model {

using mailstore::BodyKind;

/// The text a person sees, line ends as CRLF for HTML and rich text; plain text is as it is.
std::u16string visibleBody(BodyKind kind, std::u16string_view source);
/// A source of the kind that shows the text. The kind is not None.
std::u16string sourceFromText(BodyKind kind, std::u16string_view text);

}  // namespace lorvane::model
