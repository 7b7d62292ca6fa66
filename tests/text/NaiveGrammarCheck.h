#pragma once

#include <string>
#include <string_view>

namespace lorvane::text {

/// The clean-up of tags written down step by step, with a pass over the whole text for each fragment: slow, and plain enough to be believed.
std::u16string naiveRemoveGrammarCheck(std::u16string_view source, std::u16string_view startDelimiter, std::u16string_view endDelimiter);

}  // namespace lorvane::text
