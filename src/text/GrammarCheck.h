#pragma once

#include <string>
#include <string_view>

namespace lorvane::text {

/// Takes the editor's proofing markup out of tags, in place, and gives the same text: "[<span class=SpellE>FullName</span>]" becomes "[FullName]".
///
/// A fragment runs from the first start delimiter of the whole text to an end delimiter behind it; one that holds "FullName", "FirstName" or "Date" (looked for
/// in this order, any case) is replaced wherever it stands. A start delimiter whose fragments hold none of the words stays in front and makes each later
/// fragment run from it.
///
/// The time grows with the length of the text, also where it is nothing but delimiters, holds very many fragments, or very many different ones made of the same
/// few pieces. Only where such fragments come again behind many start delimiters without an end does each cost more: at most about what a pass over the text
/// costs. Delimiters that can overlap anything, or have no sign but letters, cost such a pass for each fragment.
const std::u16string& RemoveGrammarCheck(std::u16string& text, std::u16string_view startDelimiter, std::u16string_view endDelimiter);

}  // namespace lorvane::text
