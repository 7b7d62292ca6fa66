#pragma once

#include <string>
#include <string_view>

#include "host/Object.h"

/// Places a template's HTML on the clipboard in the registered format "HTML Format", and gives the fragment for splicing.
namespace lorvane::text {

/// Cuts `html` down to what stands between its body tags, replaces the tags in it (TemplateTags.h) and puts the document on the clipboard. Gives the fragment,
/// which also stays in `html`.
///
/// Without an item nothing is replaced. `source` "Recipient" (compared exactly) takes the names from `item`; else with `hasRecipients` from `otherItem` where
/// that has recipients, from nobody where it has none; else from `item` as the mail being answered by `otherItem`. The module shows no message.
std::u16string CopyHTMLToClipBoard(std::u16string& html, const host::Object& item, std::u16string_view source = u"", bool hasRecipients = false,
                                   const host::Object& otherItem = {});

/// Puts header, `before`, `fragment` and `after` on the clipboard as one block; `before` and `after` gain the fragment comments. A clipboard that cannot be
/// opened keeps what it holds.
void PutHTMLClipboard(std::u16string_view fragment, std::u16string& before, std::u16string& after);

/// Puts a template at the top of a body and leaves it on the clipboard too.
std::u16string MergeHTMLIntoBody(std::u16string_view templateHtml, std::u16string_view bodyHtml, const host::Object& item, bool hasRecipients,
                                 const host::Object& otherItem);

}  // namespace lorvane::text
