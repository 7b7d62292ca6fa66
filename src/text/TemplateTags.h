#pragma once

#include <string>
#include <string_view>

#include "host/Object.h"

/// The placeholders of a template's text: `[FullName]`, `[FirstName]`, `[Date]`. The same for plain text and HTML; in any letter case.
namespace lorvane::text {

/// Whose name feeds the tags.
inline constexpr std::u16string_view sourceRecipient = u"Recipient";

/// Replaces the tags in `text`, in place, and gives the same text.
///
/// With `source` "Recipient" (any case) the addressee is the first resolved To recipient of `item`, a mail or its safe wrapper. With any other source `item` is
/// the mail being answered and `otherItem` the answer being built: the address entry is that of the answer's first resolved To recipient, the display name the
/// sender of `item`; `noRecipient` leaves the names out. Without an item, an answer, a recipient or a value the name tags stay as they are; `[Date]` is always
/// replaced.
/// Errors of the host go to the caller.
const std::u16string& ReplaceTemplateTag(std::u16string& text, const host::Object& item, std::u16string_view source = u"", bool noRecipient = false,
                                         const host::Object& otherItem = {});

/// Replaces every `tag` in `text`, any case, in place, and gives the same text.
const std::u16string& ReplaceTag(std::u16string& text, std::u16string_view tag, std::u16string_view value);

}  // namespace lorvane::text
